// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/inserts.h"

#include "oracle/insertsoracle.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/testcontext.h"
#include "texttools/insertkeys.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomRuns = 20000;

struct Inserts : testing::Test, TestContext {
    /// The text with a separator put under the caret, which is left where it stands then.
    QString Separated(const QString &before, qsizetype caret, LineStyle style = LineStyle::First)
    {
        text.SetText(before);
        text.SetSelection(caret, caret);
        InsertLineSeparation(editor, style);
        return text.text;
    }
    /// What takes the place of the selection when this file is picked.
    QString Named(const QString &picked)
    {
        text.SetText(u"a\nb"_s);
        text.SetSelection(0, 1);
        desktop.ExpectOpenDialog({.title = u"Select a filename"_s,
                                  .folder = document.CurrentFile.isEmpty() ? QString() : u"/home/u/piece"_s},
                                 {.path = picked});
        InsertFilename(editor);
        desktop.CheckAllCame();
        return text.text.chopped(2);
    }
};

} // namespace

TEST(InsertTexts, DateAndTimeAreShort)
{
    const QDateTime now(QDate(2001, 3, 7), QTime(14, 5, 59));
    EXPECT_EQ(DateAndTime(now, QLocale(QLocale::German, QLocale::Germany)), u"07.03.01 14:05"_s);
    EXPECT_EQ(DateAndTime(now, QLocale::c()), u"7 Mar 2001 14:05:59"_s);
}

TEST(InsertTexts, AHeaderHasFourLines)
{
    EXPECT_EQ(HeaderText(44100, 4410, u"2"_s), u"sr = 44100\r\nkr = 4410\r\nksmps = 10\r\nnchnls = 2\r\n"_s);
    EXPECT_EQ(HeaderText(-8, 2, u" x"_s), u"sr = -8\r\nkr = 2\r\nksmps = -4\r\nnchnls =  x\r\n"_s);
    EXPECT_EQ(HeaderText(std::numeric_limits<qint32>::min(), -1, {}),
              u"sr = -2147483648\r\nkr = -1\r\nksmps = 2147483648\r\nnchnls = \r\n"_s);
}

TEST(InsertTexts, AControlRateDividesTheSampleRate)
{
    EXPECT_TRUE(IsControlRate(44100, 4410));
    EXPECT_TRUE(IsControlRate(44100, 44100));
    EXPECT_TRUE(IsControlRate(44100, 1));
    EXPECT_FALSE(IsControlRate(44100, 4411));
    EXPECT_FALSE(IsControlRate(44100, 88200));
    EXPECT_TRUE(IsControlRate(std::numeric_limits<qint32>::min(), -1));
    EXPECT_THROW(IsControlRate(44100, 0), RunTimeError);
}

TEST(InsertTexts, TheArrowsWalkThroughTheDivisors)
{
    EXPECT_EQ(NextControlRate(44100, 4410, 1), 4900);
    EXPECT_EQ(NextControlRate(44100, 4410, -1), 3675);
    EXPECT_EQ(NextControlRate(44100, 44100, 1), 44100);
    EXPECT_EQ(NextControlRate(44100, 1, -1), 1);
    EXPECT_EQ(NextControlRate(44100, 100000, 1), 44100);
    EXPECT_EQ(NextControlRate(44100, 100000, -1), 44100);
    EXPECT_EQ(NextControlRate(44100, 22051, -1), 22050);
    EXPECT_THROW(NextControlRate(44100, -1, 1), RunTimeError);
    // A prime, whose divisors a plain loop would look for long.
    constexpr qint32 Prime = 2147483647;
    EXPECT_EQ(NextControlRate(Prime, 1, 1), Prime);
    EXPECT_EQ(NextControlRate(Prime, Prime, -1), 1);
    EXPECT_EQ(NextControlRate(Prime, Prime, 1), Prime);
}

TEST(InsertTexts, TheArrowsWalkAsThePlainLoop)
{
    std::mt19937 random(7);
    const auto number = [&random](int low, int high) {
        return std::uniform_int_distribution(low, high)(random);
    };
    for (int i = 0; i < RandomRuns; ++i) {
        const int rate = number(0, 9) == 0 ? number(-60, 0) : number(1, 400);
        const int present = number(0, 3) == 0 ? number(-500, 500) : number(0, 400);
        const int direction = number(0, 1) * 2 - 1;
        const auto expected = oracle::NextControlRate(rate, present, direction);
        if (expected)
            ASSERT_EQ(NextControlRate(rate, present, direction), *expected)
                << rate << ' ' << present << ' ' << direction;
        else
            ASSERT_THROW(NextControlRate(rate, present, direction), RunTimeError) << rate << ' ' << present;
    }
}

