// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/textops.h"

#include "core/oracle/textopsoracle.h"
#include "language/blockcomments.h"
#include "shell/editorkeys.h"
#include "shell/tabwidth.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

constexpr int Rounds = 60000;

test::RandomText CommentTexts()
{
    return test::RandomText({u"/"_s, u"*"_s, u"/*"_s, u"*/"_s, u";"_s, u"\n"_s, u"\n"_s, u"a"_s, u" "_s});
}

TEST(TextOps, RemoveCommentsGivesWhatItsLoopGives)
{
    auto texts = CommentTexts();
    for (int i = 0; i < Rounds; ++i) {
        const QString text = texts.Next();
        ASSERT_EQ(RemoveCommentsFromText(text), oracle::RemoveComments(text)) << testing::PrintToString(text);
    }
}

TEST(TextOps, CommentAndUncommentGiveWhatTheirLoopsGive)
{
    auto texts = CommentTexts();
    for (int i = 0; i < Rounds; ++i) {
        const QString text = texts.Next();
        ASSERT_EQ(CommentText(text, false), oracle::Comment(text, false)) << testing::PrintToString(text);
        ASSERT_EQ(CommentText(text, true), oracle::Comment(text, true)) << testing::PrintToString(text);
        ASSERT_EQ(UncommentText(text), oracle::Uncomment(text)) << testing::PrintToString(text);
    }
}

TEST(TextOps, IndentGivesWhatItsLoopGives)
{
    test::RandomText texts({u"\t"_s, u"  "_s, u" "_s, u"\n"_s, u"\n"_s, u"a"_s});
    for (int i = 0; i < Rounds; ++i) {
        const QString text = texts.Next();
        const QString unit = texts.Number(0, 1) ? u"\t"_s : QString(texts.Number(1, 4), u' ');
        ASSERT_EQ(IndentText(text, unit), oracle::Indent(text, unit)) << testing::PrintToString(text);
        ASSERT_EQ(UnindentText(text, unit), oracle::Unindent(text, unit)) << testing::PrintToString(text);
    }
}

TEST(TextOps, ChangeCaseGivesWhatItsLoopGives)
{
    test::RandomText texts({u"a"_s, u"B"_s, u" "_s, u"\n"_s, u"("_s, u"1"_s, u"\u00e9"_s, u"\u00df"_s,
                            u"\u0130"_s, u"\u2170"_s, u"\u00a0"_s});
    for (int i = 0; i < Rounds; ++i) {
        const QString text = texts.Next();
        for (const CaseChange change : {CaseChange::Upper, CaseChange::Lower, CaseChange::Capitalize})
            ASSERT_EQ(ChangeCaseOfText(text, change), oracle::ChangeCase(text, int(change)))
                << testing::PrintToString(text) << " change " << int(change);
    }
}

TEST(TextOps, IsCommentedGivesWhatItsWalkGives)
{
    auto texts = CommentTexts();
    for (int i = 0; i < Rounds; ++i) {
        const QString text = texts.Next();
        const auto comments = ParseCommentRanges(text);
        for (qsizetype pos = 0; pos <= text.size(); ++pos)
            ASSERT_EQ(IsCommented(text, pos, comments), oracle::InComment(text, pos))
                << testing::PrintToString(text) << " at " << pos;
    }
}

TEST(TextOps, LongCommentsAreLinear)
{
    const qsizetype n = 4'000'000;
    EXPECT_EQ(RemoveCommentsFromText(QString(u";\n"_s).repeated(n)), QString());
    EXPECT_EQ(RemoveCommentsFromText(QString(u"/**/"_s).repeated(n)), QString());
    EXPECT_EQ(RemoveCommentsFromText(QString(u"//**/"_s).repeated(n)).size(), n);
    EXPECT_EQ(RemoveCommentsFromText(QString(n, u'/')).size(), n);
    EXPECT_EQ(RemoveCommentsFromText(QString(u"/* "_s).repeated(n)).size(), 3 * n);
}

struct TextCommands : testing::Test, test::TestContext {
    void Set(const QString &newText, qsizetype start = 0, qsizetype end = 0)
    {
        text.SetText(newText);
        text.SetSelection(start, end);
        text.undoSteps = 0;
    }
    void ExpectText(const QString &expected, TextSpan selection)
    {
        EXPECT_EQ(text.text, expected);
        EXPECT_EQ(text.selection.start, selection.start);
        EXPECT_EQ(text.selection.end, selection.end);
        EXPECT_EQ(text.undoSteps, 1);
    }
};

