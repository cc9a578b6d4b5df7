// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/unsavedcopy.h"
#include "platform/userfolders.h"
#include "support/childprocess.h"
#include "support/printers.h"
#include "support/statefolder.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iterator>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// Copies in a state folder of their own.
class Copies : public ::testing::Test
{
protected:
    static QByteArray Bytes(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    static void Put(const QString &name, const QByteArray &bytes)
    {
        EXPECT_TRUE(QDir().mkpath(UnsavedCopy::Folder()));
        QFile file(UnsavedCopy::Folder() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    static QStringList Names() { return NamesIn(UnsavedCopy::Folder()); }

private:
    OwnStateFolder m_state;
};

const CopyInfo Piece{.name = u"/music/piece.orc"_s,
                     .kind = 1,
                     .encoding = TextEncoding{TextEncoding::Form::Windows1252, false}};

TEST_F(Copies, StandInTheStateFolder)
{
    EXPECT_EQ(UnsavedCopy::Folder(), qEnvironmentVariable("XDG_STATE_HOME") + u"/zelvane/unsaved"_s);
    for (const char *value : {"", "relative"}) {
        qputenv("XDG_STATE_HOME", value);
        EXPECT_EQ(StateFolder(), QDir::homePath() + u"/.local/state/zelvane"_s);
    }
    qunsetenv("XDG_STATE_HOME");
    EXPECT_EQ(StateFolder(), QDir::homePath() + u"/.local/state/zelvane"_s);
}

TEST_F(Copies, APersonCanReadThem)
{
    UnsavedCopy copy;
    EXPECT_FALSE(copy.Stands());
    copy.Write(Piece, "instr 1\nendin");
    ASSERT_TRUE(copy.Stands());
    const QFileInfo file(copy.Path());
    EXPECT_TRUE(file.fileName().startsWith(u"piece.orc-"_s));
    EXPECT_EQ(Bytes(copy.Path()), "Zelvane copy\nName: /music/piece.orc\nKind: 1\nEncoding: Windows-1252\n"
                                  "Bytes: 13\n\ninstr 1\nendin"_ba);
    copy.Write({}, "x");
    EXPECT_TRUE(QFileInfo(copy.Path()).fileName().startsWith(u"Untitled-"_s));
    EXPECT_EQ(Names().size(), 1);
}

TEST_F(Copies, NobodyElseMayReadThem)
{
    const mode_t old = umask(0);
    UnsavedCopy copy;
    copy.Write(Piece, "x");
    umask(old);
    struct stat info = {};
    ASSERT_EQ(stat(QFile::encodeName(copy.Path()).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0600u);
    ASSERT_EQ(stat(QFile::encodeName(UnsavedCopy::Folder()).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0700u);
}

TEST_F(Copies, AnythingComesBack)
{
    const CopyInfo infos[] = {
        Piece,
        {},
        {.name = u"/a b\n%0A\r\u0416"_s, .kind = 3, .encoding = TextEncoding{TextEncoding::Form::Utf8, true}},
        {.name = u"/x"_s, .encoding = TextEncoding{TextEncoding::Form::Utf16Little, false}},
        {.name = u"/x"_s, .encoding = TextEncoding{TextEncoding::Form::Utf16Big, false}},
        {.name = u'/' + QString(250, u'\u0416'), .replacedBy = ContentHash("new")},
        {.name = u'/' + QString(59, u'n') + u"\U0001D11E.orc"_s},
        {.name = u"/folder/"_s},
    };
    QRandomGenerator random(3);
    UnsavedCopy copy;
    for (const CopyInfo &info : infos) {
        for (const QByteArray &bytes :
             {""_ba, "\n\n"_ba, QByteArray("a\0b", 3), QByteArray(1'000'000, 'x')}) {
            copy.Write(info, bytes);
            const auto content = copy.Read();
            ASSERT_TRUE(content);
            EXPECT_EQ(content->info, info);
            EXPECT_EQ(content->bytes, bytes);
            EXPECT_EQ(Names().size(), 1);
        }
    }
    copy.Remove();
    EXPECT_FALSE(copy.Stands());
    EXPECT_EQ(Names(), QStringList());
    copy.Remove();
    copy.Keep();
}

TEST_F(Copies, OnlyThoseOfEndedProcessesAreFound)
{
    UnsavedCopy mine;
    mine.Write(Piece, "mine");
    EXPECT_TRUE(UnsavedCopy::TakeLeft().empty());
    OwnStateFolder::Leave({.name = u"/first"_s}, "1");
    OwnStateFolder::Leave({.name = u"/second"_s}, "2", UnsavedCopy::Kind::Replaced);
    {
        const std::vector<UnsavedCopy> left = UnsavedCopy::TakeLeft();
        ASSERT_EQ(left.size(), 2u);
        EXPECT_EQ(left[0].Read()->bytes, "2"_ba);
        EXPECT_EQ(left[0].WhichKind(), UnsavedCopy::Kind::Replaced);
        EXPECT_EQ(left[1].Read()->info.name, u"/first"_s);
        EXPECT_EQ(left[1].WhichKind(), UnsavedCopy::Kind::Unsaved);
        EXPECT_LT(left[1].Written().secsTo(QDateTime::currentDateTime()), 100);
        // Who has taken them over is asked about them, and no one else.
        EXPECT_TRUE(UnsavedCopy::TakeLeft().empty());
    }
    // Let go of without a word, they are there for the next.
    EXPECT_EQ(UnsavedCopy::TakeLeft().size(), 2u);
    EXPECT_TRUE(mine.Stands());
}

TEST_F(Copies, AnyNameIsFoundAndGoesAfterItsWeek)
{
    const QString names[] = {u"/:a.orc"_s, u"/[a]*?.orc"_s, u"/.hidden"_s,       u"/%1 %20.orc"_s,
                             u"/-r"_s,     u"/a\n\r\tb"_s,  u"/\\back\\slash"_s, u"/qrc:a"_s};
    for (const QString &name : names)
        OwnStateFolder::Leave({.name = name}, "text");
    std::vector<UnsavedCopy> left = UnsavedCopy::TakeLeft();
    EXPECT_EQ(left.size(), std::size(names));
    for (UnsavedCopy &copy : left) {
        EXPECT_TRUE(copy.Read());
        copy.Keep();
    }
    EXPECT_EQ(NamesIn(UnsavedCopy::Folder()).filter(u".kept"_s).size(), qsizetype(std::size(names)));
    UnsavedCopy::RemoveOld(QDateTime::currentDateTime().addDays(9));
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(Copies, OneThatWasTakenOverIsWrittenOverAndRemoved)
{
    OwnStateFolder::Leave(Piece, "left");
    UnsavedCopy copy = std::move(UnsavedCopy::TakeLeft().at(0));
    copy.Write({.name = {}}, "later");
    EXPECT_EQ(Names().size(), 1);
    EXPECT_EQ(copy.Read()->bytes, "later"_ba);
    copy.Remove();
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(Copies, KeptOnesStayAWeekAndAreNotFound)
{
    OwnStateFolder::Leave(Piece, "text");
    // A week from when it was given up, not from when it was written.
    const QByteArray path = QFile::encodeName(UnsavedCopy::Folder() + u'/' + Names().at(0));
    const timespec longAgo[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.constData(), longAgo, 0), 0);
    UnsavedCopy copy = std::move(UnsavedCopy::TakeLeft().at(0));
    copy.Keep();
    EXPECT_FALSE(copy.Stands());
    EXPECT_TRUE(UnsavedCopy::TakeLeft().empty());
    ASSERT_EQ(Names().size(), 1);
    EXPECT_TRUE(Names().at(0).startsWith(u"piece.orc-"_s));
    EXPECT_TRUE(Names().at(0).endsWith(u".kept"_s));

    Put(u".zelvane-abcdefgh"_s, "half");
    Put(u"notes.txt"_s, "the user's own");
    const QDateTime now = QDateTime::currentDateTime();
    constexpr qint64 hour = 60 * 60;
    UnsavedCopy::RemoveOld(now.addSecs((7 * 24 - 1) * hour));
    EXPECT_EQ(Names().size(), 2);
    UnsavedCopy::RemoveOld(now.addSecs((7 * 24 + 1) * hour));
    EXPECT_EQ(Names(), QStringList{u"notes.txt"_s});
}

TEST_F(Copies, ABrokenOneIsKnown)
{
    for (const QByteArray &bytes :
         {""_ba, "Zelvane copy\n"_ba, "Zelvane copy\nName: x\nKind: 0\nBytes: 3\n\nab"_ba,
          "Zelvane copy\nName: x\nKind: 0\n\nab"_ba, "something else\nBytes: 0\n\n"_ba,
          "Zelvane copy\nEncoding: EBCDIC\nBytes: 0\n\n"_ba})
        Put(u"x-%1.open"_s.arg(bytes.size()), bytes);
    const std::vector<UnsavedCopy> left = UnsavedCopy::TakeLeft();
    EXPECT_EQ(left.size(), 6u);
    for (const UnsavedCopy &copy : left)
        EXPECT_FALSE(copy.Read()) << copy.Path().toStdString();
}

TEST_F(Copies, AFailureLeavesTheFormerOne)
{
    const pid_t child = StartChild([&] {
        UnsavedCopy copy;
        copy.Write(Piece, "former");
        EXPECT_TRUE(WithFileSizeLimit(4096, [&] {
            EXPECT_THROW(copy.Write(Piece, QByteArray(5000, 'x')), RunTimeError);
            EXPECT_THROW(copy.Write({.name = u"/other"_s}, QByteArray(5000, 'x')), RunTimeError);
            EXPECT_EQ(copy.Read()->bytes, "former"_ba);
        }));
    });
    EXPECT_TRUE(ChildSucceeded(child));
    EXPECT_EQ(Names().size(), 1);
}

TEST_F(Copies, AKillLeavesAWholeOne)
{
    QRandomGenerator random(8);
    const QByteArray bytes(500'000, 'x');
    for (int round = 0; round < 60; ++round) {
        const pid_t child = StartChild([&] {
            UnsavedCopy copy;
            for (int i = 0;; ++i)
                copy.Write(Piece, QByteArray::number(i) + bytes);
        });
        usleep(random.bounded(3000, 30000));
        kill(child, SIGKILL);
        EXPECT_FALSE(ChildSucceeded(child));
        for (UnsavedCopy &copy : UnsavedCopy::TakeLeft()) {
            const auto content = copy.Read();
            ASSERT_TRUE(content);
            EXPECT_TRUE(content->bytes.endsWith(bytes));
            copy.Remove();
        }
    }
    UnsavedCopy::RemoveOld(QDateTime::currentDateTime());
    EXPECT_EQ(Names(), QStringList());
}

} // namespace
