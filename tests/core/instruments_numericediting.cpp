// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/numericediting.h"

#include "instruments/numericslider.h"
#include "oracle/numericoracle.h"
#include "platform/runtimeerror.h"
#include "shell/documentsteps.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/recordedcolour.h"
#include "support/testcontext.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <QString>
#include <QStringList>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace oracle
{
void PrintTo(const EditedText &edited, std::ostream *out)
{
    *out << testing::PrintToString(edited.text) << " [" << edited.start << ", " << edited.end << ')';
}
} // namespace oracle

namespace
{

constexpr int RandomRuns = 20000;
constexpr double SomeRandom = 0.625;

struct Numeric : testing::Test, TestContext {
    /// The text with a caret or selection between bars, before and after a key.
    QString Edited(const QString &marked, NumericMode mode, double random = SomeRandom)
    {
        const QStringList parts = marked.split(u'|');
        text.SetText(parts.join(QString()));
        const qsizetype start = parts[0].size();
        text.SetSelection(start, parts.size() > 2 ? start + parts[1].size() : start);
        text.EmptyUndoBuffer();
        NumericEditing(editor, mode, random);
        const TextSpan selected = text.Selection();
        QString shown = text.text;
        return shown.insert(selected.end, u'|').insert(selected.start, u'|');
    }
};

} // namespace

TEST_F(Numeric, EachKeyHasItsStep)
{
    EXPECT_EQ(Edited(u"i1 0 4|40"_s, NumericMode::AddOne), u"i1 0 |441|"_s);
    EXPECT_EQ(Edited(u"i1 0 4|40"_s, NumericMode::SubtractOne), u"i1 0 |439|"_s);
    EXPECT_EQ(Edited(u"i1 0 4|40"_s, NumericMode::AddTenth), u"i1 0 |440.1|"_s);
    EXPECT_EQ(Edited(u"i1 0 4|40"_s, NumericMode::SubtractTenth), u"i1 0 |439.9|"_s);
    EXPECT_EQ(Edited(u"i1 0 4|40"_s, NumericMode::AddTen), u"i1 0 |450|"_s);
    EXPECT_EQ(Edited(u"i1 0 4|40"_s, NumericMode::SubtractTen), u"i1 0 |430|"_s);
    EXPECT_EQ(Edited(u"i1 0 4|40"_s, NumericMode::Random), u"i1 0 |275|"_s);
    EXPECT_EQ(text.undoSteps, 1);
}

TEST_F(Numeric, TheNumberIsFoundFromAnyPlaceInIt)
{
    for (const auto &caret : {u"a |-12.5 b"_s, u"a -|12.5 b"_s, u"a -12|.5 b"_s, u"a -12.5| b"_s})
        EXPECT_EQ(Edited(caret, NumericMode::AddOne), u"a |-11.5| b"_s) << caret.toStdString();
    EXPECT_EQ(Edited(u"|7"_s, NumericMode::AddOne), u"|8|"_s);
    EXPECT_EQ(Edited(u"6\n7|\n8"_s, NumericMode::AddOne), u"6\n|8|\n8"_s);
    EXPECT_EQ(Edited(u"k1|2"_s, NumericMode::AddOne), u"k|13|"_s);
}

TEST_F(Numeric, TheSelectionIsTheNumber)
{
    EXPECT_EQ(Edited(u"1|23|4"_s, NumericMode::AddOne), u"1|24|4"_s);
    EXPECT_EQ(Edited(u"a| 12 |b"_s, NumericMode::AddOne), u"a|13|b"_s);
    EXPECT_EQ(Edited(u"|1e3|"_s, NumericMode::AddOne), u"|1001|"_s);
    EXPECT_EQ(Edited(u"|100 Hz|"_s, NumericMode::AddOne), u"|101|"_s);
}

TEST_F(Numeric, WhatIsNoNumberStays)
{
    EXPECT_EQ(Edited(u"ab|c 1"_s, NumericMode::AddOne), u"ab||c 1"_s);
    EXPECT_EQ(Edited(u"||"_s, NumericMode::AddOne), u"||"_s);
    EXPECT_EQ(Edited(u"a |- b"_s, NumericMode::AddOne), u"a |-| b"_s);
    EXPECT_EQ(Edited(u"a .| b"_s, NumericMode::AddOne), u"a |.| b"_s);
    EXPECT_EQ(Edited(u"|abc|"_s, NumericMode::AddOne), u"|abc|"_s);
    EXPECT_EQ(Edited(u"|1,5|"_s, NumericMode::AddOne), u"|1,5|"_s);
    EXPECT_EQ(text.undoSteps, 0);
    EXPECT_EQ(Edited(u"1,|5"_s, NumericMode::AddOne), u"1,|6|"_s);
    EXPECT_EQ(Edited(u"|1,5"_s, NumericMode::AddOne), u"|2|,5"_s);
}

