// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/helponword.h"
#include "language/normalizespaces.h"
#include "oracle/scanoracle.h"
#include "platform/helpviewer.h"
#include "shell/toolkeys.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

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
        ASSERT_EQ(NormalizeSpaces(text), oracle::NormalizeSpaces(text)) << ::testing::PrintToString(text);
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
    HelpOnWord(context.editor, context.folder.path());
    EXPECT_TRUE(context.windows.calls.isEmpty());
    context.desktop.ExpectMessage(question, BoxAnswer::Yes);
    HelpOnWord(context.editor, context.folder.path());
    EXPECT_EQ(context.windows.calls, QStringList(u"preferences"_s));
}

TEST_F(HelpOnAWord, TheSelectedWordIsTheKeyword)
{
    context.text.SetSelection(1, 10);
    ExpectHelp(u"-k \"oscil\""_s);
    HelpOnWord(context.editor, context.folder.path());
    EXPECT_EQ(context.status.text, u"Help keyword: oscil"_s);
}

TEST_F(HelpOnAWord, SeveralWordsAreOneKeyword)
{
    context.text.SetSelection(0, -1);
    ExpectHelp(u"-k \"a oscil 10\""_s);
    HelpOnWord(context.editor, context.folder.path());
    EXPECT_EQ(context.status.text, u"Help keyword: a oscil 10"_s);
}

TEST_F(HelpOnAWord, QuotesInTheKeywordReachTheViewer)
{
    context.text.SetText(u"\"a b\""_s);
    context.text.SetSelection(0, -1);
    ExpectHelp(u"-k \"\"\"a b\"\"\""_s);
    HelpOnWord(context.editor, context.folder.path());
}

TEST_F(HelpOnAWord, OneCharacterOrNoneOpensTheContents)
{
    for (const TextSpan selection : {TextSpan{0, 0}, TextSpan{0, 1}, TextSpan{0, 3}, TextSpan{1, 3}}) {
        context.text.selection = selection;
        ExpectHelp(u"-c"_s);
        HelpOnWord(context.editor, context.folder.path());
    }
    EXPECT_TRUE(context.status.shown.isEmpty());
}

TEST_F(HelpOnAWord, TheKeywordHasLessThan256Characters)
{
    context.text.SetText(QString(256, u'x'));
    context.text.SetSelection(0, 256);
    ExpectHelp(u"-c"_s);
    HelpOnWord(context.editor, context.folder.path());
    context.text.SetSelection(0, 255);
    ExpectHelp(u"-k \""_s + QString(255, u'x') + u'"');
    HelpOnWord(context.editor, context.folder.path());
}

TEST_F(HelpOnAWord, AnotherTypeOfFileOrAnUnnamedDocumentIsLeftToTheShell)
{
    context.text.SetSelection(3, 8);
    context.document.CurrentFile.clear();
    ExpectHelp(QString());
    HelpOnWord(context.editor, context.folder.path());
    context.document.CurrentFile = u"/piece.orc"_s;
    for (const QString &file : {u"/manual/index.html"_s, u"/manual/hlp.chm"_s, u"lp"_s}) {
        context.settings.SaveText(Keys::Help, file);
        ExpectHelp(QString(), file);
        HelpOnWord(context.editor, context.folder.path());
    }
    EXPECT_TRUE(context.status.shown.isEmpty());
    context.settings.SaveText(Keys::Help, u"/manual/CSOUND.HlP"_s);
    ExpectHelp(u"-k \"oscil\""_s, u"/manual/CSOUND.HlP"_s);
    HelpOnWord(context.editor, context.folder.path());
}

TEST_F(HelpOnAWord, AManualOpensThePageOfTheWord)
{
    const QString file =
        context.WriteFile(u"my.hlp"_s, "[Manual]\nFolder=manual\nPage=$WORD$.html\nContents=all.html\n"
                                       "[Pages]\n0dbfs=Zero.html\nlost=Lost.html\n"
                                       "la_one=One.html\nla_*=all-la.html\n");
    const QString manual = context.folder.filePath(u"manual"_s);
    ASSERT_TRUE(QDir().mkdir(manual));
    for (const char *page : {"all", "oscil", "Zero", "lost", "One", "all-la", "la_mc"})
        context.WriteFile(u"manual/%1.html"_s.arg(QLatin1String(page)), "x");
    context.settings.SaveText(Keys::Help, file);
    const auto expect = [&](const QString &text, const QString &page) {
        context.text.SetText(text);
        context.text.SetSelection(0, -1);
        context.desktop.ExpectShellRun({.file = manual + u'/' + page});
        HelpOnWord(context.editor, context.folder.path());
    };
    expect(u"oscil"_s, u"oscil.html"_s);
    EXPECT_EQ(context.status.text, u"Help keyword: oscil"_s);
    expect(u"0dbfs"_s, u"Zero.html"_s);
    expect(u"lost"_s, u"all.html"_s); // its page is named, but not there
    expect(u"la_one"_s, u"One.html"_s);
    expect(u"la_mc"_s, u"all-la.html"_s);
    expect(u"la"_s, u"all.html"_s);
    expect(u"no such word"_s, u"all.html"_s);
    expect(u"../manual/oscil"_s, u"all.html"_s);
    expect(u"x"_s, u"all.html"_s);
    context.document.CurrentFile.clear();
    expect(u"oscil"_s, u"all.html"_s);
}

