// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/texttags.h"

#include "oracle/instrumentsoracle.h"
#include "platform/runtimeerror.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <optional>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomRuns = 20000;

struct Tags : testing::Test, TestContext {
    void Show(const QString &now, TextSpan selection = {})
    {
        text.SetText(now);
        text.SetSelection(selection.start, selection.end);
        text.EmptyUndoBuffer();
    }
};

} // namespace

TEST(TagText, IsWhatStandsBetween)
{
    EXPECT_EQ(GetTagText(u"T"_s, u"a<T>b\n</T>c</T><T>d</T>"), u"b\n"_s);
    EXPECT_EQ(GetTagText(u"T"_s, u"</T><T>b"), QString());
    EXPECT_EQ(GetTagText(u"T"_s, u"<t>b</t>"), QString());
    EXPECT_EQ(GetTagText(u"T"_s, u"<T></T>"), QString());
    EXPECT_EQ(GetTagText(u"T"_s, u"<T><T>b</T>"), u"<T>b"_s);
}

TEST_F(Tags, AreFoundWithTheirEnd)
{
    Show(u"ab<T>c</T>"_s);
    EXPECT_EQ(FindTag(text, u"T"_s), 5);
    EXPECT_EQ(FindTag(text, u"t"_s), -1);
    Show(u"</T>ab<T>c"_s);
    EXPECT_EQ(FindTag(text, u"T"_s), -1);
}

TEST_F(Tags, AreFilledInOneEdit)
{
    Show(u"<T>one</T> <T>two</T>"_s);
    EXPECT_EQ(SetTagText(editor, u"T"_s, u"\r\n2"_s, 2), (TextSpan{14, 16})); // a line end of one character
    EXPECT_EQ(text.text, u"<T>one</T> <T>\n2</T>"_s);
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_FALSE(SetTagText(editor, u"T"_s, u"3"_s, 13));
    EXPECT_FALSE(SetTagText(editor, u"T"_s, u"3"_s, 1000));
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_THROW(SetTagText(editor, u"T"_s, u"3"_s, -1), RunTimeError);
    EXPECT_THROW(SetTagText(editor, u"T"_s, u"3"_s, 0), RunTimeError);
}

TEST_F(Tags, AreFilledAsTheLoopTells)
{
    RandomText texts({u"<T>"_s, u"</T>"_s, u"<"_s, u"T>"_s, u"/"_s, u"x"_s, u"\n"_s, u"<t>"_s, u"é"_s});
    RandomText fillings({u"a"_s, u"<T>"_s, u"</T>"_s, u"\n"_s}, 3, 7);
    int filled = 0;
    for (int run = 0; run < RandomRuns; ++run) {
        const QString before = texts.Next();
        const QString filling = fillings.Next();
        const int start = texts.Number(1, int(before.size()) + 2);
        Show(before, {texts.Number(0, int(before.size())), before.size()});
        const std::optional<QString> expected = oracle::SetTagText(before, u"T"_s, filling, start);
        const std::optional<TextSpan> put = SetTagText(editor, u"T"_s, filling, start);
        ASSERT_EQ(put.has_value(), expected.has_value()) << before.toStdString();
        ASSERT_EQ(text.text, expected.value_or(before));
        if (put) {
            ASSERT_EQ(text.TextRange(put->start, put->end), filling);
        }
        filled += expected.has_value();
    }
    EXPECT_GT(filled, RandomRuns / 20);
}

TEST_F(Tags, LeaveTheSelectionAtItsCharacters)
{
    const auto after = [this](TextSpan selection, const QString &filling) {
        Show(u"abc<T>12345</T>xyz"_s, selection);
        EXPECT_TRUE(SetTagText(editor, u"T"_s, filling, 1));
        return text.selection;
    };
    EXPECT_EQ(after({1, 2}, u"123456789"_s), (TextSpan{1, 2}));
    EXPECT_EQ(after({16, 17}, u"123456789"_s), (TextSpan{20, 21}));
    EXPECT_EQ(after({16, 17}, {}), (TextSpan{11, 12}));
    EXPECT_EQ(after({8, 8}, u"123456789"_s), (TextSpan{8, 8}));
    EXPECT_EQ(after({8, 10}, u"1"_s), (TextSpan{7, 7}));
    EXPECT_EQ(after({1, 17}, {}), (TextSpan{1, 12}));
}

TEST_F(Tags, LeaveTheViewAtItsLines)
{
    const auto after = [this](qsizetype top, const QString &filling) {
        Show(u"1\n2\n<T>3\n</T>\n5\n6\n7"_s);
        text.firstVisibleLine = top;
        EXPECT_TRUE(SetTagText(editor, u"T"_s, filling, 1));
        return text.firstVisibleLine;
    };
    EXPECT_EQ(after(1, u"\n\n\n\n"_s), 1);
    EXPECT_EQ(after(2, u"\n\n\n\n"_s), 2);
    EXPECT_EQ(after(5, u"\n\n\n\n"_s), 8);
    EXPECT_EQ(after(5, {}), 4);
}

TEST_F(Tags, AreMadeAtTheEnd)
{
    Show(u"text"_s, {2, 4});
    EXPECT_TRUE(CreateTag(editor, u"T"_s, {}));
    EXPECT_EQ(text.text, u"text\n\n<T>\n</T>"_s);
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_EQ(text.selection, (TextSpan{2, 4}));
}

TEST_F(Tags, AreMadeInsideAnother)
{
    Show(u"a<P>b</P>"_s);
    EXPECT_TRUE(CreateTag(editor, u"T"_s, u"P"_s));
    EXPECT_EQ(text.text, u"a<P>\n\n<T>\n</T>b</P>"_s);
    desktop.ExpectMessage({.text = u"This project does not have a <Q> tag."_s, .icon = BoxIcon::Critical});
    EXPECT_FALSE(CreateTag(editor, u"T"_s, u"Q"_s));
    EXPECT_EQ(text.undoSteps, 1);
}

TEST_F(Tags, AreMadeAndFilledInOneEdit)
{
    Show(u"text"_s);
    AppendTag(editor, u"T"_s, u"\r\nfull\r\n"_s);
    EXPECT_EQ(text.text, u"text\n\n<T>\nfull\n</T>"_s);
    EXPECT_EQ(text.undoSteps, 1);
}

} // namespace zelvane::test
