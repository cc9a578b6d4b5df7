// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/startup.h"

#include "shell/documentkeys.h"
#include "shell/documentlifecycle.h"
#include "shell/errorreport.h"
#include "shell/layoutkeys.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void RigaDiComando(const CommandLine &command, DocumentLifecycle &documents, const SettingsStore &settings)
{
    if (command.Form() == StartForm::NewInstance)
        return;
    if (!command.Text().isEmpty()) {
        documents.OpenFile(command.Text());
        return;
    }
    documents.NewFile(FileKind::Other, {});
    switch (settings.Integer(Keys::Startup)) {
    case 0:
        documents.OpenRecent(1);
        break;
    case 1:
        documents.Open();
        break;
    default:
        break;
    }
}

void ShowFirstUseMessages(EditorContext &editor)
{
    const double used = editor.settings.Number(Keys::Used);
    const QString title = ApplicationTitle();
    const QString author = QString::fromUtf16(AuthorAddress);
    if (used == 1) {
        editor.desktop.MessageBox(
            {.text = u"Welcome to "_s + title +
                     u"! This program is FREE, you may download new versions at "_s +
                     QString::fromUtf16(WebAddress) +
                     u"\n\nIf you have questions, suggestions or you find a bug, please feel free to contact "
                     "me at "_s +
                     author + u"\n\nHappy Csounding!"_s,
             .icon = BoxIcon::Information,
             .title = u"Welcome!"_s});
        editor.windows.ShowPreferences();
    } else if (used == 100) {
        editor.desktop.MessageBox(
            {.text = u"You used "_s + title +
                     u" 100 times. At this time you should be an experienced user, so please send me your "
                     "comments, suggestions, new ideas. I really need them to make "_s +
                     title + u" always better. Thank you."_s,
             .icon = BoxIcon::Information});
        SendMail(editor.desktop, author, {}, {});
    }
}

void FilesDropped(const QStringList &files, EditorContext &editor)
{
    if (files.isEmpty())
        return;
    editor.windows.RaiseMainWindow();
    editor.operations.OpenFile(files.first());
}

} // namespace zelvane
