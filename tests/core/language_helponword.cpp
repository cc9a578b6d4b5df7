// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/helponword.h"
#include "language/normalizespaces.h"
#include "shell/toolkeys.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// The text rule as a loop over whole strings.
QString NormalizeByReplacing(QString text)
{
    for (const QString &separator : {u"\t"_s, u"\n"_s, u"\r"_s})
        text.replace(separator, u" "_s);
    while (text.startsWith(u' '))
        text.remove(0, 1);
    while (text.endsWith(u' '))
        text.chop(1);
    while (text.contains(u"  "_s))
        text.replace(u"  "_s, u" "_s);
    return text;
}

class HelpOnAWord : public ::testing::Test
{
protected:
    void SetUp() override
    {
        context.settings.SaveText(Keys::Help, u"/manual/csound.hlp"_s);
        context.document.CurrentFile = u"/piece.orc"_s;
        context.text.SetText(u"a  oscil \t10\n"_s);
    }
    void ExpectHelp(const QString &parameters, const QString &file = u"/manual/csound.hlp"_s)
    {
        context.desktop.ExpectShellRun({.file = file, .parameters = parameters});
    }

    TestContext context;
};

} // namespace

TEST(NormalizeSpaces, IsThatOfReplacingUntilNothingIsLeft)
{
    RandomText random(
        {u" "_s, u"  "_s, u"\t"_s, u"\n"_s, u"\r"_s, u"\r\n"_s, u"a"_s, u"b c"_s, u"\u00a0"_s, u"\f"_s});
    for (int i = 0; i < 20000; ++i) {
        const QString text = random.Next();
        ASSERT_EQ(NormalizeSpaces(text), NormalizeByReplacing(text)) << ::testing::PrintToString(text);
    }
    EXPECT_EQ(NormalizeSpaces(u" \t a \r\n b\n"_s), u"a b"_s);
    EXPECT_EQ(NormalizeSpaces(u" \t\n"_s), QString());
}

TEST_F(HelpOnAWord, WithoutAFileThePreferencesAreOffered)
{
    const MessageBoxRequest question{
        .text = u"You should first set a help file. Do you want to open the Preferences dialog box now?"_s,
        .icon = BoxIcon::Warning,
        .buttons = BoxButtons::YesNo};
    context.settings.SaveText(Keys::Help, QString());
    context.desktop.ExpectMessage(question, BoxAnswer::No);
    HelpOnWord(context.editor);
    EXPECT_TRUE(context.windows.calls.isEmpty());
    context.desktop.ExpectMessage(question, BoxAnswer::Yes);
    HelpOnWord(context.editor);
    EXPECT_EQ(context.windows.calls, QStringList(u"preferences"_s));
}

TEST_F(HelpOnAWord, TheSelectedWordIsTheKeyword)
{
    context.text.SetSelection(1, 10);
    ExpectHelp(u"-k \"oscil\""_s);
    HelpOnWord(context.editor);
    EXPECT_EQ(context.status.text, u"Help keyword: oscil"_s);
}

TEST_F(HelpOnAWord, SeveralWordsAreOneKeyword)
{
    context.text.SetSelection(0, -1);
    ExpectHelp(u"-k \"a oscil 10\""_s);
    HelpOnWord(context.editor);
    EXPECT_EQ(context.status.text, u"Help keyword: a oscil 10"_s);
}

TEST_F(HelpOnAWord, QuotesInTheKeywordReachTheViewer)
{
    context.text.SetText(u"\"a b\""_s);
    context.text.SetSelection(0, -1);
    ExpectHelp(u"-k \"\"\"a b\"\"\""_s);
    HelpOnWord(context.editor);
}

TEST_F(HelpOnAWord, OneCharacterOrNoneOpensTheContents)
{
    for (const TextSpan selection : {TextSpan{0, 0}, TextSpan{0, 1}, TextSpan{0, 3}, TextSpan{1, 3}}) {
        context.text.selection = selection;
        ExpectHelp(u"-c"_s);
        HelpOnWord(context.editor);
    }
    EXPECT_TRUE(context.status.shown.isEmpty());
}

TEST_F(HelpOnAWord, TheKeywordHasLessThan256Characters)
{
    context.text.SetText(QString(256, u'x'));
    context.text.SetSelection(0, 256);
    ExpectHelp(u"-c"_s);
    HelpOnWord(context.editor);
    context.text.SetSelection(0, 255);
    ExpectHelp(u"-k \""_s + QString(255, u'x') + u'"');
    HelpOnWord(context.editor);
}

TEST_F(HelpOnAWord, AnotherTypeOfFileOrAnUnnamedDocumentIsLeftToTheShell)
{
    context.text.SetSelection(3, 8);
    context.document.CurrentFile.clear();
    ExpectHelp(QString());
    HelpOnWord(context.editor);
    context.document.CurrentFile = u"/piece.orc"_s;
    for (const QString &file : {u"/manual/index.html"_s, u"/manual/hlp.chm"_s, u"lp"_s}) {
        context.settings.SaveText(Keys::Help, file);
        ExpectHelp(QString(), file);
        HelpOnWord(context.editor);
    }
    EXPECT_TRUE(context.status.shown.isEmpty());
    context.settings.SaveText(Keys::Help, u"/manual/CSOUND.HlP"_s);
    ExpectHelp(u"-k \"oscil\""_s, u"/manual/CSOUND.HlP"_s);
    HelpOnWord(context.editor);
}

} // namespace zelvane::test
