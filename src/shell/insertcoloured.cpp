// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/insertcoloured.h"

#include "shell/documentsteps.h"
#include "shell/editorcontext.h"
#include "shell/textops.h"

#include <QtGlobal>

namespace zelvane
{

void InsertColoured(EditorContext &editor, const DocumentSteps &steps, const QString &text)
{
    const qsizetype start = editor.text.Selection().start;
    editor.text.ReplaceSelection(text);
    steps.colour->HighlightInserted(start, editor.text.Selection().end);
}

void ColourLines(EditorContext &editor, const DocumentSteps &steps, TextSpan changed)
{
    steps.colour->HighlightInserted(GetLineStart(editor.text, changed.start),
                                    GetLineEnd(editor.text, changed.end));
}

} // namespace zelvane
