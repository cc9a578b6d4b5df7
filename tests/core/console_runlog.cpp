// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/runlog.h"

#include "support/childprocess.h"
#include "support/printers.h"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

struct RunLogTest : testing::Test {
    QTemporaryDir folder;
    QDateTime begun{QDate(2026, 1, 2), QTime(3, 4, 5, 6)};

    QString Runs() const { return folder.path() + u"/runs"_s; }
    QStringList Files() const { return QDir(Runs()).entryList(QDir::Files, QDir::Name); }
    static QByteArray Bytes(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }
};

QByteArray Numbers(int from, int to)
{
    QByteArray bytes;
    for (int i = from; i < to; ++i)
        bytes += QByteArray::number(i).rightJustified(9, '0') + '\n';
    return bytes;
}

} // namespace

TEST_F(RunLogTest, KeepsAllOfALittle)
{
    RunLog log(Runs(), u"Render: a/b"_s, begun);
    log.Write("one\n");
    EXPECT_EQ(Bytes(log.Path()), "one\n") << "what has come can be read at once";
    log.Write("two\n");
    log.Finish();
    EXPECT_EQ(Bytes(log.Path()), "one\ntwo\n");
    EXPECT_TRUE(log.IsWhole());
    ASSERT_EQ(Files().size(), 1);
    EXPECT_TRUE(Files()[0].startsWith(u"20260102-030405-006-"_s)) << Files()[0].toStdString();
    EXPECT_TRUE(Files()[0].endsWith(u"-Render__a_b.log"_s)) << Files()[0].toStdString();
#ifdef Q_OS_UNIX
    EXPECT_EQ(QFile::permissions(log.Path()) & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther),
              QFile::Permissions());
#endif
}

TEST_F(RunLogTest, KeepsHeadAndTailOfMuch)
{
    const QByteArray all = Numbers(0, 1000);
    for (const qsizetype piece : {1, 7, 100, 5000, 10000}) {
        RunLog log(Runs(), u"x"_s, begun.addMSecs(piece), {.head = 1000, .tail = 400, .logs = 20});
        for (qsizetype i = 0; i < all.size(); i += piece)
            log.Write(QByteArrayView(all).sliced(i, std::min(piece, all.size() - i)));
        log.Finish();
        const QByteArray kept = Bytes(log.Path());
        EXPECT_TRUE(kept.startsWith(all.first(1000)));
        EXPECT_TRUE(kept.endsWith(all.last(200)));
        EXPECT_LT(kept.size(), 1000 + 400 + 50);
        const qsizetype note = kept.indexOf("\n[", 1000);
        ASSERT_EQ(note, 1000);
        const qsizetype tail = kept.indexOf("here]\n") + 6;
        const qint64 dropped = kept.mid(1002).left(kept.indexOf(' ', 1002) - 1002).toLongLong();
        EXPECT_EQ(1000 + dropped + kept.size() - tail, all.size()) << "the note tells the truth";
    }
    for (const QString &name : Files())
        EXPECT_TRUE(name.endsWith(u".log"_s)) << name.toStdString();
}

TEST_F(RunLogTest, NothingIsLeftOutWhereHeadAndTailMeet)
{
    const QByteArray all = Numbers(0, 139);
    RunLog log(Runs(), u"x"_s, begun, {.head = 1000, .tail = 400, .logs = 20});
    log.Write(all);
    log.Finish();
    EXPECT_EQ(Bytes(log.Path()), all);
}

TEST_F(RunLogTest, AFinishedLogGoesOn)
{
    RunLog log(Runs(), u"x"_s, begun, {.head = 1000, .tail = 400, .logs = 20});
    log.Write("one\n");
    log.Finish();
    log.Write("two\n");
    EXPECT_EQ(Bytes(log.Path()), "one\ntwo\n");
    for (int i = 1; i < 4; ++i)
        RunLog(Runs(), u"other"_s, begun.addDays(i), {.head = 10, .tail = 10, .logs = 1});
    EXPECT_TRUE(QFile::exists(log.Path())) << "it is one of a running run again";
    log.Finish();
    RunLog(Runs(), u"other"_s, begun.addDays(4), {.head = 10, .tail = 10, .logs = 1});
    ASSERT_FALSE(QFile::exists(log.Path()));
    log.Write("three\n");
    log.Finish();
    EXPECT_FALSE(QFile::exists(log.Path())) << "nor does a log come back";
}

