// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "shell/findtext.h"

#include <optional>
#include <QRegularExpression>
#include <QRegularExpressionMatch>
#include <QString>
#include <QtGlobal>
#include <utility>

/// Searching and replacing by regular expressions, one place after the other.
namespace zelvane::oracle
{

inline QRegularExpression Expression(const QString &expression, FindOptions options)
{
    auto all = QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption;
    if (!(options & FindMatchCase))
        all |= QRegularExpression::CaseInsensitiveOption;
    return QRegularExpression(expression, all);
}

inline std::optional<TextSpan> FindPattern(const QString &text, const QRegularExpression &expression,
                                           qsizetype from, qsizetype end, FindOptions options)
{
    for (qsizetype at = from; at <= end; ++at) {
        if (at > 0 && at < text.size() && text[at].isLowSurrogate())
            continue;
        const QRegularExpressionMatch match =
            expression.match(text.first(end), at, QRegularExpression::NormalMatch,
                             QRegularExpression::AnchorAtOffsetMatchOption);
        if (!match.hasMatch())
            continue;
        const TextSpan hit{match.capturedStart(), match.capturedEnd()};
        const auto isWord = [&](qsizetype i) {
            return i >= 0 && i < text.size() && IsWordCharacter(text[i]);
        };
        if (!(options & FindWholeWord) || (!isWord(hit.start - 1) && !isWord(hit.end)))
            return hit;
    }
    return std::nullopt;
}

/// Puts "<", group 1 and ">" in the place of each hit. @return the text and how often
inline std::pair<QString, qsizetype> ReplacePattern(const QString &text, const QRegularExpression &expression,
                                                    qsizetype start, qsizetype end, FindOptions options)
{
    QString result = text.first(start);
    qsizetype kept = start;
    qsizetype count = 0;
    for (qsizetype at = start; at <= end;) {
        const auto hit = FindPattern(text, expression, at, end, options);
        if (!hit)
            break;
        if (hit->IsEmpty() && count > 0 && hit->start == kept) {
            at = hit->start + 1;
            continue;
        }
        const QString group = expression
                                  .match(text.first(end), hit->start, QRegularExpression::NormalMatch,
                                         QRegularExpression::AnchorAtOffsetMatchOption)
                                  .captured(1);
        result += text.mid(kept, hit->start - kept) + u'<' + group + u'>';
        kept = at = hit->end;
        ++count;
    }
    return {result + text.mid(kept), count};
}

} // namespace zelvane::oracle