TEST_F(Numeric, TheNumericBeginningIsTheValue)
{
    EXPECT_EQ(Edited(u"1|-2"_s, NumericMode::AddOne), u"|2|"_s);
    EXPECT_EQ(Edited(u"1.2|.3"_s, NumericMode::AddOne), u"|2.2|"_s);
    EXPECT_EQ(Edited(u"|0-2"_s, NumericMode::AddOne), u"|0-2|"_s); // reads as 0 and is no number
    EXPECT_EQ(Edited(u"|0.0"_s, NumericMode::AddOne), u"|1|"_s);
}

TEST_F(Numeric, NumbersAreWrittenShort)
{
    EXPECT_EQ(Edited(u"|.4"_s, NumericMode::AddTenth), u"|.5|"_s);
    EXPECT_EQ(Edited(u"|0.1"_s, NumericMode::AddTenth), u"|.2|"_s);
    EXPECT_EQ(Edited(u"|.3"_s, NumericMode::SubtractTenth), u"|.2|"_s);
    EXPECT_EQ(Edited(u"|-.4"_s, NumericMode::SubtractTenth), u"|-.5|"_s);
    EXPECT_EQ(Edited(u"|-1"_s, NumericMode::AddOne), u"|0|"_s);
    EXPECT_EQ(Edited(u"|1e20|"_s, NumericMode::AddOne), u"|1E+20|"_s);
}

TEST_F(Numeric, TheRandomPartHasThreeDigits)
{
    EXPECT_EQ(Edited(u"|1"_s, NumericMode::Random, 0.12349), u"|.123|"_s);
    EXPECT_EQ(Edited(u"|1"_s, NumericMode::Random, 0.0625), u"|.062|"_s); // a half goes to the even neighbour
    EXPECT_EQ(Edited(u"|-10"_s, NumericMode::Random, 0.99996), u"|-10|"_s);
    EXPECT_EQ(Edited(u"|440"_s, NumericMode::Random, 0), u"|0|"_s);
    EXPECT_EQ(Edited(u"|1e300|"_s, NumericMode::Random, 0.5), u"|5E+299|"_s);
}

TEST_F(Numeric, ANumberBeyondAllRangesIsAnError)
{
    EXPECT_THROW(Edited(u"|1e999|"_s, NumericMode::AddOne), RunTimeError);
    EXPECT_EQ(text.text, u"1e999"_s);
}

TEST_F(Numeric, RandomTextsComeOutAsTheLoopsSay)
{
    RandomText texts({u"0"_s, u"1"_s, u"7"_s, u"."_s, u"-"_s, u" "_s, u"\n"_s, u","_s, u"a"_s, u"e"_s, u"+"_s,
                      u"12.5"_s, u"-3"_s, u".05"_s, u"é"_s},
                     12);
    for (int run = 0; run < RandomRuns; ++run) {
        oracle::EditedText before{texts.Next()};
        before.start = texts.Number(0, int(before.text.size()));
        before.end =
            texts.Number(0, 2) ? before.start : texts.Number(int(before.start), int(before.text.size()));
        const int mode = texts.Number(0, 6);
        const double random = texts.Number(0, 999) / 1000.0;
        text.SetText(before.text);
        text.SetSelection(before.start, before.end);
        NumericEditing(editor, NumericMode(mode), random);
        const oracle::EditedText after{text.text, text.Selection().start, text.Selection().end};
        ASSERT_EQ(after, oracle::EditNumber(before, mode, random))
            << testing::PrintToString(before) << " mode " << mode << " random " << random;
    }
}

TEST_F(Numeric, DigitsAndPointsHaveASlider)
{
    text.SetText(u"a-1.5\n"_s);
    QString found;
    for (qsizetype offset = 0; offset <= text.Length(); ++offset)
        found += IsNumberAt(text, offset) ? u'x' : u'.';
    EXPECT_EQ(found, u"..xxx.."_s);
}

TEST_F(Numeric, ANumberTakesThePlaceOfTheSelection)
{
    DocumentSteps steps;
    RecordedColour colour;
    steps.colour.Take(colour);
    text.SetText(u"a\ni1 0 440 7\nb"_s);
    text.SetSelection(7, 10);
    text.EmptyUndoBuffer();
    ReplaceNumber(editor, steps, u"1.25"_s);
    EXPECT_EQ(text.text, u"a\ni1 0 1.25 7\nb"_s);
    EXPECT_EQ(text.Selection(), (TextSpan{7, 11}));
    EXPECT_EQ(colour.inserted, (std::vector<TextSpan>{{2, 13}}));
    EXPECT_EQ(text.undoSteps, 1);
}

