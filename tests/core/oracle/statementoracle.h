// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

/// The reading and writing of a score statement as the loops that define them: positions from 1, a text that
/// is rebuilt at each replacement.
namespace zelvane::oracle
{

struct ScoreStatement {
    QString s;
    qsizetype caret = 0; ///< from 0

    qsizetype Len() const { return s.size(); }
    QString At(qsizetype p) const { return s.mid(p - 1, 1); }
    static bool IsBlank(const QString &c)
    {
        return c == QLatin1String(" ") || c == QLatin1String("\t") || c == QLatin1String("\r") ||
               c == QLatin1String("\n");
    }
    static bool IsDelimiter(const QString &c) { return IsBlank(c) || c == QLatin1String(";"); }
    static bool IsDigit(const QString &c)
    {
        return c.size() == 1 && c >= QLatin1String("0") && c <= QLatin1String("9");
    }
    static bool Begins(const QString &c)
    {
        for (const char *letter : {"f", "i", "a", "t", "s", "b", "m", "n", "r", "v", "e", "w"}) {
            if (c == QLatin1String(letter))
                return true;
        }
        return false;
    }

    /// The offset from 0 of the line's first character.
    qsizetype LineStart() const
    {
        qsizetype start = caret;
        while (start > 0 && At(start) != QLatin1String("\n"))
            --start;
        return start;
    }

    /// The index of the letter, 0 for none.
    qsizetype Candidate() const
    {
        for (qsizetype p = caret + 1; p >= LineStart() + 1; --p) {
            if (At(p) != QLatin1String("i"))
                continue;
            if (p == 1)
                return p;
            if (p >= 2 && IsBlank(At(p - 1)))
                return p;
        }
        return 0;
    }

    /// What the digits are; nothing where 16 bits do not hold them.
    std::optional<int> Number() const
    {
        const qsizetype candidate = Candidate();
        if (candidate == 0)
            return -1;
        const qsizetype start = candidate + 1;
        qsizetype cursor = start;
        while (cursor < Len() && IsDigit(At(cursor)))
            ++cursor;
        const QString digits = s.mid(start - 1, cursor - start);
        double number = 0;
        for (const QChar digit : digits)
            number = number * 10 + digit.digitValue();
        if (number > 32767)
            return std::nullopt;
        return int(number);
    }

    // The result of Parse.
    QStringList values = {};
    qsizetype rangeStart = 0;
    qsizetype rangeEnd = 0;

    /// @return false when no token was closed
    bool Parse()
    {
        const qsizetype candidate = Candidate();
        if (candidate == 0)
            return false;
        qsizetype cursor = candidate + 1;
        bool inBlank = true;
        bool inBracket = false;
        bool inQuote = false;
        qsizetype start = 0;
        qsizetype length = 0;
        qsizetype field = 0;
        qsizetype end = 0;
        bool closed = false;
        values.clear();
        while (cursor <= Len()) {
            const QString c = At(cursor);
            if (IsDelimiter(c)) {
                if (!inBracket && !inQuote && !inBlank) {
                    inBlank = true;
                    end = start + length;
                    while (values.size() < field)
                        values.append(QString());
                    values[field - 1] = s.mid(start - 1, length);
                    closed = true;
                } else {
                    length = length + 1;
                }
                if (c == QLatin1String(";")) {
                    end = end - 1;
                    break;
                }
            } else {
                if (c == QLatin1String("["))
                    inBracket = true;
                if (c == QLatin1String("]"))
                    inBracket = false;
                if (c == QLatin1String("\""))
                    inQuote = !inQuote;
                if (c == QLatin1String("/") && At(cursor + 1) == QLatin1String("*"))
                    break;
                if (inBlank && (Begins(c) || c == QLatin1String("<")))
                    break;
                if (inBlank) {
                    field = field + 1;
                    start = cursor;
                    length = 1;
                    inBlank = false;
                } else {
                    length = length + 1;
                }
            }
            cursor = cursor + 1;
        }
        rangeStart = candidate;
        rangeEnd = end - 1;
        return closed;
    }

    /// Puts the values into a statement's text.
    static QString Write(const QString &saved, const QStringList &values)
    {
        ScoreStatement walk{.s = saved};
        qsizetype cursor = 1;
        bool inBlank = true;
        bool inBracket = false;
        bool inQuote = false;
        qsizetype start = 0;
        qsizetype length = 0;
        qsizetype field = 0;
        while (cursor <= walk.Len()) {
            const QString c = walk.At(cursor);
            if (IsDelimiter(c)) {
                if (!inBracket && !inQuote && !inBlank) {
                    inBlank = true;
                    if (field <= values.size()) {
                        const QString value = values[field - 1];
                        walk.s = walk.s.left(start - 1) + value + walk.s.mid(start + length - 1);
                        cursor = start + value.size();
                    }
                } else {
                    length = length + 1;
                }
                if (c == QLatin1String(";"))
                    break;
            } else {
                if (c == QLatin1String("["))
                    inBracket = true;
                if (c == QLatin1String("]"))
                    inBracket = false;
                if (c == QLatin1String("\""))
                    inQuote = !inQuote;
                if (c == QLatin1String("/") && walk.At(cursor + 1) == QLatin1String("*"))
                    break;
                if (inBlank && Begins(c))
                    break;
                if (inBlank) {
                    field = field + 1;
                    start = cursor;
                    length = 1;
                    inBlank = false;
                } else {
                    length = length + 1;
                }
            }
            cursor = cursor + 1;
        }
        return walk.s;
    }
};

} // namespace zelvane::oracle