TEST(InsertTexts, ARandomNumberLiesBetweenItsEnds)
{
    EXPECT_EQ(RandomNumber(0, 1, 2, 3), u"1"_s);
    EXPECT_EQ(RandomNumber(0.5, 0, 1, 3), u".5"_s);
    EXPECT_EQ(RandomNumber(0.5, -1, 0, 1), u"-.5"_s);
    EXPECT_EQ(RandomNumber(0.25, 0, 1, 1), u".2"_s);
    EXPECT_EQ(RandomNumber(0.75, 0, 1, 1), u".8"_s);
    EXPECT_EQ(RandomNumber(0.5, 0, 1, 0), u"0"_s);
    EXPECT_EQ(RandomNumber(0.5, 1, 2, 0), u"2"_s);
    EXPECT_EQ(RandomNumber(0.25, 10, 2, 2), u"8"_s);
    EXPECT_EQ(RandomNumber(1.0 / 3, 0, 1, 15), u".333333333333333"_s);
    EXPECT_EQ(RandomNumber(1.0 / 3, 0, 1, 20), u".333333333333333"_s);
    EXPECT_EQ(RandomNumber(0.5, 0, 2e200, 15), u"1E+200"_s);
    EXPECT_THROW(RandomNumber(0.5, -1e308, 1e308, 2), RunTimeError);
    EXPECT_THROW(RandomNumber(0.5, 0, 1, -1), RunTimeError);
}

TEST(InsertTexts, RandomNumbersHaveTheirDigits)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> from(0, 1);
    for (int i = 0; i < RandomRuns; ++i) {
        const int digits = i % 6;
        const QString text = RandomNumber(from(random), -3, 4, digits);
        const double number = Val(text);
        ASSERT_GE(number, -3);
        ASSERT_LE(number, 4);
        const qsizetype point = text.indexOf(u'.');
        ASSERT_LE(point < 0 ? 0 : text.size() - point - 1, digits) << qPrintable(text);
    }
}

TEST(InsertTexts, AnInstrumentHasItsNameAsAComment)
{
    EXPECT_EQ(InstrumentText(u"1"_s, {}), u"instr 1\r\n\r\n;instrument body\r\n\r\nendin"_s);
    EXPECT_EQ(InstrumentText(u"1, 2"_s, u"low"_s),
              u"instr 1, 2 ; low\r\n\r\n;instrument body\r\n\r\nendin"_s);
}

TEST(InsertTexts, AMacroHasItsArgumentsInParentheses)
{
    EXPECT_EQ(MacroText(u"M"_s, {}, {}), u"#define M #;Replacement text here#"_s);
    EXPECT_EQ(MacroText(u"M"_s, u"a' 'b'"_s, u"$a + $b"_s), u"#define M(a'b) #$a + $b#"_s);
    EXPECT_EQ(MacroText(u"M"_s, u" ' '"_s, u"1"_s), u"#define M() #1#"_s);
    EXPECT_EQ(MacroText(u"M"_s, u" a b "_s, u"1"_s), u"#define M(a b) #1#"_s);
}

TEST(InsertTexts, MacroArgumentsAreThoseOfThePlainLoop)
{
    RandomText texts({u"'"_s, u"'"_s, u" "_s, u"a"_s, u"bc"_s, u"\t"_s, u"\u00e4"_s}, 10);
    for (int i = 0; i < RandomRuns; ++i) {
        const QString typed = texts.Next();
        ASSERT_EQ(MacroText(u"M"_s, typed, u"x"_s),
                  u"#define M"_s + oracle::MacroArguments(typed) + u" #x#"_s)
            << qPrintable(typed);
    }
}

