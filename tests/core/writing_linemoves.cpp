// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/linemoves.h"

#include "support/printers.h"
#include "support/randomtext.h"
#include "support/stringbuffer.h"

#include <gtest/gtest.h>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// Does what the move says. @return the text with the ends of the selection as "|", empty without a move
QString Moved(const QString &text, const TextSpan &selection, LineMoveKind kind)
{
    StringBuffer buffer;
    buffer.text = text;
    buffer.styles = QByteArray(text.size(), '\0');
    buffer.selection = selection;
    const auto move = MoveLines(buffer, kind);
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
QString MovedByLines(const QString &text, const TextSpan &selection, LineMoveKind kind)
{
    QStringList lines = text.split(u'\n');
    const qsizetype first = text.left(selection.start).count(u'\n');
    qsizetype last = text.left(selection.end).count(u'\n');
    if (last > first && selection.end > 0 && text[selection.end - 1] == u'\n')
        --last;
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
        by = -length(first - 1, first - 1);
        lines.move(first - 1, last);
        break;
    case LineMoveKind::Down:
        if (last + 1 == lines.size())
            return {};
        by = length(last + 1, last + 1);
        lines.move(last + 1, first);
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

TEST(MoveLines, GoesAsAListOfLinesGoes)
{
    RandomText texts({u"\n"_s, u"\n"_s, u"a"_s, u"bc"_s, u"\u00e9"_s}, 12);
    for (int i = 0; i < 40000; ++i) {
        const QString text = texts.Next();
        const int start = texts.Number(0, int(text.size()));
        const TextSpan selection{start, texts.Number(start, int(text.size()))};
        for (const LineMoveKind kind : {LineMoveKind::Duplicate, LineMoveKind::Up, LineMoveKind::Down})
            ASSERT_EQ(Moved(text, selection, kind), MovedByLines(text, selection, kind))
                << testing::PrintToString(text) << ' ' << selection.start << ' ' << selection.end << ' '
                << int(kind);
    }
}

} // namespace

} // namespace zelvane::test