// The slider

TEST(NumericSliders, SmallNumbersHaveTheFineMode)
{
    const NumericSlider zero = SetUpNumericSlider(u"0", false);
    EXPECT_TRUE(zero.fine);
    EXPECT_EQ(zero.minimum, -1000);
    EXPECT_EQ(zero.maximum, 0);
    EXPECT_EQ(zero.tickFrequency, 100);
    EXPECT_EQ(zero.largeChange, 1000);
    EXPECT_EQ(zero.smallChange, 100);
    EXPECT_EQ(zero.value, 0);
    EXPECT_EQ(SetUpNumericSlider(u"0", true).maximum, 1000);

    const NumericSlider three = SetUpNumericSlider(u"3", true);
    EXPECT_TRUE(three.fine);
    EXPECT_EQ(three.minimum, -4000);
    EXPECT_EQ(three.maximum, 4000);
    EXPECT_EQ(three.tickFrequency, 1000);
    EXPECT_EQ(three.value, -3000);
}

TEST(NumericSliders, LargeNumbersGoByOne)
{
    const NumericSlider slider = SetUpNumericSlider(u"440.5", false);
    EXPECT_FALSE(slider.fine);
    EXPECT_EQ(slider.minimum, -512);
    EXPECT_EQ(slider.maximum, 0);
    EXPECT_EQ(slider.tickFrequency, 100);
    EXPECT_EQ(slider.largeChange, 10);
    EXPECT_EQ(slider.smallChange, 1);
    EXPECT_EQ(slider.value, -440); // a half goes to the even neighbour
    EXPECT_EQ(SetUpNumericSlider(u"-441.5", true).value, 442);
}

TEST(NumericSliders, NumbersBeyond32BitsAreAnError)
{
    EXPECT_EQ(SetUpNumericSlider(u"2147483647", false).minimum, std::numeric_limits<qint32>::min());
    EXPECT_THROW(SetUpNumericSlider(u"2147483647", true), RunTimeError);
    EXPECT_THROW(SetUpNumericSlider(u"2147483648", false), RunTimeError);
    EXPECT_THROW(SetUpNumericSlider(u"1e308", false), RunTimeError);
    EXPECT_THROW(SetUpNumericSlider(u"1e999", false), RunTimeError);
}

TEST(NumericSliders, TheNumberIsTheNegative)
{
    EXPECT_EQ(NumberOfSlider(true, -1999, false), 1.999);
    EXPECT_EQ(NumberOfSlider(true, -1999, true), 1);
    EXPECT_EQ(NumberOfSlider(true, 1999, true), -1);
    EXPECT_EQ(NumberOfSlider(false, -441, false), 441);
    EXPECT_EQ(NumberOfSlider(false, -441, true), 441);
    EXPECT_EQ(NumberOfSlider(false, std::numeric_limits<qint32>::min(), false), 2147483648.0);
    EXPECT_EQ(SnappedSliderValue(-1999), -1000);
    EXPECT_EQ(SnappedSliderValue(1999), 1000);
    EXPECT_EQ(SnappedSliderValue(-999), 0);
    EXPECT_EQ(SliderStatus(u"1.0"_s, 0.25), u"Original value: 1.0 - New value: .25"_s);
}

TEST(NumericSliders, RandomNumbersComeOutAsTheLoopsSay)
{
    RandomText random({});
    for (int run = 0; run < RandomRuns; ++run) {
        const int digits = random.Number(0, 4);
        const double number =
            random.Number(-(1 << random.Number(0, 30)), 1 << random.Number(0, 30)) / std::pow(10.0, digits);
        const bool negative = random.Number(0, 1);
        const oracle::SliderSetup expected = oracle::SetUpSlider(number, negative);
        const QString text = QString::number(number, 'f', digits);
        if (expected.maximum > std::numeric_limits<qint32>::max()) {
            EXPECT_THROW(SetUpNumericSlider(text, negative), RunTimeError) << number;
            continue;
        }
        const NumericSlider slider = SetUpNumericSlider(text, negative);
        ASSERT_EQ(slider.fine, expected.fine) << number;
        ASSERT_EQ(slider.minimum, expected.minimum) << number;
        ASSERT_EQ(slider.maximum, expected.maximum) << number;
        ASSERT_EQ(slider.value, expected.value) << number;
        ASSERT_EQ(slider.tickFrequency, expected.tickFrequency) << number;
    }
}

} // namespace zelvane::test