TEST_F(HelpOnAWord, TheShippedManualServesWhereNoneIsSet)
{
    context.settings.SaveText(Keys::Help, QString());
    context.text.SetText(u"oscil"_s);
    context.text.SetSelection(0, -1);
    context.WriteFile(u"csound.hlp"_s, "[Manual]\nFolder=there\nPage=$WORD$.html\nContents=index.html\n");
    const MessageBoxRequest question{
        .text = u"You should first set a help file. Do you want to open the Preferences dialog box now?"_s,
        .icon = BoxIcon::Warning,
        .buttons = BoxButtons::YesNo};
    context.desktop.ExpectMessage(question, BoxAnswer::No); // the manual is not installed
    HelpOnWord(context.editor, context.folder.path());
    const QString manual = context.folder.filePath(u"there"_s);
    ASSERT_TRUE(QDir().mkdir(manual));
    context.WriteFile(u"there/index.html"_s, "x");
    context.WriteFile(u"there/oscil.html"_s, "x");
    context.desktop.ExpectShellRun({.file = manual + u"/oscil.html"_s});
    HelpOnWord(context.editor, context.folder.path());
}

TEST(Manual, OnTheWebEveryWordHasAPage)
{
    TestContext context;
    const QString file = context.WriteFile(
        u"web.hlp"_s, "[Manual]\nFolder=https://example.org/manual/\nPage=$WORD$.html\nContents=\n");
    EXPECT_FALSE(ReadManual(file)) << "no contents page";
    context.WriteFile(
        u"web.hlp"_s,
        "[Manual]\nFolder=https://example.org/manual/\nPage=$WORD$.html\nContents=index.html\n");
    const auto manual = ReadManual(file);
    ASSERT_TRUE(manual);
    EXPECT_TRUE(manual->IsThere());
    EXPECT_EQ(manual->ContentsPage(), u"https://example.org/manual/index.html"_s);
    EXPECT_EQ(manual->PageOf(u"a/b c"_s), u"https://example.org/manual/a%2Fb%20c.html"_s);
}

TEST(Manual, OtherFilesAreNone)
{
    TestContext context;
    EXPECT_FALSE(ReadManual(context.folder.filePath(u"missing.hlp"_s)));
    EXPECT_FALSE(ReadManual(context.WriteFile(u"old.hlp"_s, QByteArray("?_\x03\0\0\0\xff\xfe", 8))));
    EXPECT_FALSE(ReadManual(context.folder.path()));
}

TEST(Manual, TheShippedOneNamesItsPages)
{
    const auto manual = ReadManual(QStringLiteral(ZELVANE_SOURCE_DIR "/data/csound.hlp"));
    ASSERT_TRUE(manual);
    ASSERT_TRUE(manual->IsThere()) << "csound-doc is not installed";
    EXPECT_EQ(manual->PageOf(u"oscili"_s), manual->folder + u"/oscili.html"_s);
    EXPECT_EQ(manual->PageOf(u"0dbfs"_s), manual->folder + u"/Zerodbfs.html"_s);
    for (const QString &page : manual->pages)
        EXPECT_TRUE(QFileInfo(manual->folder + u'/' + page).isFile()) << page.toStdString();
    for (const auto &[words, page] : manual->families)
        EXPECT_TRUE(QFileInfo(manual->folder + u'/' + page).isFile()) << page.toStdString();
}

TEST(Manual, TheShippedOneMissesNoWordThatAPageDescribes)
{
    const auto manual = ReadManual(QStringLiteral(ZELVANE_SOURCE_DIR "/data/csound.hlp"));
    ASSERT_TRUE(manual && manual->IsThere()) << "csound-doc is not installed";
    QFile words(QStringLiteral(ZELVANE_SOURCE_DIR "/data/opcodes.txt"));
    ASSERT_TRUE(words.open(QIODevice::ReadOnly));
    QSet<QString> without; // a word of one character opens the contents in any case
    for (const QString &word : QString::fromLatin1(words.readAll()).simplified().split(u' ')) {
        if (word.size() > 1 && manual->PageOf(word) == manual->ContentsPage())
            without.insert(word);
    }
    EXPECT_LT(without.size(), 60);
    // A page describes a word where it shows its syntax, or where the index of the manual leads to.
    static const QRegularExpression synopsis(u"<pre class=\"synopsis\">(.*?)</pre>"_s,
                                             QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression strong(u"<strong>\\s*(\\w+)\\s*</strong>"_s);
    static const QRegularExpression indexed(u" id=\"Index(\\w+)\""_s);
    int pages = 0;
    for (const QFileInfo &info : QDir(manual->folder).entryInfoList({u"*.html"_s}, QDir::Files)) {
        QFile page(info.filePath());
        ASSERT_TRUE(page.open(QIODevice::ReadOnly));
        ++pages;
        const QString text = QString::fromUtf8(page.readAll());
        const auto look = [&](const QRegularExpression &pattern, const QString &where) {
            for (auto found = pattern.globalMatch(where); found.hasNext();) {
                const QString word = found.next().captured(1);
                EXPECT_FALSE(without.contains(word))
                    << word.toStdString() << " is described by " << info.fileName().toStdString();
            }
        };
        look(indexed, text);
        for (auto found = synopsis.globalMatch(text); found.hasNext();)
            look(strong, found.next().captured(1));
    }
    EXPECT_GT(pages, 1000);
}

} // namespace zelvane::test
