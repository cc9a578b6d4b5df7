// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/charclass.h"
#include "language/scanner.h"
#include "shell/findtext.h"
#include "writing/blocks.h"
#include "writing/codemap.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

/// What is code, which brackets and which blocks belong together, and how deep lines stand: one character
/// after the other, with a search for each question. Slow and obvious; nothing but tests uses them.
namespace zelvane::oracle
{

/// Paints the parts of [start, end) over `parts`, which has a character for each of the text: C code,
/// L line comment, B block comment, Q quoted, R braced.
inline void PaintParts(const QString &text, qsizetype start, qsizetype end, bool isOrchestra,
                       QByteArray &parts)
{
    const auto paint = [&](qsizetype from, qsizetype to, char part) {
        for (qsizetype i = from; i < to; ++i)
            parts[i] = part;
    };
    qsizetype i = start;
    while (i < end) {
        if (isOrchestra && i + 1 < end && text.mid(i, 2) == QStringLiteral("{{")) {
            const qsizetype closing = text.indexOf(QStringLiteral("}}"), i + 2);
            if (closing >= 0 && closing + 2 <= end) {
                paint(i, closing + 2, 'R');
                i = closing + 2;
            } else {
                i = i + 2;
            }
            continue;
        }
        if (i >= end - 1)
            break;
        const QChar c = text[i];
        if (c == u';') {
            qsizetype feed = i;
            while (feed < text.size() && text[feed] != u'\n')
                ++feed;
            if (feed == text.size())
                return;
            paint(i, feed + 1, 'L');
            i = feed + 1;
        } else if (c == u'/' && text.mid(i + 1, 1) == QStringLiteral("*")) {
            const qsizetype closing = text.indexOf(QStringLiteral("*/"), i + 1);
            if (closing < 0)
                return;
            for (qsizetype k = i; k < closing + 2; ++k)
                parts[k] = 'B';
            i = closing + 1;
        } else if (c == u'#' && (text.mid(i, 8) == QStringLiteral("#define ") ||
                                 text.mid(i, 8) == QStringLiteral("#define\t"))) {
            i = i + 8;
        } else if (c == u'#' && (text.mid(i, 9) == QStringLiteral("#include ") ||
                                 text.mid(i, 9) == QStringLiteral("#include\t"))) {
            i = i + 9;
        } else if (c == u'$') {
            ++i;
            while (i < text.size() && IsAnsiLetterOrDigit(text[i].unicode()))
                ++i;
            if (i == text.size())
                return;
            if (!isOrchestra || text.mid(i, 2) != QStringLiteral("{{") || i + 2 > end)
                ++i;
        } else if (c == u'"') {
            qsizetype quote = i + 1;
            while (quote < end && text[quote] != u'"')
                ++quote;
            paint(i, quote < end ? quote + 1 : end, 'Q');
            i = quote + 1;
        } else {
            ++i;
        }
    }
}

/// The partner of each character, or of the first of two braces; -1 where it has none, -2 where it is no
/// bracket. Only of a section; `parts` as PaintParts gives them.
inline QList<qsizetype> Partners(const QString &text, const QByteArray &parts, bool isOrchestra)
{
    QList<qsizetype> partners(text.size(), -2);
    QList<std::pair<QString, qsizetype>> open;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (parts[i] != 'C')
            continue;
        QString mark = text.mid(i, 1);
        if (isOrchestra && (mark == u'{' || mark == u'}') && i + 1 < text.size() && parts[i + 1] == 'C' &&
            text[i + 1] == text[i])
            mark = mark + mark;
        const qsizetype kind =
            QStringList{QStringLiteral("("), QStringLiteral(")"), QStringLiteral("["),  QStringLiteral("]"),
                        QStringLiteral("{"), QStringLiteral("}"), QStringLiteral("{{"), QStringLiteral("}}")}
                .indexOf(mark);
        if (kind < 0)
            continue;
        partners[i] = -1;
        const QString opening = QStringList{QStringLiteral("("), QStringLiteral("["), QStringLiteral("{"),
                                            QStringLiteral("{{")}[kind / 2];
        if (kind % 2 == 0) {
            open.append({mark, i});
        } else {
            qsizetype found = -1;
            for (qsizetype k = 0; k < open.size(); ++k) {
                if (open[k].first == opening)
                    found = k;
            }
            if (found >= 0) {
                partners[i] = open[found].second;
                partners[open[found].second] = i;
                open = open.mid(0, found);
            }
        }
        i = i + mark.size() - 1;
    }
    return partners;
}

} // namespace zelvane::oracle
