// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/lineendloops.h"
#include "shell/lineends.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <random>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

TEST(LineEnds, TheFirstLineEndDecidesThePlatform)
{
    EXPECT_EQ(DetectPlatform(u"a\nb\r\n"), LineEndForm::Unix);
    EXPECT_EQ(DetectPlatform(u"a\r\nb\n"), LineEndForm::Pc);
    EXPECT_EQ(DetectPlatform(u"a\rb\nc"), LineEndForm::Mac);
    EXPECT_EQ(DetectPlatform(u"no line end"), LineEndForm::Pc);
    EXPECT_EQ(DetectPlatform(u""), LineEndForm::Pc);
}

TEST(LineEnds, ALineEndThatIsTheLastCharacterIsNotSeen)
{
    EXPECT_EQ(DetectPlatform(u"a\n"), LineEndForm::Pc);
    EXPECT_EQ(DetectPlatform(u"a\r"), LineEndForm::Pc);
    EXPECT_EQ(DetectPlatform(u"\n"), LineEndForm::Pc);
    EXPECT_EQ(DetectPlatform(u"a\r\n"), LineEndForm::Pc);
    EXPECT_EQ(DetectPlatform(u"a\n\n"), LineEndForm::Unix);
    EXPECT_EQ(DetectPlatform(u"a\r\r"), LineEndForm::Mac);
}

TEST(LineEnds, PlatformsHaveNames)
{
    EXPECT_EQ(PlatformName(LineEndForm::Pc), u"PC"_s);
    EXPECT_EQ(PlatformName(LineEndForm::Unix), u"UNIX"_s);
    EXPECT_EQ(PlatformName(LineEndForm::Mac), u"MAC"_s);
}

TEST(LineEnds, MacToUnixTurnsEveryReturnIntoAFeed)
{
    EXPECT_EQ(MacToUnix(u"a\rb\r\nc\r"_s), u"a\nb\n\nc\n"_s);
    EXPECT_EQ(MacToUnix(u"a\nb"_s), u"a\nb"_s);
}

TEST(LineEnds, TheControlHoldsFeedsOnly)
{
    EXPECT_EQ(ToLineFeeds(u"a\r\nb\rc\nd\r"_s), u"a\nb\nc\nd\n"_s);
    EXPECT_EQ(ToLineFeeds(u"\r\r\n\r"_s), u"\n\n\n"_s);
    EXPECT_EQ(ToLineFeeds(u"plain"_s), u"plain"_s);
    const QString shared = u"a\r\nb"_s;
    const QString copy = shared;
    EXPECT_EQ(ToLineFeeds(copy), u"a\nb"_s);
    EXPECT_EQ(shared, u"a\r\nb"_s);
}

TEST(LineEnds, ConversionsOfTheExportMenu)
{
    EXPECT_EQ(ToPcLineEnds(u"\na\nb\r\nc\rd\n"), u"\r\na\r\nb\r\nc\rd\r\n"_s);
    EXPECT_EQ(ToUnixLineEnds(u"\r\na\rb\nc\r"), u"\na\nb\nc\n"_s);
    EXPECT_EQ(ToMacLineEnds(u"\na\r\nb\rc\n"), u"\ra\rb\rc\r"_s);
    EXPECT_EQ(ToPcLineEnds(u""), u""_s);
    EXPECT_EQ(ToUnixLineEnds(u""), u""_s);
    EXPECT_EQ(ToMacLineEnds(u""), u""_s);
}

TEST(LineEnds, AgreeWithTheLoopsOnRandomTexts)
{
    std::mt19937 random(20010307);
    for (int round = 0; round < 50000; ++round) {
        QString text(qsizetype(random() % 24), u' ');
        for (QChar &c : text)
            c = u"\r\n\r\nab\0"[random() % 7];
        ASSERT_EQ(ToPcLineEnds(text), oracle::ToPc(text)) << testing::PrintToString(text);
        ASSERT_EQ(ToUnixLineEnds(text), oracle::ToUnix(text)) << testing::PrintToString(text);
        ASSERT_EQ(ToLineFeeds(text), oracle::ToUnix(text)) << testing::PrintToString(text);
        ASSERT_EQ(ToMacLineEnds(text), oracle::ToMac(text)) << testing::PrintToString(text);
        ASSERT_EQ(int(DetectPlatform(text)), oracle::DetectPlatform(text)) << testing::PrintToString(text);
    }
}
