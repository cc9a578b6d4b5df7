// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/statementslider.h"

#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

pClass Field(PFormat format, double min, double max)
{
    pClass field;
    field.formato = format;
    field.min = min;
    field.max = max;
    return field;
}

SliderRange Range(PFormat format, double min, double max)
{
    return RangeOf(Field(format, min, max));
}

/// The number of the error that the work raises, 0 for none.
template <typename Work> int Error(const Work &work)
{
    try {
        work();
    } catch (const RunTimeError &error) {
        return int(error.Number());
    }
    return 0;
}

TEST(StatementSlider, RealValuesHaveAScale)
{
    EXPECT_EQ(Range(PFormat::Real, 0, 1), (SliderRange{0, 1000, 1000}));
    EXPECT_EQ(Range(PFormat::Real, -.5, .5), (SliderRange{-500, 500, 1000}));
    EXPECT_EQ(Range(PFormat::Real, 0, 64), (SliderRange{0, 64000, 1000}));
    EXPECT_EQ(Range(PFormat::Real, 0, 64.99), (SliderRange{0, 64990, 1000}));
    EXPECT_EQ(Range(PFormat::Real, 0, 65), (SliderRange{0, 6500, 100}));
    EXPECT_EQ(Range(PFormat::Real, 0, 655.9), (SliderRange{0, 65590, 100}));
    EXPECT_EQ(Range(PFormat::Real, 0, 656), (SliderRange{0, 6560, 10}));
    EXPECT_EQ(Range(PFormat::Real, 6553, 0), (SliderRange{65530, 0, 10}));
    EXPECT_EQ(Range(PFormat::Real, 0, 6554), (SliderRange{0, 0, 0}));
    EXPECT_EQ(Range(PFormat::Real, 0, 7000), (SliderRange{0, 0, 0}));
    EXPECT_EQ(Range(PFormat::Real, 0, 0), (SliderRange{0, 0, 1000}));
    // Half to even.
    EXPECT_EQ(Range(PFormat::Real, .0005, .0015), (SliderRange{0, 2, 1000}));
}

TEST(StatementSlider, OtherValuesHaveNone)
{
    EXPECT_EQ(Range(PFormat::Integer, 1, 200), (SliderRange{1, 200, 0}));
    EXPECT_EQ(Range(PFormat::Integer, .5, 1.5), (SliderRange{0, 2, 0}));
    EXPECT_EQ(Range(PFormat::Integer, 10, -10), (SliderRange{10, -10, 0}));
    EXPECT_EQ(Range(PFormat::Boolean, 5, 9), (SliderRange{0, 1, 0}));
    EXPECT_EQ(Range(PFormat::String, 5, 9), (SliderRange{0, 1, 0}));
    EXPECT_EQ(Range(PFormat(7), 5, 9), (SliderRange{0, 0, 0}));
}

TEST(StatementSlider, BoundsBeyond32BitsOverflow)
{
    EXPECT_EQ(Error([] { Range(PFormat::Integer, 0, 1e10); }), 6);
    EXPECT_EQ(Error([] { Range(PFormat::Real, 0, 1e10); }), 6);
    EXPECT_EQ(Error([] { Range(PFormat::Real, 3e9, 3e9 + 1); }), 6);
    EXPECT_EQ(Error([] { Range(PFormat::Boolean, 0, 1e10); }), 0);
}

TEST(StatementSlider, Ticks)
{
    const auto ticks = [](qint32 minimum, qint32 maximum) { return TickFrequency({minimum, maximum, 0}); };
    EXPECT_EQ(ticks(0, 0), 0);
    EXPECT_EQ(ticks(0, 1), 1);
    EXPECT_EQ(ticks(-16, 16), 1);
    EXPECT_EQ(ticks(0, 33), 11);
    EXPECT_EQ(ticks(0, 65), 11);  // 6 ticks
    EXPECT_EQ(ticks(0, 75), 9);   // 8
    EXPECT_EQ(ticks(1, 200), 10); // 20
    EXPECT_EQ(ticks(0, 1000), 100);
    EXPECT_EQ(ticks(1000, 0), 100);
    EXPECT_EQ(ticks(0, 10000), 1000);
    EXPECT_EQ(ticks(0, 32767), 10922); // 3
    EXPECT_EQ(ticks(0, 325), 10);      // 32
    EXPECT_EQ(Error([&] { ticks(0, 32768); }), 6);
    EXPECT_EQ(Error([&] { ticks(0, 50000); }), 6);
    EXPECT_EQ(Error([&] { ticks(std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()); }),
              6);
}

