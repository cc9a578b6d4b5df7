// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/filetransfer.h"
#include "platform/nativecalls.h"
#include "platform/runtimeerror.h"
#include "platform/trash.h"
#include "support/childprocess.h"
#include "support/printers.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <memory>
#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

bool Patient(qint64 /*done*/, qint64 /*total*/)
{
    return true;
}

QByteArray Native(const QString &path)
{
    return QFile::encodeName(path);
}

QString System(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

/// A folder on the file system of temporary files, one on another, and a data folder for the trash.
class Transfers : public ::testing::Test
{
protected:
    Transfers()
    {
        for (const QString &folder : {m_here.path(), m_data.path()})
            EXPECT_EQ(chmod(Native(folder), 0755), 0);
        qputenv("XDG_DATA_HOME", Native(Data()));
        // Two file systems are needed; a machine without the second one tests the rest.
        struct stat here = {}, there = {};
        if (m_there && m_there->isValid() && stat(Native(m_here.path()), &here) == 0 &&
            stat(Native(m_there->path()), &there) == 0 && here.st_dev != there.st_dev)
            m_twoSystems = true;
    }
    ~Transfers() override { qputenv("XDG_DATA_HOME", m_dataBefore); }

    QString Here(const QString &name) const { return m_here.filePath(name); }
    QString There(const QString &name) const { return m_there->filePath(name); }
    QString HereFolder() const { return m_here.path(); }
    QString ThereFolder() const { return m_there->path(); }
    QString Data() const { return m_data.path(); }
    QString Trash(const QString &below) const { return Data() + u"/Trash/"_s + below; }
    bool TwoSystems() const { return m_twoSystems; }

    static QString Put(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path;
    }
    static QByteArray Content(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    static struct stat Status(const QString &path)
    {
        struct stat info = {};
        EXPECT_EQ(lstat(Native(path), &info), 0) << path.toStdString();
        return info;
    }
    static bool Stands(const QString &path)
    {
        struct stat info = {};
        return lstat(Native(path), &info) == 0;
    }
    static QByteArray LinkText(const QString &path)
    {
        char text[4096];
        const ssize_t length = readlink(Native(path), text, sizeof text);
        return length < 0 ? QByteArray() : QByteArray(text, length);
    }
    template <typename Call> static QString WhyNot(Call call)
    {
        try {
            call();
        } catch (const RunTimeError &error) {
            return error.Description();
        }
        ADD_FAILURE() << "no error was raised";
        return {};
    }
    /// Gives a file an old time and rights that no new file has.
    static void Mark(const QString &path)
    {
        const timespec times[] = {{1'000'000'001, 500}, {1'100'000'002, 700}};
        EXPECT_EQ(utimensat(AT_FDCWD, Native(path), times, 0), 0);
        EXPECT_EQ(chmod(Native(path), 0450), 0);
    }
    static void ExpectMarked(const QString &path)
    {
        const struct stat info = Status(path);
        EXPECT_EQ(info.st_mode & 07777, 0450u);
        EXPECT_EQ(info.st_mtim.tv_sec, 1'100'000'002);
        EXPECT_EQ(info.st_mtim.tv_nsec, 700);
    }

private:
    QTemporaryDir m_here;
    QTemporaryDir m_data;
    std::unique_ptr<QTemporaryDir> m_there =
        QFileInfo(u"/dev/shm"_s).isWritable()
            ? std::make_unique<QTemporaryDir>(u"/dev/shm/zelvane-test-XXXXXX"_s)
            : nullptr;
    QByteArray m_dataBefore = qgetenv("XDG_DATA_HOME");
    bool m_twoSystems = false;
};

#define NEED_TWO_SYSTEMS()                                                                                   \
    if (!TwoSystems())                                                                                       \
    GTEST_SKIP() << "no second file system"

constexpr auto New = Replacing::Refused;
constexpr auto Over = Replacing::Allowed;

/// More than one chunk, and not a whole number of them.
QByteArray Long()
{
    QByteArray bytes(3 * 1024 * 1024 + 17, Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = char(i * 31 + i / 256);
    return bytes;
}

} // namespace

TEST_F(Transfers, CopyHasTheBytesRightsAndTimes)
{
    const QString source = Put(Here(u"a b.orc"_s), Long());
    const bool marked = setxattr(Native(source), "user.colour", "red", 3, 0) == 0;
    Mark(source);
    EXPECT_EQ(CopyFileTo(source, Here(u"c.orc"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(Content(Here(u"c.orc"_s)), Long());
    EXPECT_EQ(Content(source), Long());
    ExpectMarked(source);
    ExpectMarked(Here(u"c.orc"_s));
    char value[16] = {};
    if (marked) {
        EXPECT_EQ(getxattr(Native(Here(u"c.orc"_s)), "user.colour", value, sizeof value), 3);
    }
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a b.orc"_s, u"c.orc"_s}));
}

TEST_F(Transfers, EmptyFileIsCopied)
{
    const QString source = Put(Here(u"empty"_s), {});
    EXPECT_EQ(CopyFileTo(source, Here(u"copy"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(Content(Here(u"copy"_s)), QByteArray());
}

TEST_F(Transfers, ProgressRisesToTheSize)
{
    const QString source = Put(Here(u"a"_s), Long());
    QList<qint64> steps;
    EXPECT_EQ(CopyFileTo(source, Here(u"b"_s), New,
                         [&](qint64 done, qint64 total) {
                             EXPECT_EQ(total, Long().size());
                             steps.append(done);
                             return true;
                         }),
              TransferEnd::Done);
    ASSERT_GE(steps.size(), 4);
    EXPECT_EQ(steps.first(), 0);
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_EQ(steps.last(), Long().size());
}

TEST_F(Transfers, StoppedCopyLeavesTheSourceAndNothingElse)
{
    const QString source = Put(Here(u"a"_s), Long());
    const QString target = Put(Here(u"b"_s), "old");
    for (int steps = 0; steps < 4; ++steps) {
        int left = steps;
        EXPECT_EQ(CopyFileTo(source, target, Over, [&](qint64, qint64) { return left-- > 0; }),
                  TransferEnd::Stopped);
        EXPECT_EQ(Content(source), Long());
        EXPECT_EQ(Content(target), "old");
        EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s, u"b"_s}));
    }
}

TEST_F(Transfers, KilledCopyLeavesTheSourceAndTheOldTarget)
{
    const QString source = Put(Here(u"a"_s), Long());
    const QString target = Put(Here(u"b"_s), "old");
    EXPECT_FALSE(ChildSucceeded(StartChild([&] {
        CopyFileTo(source, target, Over, [](qint64 done, qint64) {
            if (done > 0)
                kill(getpid(), SIGKILL);
            return true;
        });
    })));
    EXPECT_EQ(Content(source), Long());
    EXPECT_EQ(Content(target), "old");
}

TEST_F(Transfers, NextCopyClearsAwayWhatAKilledOneLeft)
{
    const QString source = Put(Here(u"a"_s), "text");
    Put(Here(u".zelvane-abcdefgh"_s), Long());
    Put(Here(u".zelvane-mine"_s), "no such name");
    EXPECT_EQ(CopyFileTo(source, Here(u"b"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u".zelvane-mine"_s, u"a"_s, u"b"_s}));
}

TEST_F(Transfers, TargetIsReplacedOnlyWhenItMayBe)
{
    const QString source = Put(Here(u"a"_s), "new");
    const QString target = Put(Here(u"b"_s), "old");
    for (const auto transfer : {CopyFileTo, MoveFileTo}) {
        EXPECT_EQ(transfer(source, target, New, Patient), TransferEnd::Exists);
        EXPECT_EQ(Content(target), "old");
        EXPECT_EQ(Content(source), "new");
    }
    EXPECT_EQ(CopyFileTo(source, target, Over, Patient), TransferEnd::Done);
    EXPECT_EQ(Content(target), "new");
    Put(target, "old");
    EXPECT_EQ(MoveFileTo(source, target, Over, Patient), TransferEnd::Done);
    EXPECT_EQ(Content(target), "new");
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"b"_s}));
}

TEST_F(Transfers, TargetThatComesMeanwhileIsNotReplaced)
{
    const QString source = Put(Here(u"a"_s), "new");
    EXPECT_EQ(CopyFileTo(source, Here(u"b"_s), New,
                         [&](qint64, qint64) {
                             Put(Here(u"b"_s), "another's");
                             return true;
                         }),
              TransferEnd::Exists);
    EXPECT_EQ(Content(Here(u"b"_s)), "another's");
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s, u"b"_s}));
}