TEST(InsertTexts, AFileBelowTheFolderIsNamedFromThere)
{
    const QString folder = u"/home/u/piece"_s;
    EXPECT_EQ(RelativeTo(folder, u"/home/u/piece/x.orc"_s), u"x.orc"_s);
    EXPECT_EQ(RelativeTo(folder, u"/home/u/piece/in/x.orc"_s), u"in/x.orc"_s);
    EXPECT_EQ(RelativeTo(folder, u"/home/u/piece//x.orc"_s), u"x.orc"_s);
    for (const QString &path :
         {u"/home/u/piece2/x.orc"_s, u"/home/u/x.orc"_s, u"/home/u/piece"_s, u"/home/u/piece/"_s, u"x.orc"_s,
          QString(), u"/home/u/piece/../x.orc"_s, u"/home/u/piece/in/../../x.orc"_s, u"/home/u/piece/.."_s})
        EXPECT_EQ(RelativeTo(folder, path), path);
    EXPECT_EQ(RelativeTo(folder, u"/home/u/piece/..x/y...orc"_s), u"..x/y...orc"_s);
    EXPECT_EQ(RelativeTo({}, u"/x.orc"_s), u"/x.orc"_s);
#ifdef Q_OS_LINUX
    EXPECT_EQ(RelativeTo(folder, u"/home/u/Piece/x.orc"_s), u"/home/u/Piece/x.orc"_s);
#endif
}

TEST(InsertTexts, AnIncludeIsRelativeUnlessQualified)
{
    const QString folder = u"/home/u/piece"_s;
    EXPECT_EQ(IncludeName(u"/home/u/piece/in/x.orc"_s, folder, false), u"in/x.orc"_s);
    EXPECT_EQ(IncludeName(u"/home/u/piece/in/x.orc"_s, folder, true), u"/home/u/piece/in/x.orc"_s);
    EXPECT_EQ(IncludeName(u"in/x.orc"_s, folder, true), u"/home/u/piece/in/x.orc"_s);
    EXPECT_EQ(IncludeName(u"in/x.orc"_s, folder, false), u"in/x.orc"_s);
    EXPECT_EQ(IncludeName(u"/x.orc"_s, folder, false), u"/x.orc"_s);
    EXPECT_EQ(IncludeName({}, folder, true), QString());
    EXPECT_EQ(IncludeName(u"x.orc"_s, {}, true), u"x.orc"_s);
    EXPECT_EQ(IncludeText(u"in/x.orc"_s), u"#include \"in/x.orc\""_s);
}

TEST(InsertTexts, ASeparatorHasItsTextInTheMiddle)
{
    EXPECT_EQ(SeparatorLine(u"-"_s, 8, {}), u"--------"_s);
    EXPECT_EQ(SeparatorLine(u"-"_s, 8, u"ab"_s), u"-- ab --"_s);
    // What does not come out even is a half on each side, and halves go to the even neighbour.
    EXPECT_EQ(SeparatorLine(u"-"_s, 9, u"ab"_s), u"-- ab --"_s);
    EXPECT_EQ(SeparatorLine(u"-"_s, 7, u"ab"_s), u"-- ab --"_s);
    EXPECT_EQ(SeparatorLine(u"-"_s, 5, u"ab"_s), u" ab "_s);
    EXPECT_EQ(SeparatorLine(u"-"_s, 4, u"ab"_s), u"--- ab ---"_s);
    EXPECT_EQ(SeparatorLine(u"-"_s, 0, u"ab"_s), u"--- ab ---"_s);
    EXPECT_EQ(SeparatorLine(u"-"_s, 0, {}), QString());
    EXPECT_EQ(SeparatorLine(u"-"_s, -5, {}), QString());
}

TEST(InsertTexts, OnlyTheFirstCharacterOfAStyleCounts)
{
    EXPECT_EQ(StyleCharacter(u"=-"_s), u"="_s);
    EXPECT_EQ(StyleCharacter({}), u" "_s);
    EXPECT_EQ(StyleCharacter(u"\U0001D11E-"_s), u"\U0001D11E"_s);
}

TEST_F(Inserts, ASeparatorStandsUnderTheCaretsLine)
{
    settings.SaveNumber(Keys::LineWidth, 4);
    EXPECT_EQ(Separated(u"ab\ncd\n"_s, 1), u"ab\n;----\ncd\n"_s);
    EXPECT_EQ(text.selection, (TextSpan{9, 9}));
    EXPECT_EQ(Separated(u"ab\ncd\n"_s, 2), u"ab\n;----\ncd\n"_s);
    EXPECT_EQ(Separated(u"ab\ncd\n"_s, 3, LineStyle::Second), u"ab\ncd\n;****\n"_s);
    EXPECT_EQ(Separated(u"ab\ncd\n"_s, 6), u"ab\ncd\n;----\n"_s);
    EXPECT_EQ(Separated({}, 0), u";----\n"_s);
    settings.SaveText(Keys::LineStyle1, u"=x"_s);
    EXPECT_EQ(Separated({}, 0), u";====\n"_s);
    settings.SaveText(Keys::LineStyle1, u"\U0001D11E"_s);
    EXPECT_EQ(Separated({}, 0), u";\U0001D11E\U0001D11E\U0001D11E\U0001D11E\n"_s);
}

