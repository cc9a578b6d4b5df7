// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/backup.h"

#include "platform/desktop.h"
#include "platform/fileoperations.h"
#include "platform/listfiles.h"
#include "platform/parameters.h"
#include "shell/documentkeys.h"
#include "shell/editorcontext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString BackupPath(const QString &document, const QString &folder, QDate day)
{
    const QFileInfo file(document);
    const QString name = file.fileName();
    const qsizetype point = name.lastIndexOf(u'.');
    const QString base = point < 0 ? name : name.first(point);
    const QString extension = point < 0 ? QString() : name.sliced(point);
    QString place = QDir::toNativeSeparators(folder.isEmpty() ? file.path() : folder);
    if (!place.endsWith(QDir::separator()))
        place += QDir::separator();
    return place + base + u'(' + day.toString(u"yy-MM-dd"_s) + u')' + extension;
}

void BackupNow(EditorContext &editor, FileOperations &files)
{
    const QString document = editor.document.CurrentFile;
    if (document.isEmpty())
        return;
    Desktop &desktop = editor.desktop;
    const QString backup = BackupPath(document, editor.settings.Text(Keys::BakPath), desktop.Now().date());
    if (desktop.MessageBox({.text = u"Original file: "_s + document + u"\n\nBackup file: "_s + backup +
                                    u"\n\nDo you want to continue?"_s,
                            .buttons = BoxButtons::YesNo,
                            .title = u"Create Backup"_s}) != BoxAnswer::Yes)
        return;
    if (!files.Copy(document, backup)) {
        desktop.MessageBox({.text = u"Error creating Backup."_s, .icon = BoxIcon::Critical});
        return;
    }
    // A file system without such rights has the backup all the same.
    constexpr QFile::Permissions writeBits =
        QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;
    QFile::setPermissions(backup, QFile::permissions(backup) & ~writeBits);
    desktop.MessageBox(
        {.text = u"Backup has been succesfully created.\n\n"_s + backup, .icon = BoxIcon::Information});
}

void DeleteTempFiles(bool interactive, const QString &folder, EditorContext &editor, FileOperations &files)
{
    Desktop &desktop = editor.desktop;
    const QString title = u"Delete Csound Temporary Files"_s;
    if (folder.isEmpty()) {
        desktop.MessageBox({.text = u"Cannot retrieve temporary directory."_s, .icon = BoxIcon::Critical});
        return;
    }
    QStringList names;
    if (!ListFiles(folder, u"cs*"_s, names)) {
        if (interactive)
            desktop.MessageBox({.text = u"There are no Csound temporary files."_s,
                                .icon = BoxIcon::Information,
                                .title = title});
        return;
    }
    BoxAnswer answer = BoxAnswer::Yes;
    if (interactive)
        answer = desktop.MessageBox({.text = u"Temporary directory: "_s + folder +
                                             u"\n\nCsound temporary files found: "_s +
                                             QString::number(names.size()) +
                                             u"\n\nDo you want to delete these files?\n"
                                             "Press No to show temporary directory."_s,
                                     .icon = BoxIcon::Question,
                                     .buttons = BoxButtons::YesNoCancel,
                                     .title = title});
    if (answer == BoxAnswer::Yes)
        files.DeleteUnasked(names);
    else if (answer == BoxAnswer::No)
        desktop.ShellRun({.file = QuoteFile(folder)});
}

} // namespace zelvane
