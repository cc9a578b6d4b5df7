// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/linemoves.h"

#include "support/printers.h"
#include "support/randomtext.h"
#include "support/stringbuffer.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <QStringList>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// Does what the move says. @return the text with the ends of the selection as "|", empty without a move
QString Moved(const QString &text, const TextSpan &selection, LineMoveKind kind,
              const std::vector<bool> &hidden = {})
{
    StringBuffer buffer;
    buffer.text = text;
    buffer.styles = QByteArray(text.size(), '\0');
    buffer.selection = selection;
    const auto move = MoveLines(buffer, kind, [&](qsizetype line) {
        return line < qsizetype(hidden.size()) && hidden[std::size_t(line)];
    });
    if (!move)
        return {};
    QString result = text;
    EXPECT_EQ(text.sliced(move->kept.start, move->kept.Length()),
              move->text.sliced(move->source, move->kept.Length()));
    result.remove(move->from.start, move->from.Length());
    result.insert(move->to, move->text);
    EXPECT_LE(move->selection.end, result.size());
    return result.insert(move->selection.end, u'|').insert(move->selection.start, u'|');
}

/// The same on a list of lines.
QString MovedByLines(const QString &text, const TextSpan &selection, LineMoveKind kind,
                     const std::vector<bool> &hidden)
{
    QStringList lines = text.split(u'\n');
    qsizetype first = text.left(selection.start).count(u'\n');
    qsizetype last = text.left(selection.end).count(u'\n');
    if (last > first && selection.end > 0 && text[selection.end - 1] == u'\n')
        --last;
    const auto up = [&](qsizetype line) {
        while (line > 0 && hidden[std::size_t(line)])
            --line;
        return line;
    };
    const auto down = [&](qsizetype line) {
        while (line + 1 < lines.size() && hidden[std::size_t(line) + 1])
            ++line;
        return line;
    };
    first = up(first);
    last = down(last);
    const auto length = [&](qsizetype from, qsizetype to) {
        qsizetype sum = 0;
        for (qsizetype i = from; i <= to; ++i)
            sum += lines[i].size() + 1;
        return sum;
    };
    qsizetype by = 0;
    switch (kind) {
    case LineMoveKind::Duplicate:
        by = length(first, last);
        for (qsizetype i = last; i >= first; --i)
            lines.insert(last + 1, lines[i]);
        break;
    case LineMoveKind::Up:
        if (first == 0)
            return {};
        by = -length(up(first - 1), first - 1);
        std::rotate(lines.begin() + up(first - 1), lines.begin() + first, lines.begin() + last + 1);
        break;
    case LineMoveKind::Down:
        if (last + 1 == lines.size())
            return {};
        by = length(last + 1, down(last + 1));
        std::rotate(lines.begin() + first, lines.begin() + last + 1, lines.begin() + down(last + 1) + 1);
        break;
    }
    QString result = lines.join(u'\n');
    const qsizetype end = std::min(selection.end + by, result.size());
    return result.insert(end, u'|').insert(selection.start + by, u'|');
}

TEST(MoveLines, GoesByWholeLines)
{
    EXPECT_EQ(Moved(u"a\nbc\nd"_s, {3, 3}, LineMoveKind::Up), u"b||c\na\nd"_s);
    EXPECT_EQ(Moved(u"a\nbc\nd"_s, {3, 3}, LineMoveKind::Down), u"a\nd\nb||c"_s);
    EXPECT_EQ(Moved(u"a\nbc\nd"_s, {3, 3}, LineMoveKind::Duplicate), u"a\nbc\nb||c\nd"_s);
    EXPECT_EQ(Moved(u"a\nbc\nd"_s, {0, 3}, LineMoveKind::Down), u"d\n|a\nb|c"_s);
    EXPECT_EQ(Moved(u"a\nbc\nd"_s, {0, 2}, LineMoveKind::Down), u"bc\n|a\n|d"_s);
    EXPECT_EQ(Moved(u"a\nb"_s, {0, 2}, LineMoveKind::Down), u"b\n|a|"_s);
    EXPECT_EQ(Moved(u"a"_s, {0, 0}, LineMoveKind::Up), QString());
    EXPECT_EQ(Moved(u"a"_s, {0, 0}, LineMoveKind::Down), QString());
    EXPECT_EQ(Moved(u""_s, {0, 0}, LineMoveKind::Duplicate), u"\n||"_s);
}

TEST(MoveLines, WhatIsFoldedGoesAsAWhole)
{
    const QString text = u"a\ni\nx\ne\nb"_s;
    const std::vector<bool> hidden{false, false, true, true, false};
    EXPECT_EQ(Moved(text, {3, 3}, LineMoveKind::Down, hidden), u"a\nb\ni||\nx\ne"_s);
    EXPECT_EQ(Moved(text, {3, 3}, LineMoveKind::Up, hidden), u"i||\nx\ne\na\nb"_s);
    EXPECT_EQ(Moved(text, {3, 3}, LineMoveKind::Duplicate, hidden), u"a\ni\nx\ne\ni||\nx\ne\nb"_s);
    EXPECT_EQ(Moved(text, {0, 0}, LineMoveKind::Down, hidden), u"i\nx\ne\n||a\nb"_s);
    EXPECT_EQ(Moved(text, {8, 8}, LineMoveKind::Up, hidden), u"a\n||b\ni\nx\ne"_s);
}

TEST(MoveLines, GoesAsAListOfLinesGoes)
{
    RandomText texts({u"\n"_s, u"\n"_s, u"a"_s, u"bc"_s, u"\u00e9"_s}, 12);
    for (int i = 0; i < 40000; ++i) {
        const QString text = texts.Next();
        const int start = texts.Number(0, int(text.size()));
        const TextSpan selection{start, texts.Number(start, int(text.size()))};
        std::vector<bool> hidden(std::size_t(text.count(u'\n')) + 1);
        if (i % 2) {
            for (std::size_t line = 0; line < hidden.size(); ++line)
                hidden[line] = texts.Number(0, 2) == 0;
        }
        for (const LineMoveKind kind : {LineMoveKind::Duplicate, LineMoveKind::Up, LineMoveKind::Down})
            ASSERT_EQ(Moved(text, selection, kind, hidden), MovedByLines(text, selection, kind, hidden))
                << testing::PrintToString(text) << ' ' << selection.start << ' ' << selection.end << ' '
                << int(kind);
    }
}

} // namespace

} // namespace zelvane::test
