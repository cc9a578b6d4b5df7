// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/exitwords.h"

#include "console/scoreprogress.h"
#include "platform/terminalprocess.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <optional>
#include <QString>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

TEST(ExitWords, TellTheCodeOrTheSignal)
{
    EXPECT_EQ(ExitWords({}, {}), u"Ended well (exit code 0)."_s);
    EXPECT_EQ(ExitWords({.number = 3}, {}), u"Ended with exit code 3."_s);
    EXPECT_EQ(ExitWords({.bySignal = true, .number = 11, .signalName = u"SIGSEGV"_s}, {}),
              u"Crashed: segmentation fault (SIGSEGV)."_s);
    EXPECT_EQ(ExitWords({.bySignal = true, .number = 60}, {}), u"Ended by signal 60."_s);
    EXPECT_EQ(ExitWords({.bySignal = true, .number = 20, .signalName = u"SIGTSTP"_s}, {}),
              u"Ended by SIGTSTP."_s);
    EXPECT_EQ(ExitWords({.bySignal = true, .number = 2, .signalName = u"SIGINT"_s}, StopSignal::Interrupt),
              u"Stopped. Ended: interrupted (SIGINT)."_s);
    // Csound ends by itself after both.
    EXPECT_EQ(ExitWords({.number = 1}, StopSignal::Interrupt), u"Stopped. Ended with exit code 1."_s);
    EXPECT_EQ(ExitWords({.number = 1}, StopSignal::Terminate),
              u"Stopped by terminate: the sound file may be damaged. Ended with exit code 1."_s);
    EXPECT_EQ(ExitWords({.bySignal = true, .number = 9, .signalName = u"SIGKILL"_s}, StopSignal::Kill),
              u"Stopped by kill: the sound file may be damaged. Ended: killed (SIGKILL)."_s);
    EXPECT_TRUE(ProgramEnd{}.IsSuccess());
    EXPECT_FALSE((ProgramEnd{.bySignal = true}.IsSuccess()));
    EXPECT_FALSE((ProgramEnd{.number = 1}.IsSuccess()));
}

TEST(ExitWords, WhatWasLeftRunningIsToldWhereAnInterruptWasNotEnough)
{
    EXPECT_EQ(LeftoverWords(std::nullopt), QString());
    EXPECT_EQ(LeftoverWords(StopSignal::Interrupt), QString());
    EXPECT_EQ(LeftoverWords(StopSignal::Terminate),
              u"What it had started was ended by terminate: its files may be damaged."_s);
    EXPECT_EQ(LeftoverWords(StopSignal::Kill),
              u"What it had started was ended by kill: its files may be damaged."_s);
}

TEST(ExitWords, ALostDisplayIsTheReasonOfTheEnd)
{
    EXPECT_EQ(LostWindowWords(StopSignal::Interrupt), u"The display has gone. Stopped."_s);
    EXPECT_EQ(LostWindowWords(StopSignal::Kill),
              u"The display has gone. Stopped by kill: the sound file may be damaged."_s);
}

TEST(ExitWords, DurationsAreClockTimes)
{
    EXPECT_EQ(DurationText(0), u"0:00"_s);
    EXPECT_EQ(DurationText(7999), u"0:07"_s);
    EXPECT_EQ(DurationText(754'000), u"12:34"_s);
    EXPECT_EQ(DurationText(3'605'000), u"1:00:05"_s);
}

TEST(ScoreProgress, IsTheTotalTimeOfABlock)
{
    EXPECT_EQ(ScoreProgress(u"B  0.000 ..  3.000 T  3.000 TT  3.000 M:  0.20000"), 3.0);
    EXPECT_EQ(ScoreProgress(u"B150.000 ..1150.000 T1150.000 TT1150.000 M:  0.10000"), 1150.0);
    EXPECT_EQ(ScoreProgress(u"B 60.000 .. 61.000 T 61.000 TT 1261.500 M:      0.0"), 1261.5);
    EXPECT_EQ(ScoreProgress(u"B 60.000 - note deleted. instr 0(200) undefined"), std::nullopt);
    EXPECT_EQ(ScoreProgress(u"a line TT 3.0"), std::nullopt);
    EXPECT_EQ(ScoreProgress(u""), std::nullopt);
}
