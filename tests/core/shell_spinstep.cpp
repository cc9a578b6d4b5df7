// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/spinstep.h"

#include "platform/runtimeerror.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(SpinStep, GoesOneStepAndStopsAtTheEnds)
{
    const SpinRange range{.least = 1, .most = 3};
    EXPECT_EQ(SteppedNumber(u"1"_s, 1, range), u"2"_s);
    EXPECT_EQ(SteppedNumber(u"3"_s, 1, range), u"3"_s);
    EXPECT_EQ(SteppedNumber(u"2"_s, -1, range), u"1"_s);
    EXPECT_EQ(SteppedNumber(u"1"_s, -1, range), u"1"_s);
    EXPECT_EQ(SteppedNumber(u"200"_s, -1, range), u"3"_s);
    EXPECT_EQ(SteppedNumber(u"-7"_s, 1, range), u"1"_s);
}

TEST(SpinStep, KeepsTheDecimals)
{
    EXPECT_EQ(SteppedNumber(u".5"_s, 1, {.least = -10, .most = 10}), u"1.5"_s);
    EXPECT_EQ(SteppedNumber(u".2"_s, -1, {.least = -10, .most = 10, .step = .1}), u".1"_s);
    EXPECT_EQ(SteppedNumber(u"0.1"_s, 1, {.least = -10, .most = 10, .step = .2}), u".3"_s);
}

TEST(SpinStep, TakesTheNumberAtTheBeginning)
{
    const SpinRange range{.least = 0, .most = 99};
    EXPECT_EQ(SteppedNumber({}, 1, range), u"1"_s);
    EXPECT_EQ(SteppedNumber(u"abc"_s, 1, range), u"1"_s);
    EXPECT_EQ(SteppedNumber(u"12 bars"_s, 1, range), u"13"_s);
    EXPECT_THROW(SteppedNumber(u"1e999"_s, 1, range), RunTimeError);
}

} // namespace zelvane::test
