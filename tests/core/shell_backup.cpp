// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/fileoperations.h"
#include "shell/backup.h"
#include "shell/documentkeys.h"
#include "support/scriptedfileoperations.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const QString Title = u"Delete Csound Temporary Files"_s;

struct Backups : ::testing::Test {
    TestContext context;
    ScriptedDesktop &desktop = context.desktop;
    EditorContext &editor = context.editor;
    ScriptedFileOperations files;
    QString folder = context.folder.path();

    QString Path(const QString &name) const { return folder + u'/' + name; }
    static MessageBoxRequest Create(const QString &document, const QString &backup)
    {
        return {.text = u"Original file: "_s + document + u"\n\nBackup file: "_s + backup +
                        u"\n\nDo you want to continue?"_s,
                .buttons = BoxButtons::YesNo,
                .title = u"Create Backup"_s};
    }
    static MessageBoxRequest Created(const QString &backup)
    {
        return {.text = u"Backup has been succesfully created.\n\n"_s + backup, .icon = BoxIcon::Information};
    }
    MessageBoxRequest Found(int count) const
    {
        return {.text = u"Temporary directory: "_s + folder + u"\n\nCsound temporary files found: "_s +
                        QString::number(count) +
                        u"\n\nDo you want to delete these files?\nPress No to show temporary directory."_s,
                .icon = BoxIcon::Question,
                .buttons = BoxButtons::YesNoCancel,
                .title = Title};
    }
    static QByteArray Content(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
};

} // namespace

TEST_F(Backups, NamesTellTheDay)
{
    const QDate day(2001, 3, 7);
    EXPECT_EQ(BackupPath(u"/m/song.orc"_s, {}, day), u"/m/song(01-03-07).orc"_s);
    EXPECT_EQ(BackupPath(u"/m/song.orc"_s, u"/b"_s, day), u"/b/song(01-03-07).orc"_s);
    EXPECT_EQ(BackupPath(u"/m/song.orc"_s, u"/b/"_s, day), u"/b/song(01-03-07).orc"_s);
    EXPECT_EQ(BackupPath(u"/song.orc"_s, {}, day), u"/song(01-03-07).orc"_s);
    EXPECT_EQ(BackupPath(u"/m/song.orc"_s, u"/"_s, day), u"/song(01-03-07).orc"_s);
    EXPECT_EQ(BackupPath(u"/m.d/a.b.orc"_s, {}, day), u"/m.d/a.b(01-03-07).orc"_s);
    EXPECT_EQ(BackupPath(u"/m.d/song"_s, {}, day), u"/m.d/song(01-03-07)"_s);
    EXPECT_EQ(BackupPath(u"/m/song.orc"_s, {}, QDate(2030, 12, 31)), u"/m/song(30-12-31).orc"_s);
}

TEST_F(Backups, NothingIsBackedUpWithoutAFileOrAYes)
{
    BackupNow(editor, files);
    context.document.CurrentFile = u"/m/song.orc"_s;
    desktop.ExpectMessage(Create(u"/m/song.orc"_s, u"/m/song(01-03-07).orc"_s), BoxAnswer::No);
    BackupNow(editor, files);
    EXPECT_EQ(files.calls, QStringList());
}

TEST_F(Backups, FailureIsTold)
{
    context.document.CurrentFile = u"/m/song.orc"_s;
    context.settings.SaveText(Keys::BakPath, u"/b"_s);
    files.answers = {false};
    desktop.ExpectMessage(Create(u"/m/song.orc"_s, u"/b/song(01-03-07).orc"_s), BoxAnswer::Yes);
    desktop.ExpectMessage({.text = u"Error creating Backup."_s, .icon = BoxIcon::Critical});
    BackupNow(editor, files);
    EXPECT_EQ(files.calls, QStringList({u"copy /m/song.orc > /b/song(01-03-07).orc"_s}));
}