TEST_F(TextCommands, Helpers)
{
    Set(u"ab\ncde\n\nf"_s);
    EXPECT_EQ(GetLineStart(text, 5), 3);
    EXPECT_EQ(GetLineEnd(text, 5), 6);
    EXPECT_EQ(GetColumn(text, 5), 3);
    EXPECT_EQ(GetColumn(text, 3), 1);
    EXPECT_EQ(GetLineHalf(text, 4), u"cd"_s);
    EXPECT_EQ(GetLineHalf(text, 8), u"f"_s);
    EXPECT_EQ(GetLineHalf(text, 9), u"f"_s);
    EXPECT_EQ(GetLineStart(text, 7), 7);
    EXPECT_EQ(GetLineEnd(text, 7), 7);
    EXPECT_EQ(GetLineEnd(text, 9), 9);
}

TEST_F(TextCommands, SelectLineGoesToTheNextLine)
{
    Set(u"ab\ncde\nf"_s, 4, 4);
    SelectLine(text, 3);
    EXPECT_EQ(text.selection, (TextSpan{3, 7}));
    Set(u"ab\ncde\nf"_s, 7, 8);
    SelectLine(text, 7);
    EXPECT_EQ(text.selection, (TextSpan{7, 8}));
    Set(u"ab\ncde\nf"_s, 0, 8);
    SelectLine(text, 3);
    EXPECT_EQ(text.selection, (TextSpan{0, 8})) << "the selection ends on another line";
}

TEST_F(TextCommands, IsCommentedIsStrict)
{
    const QString line = u"a /*b*/ c"_s;
    const auto comments = ParseCommentRanges(line);
    EXPECT_FALSE(IsCommented(line, 2, comments));
    EXPECT_TRUE(IsCommented(line, 3, comments));
    EXPECT_TRUE(IsCommented(line, 6, comments));
    EXPECT_FALSE(IsCommented(line, 7, comments)) << "the exact end is outside";
    EXPECT_TRUE(IsCommented(u";a"_s, 0, {}));
    EXPECT_FALSE(IsCommented(u";a\nb"_s, 3, {}));
    EXPECT_FALSE(IsCommented(QString(), 0, {}));
}

TEST_F(TextCommands, IsCommentedWalksOverTheLineOnly)
{
    EXPECT_FALSE(IsCommented(u"a;b", 0, {})) << "the mark stands behind the place";
    EXPECT_TRUE(IsCommented(u"a;b", 1, {}));
    EXPECT_TRUE(IsCommented(u"a;b", 3, {})) << "the end of the text";
    EXPECT_FALSE(IsCommented(u";a\rb", 3, {}));
    const QString open = u"a /* b"_s;
    EXPECT_FALSE(IsCommented(open, 5, ParseCommentRanges(open))) << "nothing closes it";
}

TEST_F(TextCommands, CommentWithNothingSelectedStaysAtTheCaret)
{
    Set(u"abc"_s, 1, 1);
    CommentSelection(editor);
    ExpectText(u"a;bc"_s, {2, 2});
}

TEST_F(TextCommands, CommentAPieceOfALine)
{
    Set(u"abc\nd"_s, 1, 4);
    CommentSelection(editor);
    ExpectText(u"a;bc\nd"_s, {1, 5});
}

TEST_F(TextCommands, CommentSeveralLines)
{
    Set(u"a\nb\nc"_s, 0, 4);
    CommentSelection(editor);
    ExpectText(u";a\n;b\nc"_s, {0, 6});
}

TEST_F(TextCommands, CommentSeveralLinesInTheBlockForm)
{
    settings.SaveFlag(Keys::CppComments, true);
    Set(u"a\nb\nc"_s, 0, 4);
    CommentSelection(editor);
    ExpectText(u"/*a\nb\n*/c"_s, {0, 8});
    Set(u"a\nb\nc"_s, 0, 2);
    CommentSelection(editor);
    ExpectText(u";a\nb\nc"_s, {0, 3});
}

TEST_F(TextCommands, UncommentTakesEveryMark)
{
    Set(u";a \";\" /*b*/\n;c"_s, 0, 13);
    UncommentSelection(editor);
    ExpectText(u"a \"\" b\n;c"_s, {0, 7});
}

TEST_F(TextCommands, RemoveCommentsOfTheWholeText)
{
    Set(u"a ; x\n; whole line\nb /* y\n */ c"_s, 3, 3);
    RemoveComments(editor);
    ExpectText(u"a \nb  c"_s, {0, 0});
    EXPECT_EQ(status.shown, (QStringList{u"Removing comments..."_s, QString()}));
}

TEST_F(TextCommands, RemoveCommentsIsQuietAndSaysWhetherItRemoved)
{
    text.SetText(u"a ; b"_s);
    document.Loading = false;
    EXPECT_TRUE(RemoveComments(editor));
    EXPECT_FALSE(document.Loading);
    EXPECT_FALSE(RemoveComments(editor));
    EXPECT_FALSE(document.Loading);
}

TEST_F(TextCommands, RemoveCommentsOfASelection)
{
    Set(u";a\n;b\n;c"_s, 3, 6);
    RemoveComments(editor);
    ExpectText(u";a\n;c"_s, {3, 3});
}

