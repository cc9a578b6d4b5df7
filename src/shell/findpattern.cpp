// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findpattern.h"

#include "platform/threadtime.h"
#include "shell/findtext.h"

#include <algorithm>
#include <chrono>
#include <QChar>
#include <QRegularExpressionMatch>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The steps that an attempt at one place may take. The comment behind it keeps an expression from setting
/// another limit, which works at the very beginning only.
QString Limit(int steps = 500000)
{
    return u"(*LIMIT_MATCH="_s + QString::number(steps) + u")(?#)"_s;
}

constexpr int FewestSteps = 500;
constexpr int FewSteps = 4000;
constexpr int StretchSteps = 32000;
/// How much more work the next limit allows, about: a later step may look at more of the text than an
/// earlier one.
constexpr int MoreWork = 100;

// How hard an expression is, is measured in processor time of the searching thread: on a busy machine the
// same hits are found as on an idle one, only later. How long the user waits as a whole is up to whoever sets
// the stop.

/// An attempt that is reckoned to take longer is not made.
constexpr auto LongestAttempt = std::chrono::seconds(2);

/// The processor time that the search of a stretch may take before it goes on place by place.
std::chrono::nanoseconds LongestStretch(qsizetype length)
{
    return std::chrono::milliseconds(20) + std::chrono::nanoseconds(10) * length;
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

FindPattern::FindPattern(const QString &expression, FindOptions options)
    : m_expression(Limit() + expression,
                   QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption |
                       (options & FindMatchCase ? QRegularExpression::NoPatternOption
                                                : QRegularExpression::CaseInsensitiveOption)),
      m_bounded{QRegularExpression(Limit(FewestSteps) + expression, m_expression.patternOptions()),
                QRegularExpression(Limit(FewSteps) + expression, m_expression.patternOptions()),
                QRegularExpression(Limit(StretchSteps) + expression, m_expression.patternOptions())},
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
    : m_expressions{pattern.m_bounded[0], pattern.m_bounded[1], pattern.m_bounded[2], pattern.m_expression},
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

PatternHit PatternSearch::HitOf(const QRegularExpressionMatch &match)
{
    PatternHit hit;
    for (int group = 0; group <= match.regularExpression().captureCount(); ++group)
        hit.groups.push_back({match.capturedStart(group), match.capturedEnd(group)});
    hit.span = hit.groups.front();
    return hit;
}

bool PatternSearch::IsWholeQuick(qsizetype from) const
{
    for (qsizetype length = 16 * m_stretch; length < m_end - from; length *= 2) {
        const auto begin = ThreadTime();
        const QRegularExpressionMatch match = m_expressions[2].match(
            QString::fromRawData(m_text.constData(), WholeCharacter(from + length)), from,
            QRegularExpression::NormalMatch, QRegularExpression::DontCheckSubjectStringMatchOption);
        if (!match.isValid() || ThreadTime() - begin > LongestStretch(length))
            return false;
    }
    return true;
}

PatternSearch::Attempt PatternSearch::AttemptAt(qsizetype place, PatternHit &hit) const
{
    const QString text = QString::fromRawData(m_text.constData(), m_end);
    for (const QRegularExpression &expression : m_expressions) {
        const auto begin = ThreadTime();
        const QRegularExpressionMatch match =
            expression.match(text, place, QRegularExpression::NormalMatch,
                             QRegularExpression::DontCheckSubjectStringMatchOption |
                                 QRegularExpression::AnchorAtOffsetMatchOption);
        if (match.isValid()) {
            if (match.hasMatch())
                hit = HitOf(match);
            return match.hasMatch() ? Attempt::Hit : Attempt::Nothing;
        }
        if ((ThreadTime() - begin) * MoreWork > LongestAttempt)
            break;
    }
    return Attempt::TooHard;
}

std::optional<PatternHit> PatternSearch::NextOfAnyWords(qsizetype from)
{
    m_gaveUp = false;
    Progress at{.from = from, .end = StretchEnd(from + m_stretch), .byPlace = from};
    std::optional<PatternHit> hit;
    for (bool ended = false; !ended;) {
        if (m_stop && m_stop()) {
            m_gaveUp = true;
            break;
        }
        ended = at.from < at.byPlace ? SearchPlace(at, hit) : SearchStretch(at, hit);
    }
    return hit;
}

bool PatternSearch::SearchPlace(Progress &at, std::optional<PatternHit> &hit)
{
    PatternHit found;
    switch (AttemptAt(at.from, found)) {
    case Attempt::Hit:
        hit = std::move(found);
        return true;
    case Attempt::TooHard:
        m_gaveUp = true;
        return true;
    case Attempt::Nothing:
        break;
    }
    at.from = BehindCharacter(at.from);
    if (at.from > m_end)
        return true;
    at.end = StretchEnd(at.from + m_stretch);
    return false;
}

bool PatternSearch::SearchStretch(Progress &at, std::optional<PatternHit> &hit) const
{
    // An attempt that looks beyond the stretch says so, and is made again with more of the text: the hits are
    // those of the whole.
    const bool whole = at.end == m_end;
    const auto begin = ThreadTime();
    const QRegularExpressionMatch match = m_expressions[2].match(
        QString::fromRawData(m_text.constData(), at.end), at.from,
        whole ? QRegularExpression::NormalMatch : QRegularExpression::PartialPreferFirstMatch,
        QRegularExpression::DontCheckSubjectStringMatchOption);
    if (!match.isValid()) {
        at.byPlace = std::min(at.from + m_stretch, m_end + 1);
        return false;
    }
    if (match.hasMatch() && (whole || match.capturedStart() < at.end)) {
        hit = HitOf(match);
        return true;
    }
    if (whole)
        return true;
    if (!match.hasMatch() && !match.hasPartialMatch()) {
        at.from = at.end;
        at.end = StretchEnd(at.from + m_stretch);
        return false;
    }
    const bool isSlow = ThreadTime() - begin > LongestStretch(at.end - at.from);
    // What is told is as far before the attempt as the expression can look behind.
    if (match.hasPartialMatch() && match.capturedStart() > at.from)
        at.from = WholeCharacter(match.capturedStart());
    const qsizetype more = StretchEnd(at.end + std::max(m_stretch, at.end - at.from));
    // With the whole there are no partial matches that end the search of a stretch: all the places are gone
    // through at once.
    if (isSlow || (more == m_end && !IsWholeQuick(at.from)))
        at.byPlace = std::min(at.from + m_stretch, m_end + 1);
    else
        at.end = more;
    return false;
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

QString BadPatternText(const QString &expression, const QString &error)
{
    return u"Cannot understand the regular expression '"_s + expression + u"': "_s + error + u'.';
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