TEST(StatementSlider, TheTextFollowsTheSlider)
{
    const SliderRange real{0, 1000, 1000};
    EXPECT_EQ(TextOfSlider(PFormat::Real, real, 500, false), u".5"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Real, real, 1, false), u".001"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Real, {-100000, 0, 100}, -4401, false), u"-44.01"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Real, {0, 20000, 1000}, 2000, false), u"2"_s);
    // Whole numbers only.
    EXPECT_EQ(TextOfSlider(PFormat::Real, real, 999, true), u"0"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Real, {-2000, 0, 1000}, -1999, true), u"-1"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Integer, {1, 200, 0}, 17, true), u"17"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Boolean, {0, 1, 0}, 0, false), u"0"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Boolean, {0, 1, 0}, 1, false), u"1"_s);
    EXPECT_EQ(TextOfSlider(PFormat::Boolean, {0, 1, 0}, -3, false), u"1"_s);
    EXPECT_EQ(TextOfSlider(PFormat::String, {0, 1, 0}, 1, false), std::nullopt);
    EXPECT_EQ(TextOfSlider(PFormat(7), {}, 1, false), std::nullopt);
    EXPECT_EQ(Error([] { TextOfSlider(PFormat::Real, {}, 0, false); }), 11);
    EXPECT_EQ(Error([] { TextOfSlider(PFormat::Real, {}, 0, true); }), 11);
}

TEST(StatementSlider, TheSliderFollowsTheText)
{
    const SliderRange real{0, 1000, 1000};
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 0, u".5"), 500);
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 0, u"  .5 x"), 500);
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 0, u".0005"), 0);
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 0, u".0015"), 2);
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 500, u".5"), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 500, u"1.001"), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 500, u"-1"), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Real, real, 500, u"[1+2]"), 0);
    EXPECT_EQ(SliderOfText(PFormat::Real, {}, 0, u"440"), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Integer, {1, 200, 0}, 1, u"2.5"), 2);
    EXPECT_EQ(SliderOfText(PFormat::Integer, {1, 200, 0}, 1, u""), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Integer, {10, -10, 0}, 10, u"0"), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Boolean, {0, 1, 0}, 0, u"-7"), 1);
    EXPECT_EQ(SliderOfText(PFormat::Boolean, {0, 1, 0}, 1, u"no"), 0);
    EXPECT_EQ(SliderOfText(PFormat::String, {0, 1, 0}, 0, u"1"), 1);
    EXPECT_EQ(Error([] { SliderOfText(PFormat::Real, {}, 0, u"1e999"); }), 6);
}

TEST(StatementSlider, TheSliderReachesItsEndsByText)
{
    EXPECT_EQ(SliderOfText(PFormat::Real, Range(PFormat::Real, 0, 16.1), 0, u"16.1"), 16100);
    EXPECT_EQ(SliderOfText(PFormat::Real, Range(PFormat::Real, 2.01, 10), 5000, u"2.01"), 2010);
    for (int hundredths = 1; hundredths <= 655'00; ++hundredths) {
        const double bound = hundredths / 100.0;
        const SliderRange above = Range(PFormat::Real, 0, bound);
        EXPECT_EQ(SliderOfText(PFormat::Real, above, 0, NumberText(bound)), above.maximum);
        const SliderRange below = Range(PFormat::Real, -bound, 0);
        EXPECT_EQ(SliderOfText(PFormat::Real, below, 0, NumberText(-bound)), below.minimum);
    }
    // What is really beyond an end stays out.
    EXPECT_EQ(SliderOfText(PFormat::Real, {0, 16100, 1000}, 7, u"16.1000000001"), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Real, {2010, 10000, 1000}, 2020, u"2.0099999999"), std::nullopt);
    EXPECT_EQ(SliderOfText(PFormat::Real, {0, 1000, 1000}, 7, u"-1E-300"), std::nullopt);
}

TEST(StatementSlider, CommandsOfTheMenu)
{
    using S = SliderCommand;
    EXPECT_EQ(SliderTarget(S::Zero, {-10, 10, 0}, 0), 0);
    // Below the range or above it: the slider stops at its end.
    EXPECT_EQ(SliderTarget(S::Zero, {5, 10, 0}, 0), 0);
    EXPECT_EQ(SliderTarget(S::Zero, {-10, -5, 0}, 0), 0);
    EXPECT_EQ(SliderTarget(S::Zero, {5, -5, 0}, 0), std::nullopt);
    EXPECT_EQ(SliderTarget(S::Centre, {-10, 30, 0}, 0), 10);
    EXPECT_EQ(SliderTarget(S::Centre, {0, 1, 0}, 0), 0);
    EXPECT_EQ(SliderTarget(S::Centre, {1, 2, 0}, 0), 2);
    EXPECT_EQ(SliderTarget(S::Centre, {-2000000000, 2000000000, 0}, 0), 0);
    EXPECT_EQ(SliderTarget(S::Random, {-10, 30, 0}, 0), -10);
    EXPECT_EQ(SliderTarget(S::Random, {-10, 30, 0}, .5), 10);
    EXPECT_EQ(SliderTarget(S::Random, {-10, 30, 0}, .9999), 30);
}

TEST(StatementSlider, RandomValues)
{
    EXPECT_EQ(RandomValue(Field(PFormat::Real, -1, 1), .25), u"-.5"_s);
    EXPECT_EQ(RandomValue(Field(PFormat::String, 2, 2), .25), u"2"_s);
}

} // namespace
} // namespace zelvane