TEST_F(Transfers, SecondNameTakesNobodysPlace)
{
    const QString source = Put(Here(u"a"_s), "new");
    Put(Here(u"b"_s), "old");
    ASSERT_EQ(symlink("gone", Native(Here(u"dead"_s))), 0);
    for (const QString &name : {u"b"_s, u"dead"_s})
        EXPECT_EQ(native::LinkNew(Native(source), Native(Here(name))), EEXIST);
    EXPECT_EQ(native::LinkNew(Native(source), Native(Here(u"no/c"_s))), ENOENT);
    EXPECT_EQ(Content(source), "new");
    EXPECT_EQ(Content(Here(u"b"_s)), "old");
    const ino_t file = Status(source).st_ino, link = Status(Here(u"dead"_s)).st_ino;
    EXPECT_EQ(native::LinkNew(Native(source), Native(Here(u"c"_s))), 0);
    EXPECT_EQ(native::LinkNew(Native(Here(u"dead"_s)), Native(Here(u"dead2"_s))), 0);
    EXPECT_EQ(Status(Here(u"c"_s)).st_ino, file);
    EXPECT_EQ(Status(Here(u"dead2"_s)).st_ino, link);
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"b"_s, u"c"_s, u"dead2"_s}));
}

TEST_F(Transfers, LinkInTheTargetsPlaceIsReplacedItself)
{
    const QString source = Put(Here(u"a"_s), "new");
    const QString other = Put(Here(u"other"_s), "other");
    const QString target = Here(u"b"_s);
    ASSERT_EQ(symlink("other", Native(target)), 0);
    EXPECT_EQ(CopyFileTo(source, target, New, Patient), TransferEnd::Exists);
    EXPECT_EQ(CopyFileTo(source, target, Over, Patient), TransferEnd::Done);
    EXPECT_EQ(LinkText(target), QByteArray());
    EXPECT_EQ(Content(target), "new");
    EXPECT_EQ(Content(other), "other");
    // Also one that leads nowhere.
    ASSERT_EQ(symlink("gone", Native(Here(u"dead"_s))), 0);
    EXPECT_EQ(CopyFileTo(source, Here(u"dead"_s), New, Patient), TransferEnd::Exists);
    EXPECT_EQ(MoveFileTo(source, Here(u"dead"_s), New, Patient), TransferEnd::Exists);
    EXPECT_EQ(Content(source), "new");
}

