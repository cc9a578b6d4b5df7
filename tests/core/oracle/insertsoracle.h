// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>
#include <QtGlobal>

/// The texts of the Insert menu as plain loops. Slow and obvious; nothing but tests uses them.
namespace zelvane::test::oracle
{

/// The next control rate; no value where a number is divided by 0.
inline std::optional<qint64> NextControlRate(qint64 sampleRate, qint64 present, int direction)
{
    qint64 rate = present + direction;
    if (direction > 0) {
        if (rate == 0)
            return std::nullopt;
        while (sampleRate % rate != 0 && rate < sampleRate) {
            rate += 1;
            if (rate == 0)
                return std::nullopt;
        }
        if (rate > sampleRate)
            rate = sampleRate;
    } else {
        if (rate < 1)
            rate = 1;
        while (rate > 0 && sampleRate % rate != 0)
            rate -= 1;
    }
    return rate;
}

/// The arguments of a macro, in their parentheses.
inline QString MacroArguments(const QString &typed)
{
    if (typed.isEmpty())
        return {};
    QString rest = typed + QLatin1Char('\'');
    QString joined;
    while (!rest.isEmpty()) {
        QString part;
        while (rest[0] != QLatin1Char('\'')) {
            part += rest[0];
            rest.remove(0, 1);
        }
        rest.remove(0, 1);
        while (part.startsWith(QLatin1Char(' ')))
            part.remove(0, 1);
        while (part.endsWith(QLatin1Char(' ')))
            part.chop(1);
        if (part.isEmpty())
            continue;
        if (!joined.isEmpty())
            joined += QLatin1Char('\'');
        joined += part;
    }
    return QLatin1Char('(') + joined + QLatin1Char(')');
}

/// A text with a separator line under the line of the caret, and the caret behind it.
/// @param words the text of the line; empty without Ctrl
inline std::pair<QString, qsizetype> WithLineSeparation(const QString &text, qsizetype caret, QChar character,
                                                        int width, const QString &words)
{
    const auto lineOf = [&text](qsizetype offset) { return text.left(offset).count(QLatin1Char('\n')); };
    qsizetype d = 0;
    while (lineOf(caret + d) == lineOf(caret) && caret + d < text.size())
        d += 1;
    QString line;
    if (words.isEmpty()) {
        for (int i = 0; i < width; ++i)
            line += character;
    } else {
        const QString middle = QLatin1Char(' ') + words + QLatin1Char(' ');
        int copies = 3;
        if (middle.size() < width) {
            const int room = width - int(middle.size());
            copies = room / 2;
            // A half goes to the even neighbour.
            if (room % 2 == 1 && copies % 2 == 1)
                copies += 1;
        }
        for (int i = 0; i < copies; ++i)
            line += character;
        line += middle;
        for (int i = 0; i < copies; ++i)
            line += character;
    }
    const QString inserted = QLatin1Char(';') + line + QLatin1Char('\n');
    return {text.left(caret + d) + inserted + text.mid(caret + d), caret + d + inserted.size()};
}

} // namespace zelvane::test::oracle
