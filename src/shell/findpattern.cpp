// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findpattern.h"

#include "shell/findtext.h"

#include <algorithm>
#include <QChar>
#include <QRegularExpressionMatch>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The steps that an attempt at one place may take: some milliseconds. The comment behind it keeps an
/// expression from setting another limit, which works at the very beginning only.
QString Limit()
{
    return u"(*LIMIT_MATCH=500000)(?#)"_s;
}

/// The engine wants whole characters. Half ones are replaced, so that all offsets stay.
QString WithWholeCharacters(const QString &text)
{
    if (QStringView(text).isValidUtf16())
        return text;
    QString whole = text;
    for (qsizetype i = 0; i < whole.size(); ++i) {
        if (whole[i].isHighSurrogate() && i + 1 < whole.size() && whole[i + 1].isLowSurrogate())
            ++i;
        else if (whole[i].isSurrogate())
            whole[i] = QChar::ReplacementCharacter;
    }
    return whole;
}

bool IsBackslash(QChar c)
{
    return c == u'\\';
}

/// The number of the group that an escaped character means; -1 when it is none.
int GroupOf(QChar c)
{
    return c >= u'0' && c <= u'9' ? c.unicode() - u'0' : -1;
}

} // namespace

FindPattern::FindPattern(const QString &expression, int options)
    : m_expression(Limit() + expression,
                   QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption |
                       (options & FindMatchCase ? QRegularExpression::NoPatternOption
                                                : QRegularExpression::CaseInsensitiveOption)),
      m_wholeWords(options & FindWholeWord)
{
}

QString FindPattern::Error() const
{
    if (IsValid())
        return {};
    const qsizetype place = std::max<qsizetype>(m_expression.patternErrorOffset() - Limit().size(), 0);
    return m_expression.errorString() + u" (at character "_s + QString::number(place + 1) + u')';
}

PatternSearch::PatternSearch(const FindPattern &pattern, const QString &text, qsizetype end,
                             qsizetype stretch)
    : m_expression(pattern.m_expression),
      m_wholeWords(pattern.m_wholeWords),
      m_text(WithWholeCharacters(text)),
      m_end(end < 0 || end > text.size() ? text.size() : end),
      m_stretch(stretch)
{
    // Not in the middle of a character.
    if (m_end > 0 && m_end < m_text.size() && m_text[m_end].isLowSurrogate())
        --m_end;
}

std::optional<PatternHit> PatternSearch::Next(qsizetype from)
{
    from = WholeCharacter(from);
    while (from <= m_end) {
        std::optional<PatternHit> hit = NextOfAnyWords(from);
        if (!hit || !m_wholeWords)
            return hit;
        const TextSpan &span = hit->span;
        if ((span.start == 0 || !IsWordCharacter(m_text[span.start - 1])) &&
            (span.end == m_text.size() || !IsWordCharacter(m_text[span.end])))
            return hit;
        from = BehindCharacter(span.start);
    }
    return std::nullopt;
}

std::optional<PatternHit> PatternSearch::NextBehind(const TextSpan &hit)
{
    const std::optional<PatternHit> next = Next(hit.end);
    return next && next->span == TextSpan{hit.end, hit.end} ? Next(BehindCharacter(hit.end)) : next;
}

std::optional<PatternHit> PatternSearch::NextOfAnyWords(qsizetype from)
{
    m_gaveUp = false;
    qsizetype end = StretchEnd(from + m_stretch);
    for (;;) {
        if (m_stop && m_stop()) {
            m_gaveUp = true;
            return std::nullopt;
        }
        // An attempt that looks beyond the stretch says so, and is made again with more of the text: the hits
        // are those of the whole.
        const bool whole = end == m_end;
        const QRegularExpressionMatch match = m_expression.match(
            QString::fromRawData(m_text.constData(), end), from,
            whole ? QRegularExpression::NormalMatch : QRegularExpression::PartialPreferFirstMatch,
            QRegularExpression::DontCheckSubjectStringMatchOption);
        if (!match.isValid()) {
            m_gaveUp = true;
            return std::nullopt;
        }
        if (match.hasMatch() && (whole || match.capturedStart() < end)) {
            PatternHit hit;
            for (int group = 0; group <= m_expression.captureCount(); ++group)
                hit.groups.push_back({match.capturedStart(group), match.capturedEnd(group)});
            hit.span = hit.groups.front();
            return hit;
        }
        if (whole)
            return std::nullopt;
        if (match.hasMatch() || match.hasPartialMatch()) {
            // What is told is as far before the attempt as the expression can look behind.
            if (match.hasPartialMatch() && match.capturedStart() > from)
                from = WholeCharacter(match.capturedStart());
            end = StretchEnd(end + std::max(m_stretch, end - from));
        } else {
            from = end;
            end = StretchEnd(from + m_stretch);
        }
    }
}

qsizetype PatternSearch::StretchEnd(qsizetype least) const
{
    if (least >= m_end)
        return m_end;
    const qsizetype most = std::min(least + m_stretch, m_end);
    const qsizetype lineEnd = QStringView(m_text).sliced(least, most - least).indexOf(u'\n');
    qsizetype end = lineEnd < 0 ? most : least + lineEnd + 1;
    // Where a text ends with a line end, "^" does not match behind it.
    while (end < m_end && m_text[end - 1] == u'\n')
        ++end;
    return WholeCharacter(end);
}

qsizetype PatternSearch::WholeCharacter(qsizetype offset) const
{
    return offset < m_end && m_text[offset].isLowSurrogate() ? offset + 1 : offset;
}

qsizetype PatternSearch::BehindCharacter(qsizetype offset) const
{
    return WholeCharacter(offset + 1);
}

QString ReplacementError(QStringView replacement, int groupCount)
{
    for (qsizetype i = 0; i + 1 < replacement.size(); ++i) {
        if (!IsBackslash(replacement[i]))
            continue;
        const int group = GroupOf(replacement[++i]);
        if (group > groupCount)
            return u"there is no group "_s + QString::number(group) + u" in the expression"_s;
    }
    return {};
}

QString ReplacementOf(QStringView replacement, const QString &text, const PatternHit &hit)
{
    QString put;
    for (qsizetype i = 0; i < replacement.size(); ++i) {
        if (!IsBackslash(replacement[i]) || i + 1 == replacement.size()) {
            put += replacement[i];
            continue;
        }
        const QChar escaped = replacement[++i];
        const int group = GroupOf(escaped);
        if (group >= 0) {
            const TextSpan span =
                group < int(hit.groups.size()) ? hit.groups[std::size_t(group)] : TextSpan{};
            if (!span.IsEmpty())
                put += QStringView(text).sliced(span.start, span.Length());
        } else if (escaped == u'n') {
            put += u'\n';
        } else if (escaped == u't') {
            put += u'\t';
        } else if (IsBackslash(escaped)) {
            put += escaped;
        } else {
            put += u'\\';
            put += escaped;
        }
    }
    return put;
}

std::vector<TextReplacement> PatternReplacements(PatternSearch &search, QStringView replacement,
                                                 qsizetype start)
{
    std::vector<TextReplacement> all;
    for (std::optional<PatternHit> hit = search.Next(start); hit; hit = search.NextBehind(hit->span))
        all.push_back({hit->span, ReplacementOf(replacement, search.Text(), *hit)});
    return all;
}

} // namespace zelvane
