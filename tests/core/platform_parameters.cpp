// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/parameters.h"

#include "core/oracle/commandlineoracle.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(SplitParameters, BlanksSeparate)
{
    EXPECT_EQ(SplitParameters(u"-d -W  -o x.wav "_s), (QStringList{u"-d"_s, u"-W"_s, u"-o"_s, u"x.wav"_s}));
    EXPECT_EQ(SplitParameters(u""_s), QStringList());
    EXPECT_EQ(SplitParameters(u"   "_s), QStringList());
}

TEST(SplitParameters, OnlyTheBlankSeparates)
{
    EXPECT_EQ(SplitParameters(u"a\tb.orc c\nd.sco"_s), (QStringList{u"a\tb.orc"_s, u"c\nd.sco"_s}));
}

TEST(SplitParameters, QuotesGroupAndAreDropped)
{
    EXPECT_EQ(SplitParameters(u"-o \"a b.wav\" \"c d.csd\""_s),
              (QStringList{u"-o"_s, u"a b.wav"_s, u"c d.csd"_s}));
    EXPECT_EQ(SplitParameters(u"-o\"a b\".wav x"_s), (QStringList{u"-oa b.wav"_s, u"x"_s}));
    EXPECT_EQ(SplitParameters(u"\"a\" b"_s), (QStringList{u"a"_s, u"b"_s}));
}

TEST(SplitParameters, EmptyQuotesAreAnEmptyArgument)
{
    EXPECT_EQ(SplitParameters(u"a \"\" b"_s), (QStringList{u"a"_s, QString(), u"b"_s}));
    EXPECT_EQ(SplitParameters(u"\"\""_s), QStringList{QString()});
}

TEST(SplitParameters, UnbalancedQuoteRunsToTheEnd)
{
    EXPECT_EQ(SplitParameters(u"a \"b c  d"_s), (QStringList{u"a"_s, u"b c  d"_s}));
    EXPECT_EQ(SplitParameters(u"a \""_s), (QStringList{u"a"_s, QString()}));
}

TEST(SplitParameters, BackslashIsAnOrdinaryCharacter)
{
    EXPECT_EQ(SplitParameters(u"\"C:\\a b\\\" x"_s), (QStringList{u"C:\\a b\\"_s, u"x"_s}));
}

TEST(SplitParameters, GivesBackWhatQuoteFilePutIn)
{
    for (const QString &name : {u"/a/b.csd"_s, u"/a b/c.csd"_s, u"/my \"best\" song.csd"_s, u"\""_s,
                                u"a\"\"b"_s, u" "_s, u"\" \""_s, u"/tab\tand\nfeed"_s}) {
        EXPECT_EQ(SplitParameters(u"-o "_s + QuoteFile(name) + u" z"_s),
                  (QStringList{u"-o"_s, name, u"z"_s}));
        EXPECT_EQ(UnquoteFile(QuoteFile(name)), name);
    }
}

TEST(SplitParameters, GivesWhatItsStepsGive)
{
    RandomText texts({u"a"_s, u" "_s, u"\""_s, u"\"\""_s, u"\t"_s, u"-o"_s});
    for (int i = 0; i < 20000; ++i) {
        const QString text = texts.Next();
        ASSERT_EQ(SplitParameters(text), oracle::SplitParameters(text)) << ::testing::PrintToString(text);
    }
}

TEST(UnquoteFile, LeavesWhatIsNotQuoted)
{
    for (const QString &text : {u""_s, u"\""_s, u"a"_s, u"\"a"_s, u"a\""_s, u"/a b/c"_s})
        EXPECT_EQ(UnquoteFile(text), text);
    EXPECT_EQ(UnquoteFile(u"\"\""_s), QString());
}

} // namespace zelvane::test
