// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ansireader.h"

#include "console/styledline.h"
#include "support/printers.h"
#include "support/processortime.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <random>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using zelvane::test::LeastProcessorTime;

namespace
{

std::vector<StyledLine> LinesOf(const QByteArray &bytes, qsizetype piece = 1 << 20)
{
    std::vector<StyledLine> lines;
    AnsiReader reader([&](StyledLine line) { lines.push_back(std::move(line)); });
    for (qsizetype i = 0; i < bytes.size(); i += piece)
        reader.Read(QByteArrayView(bytes).sliced(i, std::min(piece, bytes.size() - i)));
    reader.Finish();
    return lines;
}

QStringList TextsOf(const QByteArray &bytes)
{
    QStringList texts;
    for (const StyledLine &line : LinesOf(bytes))
        texts.append(line.text);
    return texts;
}

} // namespace

TEST(AnsiReader, CutsLinesAndGivesTheLastOneAtTheEnd)
{
    EXPECT_EQ(TextsOf("one\ntwo\r\n\nthree"), (QStringList{u"one"_s, u"two"_s, u""_s, u"three"_s}));
    EXPECT_EQ(TextsOf(""), QStringList());
}

TEST(AnsiReader, ReadsColoursAndBold)
{
    const auto lines = LinesOf("a\x1b[31mred\x1b[1mbold\x1b[22;39mplain\x1b[95mlast\x1b[m.\n");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, u"aredboldplainlast."_s);
    const std::vector<StyleSpan> spans{{1, 3, {1, false}}, {4, 4, {1, true}}, {13, 4, {13, false}}};
    EXPECT_EQ(lines[0].spans, spans);
}

TEST(AnsiReader, AColourLastsOverLineEnds)
{
    const auto lines = LinesOf("\x1b[32mone\ntwo\x1b[0m\nthree\n");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1].spans, (std::vector<StyleSpan>{{0, 3, {2, false}}}));
    EXPECT_TRUE(lines[2].spans.empty());
}

TEST(AnsiReader, KnowsTheLongFormsOfColours)
{
    const auto lines = LinesOf("\x1b[38;5;9ma\x1b[48;5;3mb\x1b[38;2;1;31;3mc\x1b[38;5;200md\n");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, u"abcd"_s);
    EXPECT_EQ(lines[0].spans, (std::vector<StyleSpan>{{0, 3, {9, false}}}));
}

TEST(AnsiReader, CarriageReturnAndBackspaceOverwrite)
{
    EXPECT_EQ(TextsOf("10%\r20%\r100%\n"), QStringList{u"100%"_s});
    EXPECT_EQ(TextsOf("12345\rab\n"), QStringList{u"ab345"_s});
    EXPECT_EQ(TextsOf("|\b/\b-\n"), QStringList{u"-"_s});
    EXPECT_EQ(TextsOf("\b\b\bx\n"), QStringList{u"x"_s});
    EXPECT_EQ(TextsOf("12345\r\x1b[Kab\n"), QStringList{u"ab"_s});
    EXPECT_EQ(TextsOf("12345\b\b\x1b[1Kab\n"), QStringList{u"   ab"_s});
    EXPECT_EQ(TextsOf("12345\b\b\x1b[1K\n"), QStringList{u"    5"_s});
    EXPECT_EQ(TextsOf("12345\b\b\x1b[1K\b\x1b[1Ka\n"), QStringList{u"  a 5"_s});
    EXPECT_EQ(TextsOf("12345\x1b[1K\n"), QStringList{u"     "_s});
    EXPECT_EQ(TextsOf("12345\x1b[2Kab\n"), QStringList{u"     ab"_s});
}

TEST(AnsiReader, TheStyleOfWhatWasOverwrittenGoes)
{
    const auto lines = LinesOf("\x1b[31m12345\x1b[m\rab\n");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].spans, (std::vector<StyleSpan>{{2, 3, {1, false}}}));
}

TEST(AnsiReader, DropsOtherSequences)
{
    EXPECT_EQ(TextsOf("a\x1b]0;a title\x07"
                      "b\x1b]0;title\x1b\\c\x1b(Bd\x1b[2;3He\x1b[?25lf\x1b=g\x1bMh\n"),
              QStringList{u"abcdefgh"_s});
    EXPECT_EQ(TextsOf(QByteArray("a\0b\x7f"
                                 "c\ad\n",
                                 8)),
              QStringList{u"abcd"_s});
}

