// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/languagecommands.h"

#include "language/helponword.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

LanguageCommands::LanguageCommands(EditorContext &editor, DocumentView &view, Commands &commands,
                                   const QString &folder, QObject *parent)
    : QObject(parent),
      m_editor(editor),
      m_view(view),
      m_folder(folder),
      m_highlighter(editor, view, m_opcodes)
{
    commands.Bind(Cmd::mnuCsHelp, [this] { HelpOnWord(m_editor); });
    // Two rows of the outline's menu that are offered and have no action.
    commands.Bind(Cmd::mnuTV[TreeEntry::Expand], [] {});
    commands.Bind(Cmd::mnuTV[TreeEntry::Collapse], [] {});
    commands.Bind(Cmd::mnuRefreshSyntaxHighlight, [this] { Refresh(); });
}

void LanguageCommands::LoadOpcodes()
{
    zelvane::LoadOpcodes(m_opcodes, m_folder, m_editor.desktop);
}

void LanguageCommands::Refresh()
{
    m_highlighter.performSyntaxHighlight();
    if (!m_editor.document.Loading)
        return;
    // The pass failed. The text must not stay out of sight, nor edits unseen.
    m_view.ShowText();
    m_view.FocusText();
    m_editor.document.Loading = false;
}

} // namespace zelvane
