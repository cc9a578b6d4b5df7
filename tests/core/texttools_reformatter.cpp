// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/reformatter.h"

#include "core/oracle/reformatteroracle.h"
#include "platform/runtimeerror.h"
#include "shell/editorkeys.h"
#include "shell/tabwidth.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

using A = FormattingAlgorithm;

QString Formatted(A algorithm, const QString &text, int tabSpaces = 8)
{
    return Reformat(algorithm, text, tabSpaces).value();
}

class EachAlgorithm : public testing::TestWithParam<int>
{
};

TEST_P(EachAlgorithm, GivesWhatItsLoopGives)
{
    test::RandomText texts({u" "_s, u" "_s, u"\t"_s, u"\n"_s, u"\n"_s, u"\r\n"_s, u"\r"_s, u"a"_s, u"bc"_s},
                           20, 100 + GetParam());
    for (int i = 0; i < 60000; ++i) {
        const QString text = texts.Next();
        const int tabSpaces = texts.Number(1, 9);
        ASSERT_EQ(Formatted(A(GetParam()), text, tabSpaces),
                  oracle::Reformatter::Run(GetParam(), text, tabSpaces))
            << "from " << testing::PrintToString(text) << " with " << tabSpaces;
    }
}

INSTANTIATE_TEST_SUITE_P(Reformatter, EachAlgorithm, testing::Range(0, 10));

TEST(Reformatter, MultipleSpacesToOneTab)
{
    EXPECT_EQ(Formatted(A::MultipleSpacesToOneTab, u"a  b"_s), u"a\tb"_s);
    EXPECT_EQ(Formatted(A::MultipleSpacesToOneTab, u"a b"_s), u"a b"_s);
    EXPECT_EQ(Formatted(A::MultipleSpacesToOneTab, u"a  "_s), u"a\t "_s);
    EXPECT_EQ(Formatted(A::MultipleSpacesToOneTab, u"a      "_s), u"a\t "_s);
}

TEST(Reformatter, BlanksLeftAtTheEnd)
{
    EXPECT_EQ(Formatted(A::OneOrMultipleSpacesToOneTab, u"a   "_s), u"a\t\t"_s);
    EXPECT_EQ(Formatted(A::OneOrMultipleSpacesToOneTab, u"a "_s), u"a\t"_s);
    EXPECT_EQ(Formatted(A::MultipleSpacesToOneSpace, u"a     "_s), u"a  "_s);
    EXPECT_EQ(Formatted(A::MultipleSpacesToOneSpace, u"a   b"_s), u"a b"_s);
}

TEST(Reformatter, TabsCountOneColumnMore)
{
    EXPECT_EQ(Formatted(A::OneTabToMultipleSpaces, u"\t"_s, 4), u"  "_s);
    EXPECT_EQ(Formatted(A::OneTabToMultipleSpaces, u"x\t"_s, 4), u"x "_s);
    EXPECT_EQ(Formatted(A::OneTabToMultipleSpaces, u"xx\t"_s, 4), u"xx    "_s);
    EXPECT_EQ(Formatted(A::OneTabToMultipleSpaces, u"xxx\t"_s, 4), u"xxx   "_s);
    EXPECT_EQ(Formatted(A::OneTabToMultipleSpaces, u"abc\n\tx"_s, 4), u"abc\n  x"_s);
}

TEST(Reformatter, ATabWidthBelowOneIsRefused)
{
    for (int width : {0, -1}) {
        EXPECT_THROW(Reformat(A::OneTabToMultipleSpaces, u"\t", width), RunTimeError);
        EXPECT_EQ(Formatted(A::OneTabToOneSpace, u"\t"_s, width), u" "_s);
    }
}