TEST_F(Transfers, FileIsNotPutInItsOwnPlace)
{
    const QString source = Put(Here(u"a"_s), "text");
    ASSERT_EQ(link(Native(source), Native(Here(u"hard"_s))), 0);
    ASSERT_EQ(symlink("a", Native(Here(u"soft"_s))), 0);
    for (const auto transfer : {CopyFileTo, MoveFileTo}) {
        for (const QString &target : {source, Here(u"./a"_s), Here(u"hard"_s), Here(u"soft"_s)}) {
            EXPECT_EQ(WhyNot([&] { transfer(source, target, Over, Patient); }),
                      u"They are one and the same file"_s);
            EXPECT_EQ(WhyNot([&] { transfer(target, source, Over, Patient); }),
                      u"They are one and the same file"_s);
            EXPECT_EQ(Content(source), "text");
        }
    }
    EXPECT_EQ(LinkText(Here(u"soft"_s)), "a");
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s, u"hard"_s, u"soft"_s}));
}

TEST_F(Transfers, FoldersAndPipesAreRefusedWithoutAWait)
{
    const QString source = Put(Here(u"a"_s), "text");
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"folder"_s));
    ASSERT_EQ(mkfifo(Native(Here(u"fifo"_s)), 0600), 0);
    for (const auto transfer : {CopyFileTo, MoveFileTo}) {
        EXPECT_EQ(WhyNot([&] { transfer(source, Here(u"folder"_s), Over, Patient); }),
                  u"It is a folder, not a file"_s);
        EXPECT_EQ(WhyNot([&] { transfer(Here(u"folder"_s), Here(u"x"_s), New, Patient); }),
                  u"It is a folder, not a file"_s);
        EXPECT_EQ(WhyNot([&] { transfer(source, Here(u"fifo"_s), Over, Patient); }),
                  u"It is a named pipe, not a file"_s);
        EXPECT_EQ(WhyNot([&] { transfer(Here(u"fifo"_s), Here(u"x"_s), New, Patient); }),
                  u"It is a named pipe, not a file"_s);
    }
    EXPECT_EQ(WhyNot([&] { RemoveFile(Here(u"folder"_s)); }), u"It is a folder, not a file"_s);
    EXPECT_EQ(WhyNot([&] { MoveToTrash(Here(u"folder"_s), Patient); }), u"It is a folder, not a file"_s);
    EXPECT_EQ(WhyNot([&] { MoveToTrash(Here(u"fifo"_s), Patient); }), u"It is a named pipe, not a file"_s);
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s, u"fifo"_s, u"folder"_s}));
}

TEST_F(Transfers, VanishedSourceAndFolderAreTold)
{
    const QString source = Put(Here(u"a"_s), "text");
    for (const auto transfer : {CopyFileTo, MoveFileTo}) {
        EXPECT_EQ(WhyNot([&] { transfer(Here(u"gone"_s), Here(u"b"_s), New, Patient); }), System(ENOENT));
        EXPECT_EQ(WhyNot([&] { transfer(source, Here(u"no/b"_s), New, Patient); }),
                  u"The target folder does not exist"_s);
        EXPECT_EQ(WhyNot([&] { transfer(source, Here(u"a/b"_s), New, Patient); }), System(ENOTDIR));
        EXPECT_EQ(WhyNot([&] { transfer(source, Here(QString(300, u'x')), New, Patient); }),
                  System(ENAMETOOLONG));
    }
    EXPECT_EQ(WhyNot([&] { RemoveFile(Here(u"gone"_s)); }), System(ENOENT));
    EXPECT_EQ(WhyNot([&] { MoveToTrash(Here(u"gone"_s), Patient); }), System(ENOENT));
    EXPECT_EQ(Content(source), "text");
}

