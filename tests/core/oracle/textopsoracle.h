// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/findtext.h"

#include <QString>

/// Text operations as the loops that define them, on a string rebuilt at each step.
namespace zelvane::oracle
{

inline QString RemoveComments(QString s)
{
    for (;;) {
        const qsizetype mark = s.indexOf(QLatin1Char(';'));
        if (mark < 0)
            break;
        qsizetype e = s.indexOf(QLatin1Char('\n'), mark);
        if (e < 0)
            e = s.size();
        if (mark == 0 || s[mark - 1] == QLatin1Char('\n'))
            s = s.left(mark) + s.mid(e + 1);
        else
            s = s.left(mark) + s.mid(e);
    }
    for (;;) {
        const qsizetype open = s.indexOf(QStringLiteral("/*"));
        if (open < 0)
            break;
        const qsizetype close = s.indexOf(QStringLiteral("*/"), open + 2);
        if (close < 0)
            break;
        s = s.left(open) + s.mid(close + 2);
    }
    return s;
}

inline QString Indent(QString s, const QString &unit)
{
    for (qsizetype i = s.size() - 2; i >= 0; --i)
        if (s[i] == QLatin1Char('\n'))
            s.insert(i + 1, unit);
    return unit + s;
}

inline QString Unindent(QString s, const QString &unit)
{
    for (qsizetype i = s.size() - 1; i >= 0; --i)
        if (s[i] == QLatin1Char('\n') && s.mid(i + 1, unit.size()) == unit)
            s.remove(i + 1, unit.size());
    if (s.left(unit.size()) == unit)
        s.remove(0, unit.size());
    return s;
}

inline QString Comment(const QString &s, bool blockForm)
{
    const qsizetype p = s.indexOf(QLatin1Char('\n'));
    if (p >= 0 && p != s.size() - 1) {
        if (blockForm)
            return QStringLiteral("/*") + s + QStringLiteral("*/");
        return Indent(s, QStringLiteral(";"));
    }
    return QStringLiteral(";") + s;
}

inline QString Uncomment(const QString &text)
{
    QString s = text;
    for (const QString &what : {QStringLiteral(";"), QStringLiteral("/*"), QStringLiteral("*/")}) {
        qsizetype i = 0;
        while ((i = s.indexOf(what, i)) >= 0)
            s = s.left(i) + s.mid(i + what.size());
    }
    return s;
}

inline bool InComment(const QString &text, qsizetype pos)
{
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = text.indexOf(QStringLiteral("/*"), from);
        if (open < 0)
            break;
        const qsizetype close = text.indexOf(QStringLiteral("*/"), open);
        if (close < 0)
            break;
        if (pos > open && pos < close + 2)
            return true;
        from = close;
    }
    for (qsizetype i = pos; i >= 0; --i) {
        if (i >= text.size())
            continue;
        if (text[i] == QLatin1Char(';'))
            return true;
        if (text[i] == QLatin1Char('\n') || text[i] == QLatin1Char('\r'))
            return false;
    }
    return false;
}

/// 0 upper case, 1 lower case, 2 the first letter of each word upper and what stands behind it lower case.
inline QString ChangeCase(const QString &text, int change)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        bool upper = change == 0;
        if (change == 2) {
            upper = true;
            for (qsizetype k = i - 1; k >= 0 && !text[k].isSpace(); --k) {
                if (text[k].isLetter())
                    upper = text[i].isSpace();
            }
        }
        result += upper ? text[i].toUpper() : text[i].toLower();
    }
    return result;
}

/// The first hit by looking at every place.
inline qsizetype Find(const QString &text, const QString &what, qsizetype start, qsizetype end,
                      FindOptions options)
{
    const auto isWord = [](QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_'); };
    for (qsizetype i = start; !what.isEmpty() && i + what.size() <= end; ++i) {
        if (text.mid(i, what.size())
                .compare(what, options & FindMatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive) != 0)
            continue;
        if (options & FindWholeWord) {
            if (i > 0 && isWord(text[i - 1]))
                continue;
            if (i + what.size() < text.size() && isWord(text[i + what.size()]))
                continue;
        }
        return i;
    }
    return -1;
}

/// @return the whole text after replacing in [start, end), and the count
inline std::pair<QString, qsizetype> ReplaceAll(QString text, const QString &what, const QString &with,
                                                qsizetype start, qsizetype end, FindOptions options)
{
    qsizetype count = 0;
    for (;;) {
        const qsizetype hit = Find(text, what, start, end, options);
        if (hit < 0)
            return {text, count};
        text = text.left(hit) + with + text.mid(hit + what.size());
        ++count;
        start = hit + with.size();
        end += with.size() - what.size();
    }
}

} // namespace zelvane::oracle
