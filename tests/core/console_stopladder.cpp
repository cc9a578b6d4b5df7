// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/stopladder.h"

#include "platform/terminalprocess.h"

#include <gtest/gtest.h>
#include <optional>

using namespace zelvane;

TEST(StopLadder, InterruptsTerminatesKills)
{
    StopLadder ladder;
    EXPECT_FALSE(ladder.HasBegun());
    EXPECT_EQ(ladder.Due(100'000), std::nullopt) << "nobody has asked";
    EXPECT_EQ(ladder.Press(1000), StopSignal::Interrupt);
    EXPECT_TRUE(ladder.HasBegun());
    EXPECT_EQ(ladder.Due(1000 + StopLadder::PatienceMs - 1), std::nullopt);
    EXPECT_EQ(ladder.Due(1000 + StopLadder::PatienceMs), StopSignal::Terminate);
    EXPECT_EQ(ladder.Due(1000 + StopLadder::PatienceMs), std::nullopt);
    EXPECT_EQ(ladder.Due(1000 + 2 * StopLadder::PatienceMs), StopSignal::Kill);
    EXPECT_EQ(ladder.Due(1000 + 3 * StopLadder::PatienceMs), StopSignal::Kill)
        << "again, for what came since";
}

TEST(StopLadder, PressingAgainIsTheNextStep)
{
    constexpr qint64 least = StopLadder::LeastMs;
    StopLadder ladder;
    EXPECT_EQ(ladder.Press(0), StopSignal::Interrupt);
    EXPECT_EQ(ladder.Press(least), StopSignal::Terminate);
    EXPECT_EQ(ladder.Due(least + 10), std::nullopt);
    EXPECT_EQ(ladder.Press(2 * least), StopSignal::Kill);
    EXPECT_EQ(ladder.Last(), StopSignal::Kill);
}

TEST(StopLadder, PressesInARowAreOne)
{
    StopLadder ladder;
    EXPECT_EQ(ladder.Press(50), StopSignal::Interrupt);
    for (qint64 ms = 50; ms < 50 + StopLadder::LeastMs; ms += 30)
        EXPECT_EQ(ladder.Press(ms), std::nullopt) << ms;
    EXPECT_EQ(ladder.Due(50 + StopLadder::PatienceMs - 1), std::nullopt) << "they delay nothing";
    EXPECT_EQ(ladder.Due(50 + StopLadder::PatienceMs), StopSignal::Terminate);
    EXPECT_EQ(ladder.Press(50 + StopLadder::PatienceMs + 1), std::nullopt)
        << "nor follow on a step by itself";
}