TEST_F(Inserts, ASeparatorStandsUnderTheLineWhereTheSelectionBegins)
{
    settings.SaveNumber(Keys::LineWidth, 2);
    text.SetText(u"ab\ncd\nef\n"_s);
    text.SetSelection(1, 8);
    InsertLineSeparation(editor, LineStyle::First);
    EXPECT_EQ(text.text, u"ab\n;--\ncd\nef\n"_s);
}

TEST_F(Inserts, ASeparatorOfAMadWidthIsCut)
{
    settings.SaveNumber(Keys::LineWidth, 2000000000);
    EXPECT_EQ(Separated({}, 0), u';' + u"-"_s.repeated(32767) + u'\n');
    settings.SaveNumber(Keys::LineWidth, -1);
    EXPECT_EQ(Separated({}, 0), u";\n"_s);
}

TEST_F(Inserts, WithCtrlASeparatorAsksForItsText)
{
    desktop.keysDown = {KeyCode::Ctrl};
    desktop.ExpectInput(u"Line Separation"_s, u"Type line text."_s, u"Voices"_s);
    EXPECT_EQ(Separated({}, 0).size(), 66);
    EXPECT_TRUE(text.text.contains(u"--- Voices ---"_s));
    desktop.ExpectInput(u"Line Separation"_s, u"Type line text."_s, {});
    EXPECT_EQ(Separated(u"a"_s, 0), u"a"_s);
    desktop.ExpectInput(u"Line Separation"_s, u"Type line text."_s, u""_s);
    EXPECT_EQ(Separated(u"a"_s, 0), u"a"_s);
}

TEST_F(Inserts, SeparatorsAreThoseOfThePlainLoop)
{
    RandomText texts({u"a"_s, u"bc"_s, u"\n"_s, u" "_s, u";"_s}, 12);
    RandomText words({u"a"_s, u" "_s, u"bcd"_s}, 5, 3);
    settings.SaveText(Keys::LineStyle1, u"+"_s);
    int width = -1;
    for (int i = 0; i < RandomRuns; ++i) {
        if (i % 100 == 0)
            settings.SaveNumber(Keys::LineWidth, width = texts.Number(0, 16));
        const QString before = texts.Next();
        const qsizetype caret = texts.Number(0, int(before.size()));
        const QString typed = i % 2 == 0 ? QString() : words.Next();
        desktop.keysDown.clear();
        if (!typed.isEmpty()) {
            desktop.keysDown = {KeyCode::Ctrl};
            desktop.ExpectInput(u"Line Separation"_s, u"Type line text."_s, typed);
        }
        const auto [expected, place] = oracle::WithLineSeparation(before, caret, u'+', width, typed);
        ASSERT_EQ(Separated(before, caret), expected) << qPrintable(before) << caret << ' ' << width;
        ASSERT_EQ(text.selection, (TextSpan{place, place}));
    }
}

TEST_F(Inserts, AFilenameIsNamedFromTheDocument)
{
    document.CurrentFile = u"/home/u/piece/song.orc"_s;
    EXPECT_EQ(Named(u"/home/u/piece/kick.wav"_s), u"kick.wav"_s);
    EXPECT_EQ(Named(u"/home/u/piece/in\\kick.wav"_s), u"in/kick.wav"_s);
    EXPECT_EQ(Named(u"/home/u/kick.wav"_s), u"/home/u/kick.wav"_s);
    EXPECT_EQ(Named(u"/home/u/piece2/kick.wav"_s), u"/home/u/piece2/kick.wav"_s);
    EXPECT_EQ(Named({}), u"a"_s);
    document.CurrentFile.clear();
    EXPECT_EQ(Named(u"/home/u/kick.wav"_s), u"/home/u/kick.wav"_s);
}

} // namespace zelvane::test