TEST(AnsiReader, WhatIsCutOffHidesNothingThatFollows)
{
    EXPECT_EQ(TextsOf("\x1b]0;title\nseen\n"), (QStringList{u""_s, u"seen"_s}));
    EXPECT_EQ(TextsOf("\x1b[31\nseen\n"), (QStringList{u""_s, u"seen"_s}));
    EXPECT_EQ(TextsOf("\x1b\nseen\n"), (QStringList{u""_s, u"seen"_s}));
    const QStringList texts = TextsOf("\x1b]" + QByteArray(10000, 'x') + "\n");
    ASSERT_EQ(texts.size(), 1);
    EXPECT_GT(texts[0].size(), 5000);
    EXPECT_LT(TextsOf("\x1b[" + QByteArray(10000, '1') + "\n")[0].size(), 10000);
}

TEST(AnsiReader, ErasesAgainWhatWasWrittenSince)
{
    EXPECT_EQ(TextsOf("ab\x1b[1Kcd\x1b[1Ke\n"), QStringList{u"    e"_s});
    EXPECT_EQ(TextsOf("abcd\x1b[1K\rxy\x1b[1Kz\n"), QStringList{u"  z "_s});
    EXPECT_EQ(TextsOf("abcd\x1b[1K\rxy\rz\n"), QStringList{u"zy  "_s});
    EXPECT_EQ(TextsOf("abcd\x1b[1K\r\x1b[Kxy\x1b[1Kz\n"), QStringList{u"  z"_s});
    EXPECT_EQ(LinesOf("\x1b[31mab\x1b[1Kc\x1b[1Kd\n"),
              (std::vector<StyledLine>{{u"   d"_s, {{3, 1, {1, false}}}}}));
}

TEST(AnsiReader, ErasingALongLineCostsWhatWasWrittenSince)
{
    for (const char *step : {"\b\x1b[2Ka", "\b\x1b[1Ka"}) {
        const auto time = [&](int column) {
            const QByteArray bytes = QByteArray(column, 'x') + QByteArray(step).repeated(100'000);
            return LeastProcessorTime(3, [&bytes] { LinesOf(bytes); });
        };
        EXPECT_LT(time(8000), 10 * time(20) + 0.05) << QByteArray(step).toPercentEncoding().constData();
    }
}

TEST(AnsiReader, InvalidBytesAreShownAsSuch)
{
    EXPECT_EQ(TextsOf("caf\xc3\xa9\n"), QStringList{u"caf\u00e9"_s});
    EXPECT_EQ(TextsOf("caf\xe9!\n"), QStringList{u"caf\ufffd!"_s});
}

TEST(AnsiReader, ALineWithoutEndIsBroken)
{
    const auto lines = LinesOf(QByteArray(AnsiReader::LongestLine * 3 + 5, 'x'));
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].text.size(), AnsiReader::LongestLine);
    EXPECT_EQ(lines[3].text.size(), 5);
    // A character of two units is not cut.
    const auto wide = LinesOf("x" + QByteArray("\xf0\x9d\x84\x9e").repeated(AnsiReader::LongestLine));
    for (const StyledLine &line : wide)
        EXPECT_FALSE(line.text.back().isHighSurrogate());
}

TEST(AnsiReader, ShowsTheLineThatHasNotEnded)
{
    AnsiReader reader([](const StyledLine &) { FAIL(); });
    reader.Read("\x1b[1mWho?");
    EXPECT_EQ(reader.Unfinished(), (StyledLine{u"Who?"_s, {{0, 4, {-1, true}}}}));
}

TEST(AnsiReader, CutsOfTheInputDoNotMatter)
{
    std::mt19937 random(7);
    const QList<QByteArray> pieces{
        "\x1b", "[",    "]",    "3",    "1",  "m", ";", "\n", "\r", "\b",
        "K",    "\xc3", "\xa9", "\x9b", "0;", "P", "(", "x",  "\t", "\xf0\x9d\x84\x9e",
        "\x07"};
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes;
        for (int i = int(random() % 40); i > 0; --i)
            bytes += pieces[qsizetype(random() % size_t(pieces.size()))];
        EXPECT_EQ(LinesOf(bytes), LinesOf(bytes, 1)) << bytes.toPercentEncoding().constData();
    }
}