TEST_F(Transfers, FullDiskLeavesAllAsItWas)
{
    const QString source = Put(Here(u"a"_s), Long());
    const QString target = Put(Here(u"b"_s), "old");
    EXPECT_TRUE(WithFileSizeLimit(100'000, [&] {
        EXPECT_EQ(WhyNot([&] { CopyFileTo(source, target, Over, Patient); }), System(EFBIG));
        EXPECT_EQ(WhyNot([&] { CopyFileTo(source, Here(u"c"_s), New, Patient); }), System(EFBIG));
        if (TwoSystems()) {
            EXPECT_EQ(WhyNot([&] { MoveFileTo(source, There(u"c"_s), New, Patient); }), System(EFBIG));
        }
    }));
    EXPECT_EQ(Content(source), Long());
    EXPECT_EQ(Content(target), "old");
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s, u"b"_s}));
    if (TwoSystems()) {
        EXPECT_EQ(NamesIn(ThereFolder()), QStringList());
    }
}

TEST_F(Transfers, FoldersAndFilesWithoutPermissionLeaveAllAsItWas)
{
    const QString source = Put(Here(u"a"_s), "text");
    const QString secret = Put(Here(u"secret"_s), "secret");
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"closed"_s));
    Put(Here(u"closed/x"_s), "x");
    ASSERT_EQ(chmod(Native(secret), 0), 0);
    EXPECT_TRUE(AsOrdinaryUser(HereFolder(), [&] {
        EXPECT_EQ(chmod(Native(Here(u"closed"_s)), 0555), 0);
        for (const auto transfer : {CopyFileTo, MoveFileTo}) {
            EXPECT_EQ(WhyNot([&] { transfer(source, Here(u"closed/b"_s), New, Patient); }), System(EACCES));
            EXPECT_EQ(WhyNot([&] { transfer(source, Here(u"closed/x"_s), Over, Patient); }), System(EACCES));
        }
        EXPECT_EQ(WhyNot([&] { CopyFileTo(secret, Here(u"b"_s), New, Patient); }), System(EACCES));
        EXPECT_EQ(WhyNot([&] { MoveFileTo(Here(u"closed/x"_s), Here(u"b"_s), New, Patient); }),
                  System(EACCES));
        EXPECT_EQ(WhyNot([&] { RemoveFile(Here(u"closed/x"_s)); }), System(EACCES));
    }));
    EXPECT_EQ(Content(Here(u"closed/x"_s)), "x");
    EXPECT_EQ(Content(source), "text");
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s, u"closed"_s, u"secret"_s}));
}

TEST_F(Transfers, SourceThatCannotGoToAnotherFileSystemStaysAlone)
{
    NEED_TWO_SYSTEMS();
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"closed"_s));
    Put(Here(u"closed/x"_s), "x");
    ASSERT_EQ(chmod(Native(ThereFolder()), 0777), 0);
    EXPECT_TRUE(AsOrdinaryUser(HereFolder(), [&] {
        EXPECT_EQ(chmod(Native(Here(u"closed"_s)), 0555), 0);
        EXPECT_EQ(WhyNot([&] { MoveFileTo(Here(u"closed/x"_s), There(u"x"_s), New, Patient); }),
                  System(EACCES));
    }));
    EXPECT_EQ(Content(Here(u"closed/x"_s)), "x");
    EXPECT_EQ(NamesIn(ThereFolder()), QStringList());
}

TEST_F(Transfers, CopyIsWholeOnlyOfAFileThatNobodyWrites)
{
    const QString source = Put(Here(u"a"_s), Long());
    EXPECT_EQ(WhyNot([&] {
                  CopyFileTo(source, Here(u"b"_s), New, [&](qint64 done, qint64) {
                      if (done == 0) {
                          QFile file(source);
                          EXPECT_TRUE(file.open(QIODevice::Append));
                          file.write("more");
                      }
                      return true;
                  });
              }),
              u"Another program has written the file meanwhile"_s);
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s}));
}

