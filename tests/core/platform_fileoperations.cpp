// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/fileoperations.h"
#include "support/childprocess.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"
#include "support/scriptedfileoperations.h"

#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

class FileService : public ::testing::Test
{
protected:
    FileService() { qputenv("XDG_DATA_HOME", QFile::encodeName(m_data.path())); }
    ~FileService() override { qputenv("XDG_DATA_HOME", m_dataBefore); }

    QString Path(const QString &name) const { return m_folder.filePath(name); }
    QString Folder() const { return m_folder.path(); }
    QString Trashed(const QString &name) const { return m_data.filePath(u"Trash/files/"_s + name); }
    QString Put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    static QByteArray Content(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    static MessageBoxRequest Warning(const QString &text) { return {.text = text, .icon = BoxIcon::Warning}; }
    static MessageBoxRequest AskedNo(const QString &text)
    {
        return {.text = text,
                .icon = BoxIcon::Warning,
                .buttons = BoxButtons::YesNo,
                .defaultAnswer = BoxAnswer::No};
    }
    static MessageBoxRequest ToTrash(const QString &path)
    {
        return {.text = u"Do you want to move "_s + path + u" to the trash?"_s,
                .icon = BoxIcon::Question,
                .buttons = BoxButtons::YesNo,
                .defaultAnswer = BoxAnswer::Yes};
    }
    static MessageBoxRequest ForGood(const QString &path)
    {
        return AskedNo(u"Do you want to delete "_s + path + u" for good? It cannot be brought back."_s);
    }
    static QString System(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

    ScriptedDesktop desktop;
    CountedProgress progress;
    SystemFileOperations files{desktop, progress};

    QTemporaryDir m_data;

private:
    QTemporaryDir m_folder;
    QByteArray m_dataBefore = qgetenv("XDG_DATA_HOME");
};

} // namespace

TEST_F(FileService, CopiesMovesAndRenames)
{
    const QString source = Put(u"a.orc"_s, "text");
    EXPECT_TRUE(files.Copy(source, Path(u"b.orc"_s)));
    EXPECT_TRUE(files.Move(source, Path(u"c.orc"_s)));
    EXPECT_TRUE(files.Rename(Path(u"c.orc"_s), u"d e.orc"_s));
    EXPECT_EQ(NamesIn(Folder()), QStringList({u"b.orc"_s, u"d e.orc"_s}));
    EXPECT_EQ(progress.begun,
              QStringList({u"Copying a.orc..."_s, u"Moving a.orc..."_s, u"Renaming c.orc..."_s}));
    EXPECT_EQ(progress.ended, 3);
}

TEST_F(FileService, AsksBeforeAFileIsReplaced)
{
    const QString source = Put(u"a"_s, "new");
    const QString target = Put(u"b"_s, "old");
    const auto question = AskedNo(target + u" already exists.\nDo you want to replace it?"_s);
    desktop.ExpectMessage(question, BoxAnswer::No);
    EXPECT_FALSE(files.Copy(source, target));
    desktop.ExpectMessage(question, BoxAnswer::No);
    EXPECT_FALSE(files.Move(source, target));
    desktop.ExpectMessage(question, BoxAnswer::No);
    EXPECT_FALSE(files.Rename(source, u"b"_s));
    EXPECT_EQ(Content(target), "old");
    EXPECT_EQ(Content(source), "new");
    desktop.ExpectMessage(question, BoxAnswer::Yes);
    EXPECT_TRUE(files.Copy(source, target));
    EXPECT_EQ(Content(target), "new");
    desktop.ExpectMessage(question, BoxAnswer::Yes);
    EXPECT_TRUE(files.Rename(source, u"b"_s));
    EXPECT_EQ(NamesIn(Folder()), QStringList({u"b"_s}));
}

TEST_F(FileService, TellsOfAReadOnlyFileThatIsReplaced)
{
    const QString source = Put(u"a"_s, "new");
    const QString target = Put(u"b"_s, "old");
    ASSERT_EQ(chmod(QFile::encodeName(target), 0444), 0);
    desktop.ExpectMessage(
        AskedNo(target + u" already exists and is read-only.\nDo you want to replace it?"_s), BoxAnswer::Yes);
    EXPECT_TRUE(files.Copy(source, target));
    EXPECT_EQ(Content(target), "new");
}

TEST_F(FileService, TellsWhyItCannot)
{
    const QString source = Put(u"a"_s, "text");
    const QString gone = Path(u"no/b"_s);
    desktop.ExpectMessage(Warning(u"Unable to copy "_s + source + u" to "_s + gone +
                                  u".\n\nThe target folder does not exist"_s));
    EXPECT_FALSE(files.Copy(source, gone));
    desktop.ExpectMessage(Warning(u"Unable to move "_s + source + u" to "_s + gone +
                                  u".\n\nThe target folder does not exist"_s));
    EXPECT_FALSE(files.Move(source, gone));
    desktop.ExpectMessage(Warning(u"Unable to copy "_s + source + u" to "_s + source +
                                  u".\n\nThey are one and the same file"_s));
    EXPECT_FALSE(files.Copy(source, source));
    desktop.ExpectMessage(Warning(u"Unable to rename "_s + Path(u"x"_s) + u" to "_s + Path(u"y"_s) +
                                  u".\n\n"_s + System(ENOENT)));
    EXPECT_FALSE(files.Rename(Path(u"x"_s), u"y"_s));
    EXPECT_EQ(progress.begun.size(), progress.ended);
}

TEST_F(FileService, RenamesToNamesOnly)
{
    ASSERT_TRUE(QDir(Folder()).mkdir(u"sub"_s));
    const QString source = Put(u"a"_s, "text");
    for (const QString &name : {u"sub/b"_s, u"../b"_s, u"/tmp/b"_s, u"."_s, u".."_s}) {
        desktop.ExpectMessage(
            Warning(u"Unable to rename "_s + source + u".\n\n\""_s + name + u"\" is no name for a file"_s));
        EXPECT_FALSE(files.Rename(source, name));
    }
    EXPECT_EQ(Content(source), "text");
}

TEST_F(FileService, NameWithAColonStaysInItsFolder)
{
    QString source = Put(u"a"_s, "text");
    for (const QString &name : {u":x"_s, u"a:b"_s, u":"_s, u"c:"_s}) {
        EXPECT_TRUE(files.Rename(source, name));
        EXPECT_EQ(NamesIn(Folder()), QStringList({name}));
        source = Folder() + u'/' + name;
        EXPECT_EQ(PathInFolder(Folder(), name), source);
    }
    EXPECT_EQ(PathInFolder(u"/"_s, u":x"_s), u"/:x"_s);
    EXPECT_EQ(PathInFolder(u"/sub/"_s, u"x"_s), u"/sub/x"_s);
}

TEST_F(FileService, StoppedWorkSaysNothing)
{
    const QString source = Put(u"a"_s, "text");
    progress.stopAt = 0;
    EXPECT_FALSE(files.Copy(source, Path(u"b"_s)));
    EXPECT_EQ(NamesIn(Folder()), QStringList({u"a"_s}));
    EXPECT_EQ(progress.ended, 1);
}

TEST_F(FileService, DeletesWhenTheUserSaysSo)
{
    const QString path = Put(u"a"_s, "text");
    desktop.ExpectMessage(ToTrash(path), BoxAnswer::No);
    EXPECT_FALSE(files.Delete(path, Deletion::ToTrash));
    desktop.ExpectMessage(ForGood(path), BoxAnswer::No);
    EXPECT_FALSE(files.Delete(path, Deletion::ForGood));
    EXPECT_EQ(Content(path), "text");
    EXPECT_FALSE(QFileInfo::exists(Trashed(u"a"_s)));

    desktop.ExpectMessage(ToTrash(path), BoxAnswer::Yes);
    EXPECT_TRUE(files.Delete(path, Deletion::ToTrash));
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_EQ(Content(Trashed(u"a"_s)), "text");

    Put(u"b"_s, "text");
    desktop.ExpectMessage(ForGood(Path(u"b"_s)), BoxAnswer::Yes);
    EXPECT_TRUE(files.Delete(Path(u"b"_s), Deletion::ForGood));
    EXPECT_EQ(NamesIn(Folder()), QStringList());
    EXPECT_FALSE(QFileInfo::exists(Trashed(u"b"_s)));
}

TEST_F(FileService, AsksAgainAboutWhatTheTrashDoesNotTake)
{
    ASSERT_TRUE(QDir(Folder()).mkdir(u"closed"_s));
    const QString path = Put(u"closed/a"_s, "text");
    ASSERT_EQ(chmod(QFile::encodeName(m_data.path()), 0777), 0);
    const QString denied = System(EACCES);
    const auto question = AskedNo(u"Unable to move "_s + path + u" to the trash.\n\n"_s + denied +
                                  u"\n\nDo you want to delete it for good?"_s);
    EXPECT_TRUE(AsOrdinaryUser(Folder(), [&] {
        ASSERT_EQ(chmod(QFile::encodeName(Path(u"closed"_s)), 0555), 0);
        desktop.ExpectMessage(ToTrash(path), BoxAnswer::Yes);
        desktop.ExpectMessage(question, BoxAnswer::No);
        EXPECT_FALSE(files.Delete(path, Deletion::ToTrash));
        desktop.ExpectMessage(ToTrash(path), BoxAnswer::Yes);
        desktop.ExpectMessage(question, BoxAnswer::Yes);
        desktop.ExpectMessage(Warning(u"Unable to delete "_s + path + u".\n\n"_s + denied));
        EXPECT_FALSE(files.Delete(path, Deletion::ToTrash));
        desktop.CheckAllCame();
    }));
    EXPECT_EQ(Content(path), "text");
}

TEST_F(FileService, VanishedFileIsNotDeletedForGood)
{
    const QString path = Path(u"gone"_s);
    desktop.ExpectMessage(ToTrash(path), BoxAnswer::Yes);
    desktop.ExpectMessage(Warning(u"Unable to delete "_s + path + u".\n\n"_s + System(ENOENT)));
    EXPECT_FALSE(files.Delete(path, Deletion::ToTrash));
    desktop.ExpectMessage(ForGood(path), BoxAnswer::Yes);
    desktop.ExpectMessage(Warning(u"Unable to delete "_s + path + u".\n\n"_s + System(ENOENT)));
    EXPECT_FALSE(files.Delete(path, Deletion::ForGood));
}

TEST_F(FileService, DeletesManyWithoutAQuestion)
{
    const QString one = Put(u"one"_s, "1"), two = Put(u"two"_s, "2");
    EXPECT_TRUE(files.DeleteUnasked({one, Path(u"gone"_s), two}));
    EXPECT_EQ(NamesIn(Folder()), QStringList());
    ASSERT_TRUE(QDir(Folder()).mkdir(u"a"_s));
    ASSERT_TRUE(QDir(Folder()).mkdir(u"b"_s));
    Put(u"one"_s, "1");
    desktop.ExpectMessage(
        Warning(u"Unable to delete "_s + Path(u"a"_s) + u" and 1 more.\n\nIt is a folder, not a file"_s));
    EXPECT_FALSE(files.DeleteUnasked({Path(u"a"_s), one, Path(u"b"_s)}));
    desktop.ExpectMessage(
        Warning(u"Unable to delete "_s + Path(u"a"_s) + u".\n\nIt is a folder, not a file"_s));
    EXPECT_FALSE(files.DeleteUnasked({Path(u"a"_s)}));
    EXPECT_EQ(NamesIn(Folder()), QStringList({u"a"_s, u"b"_s}));
}
