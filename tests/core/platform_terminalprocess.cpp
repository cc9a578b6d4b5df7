// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/terminalprocess.h"

#include "support/printers.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <QByteArray>
#include <QByteArrayView>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QtGlobal>
#include <QTimer>

#ifdef Q_OS_LINUX
#include <sys/types.h>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// Serves events for a moment.
void Serve()
{
    QEventLoop loop;
    QTimer::singleShot(10, &loop, &QEventLoop::quit);
    loop.exec();
}

struct TerminalProcessTest : testing::Test {
    QByteArray output;
    std::optional<ProgramEnd> end;
    int ends = 0;
    TerminalProcess process{{.output = [this](QByteArrayView bytes) { output += bytes.toByteArray(); },
                             .ended =
                                 [this](const ProgramEnd &programEnd) {
                                     end = programEnd;
                                     ++ends;
                                 }}};

    bool Shell(const QString &script) { return process.Start({u"/bin/sh"_s, {u"-c"_s, script}, {}}); }
    static bool Until(const std::function<bool()> &holds)
    {
        for (const QDeadlineTimer deadline(60'000); !holds();) {
            if (deadline.hasExpired())
                return false;
            Serve();
        }
        return true;
    }
    bool UntilEnd()
    {
        return Until([this] { return end.has_value(); });
    }
};

} // namespace

TEST_F(TerminalProcessTest, GivesAllOutputBeforeTheEnd)
{
    ASSERT_TRUE(Shell(u"echo one; echo two >&2; printf three; exit 5"_s));
    EXPECT_TRUE(process.IsRunning());
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(output, "one\ntwo\nthree");
    EXPECT_EQ(end, (ProgramEnd{.number = 5}));
    EXPECT_FALSE(process.IsRunning());
    EXPECT_EQ(ends, 1);
}

TEST_F(TerminalProcessTest, MuchOutputIsWhole)
{
    ASSERT_TRUE(Shell(u"i=0; while [ $i -lt 20000 ]; do echo 0123456789012345678901234567890123456789; "
                      "i=$((i+1)); done"_s));
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(output.size(), 20000 * 41);
}

TEST_F(TerminalProcessTest, IsATerminalOfItsOwn)
{
    ASSERT_TRUE(Shell(u"test -t 0 && test -t 1 && test -t 2 && echo terminal; echo there > /dev/tty"_s));
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(output, "terminal\nthere\n");
}

TEST_F(TerminalProcessTest, TakesInput)
{
    ASSERT_TRUE(Shell(u"read a; echo \"got $a\"; cat; echo end"_s));
    process.Write("first\n");
    process.Write("second\n");
    process.WriteEnd();
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(output, "got first\nsecond\nend\n") << "and shows none of it by itself";
}

TEST_F(TerminalProcessTest, RunsInItsFolder)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(process.Start({u"/bin/sh"_s, {u"-c"_s, u"pwd -P"_s}, folder.path()}));
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(output, QDir(folder.path()).canonicalPath().toUtf8() + '\n');
}

TEST_F(TerminalProcessTest, WhatCannotStartSaysWhy)
{
    EXPECT_FALSE(process.Start({u"/no/such/program"_s, {}, {}}));
    EXPECT_NE(process.Error(), QString());
    EXPECT_FALSE(process.IsRunning());
    EXPECT_FALSE(process.AnyRuns());
    process.Stop(StopSignal::Kill);
}

TEST_F(TerminalProcessTest, AnInterruptReachesAllThatWasStarted)
{
    ASSERT_TRUE(Shell(u"trap 'echo outer; exit 3' INT; "
                      "sh -c 'trap \"echo inner; exit\" INT; echo up; while :; do sleep 0.05; done'; :"_s));
    ASSERT_TRUE(Until([this] { return output.contains("up"); }));
    process.Stop(StopSignal::Interrupt);
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(end, (ProgramEnd{.number = 3}));
    EXPECT_TRUE(output.contains("inner")) << output.constData();
    EXPECT_TRUE(output.endsWith("outer\n")) << output.constData();
}

TEST_F(TerminalProcessTest, ADeafProgramIsKilled)
{
    ASSERT_TRUE(Shell(u"trap '' INT TERM; echo up; while :; do sleep 0.05; done"_s));
    ASSERT_TRUE(Until([this] { return output.contains("up"); }));
    process.Stop(StopSignal::Interrupt);
    process.Stop(StopSignal::Terminate);
    EXPECT_TRUE(process.IsRunning());
    process.Stop(StopSignal::Kill);
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(end->signalName, u"SIGKILL"_s);
    EXPECT_TRUE(end->bySignal);
}

TEST_F(TerminalProcessTest, AHaltedProgramCanBeStopped)
{
    ASSERT_TRUE(Shell(u"echo up; kill -STOP $$; echo on"_s));
    ASSERT_TRUE(Until([this] { return output.contains("up"); }));
    process.Stop(StopSignal::Terminate);
    ASSERT_TRUE(UntilEnd());
    EXPECT_TRUE(end->bySignal || output.contains("on"));
}

TEST_F(TerminalProcessTest, WhatAProgramLeftRunningIsKnown)
{
    ASSERT_TRUE(Shell(u"trap '' HUP; (trap '' HUP TERM; exec >/dev/null 2>&1 </dev/null; "
                      "while :; do sleep 0.05; done) & echo up; exit 0"_s));
    ASSERT_TRUE(UntilEnd());
    EXPECT_FALSE(process.IsRunning());
    EXPECT_TRUE(process.AnyRuns());
    process.Stop(StopSignal::Kill);
    EXPECT_TRUE(Until([this] { return !process.AnyRuns(); }));
}