TEST_F(Transfers, FileThatWasPutInTheSourcesPlaceMeanwhileStays)
{
    const QString source = Here(u"a"_s);
    const auto save = [&](qint64 done, qint64) {
        if (done == Long().size()) {
            EXPECT_EQ(rename(Native(Put(Here(u"new"_s), "new")), Native(source)), 0);
        }
        return true;
    };
    for (const auto transfer : {CopyFileTo, MoveFileTo}) {
        if (transfer == MoveFileTo && !TwoSystems())
            continue;
        const QString target = transfer == MoveFileTo ? There(u"b"_s) : Here(u"b"_s);
        Put(source, Long());
        EXPECT_EQ(WhyNot([&] { transfer(source, target, New, save); }),
                  u"Another program has written the file meanwhile"_s);
        EXPECT_EQ(Content(source), "new");
        EXPECT_FALSE(Stands(target));
        Put(source, Long());
        Put(target, "old");
        EXPECT_EQ(WhyNot([&] { transfer(source, target, Over, save); }),
                  u"Another program has written the file meanwhile"_s);
        EXPECT_EQ(Content(source), "new");
        EXPECT_EQ(Content(target), "old");
    }
}

TEST_F(Transfers, CopyOfAFileThatWentMeanwhileStays)
{
    NEED_TWO_SYSTEMS();
    const QString source = Put(Here(u"a"_s), Long());
    EXPECT_EQ(MoveFileTo(source, There(u"b"_s), New,
                         [&](qint64 done, qint64) {
                             if (done == Long().size()) {
                                 EXPECT_EQ(unlink(Native(source)), 0);
                             }
                             return true;
                         }),
              TransferEnd::Done);
    EXPECT_EQ(Content(There(u"b"_s)), Long());
    EXPECT_EQ(NamesIn(HereFolder()), QStringList());
}

TEST_F(Transfers, SourceThatMayNotGoStaysAlone)
{
    NEED_TWO_SYSTEMS();
    if (geteuid() != 0)
        GTEST_SKIP() << "a file of another user is needed";
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"sticky"_s));
    ASSERT_EQ(chmod(Native(ThereFolder()), 0777), 0);
    EXPECT_TRUE(ChildSucceeded(StartChild([&] {
        const QString source = Put(Here(u"sticky/x"_s), "x");
        ASSERT_EQ(chmod(Native(source), 0644), 0);
        ASSERT_EQ(chmod(Native(Here(u"sticky"_s)), 01777), 0);
        ASSERT_EQ(setgroups(0, nullptr), 0);
        ASSERT_EQ(setgid(12345), 0);
        ASSERT_EQ(setuid(12345), 0);
        EXPECT_EQ(WhyNot([&] { MoveFileTo(source, There(u"x"_s), New, Patient); }), System(EPERM));
        EXPECT_EQ(NamesIn(ThereFolder()), QStringList());
        Put(There(u"x"_s), "old");
        EXPECT_EQ(WhyNot([&] { MoveFileTo(source, There(u"x"_s), Over, Patient); }),
                  System(EPERM) + u" (it was copied, and the original stays)"_s);
        EXPECT_EQ(Content(There(u"x"_s)), "x");
        EXPECT_EQ(Content(source), "x");
    })));
    EXPECT_EQ(Content(Here(u"sticky/x"_s)), "x");
}

