// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/helponword.h"

#include "language/normalizespaces.h"
#include "shell/editorcontext.h"
#include "shell/toolkeys.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A keyword as one argument, whatever quotes and blanks it holds.
QString Quoted(QString word)
{
    return u'"' + word.replace(u'"', u"\"\""_s) + u'"';
}

} // namespace

void OpenHelp(Desktop &desktop, const QString &file, HelpCommand command, const QString &word)
{
    const QString parameters = command == HelpCommand::Keyword ? u"-k "_s + Quoted(word) : u"-c"_s;
    desktop.ShellRun({.file = file, .parameters = parameters});
}

void HelpOnWord(EditorContext &editor)
{
    const QString file = editor.settings.Text(Keys::Help);
    if (file.isEmpty()) {
        const BoxAnswer answer = editor.desktop.MessageBox(
            {.text =
                 u"You should first set a help file. Do you want to open the Preferences dialog box now?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo});
        if (answer == BoxAnswer::Yes)
            editor.windows.ShowPreferences();
        return;
    }
    if (file.right(3).toUpper() != u"HLP"_s || editor.document.CurrentFile.isEmpty()) {
        editor.desktop.ShellRun({.file = file});
        return;
    }
    const QString word = NormalizeSpaces(editor.text.SelectedText());
    const bool severalCharacters = editor.text.Selection().Length() > 1;
    if (word.size() > 1 && word.size() < 256 && severalCharacters) {
        editor.status.Show(u"Help keyword: "_s + word);
        OpenHelp(editor.desktop, file, HelpCommand::Keyword, word);
    } else {
        OpenHelp(editor.desktop, file, HelpCommand::Contents);
    }
}

} // namespace zelvane