TEST_F(TerminalProcessTest, TheOutputOfWhatWasLeftRunningIsRead)
{
    // More than a terminal holds.
    ASSERT_TRUE(Shell(u"trap '' HUP; (sleep 0.3; i=0; while [ $i -lt 3000 ]; do "
                      "echo 0123456789012345678901234567890123456789012345678901234567890123456789; "
                      "i=$((i+1)); done; echo done) & exit 0"_s));
    ASSERT_TRUE(UntilEnd());
    EXPECT_TRUE(Until([this] { return output.contains("done"); }));
    EXPECT_TRUE(Until([this] { return !process.AnyRuns(); }));
    EXPECT_EQ(output.size(), 3000 * 71 + 5);
}

TEST_F(TerminalProcessTest, AStopReachesAllGroupsOfTheSession)
{
    ASSERT_TRUE(Shell(u"set -m; (trap '' HUP; trap 'echo heard; exit' INT; echo up; "
                      "while :; do sleep 0.05; done) & wait"_s));
    ASSERT_TRUE(Until([this] { return output.contains("up"); }));
    process.Stop(StopSignal::Interrupt);
    EXPECT_TRUE(Until([this] { return output.contains("heard"); })) << output.constData();
    process.Stop(StopSignal::Kill);
    ASSERT_TRUE(UntilEnd());
    EXPECT_TRUE(Until([this] { return !process.AnyRuns(); }));
}

TEST_F(TerminalProcessTest, InputForAClosedTerminalIsDropped)
{
    ASSERT_TRUE(Shell(u"exec <&- >&- 2>&-; sleep 0.5"_s));
    process.Write(QByteArray(1'000'000, 'x') + '\n');
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(end, (ProgramEnd{}));
}

TEST_F(TerminalProcessTest, ATerminalThatWasClosedMayBeOpenedAgain)
{
    ASSERT_TRUE(Shell(u"exec <&- >&- 2>&-; sleep 0.5; yes abcdefgh | head -c 300000 >/dev/tty; exit 3"_s));
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(output.size(), 300'000);
    EXPECT_EQ(end, (ProgramEnd{.number = 3}));
}

TEST_F(TerminalProcessTest, TheLongestLineIsTakenWhole)
{
    ASSERT_TRUE(Shell(u"read a; echo ${#a}"_s));
    process.Write(QByteArray(TerminalProcess::LongestLine, 'x') + '\n');
    ASSERT_TRUE(UntilEnd());
    EXPECT_EQ(output.trimmed().toLongLong(), TerminalProcess::LongestLine);
}

#ifdef Q_OS_LINUX
TEST_F(TerminalProcessTest, WhatMayNotBeStoppedIsAskedByTheKey)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the administrator can have a program of another user's";
    ASSERT_TRUE(Shell(u"trap 'echo heard' INT; trap 'exit 7' USR1; echo up; "
                      "while :; do sleep 0.05; done"_s));
    ASSERT_TRUE(Until([this] { return output.contains("up"); }));
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::setresuid(nobody, nobody, 0), 0);
    const bool interrupted = process.Stop(StopSignal::Interrupt);
    const bool heard = Until([this] { return output.contains("heard"); });
    const bool killed = process.Stop(StopSignal::Kill);
    ASSERT_EQ(::setresuid(0, 0, 0), 0);
    EXPECT_FALSE(interrupted);
    EXPECT_TRUE(heard);
    EXPECT_FALSE(killed);
    EXPECT_TRUE(process.IsRunning());
    EXPECT_TRUE(process.Stop(StopSignal::Kill));
    ASSERT_TRUE(UntilEnd());
}

TEST_F(TerminalProcessTest, ANumberUsedAgainIsAnothersProgram)
{
    QFile lastNumber(u"/proc/sys/kernel/ns_last_pid"_s);
    if (!lastNumber.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        GTEST_SKIP() << "the system lets nobody choose the number of a process";
    ASSERT_TRUE(Shell(u"trap '' HUP; echo $$; exit 1"_s));
    ASSERT_TRUE(UntilEnd());
    const qint64 number = output.trimmed().toLongLong();
    ASSERT_GT(number, 1);
    QProcess other;
    // Other programs of the machine may take the number first.
    for (int attempt = 0; attempt < 200 && other.processId() != number; ++attempt) {
        other.kill();
        other.waitForFinished();
        if (lastNumber.write(QByteArray::number(number - 1)) <= 0)
            GTEST_SKIP() << "the system lets nobody choose the number of a process";
        other.start(u"setsid"_s, {u"sh"_s, u"-c"_s, u"echo up; exec sleep 600"_s});
        ASSERT_TRUE(other.waitForStarted());
    }
    if (other.processId() != number)
        GTEST_SKIP() << "others were faster";
    ASSERT_TRUE(other.waitForReadyRead()); // leads a group of that number now
    EXPECT_FALSE(process.AnyRuns());
    process.Stop(StopSignal::Kill);
    EXPECT_FALSE(other.waitForFinished(200));
    other.kill();
    other.waitForFinished();
}
#endif

TEST(TerminalProcess, EndsWithItsOwner)
{
    {
        QByteArray output;
        TerminalProcess process(
            {.output = [&](QByteArrayView bytes) { output += bytes.toByteArray(); }, .ended = {}});
        ASSERT_TRUE(
            process.Start({u"/bin/sh"_s, {u"-c"_s, u"echo up; trap '' HUP INT TERM; sleep 600"_s}, {}}));
        for (const QDeadlineTimer deadline(60'000); !output.contains("up") && !deadline.hasExpired();)
            Serve();
        ASSERT_TRUE(process.IsRunning());
    } // waits for the end, or would hang here for ten minutes
}