TEST_F(TextCommands, IndentTakesWholeLines)
{
    Set(u"ab\ncd\nef"_s, 1, 4);
    IndentSelection(editor, false);
    ExpectText(u"\tab\n\tcd\nef"_s, {0, 7});
    text.undoSteps = 0;
    IndentSelection(editor, true);
    ExpectText(u"ab\ncd\nef"_s, {0, 5});
}

TEST_F(TextCommands, IndentTakesTheLineBehindASelectedLineEnd)
{
    Set(u"ab\ncd\n"_s, 0, 3);
    IndentSelection(editor, false);
    ExpectText(u"\tab\n\tcd\n"_s, {0, 7});
}

TEST_F(TextCommands, IndentByBlanks)
{
    settings.SaveFlag(Keys::TabInsertSpaces, true);
    settings.SaveNumber(Keys::TabSpaces, 3);
    Set(u"ab\ncd"_s, 0, 5);
    IndentSelection(editor, false);
    ExpectText(u"   ab\n   cd"_s, {0, 11});
    Set(u"   ab\n  cd"_s, 0, 10);
    IndentSelection(editor, true);
    ExpectText(u"ab\n  cd"_s, {0, 7});
}

TEST_F(TextCommands, IndentByNoMoreThanTheWidestTab)
{
    settings.SaveFlag(Keys::TabInsertSpaces, true);
    const QString widest(WidestTab, u' ');
    for (const double spaces : {double(WidestTab), WidestTab + 1.0, 2147483647.0}) {
        settings.SaveNumber(Keys::TabSpaces, spaces);
        Set(u"ab\ncd"_s, 0, 5);
        IndentSelection(editor, false);
        ExpectText(widest + u"ab\n"_s + widest + u"cd"_s, {0, 2 * WidestTab + 5});
    }
    settings.SaveNumber(Keys::TabSpaces, -3);
    Set(u"ab"_s, 0, 2);
    IndentSelection(editor, false);
    ExpectText(u"ab"_s, {0, 2});
}

TEST_F(TextCommands, ChangeCaseOfTheWholeTextOrASelection)
{
    Set(u"hello WORLD\n(foo) bar2baz"_s);
    ChangeCase(editor, CaseChange::Capitalize);
    ExpectText(u"Hello World\n(Foo) Bar2baz"_s, {0, 25});
    Set(u"hello"_s, 1, 3);
    ChangeCase(editor, CaseChange::Upper);
    ExpectText(u"hELlo"_s, {1, 3});
    Set(u"\u00C4\u00DFX"_s);
    ChangeCase(editor, CaseChange::Lower);
    ExpectText(u"\u00E4\u00DFx"_s, {0, 3});
}

struct GoTo : TextCommands {
    void Ask(const std::optional<QString> &answer)
    {
        Set(u"a\nb\nc\nd\ne"_s, 4, 4);
        desktop.ExpectInput(u"Go to line"_s,
                            u"Type the line number you want to go to.\n(Use + and - to move from current "
                            "position).\n\nTotal lines: 5"_s,
                            answer);
    }
    void Goes(const QString &answer, qsizetype line)
    {
        Ask(answer);
        GoToLine(editor);
        EXPECT_EQ(text.selection, (TextSpan{line * 2, line * 2})) << answer.toStdString();
        EXPECT_EQ(text.firstVisibleLine, line);
    }
    void IsInvalid(const QString &answer)
    {
        Ask(answer);
        desktop.ExpectMessage({.text = u"Invalid line number."_s, .icon = BoxIcon::Warning});
        GoToLine(editor);
        EXPECT_EQ(text.selection, (TextSpan{4, 4})) << answer.toStdString();
    }
};

TEST_F(GoTo, Lines)
{
    Goes(u"1"_s, 0);
    Goes(u"5"_s, 4);
    Goes(u"+2"_s, 4);
    Goes(u"-2"_s, 0);
    Goes(u"+"_s, 2);
    Goes(u"3rd"_s, 2);
    Goes(u" 4 "_s, 3);
    Goes(u"2e1"_s, 1);
    Goes(u"2.9"_s, 1);
    Goes(u"+1e9"_s, 3);
    Goes(u"+-1"_s, 2);
    IsInvalid(u"0"_s);
    IsInvalid(u"6"_s);
    IsInvalid(u"+3"_s);
    IsInvalid(u"-3"_s);
    IsInvalid(u"abc"_s);
    IsInvalid(u"e1"_s);
    IsInvalid(QString(400, u'9'));
    IsInvalid(u'-' + QString(400, u'9'));
}

TEST_F(GoTo, CancelAndNothing)
{
    for (const auto &answer : {std::optional<QString>(), std::optional<QString>(QString())}) {
        Ask(answer);
        GoToLine(editor);
        EXPECT_EQ(text.selection, (TextSpan{4, 4}));
    }
}

} // namespace
} // namespace zelvane
