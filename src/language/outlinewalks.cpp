// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outlinewalks.h"

#include "shell/separators.h"

#include <algorithm>

namespace zelvane
{

qsizetype Keyword::Find(QStringView text, qsizetype from, qsizetype end) const
{
    const qsizetype last = end - Size();
    while (from <= last) {
        // A look at many places at once is made without a branch; nearly always there is nothing.
        const qsizetype count = std::min<qsizetype>(last - from + 1, 64);
        if (MayStandIn(text.utf16() + from, count)) {
            for (qsizetype at = from; at < from + count; ++at) {
                if (StandsAt(text, at))
                    return at;
            }
        }
        from += count;
    }
    return -1;
}

bool Keyword::MayStandIn(const char16_t *places, qsizetype count) const
{
    const char16_t first = m_word[0], second = m_word[1], last = m_word.back();
    const char16_t *const ends = places + Size() - 1;
    unsigned hits = 0;
    for (qsizetype i = 0; i < count; ++i)
        hits |= unsigned((places[i] | 0x20) == first) & unsigned((places[i + 1] | 0x20) == second) &
                unsigned((ends[i] | 0x20) == last);
    return hits != 0;
}

bool Keyword::StandsAt(QStringView text, qsizetype at) const
{
    return (text[at].unicode() | 0x20) == m_word.front() &&
           text.sliced(at, Size()).compare(m_word, Qt::CaseInsensitive) == 0 &&
           IsWholeWord(text, at, at + Size());
}

inline void LabelLines::BeginLine(qsizetype start)
{
    m_lineStart = m_read = start;
    m_place = Place::Indent;
    m_isLabel = true;
}

inline void LabelLines::Read(QChar c)
{
    if (IsBlankOrTab(c)) {
        m_isLabel = m_isLabel && m_place == Place::Indent;
    } else if (c == u'\r') {
        // A return within the word becomes a blank of the caption, one in front of it is trimmed.
        m_place = m_place == Place::Word || m_place == Place::BehindReturn ? Place::BehindReturn
                                                                           : Place::LeadingReturns;
    } else {
        m_isLabel = m_isLabel && c != u'(' && m_place != Place::BehindReturn;
        m_place = Place::Word;
    }
}

bool LabelLines::IsLabel(qsizetype colon)
{
    qsizetype start = colon;
    while (start > m_read && m_text[start - 1] != u'\n')
        --start;
    if (start > m_read || m_read == 0)
        BeginLine(start);
    for (; m_read < colon; ++m_read)
        Read(m_text[m_read]);
    return m_isLabel && m_place != Place::BehindReturn;
}

bool TableWalk::IsTable(qsizetype start)
{
    int count = 0;
    qsizetype length = 0; // of the field that the walk is in, 0 between fields
    for (qsizetype at = start; at < m_text.size(); ++at) {
        const QChar c = m_text[at];
        if (c == u';')
            break;
        if (c == u'/') {
            if (at + 1 < m_text.size() && m_text[at + 1] == u'*')
                break;
            continue;
        }
        if (IsSeparator(c)) {
            if (length == 0)
                continue;
            TextSpan &field = m_fields[count - 1];
            field.end = field.start + length;
            length = 0;
            if (count == Fields)
                break;
            continue;
        }
        if (length++ == 0) {
            TextSpan &field = m_fields[count++];
            field = {at, at + field.Length()};
        }
    }
    const TextSpan &number = m_fields[0];
    return count == Fields && m_text.sliced(number.start, number.Length()) != u"0";
}

} // namespace zelvane