TEST_F(Backups, BackupIsTheSavedFileAndMayNotBeWritten)
{
    CountedProgress progress;
    SystemFileOperations real(desktop, progress);
    const QString document = context.WriteFile(u"song.orc"_s, "saved\r\n");
    const QString backup = Path(u"song(01-03-07).orc"_s);
    context.document.CurrentFile = document;
    context.document.Modified = true;
    context.text.SetText(u"changed"_s);
    desktop.ExpectMessage(Create(document, backup), BoxAnswer::Yes);
    desktop.ExpectMessage(Created(backup));
    BackupNow(editor, real);
    EXPECT_EQ(Content(backup), "saved\r\n");
    struct stat info = {};
    ASSERT_EQ(stat(QFile::encodeName(backup), &info), 0);
    EXPECT_EQ(info.st_mode & 0222, 0u);
    EXPECT_TRUE(QFileInfo(document).isWritable());

    // The second one of the day.
    context.WriteFile(u"song.orc"_s, "saved again\r\n");
    const MessageBoxRequest replace{
        .text = backup + u" already exists and is read-only.\nDo you want to replace it?"_s,
        .icon = BoxIcon::Warning,
        .buttons = BoxButtons::YesNo,
        .defaultAnswer = BoxAnswer::No};
    desktop.ExpectMessage(Create(document, backup), BoxAnswer::Yes);
    desktop.ExpectMessage(replace, BoxAnswer::No);
    desktop.ExpectMessage({.text = u"Error creating Backup."_s, .icon = BoxIcon::Critical});
    BackupNow(editor, real);
    EXPECT_EQ(Content(backup), "saved\r\n");
    desktop.ExpectMessage(Create(document, backup), BoxAnswer::Yes);
    desktop.ExpectMessage(replace, BoxAnswer::Yes);
    desktop.ExpectMessage(Created(backup));
    BackupNow(editor, real);
    EXPECT_EQ(Content(backup), "saved again\r\n");
}

TEST_F(Backups, NoTemporaryFolderIsTold)
{
    for (const bool interactive : {false, true}) {
        desktop.ExpectMessage({.text = u"Cannot retrieve temporary directory."_s, .icon = BoxIcon::Critical});
        DeleteTempFiles(interactive, {}, editor, files);
    }
}

TEST_F(Backups, NothingToDeleteIsToldWhereTheUserAsks)
{
    DeleteTempFiles(false, folder, editor, files);
    desktop.ExpectMessage(
        {.text = u"There are no Csound temporary files."_s, .icon = BoxIcon::Information, .title = Title});
    DeleteTempFiles(true, folder, editor, files);
    EXPECT_EQ(files.calls, QStringList());
}

TEST_F(Backups, TemporaryFilesAreDeletedShownOrLeft)
{
    const QString one = context.WriteFile(u"cs1.tmp"_s);
    const QString two = context.WriteFile(u"csound2"_s);
    ASSERT_TRUE(QDir(folder).mkdir(u"csfolder"_s));
    desktop.ExpectMessage(Found(2), BoxAnswer::Cancel);
    DeleteTempFiles(true, folder, editor, files);
    desktop.ExpectMessage(Found(2), BoxAnswer::No);
    desktop.ExpectShellRun({.file = folder});
    DeleteTempFiles(true, folder, editor, files);
    EXPECT_EQ(files.calls, QStringList());
    desktop.ExpectMessage(Found(2), BoxAnswer::Yes);
    DeleteTempFiles(true, folder, editor, files);
    DeleteTempFiles(false, folder, editor, files);
    EXPECT_EQ(files.calls, QStringList(2, u"delete unasked "_s + one + u", "_s + two));
}

TEST_F(Backups, FoldersAloneMatchWithoutAFile)
{
    ASSERT_TRUE(QDir(folder).mkdir(u"csfolder"_s));
    desktop.ExpectMessage(Found(0), BoxAnswer::Yes);
    DeleteTempFiles(true, folder, editor, files);
    EXPECT_EQ(files.calls, QStringList({u"delete unasked "_s}));
}

TEST_F(Backups, DeletedLinksLeaveWhatTheyLeadTo)
{
    CountedProgress progress;
    SystemFileOperations real(desktop, progress);
    const QString kept = context.WriteFile(u"kept"_s, "text");
    ASSERT_TRUE(QDir(folder).mkdir(u"sub"_s));
    context.WriteFile(u"sub/cs"_s);
    ASSERT_EQ(symlink("kept", QFile::encodeName(Path(u"cslink"_s))), 0);
    ASSERT_EQ(symlink("sub", QFile::encodeName(Path(u"cssub"_s))), 0);
    context.WriteFile(u"cs1"_s);
    DeleteTempFiles(false, folder, editor, real);
    EXPECT_EQ(QDir(folder).entryList({u"cs*"_s}, QDir::AllEntries | QDir::System), QStringList());
    EXPECT_EQ(Content(kept), "text");
    EXPECT_TRUE(QFileInfo::exists(Path(u"sub/cs"_s)));
}