TEST_F(RunLogTest, ALogThatGoesOnKeepsToItsLimits)
{
    const QByteArray all = Numbers(0, 300);
    for (const qsizetype first : {90, 100, 110, 120, 139, 140, 150, 155, 160, 165}) {
        RunLog log(Runs(), u"x"_s, begun.addMSecs(first), {.head = 1000, .tail = 400, .logs = 20});
        log.Write(all.first(first * 10));
        log.Finish();
        log.Write(all.sliced(first * 10, 700));
        log.Write(all.sliced(first * 10 + 700));
        log.Finish();
        const QByteArray kept = Bytes(log.Path());
        EXPECT_LE(kept.size(), 1000 + 400 + 100) << first;
        EXPECT_TRUE(kept.startsWith(all.first(1000))) << first;
        EXPECT_TRUE(kept.contains(" bytes are left out here]\n")) << first;
        // A limit that the first end has used up leaves no room for the second.
        if (first <= 120) {
            EXPECT_TRUE(kept.endsWith(all.last(100))) << first << kept.last(200).constData();
        }
        EXPECT_TRUE(log.IsWhole());
    }
}

TEST_F(RunLogTest, TheOldestLogsGo)
{
    for (int i = 0; i < 6; ++i)
        RunLog(Runs(), u"x"_s, begun.addDays(i), {.head = 10, .tail = 10, .logs = 4});
    const QStringList files = Files();
    ASSERT_EQ(files.size(), 4);
    EXPECT_TRUE(files.first().startsWith(u"20260104"_s));
    EXPECT_TRUE(files.last().startsWith(u"20260107"_s));
}

TEST_F(RunLogTest, TheLogOfALongRunStays)
{
    const RunLog::Limits limits{.head = 4, .tail = 8, .logs = 3};
    RunLog running(Runs(), u"long"_s, begun, limits);
    running.Write("head tail ");
    for (int i = 1; i < 6; ++i)
        RunLog(Runs(), u"short"_s, begun.addDays(i), limits);
    ASSERT_TRUE(QFile::exists(running.Path()));
    EXPECT_EQ(Files().filter(u"short"_s).size(), 3) << "the newest of the others: only ended runs go";
    running.Write("end.");
    running.Finish();
    EXPECT_TRUE(Bytes(running.Path()).endsWith("end.")) << Bytes(running.Path()).constData();
    RunLog(Runs(), u"short"_s, begun.addDays(6), limits);
    EXPECT_FALSE(QFile::exists(running.Path())) << "it is the oldest that has ended";
}

TEST_F(RunLogTest, WithoutAFolderThereIsNoLog)
{
    QFile blocked(Runs());
    ASSERT_TRUE(blocked.open(QIODevice::WriteOnly));
    RunLog log(Runs(), u"x"_s, begun);
    log.Write("one\n");
    log.Finish();
    EXPECT_EQ(log.Path(), QString());
    EXPECT_FALSE(log.IsWhole());
}

#ifdef SIGXFSZ
TEST_F(RunLogTest, TheWordsOfTheGapMayFindNoRoomEither)
{
    const RunLog::Limits limits{.head = 2000, .tail = 2000, .logs = 3};
    EXPECT_TRUE(test::WithFileSizeLimit(2010, [&] {
        std::signal(SIGXFSZ, SIG_IGN);
        RunLog log(Runs(), u"x"_s, begun, limits);
        log.Write(Numbers(0, 1000));
        EXPECT_TRUE(log.IsWhole());
        log.Finish();
        EXPECT_FALSE(log.IsWhole());
        EXPECT_EQ(Bytes(log.Path()).left(2000), Numbers(0, 200));
    }));
    EXPECT_EQ(Files().size(), 3) << "the tail stays in its own files";
}

TEST_F(RunLogTest, ADiskThatTakesNoMoreEndsTheLogAlone)
{
    const RunLog::Limits limits{.head = 2000, .tail = 8000, .logs = 3};
    for (const qint64 room : {1000, 3000}) { // less than the head, and less than a half of the tail
        const QString runs = folder.path() + u'/' + QString::number(room);
        EXPECT_TRUE(test::WithFileSizeLimit(room, [&] {
            std::signal(SIGXFSZ, SIG_IGN);
            RunLog log(runs, u"x"_s, begun, limits);
            EXPECT_TRUE(log.IsWhole());
            for (int i = 0; i < 12'000; i += 100)
                log.Write(Numbers(i / 10, i / 10 + 10));
            EXPECT_FALSE(log.IsWhole());
            log.Finish();
            EXPECT_FALSE(log.IsWhole());
            EXPECT_EQ(Bytes(log.Path()).left(500), Numbers(0, 50)) << "what came before is still there";
        }));
        // The next run takes them for ended ones.
        for (int i = 1; i < 5; ++i)
            RunLog(runs, u"x"_s, begun.addDays(i), limits);
        EXPECT_EQ(QDir(runs).entryList(QDir::Files).size(), 3);
    }
}
#endif