TEST_F(Transfers, CopyOfALinkIsAFile)
{
    Put(Here(u"a"_s), "text");
    ASSERT_EQ(symlink("a", Native(Here(u"link"_s))), 0);
    EXPECT_EQ(CopyFileTo(Here(u"link"_s), Here(u"b"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(LinkText(Here(u"b"_s)), QByteArray());
    EXPECT_EQ(Content(Here(u"b"_s)), "text");
}

TEST_F(Transfers, MovedFileIsTheSameFile)
{
    const QString source = Put(Here(u"a"_s), "text");
    Mark(source);
    const ino_t file = Status(source).st_ino;
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"folder"_s));
    EXPECT_EQ(MoveFileTo(source, Here(u"folder/b"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(Status(Here(u"folder/b"_s)).st_ino, file);
    ExpectMarked(Here(u"folder/b"_s));
    EXPECT_FALSE(Stands(source));
}

TEST_F(Transfers, MoveToAnotherFileSystemKeepsRightsTimesAndOwner)
{
    NEED_TWO_SYSTEMS();
    const QString source = Put(Here(u"a"_s), Long());
    if (geteuid() == 0) {
        ASSERT_EQ(chown(Native(source), 12345, 23456), 0);
    }
    Mark(source);
    const struct stat before = Status(source);
    EXPECT_EQ(MoveFileTo(source, There(u"b"_s), New, Patient), TransferEnd::Done);
    EXPECT_FALSE(Stands(source));
    EXPECT_EQ(Content(There(u"b"_s)), Long());
    ExpectMarked(There(u"b"_s));
    EXPECT_EQ(Status(There(u"b"_s)).st_uid, before.st_uid);
    EXPECT_EQ(Status(There(u"b"_s)).st_gid, before.st_gid);
}

TEST_F(Transfers, StoppedMoveToAnotherFileSystemLeavesTheSource)
{
    NEED_TWO_SYSTEMS();
    const QString source = Put(Here(u"a"_s), Long());
    const QString target = Put(There(u"b"_s), "old");
    EXPECT_EQ(MoveFileTo(source, target, New, Patient), TransferEnd::Exists);
    EXPECT_EQ(MoveFileTo(source, target, Over, [](qint64 done, qint64) { return done == 0; }),
              TransferEnd::Stopped);
    EXPECT_EQ(Content(source), Long());
    EXPECT_EQ(Content(target), "old");
    EXPECT_EQ(NamesIn(ThereFolder()), QStringList({u"b"_s}));
    EXPECT_EQ(MoveFileTo(source, target, Over, Patient), TransferEnd::Done);
    EXPECT_EQ(Content(target), Long());
    EXPECT_FALSE(Stands(source));
}

TEST_F(Transfers, MovedLinkLeadsWhereItLed)
{
    Put(Here(u"a"_s), "text");
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"folder"_s));
    ASSERT_EQ(symlink("a", Native(Here(u"link"_s))), 0);
    EXPECT_EQ(MoveFileTo(Here(u"link"_s), Here(u"renamed"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(LinkText(Here(u"renamed"_s)), "a");
    EXPECT_EQ(MoveFileTo(Here(u"renamed"_s), Here(u"folder/link"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(Content(Here(u"folder/link"_s)), "text");
    EXPECT_NE(LinkText(Here(u"folder/link"_s)), QByteArray());
    Put(Here(u"folder/old"_s), "old");
    EXPECT_EQ(MoveFileTo(Here(u"folder/link"_s), Here(u"folder/old"_s), Over, Patient), TransferEnd::Done);
    EXPECT_EQ(Content(Here(u"folder/old"_s)), "text");
    EXPECT_EQ(NamesIn(Here(u"folder"_s)), QStringList({u"old"_s}));
    if (TwoSystems()) {
        EXPECT_EQ(MoveFileTo(Here(u"folder/old"_s), There(u"link"_s), New, Patient), TransferEnd::Done);
        EXPECT_EQ(Content(There(u"link"_s)), "text");
        EXPECT_FALSE(Stands(Here(u"folder/old"_s)));
    }
    EXPECT_EQ(Content(Here(u"a"_s)), "text");
}

TEST_F(Transfers, LinkThatSaysTheSameInItsNewPlaceIsTheSameLink)
{
    Put(Here(u"a"_s), "text");
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"folder"_s));
    ASSERT_EQ(symlink("a", Native(Here(u"near"_s))), 0);
    ASSERT_EQ(symlink(Native(Here(u"a"_s)), Native(Here(u"full"_s))), 0);
    const ino_t near = Status(Here(u"near"_s)).st_ino, full = Status(Here(u"full"_s)).st_ino;
    EXPECT_EQ(MoveFileTo(Here(u"near"_s), Here(u"near2"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(Status(Here(u"near2"_s)).st_ino, near);
    EXPECT_EQ(MoveFileTo(Here(u"full"_s), Here(u"folder/full"_s), New, Patient), TransferEnd::Done);
    EXPECT_EQ(Status(Here(u"folder/full"_s)).st_ino, full);
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s, u"folder"_s, u"near2"_s}));
    if (TwoSystems()) {
        EXPECT_EQ(MoveFileTo(Here(u"folder/full"_s), There(u"full"_s), New, Patient), TransferEnd::Done);
        EXPECT_EQ(LinkText(There(u"full"_s)), Native(Here(u"a"_s)));
        EXPECT_FALSE(Stands(Here(u"folder/full"_s)));
    }
}

TEST_F(Transfers, RemovedLinkLeavesWhatItLeadsTo)
{
    Put(Here(u"a"_s), "text");
    ASSERT_EQ(symlink("a", Native(Here(u"link"_s))), 0);
    RemoveFile(Here(u"link"_s));
    EXPECT_EQ(NamesIn(HereFolder()), QStringList({u"a"_s}));
    RemoveFile(Here(u"a"_s));
    EXPECT_EQ(NamesIn(HereFolder()), QStringList());
}

TEST_F(Transfers, NamesMayHoldWhatTheFileSystemAllows)
{
    for (const QString &name :
         {u" "_s, u"a\nb"_s, u"\"q\".orc"_s, u"\u00E9\u4E2D.sco"_s, u"-rf"_s, u"a\\b"_s}) {
        const QString source = Put(Here(name), "text");
        EXPECT_EQ(CopyFileTo(source, Here(name + u'2'), New, Patient), TransferEnd::Done);
        EXPECT_EQ(MoveFileTo(Here(name + u'2'), Here(name + u'3'), New, Patient), TransferEnd::Done);
        EXPECT_EQ(Content(Here(name + u'3')), "text");
    }
    EXPECT_EQ(WhyNot([&] { CopyFileTo(Here(u" "_s), Here(u"a"_s) + QChar(0), New, Patient); }),
              u"The file name holds a NUL character"_s);
}

// The trash

TEST_F(Transfers, DeletedFileIsInTheTrashWithItsNote)
{
    const QString source = Put(Here(u"my piece 100%.orc"_s), "text");
    Mark(source);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    EXPECT_EQ(MoveToTrash(source, Patient), TransferEnd::Done);
    EXPECT_FALSE(Stands(source));
    const QString kept = Trash(u"files/my piece 100%.orc"_s);
    EXPECT_EQ(Content(kept), "text");
    ExpectMarked(kept);
    for (const QString &folder : {Trash({}), Trash(u"files"_s), Trash(u"info"_s)})
        EXPECT_EQ(Status(folder).st_mode & 07777, 0700u);
    const QList<QByteArray> note = Content(Trash(u"info/my piece 100%.orc.trashinfo"_s)).split('\n');
    ASSERT_EQ(note.size(), 4);
    EXPECT_EQ(note[0], "[Trash Info]");
    EXPECT_EQ(note[1],
              "Path=" + Native(QFileInfo(HereFolder()).canonicalFilePath()) + "/my%20piece%20100%25.orc");
    ASSERT_TRUE(note[2].startsWith("DeletionDate="));
    const QDateTime when =
        QDateTime::fromString(QString::fromLatin1(note[2].sliced(13)), u"yyyy-MM-ddThh:mm:ss"_s);
    EXPECT_GE(when, before);
    EXPECT_LE(when, QDateTime::currentDateTime());
    EXPECT_EQ(note[3], "");
}

TEST_F(Transfers, FilesOfOneNameStandBesideEachOtherInTheTrash)
{
    for (const char *text : {"one", "two", "three"}) {
        Put(Here(u"x.orc"_s), text);
        EXPECT_EQ(MoveToTrash(Here(u"x.orc"_s), Patient), TransferEnd::Done);
    }
    EXPECT_EQ(Content(Trash(u"files/x.orc"_s)), "one");
    EXPECT_EQ(Content(Trash(u"files/x.2.orc"_s)), "two");
    EXPECT_EQ(Content(Trash(u"files/x.3.orc"_s)), "three");
    // A file that has lost its note is not replaced, and gets no other's.
    Put(Trash(u"files/y"_s), "left");
    Put(Here(u"y"_s), "mine");
    EXPECT_EQ(MoveToTrash(Here(u"y"_s), Patient), TransferEnd::Done);
    EXPECT_EQ(Content(Trash(u"files/y"_s)), "left");
    EXPECT_EQ(Content(Trash(u"files/y.2"_s)), "mine");
    EXPECT_EQ(NamesIn(Trash(u"info"_s)), QStringList({u"x.2.orc.trashinfo"_s, u"x.3.orc.trashinfo"_s,
                                                      u"x.orc.trashinfo"_s, u"y.2.trashinfo"_s}));
}

TEST_F(Transfers, NamesAsLongAsTheyCanBeFindRoomInTheTrash)
{
    const QString name = QString(120, u'\u00E9') + u"aaaaaaaaaaa.orc"_s; // 255 bytes
    for (int i = 0; i < 2; ++i) {
        Put(Here(name), "text");
        EXPECT_EQ(MoveToTrash(Here(name), Patient), TransferEnd::Done);
    }
    const QStringList kept = NamesIn(Trash(u"files"_s));
    ASSERT_EQ(kept.size(), 2);
    for (const QString &file : kept) {
        EXPECT_TRUE(file.endsWith(u".orc"_s));
        EXPECT_FALSE(file.contains(QChar::ReplacementCharacter)) << file.toStdString();
        EXPECT_TRUE(
            Content(Trash(u"info/"_s + file + u".trashinfo"_s)).contains(name.toUtf8().toPercentEncoding()));
    }
}

TEST_F(Transfers, DeletedLinkIsInTheTrashItself)
{
    Put(Here(u"a"_s), "text");
    ASSERT_EQ(symlink(Native(Here(u"a"_s)), Native(Here(u"link"_s))), 0);
    EXPECT_EQ(MoveToTrash(Here(u"link"_s), Patient), TransferEnd::Done);
    EXPECT_EQ(LinkText(Trash(u"files/link"_s)), Native(Here(u"a"_s)));
    EXPECT_EQ(Content(Here(u"a"_s)), "text");
}

TEST_F(Transfers, DeletedLinkSaysTheSameInTheTrash)
{
    Put(Here(u"a"_s), "text");
    ASSERT_EQ(symlink("a", Native(Here(u"link"_s))), 0);
    EXPECT_EQ(MoveToTrash(Here(u"link"_s), Patient), TransferEnd::Done);
    EXPECT_EQ(LinkText(Trash(u"files/link"_s)), "a");
    EXPECT_FALSE(Stands(Here(u"link"_s)));
    if (TwoSystems()) {
        ASSERT_EQ(symlink("b", Native(There(u"x"_s))), 0);
        EXPECT_EQ(MoveFileAsItIs(There(u"x"_s), Here(u"x"_s), Patient), TransferEnd::Done);
        EXPECT_EQ(LinkText(Here(u"x"_s)), "b");
        EXPECT_FALSE(Stands(There(u"x"_s)));
    }
}

TEST_F(Transfers, TrashThatTheUserLedElsewhereIsHis)
{
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"big"_s));
    ASSERT_EQ(symlink(Native(Here(u"big"_s)), Native(Trash({}).chopped(1))), 0);
    Put(Here(u"a"_s), "text");
    EXPECT_EQ(MoveToTrash(Here(u"a"_s), Patient), TransferEnd::Done);
    EXPECT_EQ(Content(Here(u"big/files/a"_s)), "text");
    EXPECT_TRUE(Stands(Here(u"big/info/a.trashinfo"_s)));
}

TEST_F(Transfers, FileThatCannotBeDeletedLeavesNoNote)
{
    ASSERT_TRUE(QDir(HereFolder()).mkdir(u"closed"_s));
    Put(Here(u"closed/x"_s), "x");
    ASSERT_EQ(chmod(Native(Data()), 0777), 0);
    EXPECT_TRUE(AsOrdinaryUser(HereFolder(), [&] {
        EXPECT_EQ(chmod(Native(Here(u"closed"_s)), 0555), 0);
        EXPECT_EQ(WhyNot([&] { MoveToTrash(Here(u"closed/x"_s), Patient); }), System(EACCES));
        EXPECT_EQ(NamesIn(Trash(u"info"_s)), QStringList());
    }));
    EXPECT_EQ(Content(Here(u"closed/x"_s)), "x");
}

TEST_F(Transfers, TrashOfTheFilesOwnFileSystemIsTakenWhereItHasOne)
{
    NEED_TWO_SYSTEMS();
    if (geteuid() != 0)
        GTEST_SKIP() << "a user without a trash is needed";
    // Nobody else's trash is touched, and other runs of this test have users of their own.
    const uid_t user = 1'000'000 + uid_t(getpid());
    const QString own = u"/dev/shm/.Trash-"_s + QString::number(user);
    ASSERT_FALSE(Stands(own));
    for (const QString &folder : {HereFolder(), ThereFolder(), Data()})
        ASSERT_EQ(chown(Native(folder), user, user), 0);
    EXPECT_TRUE(ChildSucceeded(StartChild([&] {
        ASSERT_EQ(setgroups(0, nullptr), 0);
        ASSERT_EQ(setgid(user), 0);
        ASSERT_EQ(setuid(user), 0);
        const QString source = Put(There(u"x y"_s), "text");
        EXPECT_EQ(MoveToTrash(source, Patient), TransferEnd::Done);
        EXPECT_FALSE(Stands(source));
        EXPECT_EQ(Content(own + u"/files/x y"_s), "text");
        EXPECT_TRUE(Content(own + u"/info/x y.trashinfo"_s)
                        .startsWith("[Trash Info]\nPath=" + Native(QFileInfo(ThereFolder()).fileName()) +
                                    "/x%20y\n"));
        EXPECT_EQ(NamesIn(Trash(u"files"_s)), QStringList());
        EXPECT_TRUE(QDir(own).removeRecursively());

        // Where it can have none, the one in the data folder is taken.
        Put(own, "no folder");
        Put(source, "text");
        Mark(source);
        EXPECT_EQ(MoveToTrash(source, [](qint64, qint64) { return false; }), TransferEnd::Stopped);
        EXPECT_EQ(Content(source), "text");
        EXPECT_EQ(NamesIn(Trash(u"info"_s)), QStringList());
        EXPECT_EQ(NamesIn(Trash(u"files"_s)), QStringList());
        EXPECT_EQ(MoveToTrash(source, Patient), TransferEnd::Done);
        EXPECT_FALSE(Stands(source));
        EXPECT_EQ(Content(Trash(u"files/x y"_s)), "text");
        ExpectMarked(Trash(u"files/x y"_s));
        EXPECT_TRUE(QFile::remove(own));
    })));
    QDir(own).removeRecursively();
    QFile::remove(own);
}
