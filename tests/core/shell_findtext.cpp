// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findtext.h"

#include "core/oracle/textopsoracle.h"
#include "shell/findkeys.h"
#include "shell/findnext.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

const FindOptions AllOptions[] = {FindAnywhere, FindWholeWord, FindMatchCase, FindWholeWord | FindMatchCase};

TEST(FindText, GivesWhatItsLoopGives)
{
    test::RandomText texts({u"a"_s, u"b"_s, u"A"_s, u"_"_s, u"1"_s, u" "_s, u"\n"_s, u"-"_s});
    test::RandomText needles({u"a"_s, u"b"_s, u"_"_s, u" "_s, u"-"_s}, 3, 7);
    for (int i = 0; i < 60000; ++i) {
        const QString text = texts.Next();
        const QString needle = needles.Next();
        const qsizetype start = texts.Number(0, int(text.size()));
        const qsizetype end = texts.Number(int(start), int(text.size()));
        const FindOptions options = AllOptions[i % 4];
        ASSERT_EQ(FindText(text, needle, start, end, options),
                  oracle::Find(text, needle, start, end, options))
            << testing::PrintToString(text) << " for " << testing::PrintToString(needle) << " in " << start
            << ".." << end << " options " << options;
    }
}

TEST(HitsToReplace, GiveWhatTheLoopOfReplacingGives)
{
    test::RandomText texts({u"a"_s, u"b"_s, u"A"_s, u"_"_s, u" "_s, u"-"_s});
    test::RandomText needles({u"a"_s, u"b"_s, u" "_s, u"-"_s}, 3, 7);
    for (int i = 0; i < 60000; ++i) {
        const QString text = texts.Next();
        const QString needle = needles.Next();
        const QString with = needles.Next();
        const qsizetype start = texts.Number(0, int(text.size()));
        const qsizetype end = texts.Number(int(start), int(text.size()));
        const FindOptions options = AllOptions[i % 4];
        const auto [expected, count] = oracle::ReplaceAll(text, needle, with, start, end, options);
        const auto hits = HitsToReplace(text, needle, with, start, end, options);
        test::StringBuffer buffer;
        buffer.SetText(text);
        buffer.ReplaceEach(hits, needle.size(), with);
        ASSERT_EQ(buffer.text, expected)
            << testing::PrintToString(text) << ": " << testing::PrintToString(needle) << " by "
            << testing::PrintToString(with) << " in " << start << ".." << end << " options " << options;
        ASSERT_EQ(qsizetype(hits.size()), count);
    }
}

TEST(HitsToReplace, ManyHitsInOnePass)
{
    const QString text =
        QString(u"oscil kamp, kcps, ifn ; a line of an orchestra, to be changed in every place it has "
                "a hit, here for one......\n"_s)
            .repeated(100'000);
    const auto hits = HitsToReplace(text, u"oscil", u"poscil3", 0, -1, FindWholeWord);
    ASSERT_EQ(hits.size(), 100'000U);
    EXPECT_EQ(hits.back(), text.size() / 100'000 * 99'999);
}

TEST(FindText, OutOfRangeIsNoHit)
{
    EXPECT_EQ(FindText(u"abc", u"", 0, -1, FindAnywhere), -1);
    EXPECT_EQ(FindText(u"abc", u"a", -1, -1, FindAnywhere), -1);
    EXPECT_EQ(FindText(u"abc", u"c", 4, -1, FindAnywhere), -1);
    EXPECT_EQ(FindText(u"abc", u"c", 0, 99, FindAnywhere), 2);
    EXPECT_EQ(FindText(u"abc", u"bc", 0, 2, FindAnywhere), -1);
}

struct Finding : testing::Test, test::TestContext {
    void SetUp() override { text.SetText(u"one two One"_s); }
};

TEST_F(Finding, SelectsTheHitBehindTheSelection)
{
    text.SetSelection(0, 3);
    EXPECT_TRUE(FindNextText(editor, u"one"_s, false, FindAnywhere));
    EXPECT_EQ(text.selection, (TextSpan{8, 11}));
    EXPECT_EQ(status.text, u"'one' found at character 9"_s);
}

TEST_F(Finding, WrapsToTheStart)
{
    text.SetSelection(0, 3);
    EXPECT_TRUE(FindNextText(editor, u"one"_s, true, FindMatchCase));
    EXPECT_EQ(text.selection, (TextSpan{0, 3}));
    EXPECT_EQ(status.text, u"Restarting from the beginning of the document... 'one' found at character 1"_s);
}

TEST_F(Finding, TellsOnceThatThereIsNone)
{
    for (bool wrap : {false, true}) {
        desktop.ExpectMessage({.text = u"Cannot find 'three'."_s, .icon = BoxIcon::Information});
        EXPECT_FALSE(FindNextText(editor, u"three"_s, wrap, FindAnywhere));
    }
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
}

TEST_F(Finding, FindAgainNeverWraps)
{
    FindAgain(editor);
    EXPECT_TRUE(status.shown.isEmpty()) << "no recent string, nothing to do";
    settings.SaveSetting(u"Recent Find Strings"_s, u"1"_s, u"ONE"_s);
    settings.SaveFlag(Keys::FindWrapSearches, true);
    FindAgain(editor);
    EXPECT_EQ(text.selection, (TextSpan{0, 3}));
    settings.SaveFlag(Keys::FindMatchCase, true);
    desktop.ExpectMessage({.text = u"Cannot find 'ONE'."_s, .icon = BoxIcon::Information});
    FindAgain(editor);
}

} // namespace
} // namespace zelvane
