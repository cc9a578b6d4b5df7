// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/helponword.h"

#include "language/normalizespaces.h"
#include "platform/helpviewer.h"
#include "shell/editorcontext.h"
#include "shell/toolkeys.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString HelpFile(const SettingsStore &settings, const QString &programFolder)
{
    const QString file = settings.Text(Keys::Help);
    if (!file.isEmpty())
        return file;
    const QString shipped = programFolder + u"/csound.hlp"_s;
    const auto manual = ReadManual(shipped);
    return manual && manual->IsThere() ? shipped : QString();
}

void HelpOnWord(EditorContext &editor, const QString &programFolder)
{
    const QString file = HelpFile(editor.settings, programFolder);
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
    const bool isHelpFile = file.right(3).toUpper() == u"HLP"_s;
    if (!isHelpFile || editor.document.CurrentFile.isEmpty()) {
        if (isHelpFile && ReadManual(file))
            OpenHelp(editor.desktop, file, HelpCommand::Contents); // no desktop knows this kind of file
        else
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