TEST(Reformatter, ATextTooLargeForTheEditorIsRefused)
{
    EXPECT_THROW(Reformat(A::OneTabToMultipleSpaces, u"\t\t\t", 1'000'000'000), RunTimeError);
}

TEST(Reformatter, TrailingBlanksBehindAShortenedLineStay)
{
    EXPECT_EQ(Formatted(A::RemoveTrailing, u"a    \nb \nc\n"_s), u"a\nb \nc\n"_s);
    EXPECT_EQ(Formatted(A::RemoveTrailing, u"a \nbc \n"_s), u"a\nbc\n"_s);
    EXPECT_EQ(Formatted(A::RemoveTrailing, u"a \t"_s), u"a \t"_s);
}

TEST(Reformatter, TheFirstLineKeepsItsIndent)
{
    EXPECT_EQ(Formatted(A::RemoveLineIndent, u"  a\n  b\n\tc"_s), u"  a\nb\nc"_s);
}

TEST(Reformatter, BlankLines)
{
    EXPECT_EQ(Formatted(A::MultipleBlankLinesToOne, u"a\n\n\n\n\nb"_s), u"a\n\nb"_s);
    EXPECT_EQ(Formatted(A::MultipleBlankLinesToOne, u"a\n \n \n \nb"_s), u"a\n \n \n \nb"_s);
    EXPECT_EQ(Formatted(A::RemoveBlankLines, u"a\n\n\nb"_s), u"a\nb"_s);
    EXPECT_EQ(Formatted(A::RemoveBlankLines, u"a\n \n\nb"_s), u"a\n \nb"_s);
    EXPECT_EQ(Formatted(A::RemoveBlankLines, u"\n\nb"_s), u"\nb"_s);
}

TEST(Reformatter, AStoppedRunGivesNothing)
{
    const QString text(300000, u' ');
    for (int algorithm = 0; algorithm < 10; ++algorithm) {
        int asked = 0;
        const QString lines = algorithm < 5 ? text : QString(u"\t\n"_s).repeated(150000);
        EXPECT_FALSE(Reformat(A(algorithm), lines, 8, [&] { return ++asked < 1; }).has_value()) << algorithm;
        EXPECT_EQ(asked, 1);
        EXPECT_TRUE(Reformat(A(algorithm), lines, 8, [] { return true; }).has_value());
    }
}

TEST(Reformatter, LongRunsAreLinear)
{
    // Each of these takes hours when a step costs what stands before or behind it.
    const qsizetype n = 4'000'000;
    for (int algorithm = 0; algorithm < 10; ++algorithm) {
        EXPECT_LE(Formatted(A(algorithm), QString(n, u'\n'), 8).size(), n);
        EXPECT_LE(Formatted(A(algorithm), QString(n, u' '), 8).size(), n);
        EXPECT_GE(Formatted(A(algorithm), QString(n / 8, u'\t'), 8).size(), n / 8);
        EXPECT_LE(Formatted(A(algorithm), QString(u" \n"_s).repeated(n / 2), 8).size(), n);
    }
}

TEST(Reformatter, TextsOfTheList)
{
    const QString names[] = {u"One space to one tab"_s,
                             u"Multiple spaces to one tab"_s,
                             u"One or multiple spaces to one tab"_s,
                             u"Multiple spaces to one space"_s,
                             u"One tab to one space"_s,
                             u"One tab to multiple spaces"_s,
                             u"Remove trailing spaces and tabs"_s,
                             u"Remove line indent"_s,
                             u"Multiple blank lines to one blank line"_s,
                             u"Remove blank lines"_s};
    const QString descriptions[] = {
        u"Replace spaces with tab characters."_s,
        u"Replace consecutive multiple spaces with a single tab character."_s,
        u"Replace single spaces or consecutive multiple spaces with a single tab character."_s,
        u"Replace consecutive multiple spaces with a single space."_s,
        u"Replace tab characters with spaces."_s,
        u"Replace tab characters with a variable number of spaces in order to mantain tabulation. This algorythm uses the 'Tab spaces' setting to determine the number of spaces to be inserted."_s,
        u"Remove spaces and tab characters at the end of each line."_s,
        u"Remove spaces and tab characters at the beginning of each line."_s,
        u"Replace consecutive multiple blank lines with a single blank line. Note that lines containing only spaces or tabs are not considered blank."_s,
        u"Remove all blank lines. Note that lines containing only spaces or tabs are not considered blank."_s};
    ASSERT_EQ(FormattingAlgorithmTexts().size(), 10u);
    for (size_t row = 0; row < 10; ++row) {
        EXPECT_EQ(FormattingAlgorithmTexts()[row].name, names[row]);
        EXPECT_EQ(FormattingAlgorithmTexts()[row].description, descriptions[row]);
    }
}

struct Reformatting : testing::Test, test::TestContext {
};

TEST_F(Reformatting, NothingSelectedIsTheWholeText)
{
    text.SetText(u"a  b\nc  d"_s);
    text.SetSelection(3, 3);
    text.EmptyUndoBuffer();
    EXPECT_TRUE(ReformatSelection(editor, A::MultipleSpacesToOneTab));
    EXPECT_EQ(text.text, u"a\tb\nc\td"_s);
    EXPECT_EQ(text.selection, (TextSpan{0, 7}));
    EXPECT_EQ(text.undoSteps, 1);
}

TEST_F(Reformatting, ColumnsCountFromTheStartOfTheSelection)
{
    settings.SaveNumber(Keys::TabSpaces, 4);
    text.SetText(u"xyz\ta"_s);
    text.SetSelection(3, 5);
    EXPECT_TRUE(ReformatSelection(editor, A::OneTabToMultipleSpaces));
    EXPECT_EQ(text.text, u"xyz  a"_s);
    EXPECT_EQ(text.selection, (TextSpan{3, 6}));
}

TEST_F(Reformatting, ATabIsNoWiderThanTheWidest)
{
    settings.SaveNumber(Keys::TabSpaces, 999999999);
    text.SetText(u"a\tb"_s);
    EXPECT_TRUE(ReformatSelection(editor, A::OneTabToMultipleSpaces));
    EXPECT_EQ(text.text, Reformat(A::OneTabToMultipleSpaces, u"a\tb", WidestTab));
}

TEST_F(Reformatting, AStoppedRunLeavesTheText)
{
    text.SetText(u"a  b"_s);
    text.EmptyUndoBuffer();
    EXPECT_FALSE(ReformatSelection(editor, A::MultipleSpacesToOneTab, [] { return false; }));
    EXPECT_EQ(text.text, u"a  b"_s);
    EXPECT_EQ(text.undoSteps, 0);
}

TEST_F(Reformatting, OnlyOneAlgorithmAsksForTheTabWidth)
{
    settings.SaveStoredText(Keys::TabSpaces, u"many"_s);
    for (int algorithm = 0; algorithm < 10; ++algorithm) {
        text.SetText(u"a\tb"_s);
        text.SetSelection(0, 0);
        EXPECT_TRUE(ReformatSelection(editor, A(algorithm))) << algorithm;
        const bool usesIt = A(algorithm) == A::OneTabToMultipleSpaces;
        EXPECT_EQ(settings.TakeUnreadable().size(), usesIt ? 1u : 0u) << algorithm;
        if (usesIt) {
            EXPECT_EQ(text.text, Reformat(A(algorithm), u"a\tb", 8)) << "the default";
        }
    }
}

} // namespace
} // namespace zelvane
