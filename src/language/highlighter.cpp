// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/highlighter.h"

#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

Highlighter::Highlighter(EditorContext &editor, DocumentView &view, const OpcodeList &opcodes)
    : m_editor(editor), m_view(view), m_opcodes(opcodes)
{
}

} // namespace zelvane
