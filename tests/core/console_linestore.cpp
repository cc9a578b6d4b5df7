// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/linestore.h"

#include "console/styledline.h"

#include <gtest/gtest.h>
#include <optional>
#include <QString>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

StyledLine Line(int number)
{
    return {.text = QString::number(number)};
}

} // namespace

TEST(LineStore, KeepsTheLastLinesUnderTheirNumbers)
{
    LineStore store({.lines = 3, .characters = 1000});
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(store.Append(Line(i)), i);
    EXPECT_EQ(store.First(), 7);
    EXPECT_EQ(store.End(), 10);
    for (qint64 i = store.First(); i < store.End(); ++i)
        EXPECT_EQ(store.At(i).line.text, QString::number(i));
}

TEST(LineStore, CountsCharactersAndSpans)
{
    LineStore store({.lines = 1000, .characters = 100});
    for (int i = 0; i < 10; ++i)
        store.Append({.text = QString(30, u'x')});
    EXPECT_EQ(store.End() - store.First(), 3);
    store.Append({.text = QString(500, u'y')});
    EXPECT_EQ(store.End() - store.First(), 1) << "the newest line is kept";
    EXPECT_EQ(store.LongestLine(), 500);
    StyledLine motley{.text = QString(20, u'x')};
    for (int i = 0; i < 20; ++i)
        motley.spans.push_back({.start = i, .length = 1, .style = {.colour = qint8(i % 16)}});
    store.Append(motley);
    store.Append(motley);
    EXPECT_EQ(store.End() - store.First(), 1);
}

TEST(LineStore, WalksFromMarkToMark)
{
    LineStore store({.lines = 100, .characters = 1000});
    for (int i = 0; i < 50; ++i)
        store.Append(Line(i));
    EXPECT_EQ(store.NextMarked(-1, 1), std::nullopt);
    store.Mark(30, LineMark::Error);
    store.Mark(10, LineMark::Warning);
    store.Mark(10, LineMark::None);
    store.Mark(20, LineMark::Error);
    store.Mark(20, LineMark::Warning);
    store.Mark(99, LineMark::Error);
    EXPECT_EQ(store.At(20).mark, LineMark::Error);
    EXPECT_EQ(store.NextMarked(-1, 1), 10);
    EXPECT_EQ(store.NextMarked(10, 1), 20);
    EXPECT_EQ(store.NextMarked(30, 1), std::nullopt);
    EXPECT_EQ(store.NextMarked(50, -1), 30);
    EXPECT_EQ(store.NextMarked(20, -1), 10);
    EXPECT_EQ(store.NextMarked(10, -1), std::nullopt);
}

TEST(LineStore, TakesLinesBeforeTheOldest)
{
    LineStore store({.lines = 3, .characters = 1000});
    for (int i = 0; i < 10; ++i)
        store.Append(Line(i));
    store.Mark(8, LineMark::Warning);
    store.PutFirst(
        {{.line = {.text = u"a longer one"_s}, .mark = LineMark::Error}, {.line = {.text = u"b"_s}}});
    EXPECT_EQ(store.First(), 5);
    EXPECT_EQ(store.End(), 10);
    EXPECT_EQ(store.At(5).line.text, u"a longer one"_s);
    EXPECT_EQ(store.At(6).line.text, u"b"_s);
    EXPECT_EQ(store.At(7).line.text, u"7"_s);
    EXPECT_EQ(store.NextMarked(-1, 1), 5);
    EXPECT_EQ(store.NextMarked(5, 1), 8);
    EXPECT_EQ(store.LongestLine(), 12);
    store.Append(Line(10));
    EXPECT_EQ(store.First(), 8) << "the limit holds again";
    EXPECT_EQ(store.NextMarked(-1, 1), 8);
}

TEST(LineStore, AMarkGoesWithItsLine)
{
    LineStore store({.lines = 3, .characters = 1000});
    store.Append(Line(0));
    store.Mark(0, LineMark::Error);
    for (int i = 1; i < 5; ++i)
        store.Append(Line(i));
    EXPECT_EQ(store.NextMarked(-1, 1), std::nullopt);
    store.Mark(0, LineMark::Error);
    EXPECT_EQ(store.NextMarked(-1, 1), std::nullopt);
}
