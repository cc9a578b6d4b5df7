// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/linestore.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zelvane
{

qint64 LineStore::Cost(const StoredLine &line)
{
    // A span takes the room of some characters: a line of spans alone is no way round the limit.
    return line.line.text.size() + qint64(line.line.spans.size() * sizeof(StyleSpan) / sizeof(QChar));
}

qint64 LineStore::Append(StyledLine line)
{
    m_longest = std::max(m_longest, line.text.size());
    m_lines.push_back({.line = std::move(line)});
    m_characters += Cost(m_lines.back());
    while (m_lines.size() > 1 &&
           (qint64(m_lines.size()) > m_limits.lines || m_characters > m_limits.characters)) {
        m_characters -= Cost(m_lines.front());
        m_lines.pop_front();
        ++m_first;
    }
    while (!m_marked.empty() && m_marked.front() < m_first)
        m_marked.pop_front();
    return End() - 1;
}

void LineStore::PutFirst(std::vector<StoredLine> lines)
{
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        m_longest = std::max(m_longest, line->line.text.size());
        m_characters += Cost(*line);
        --m_first;
        if (line->mark != LineMark::None)
            m_marked.push_front(m_first);
        m_lines.push_front(std::move(*line));
    }
}

void LineStore::Mark(qint64 number, LineMark mark)
{
    if (number < m_first || number >= End() || mark == LineMark::None)
        return;
    StoredLine &line = m_lines[size_t(number - m_first)];
    if (line.mark == LineMark::None)
        m_marked.insert(std::upper_bound(m_marked.begin(), m_marked.end(), number), number);
    line.mark = std::max(line.mark, mark);
}

std::optional<qint64> LineStore::NextMarked(qint64 from, int step) const
{
    if (step > 0) {
        const auto next = std::upper_bound(m_marked.begin(), m_marked.end(), from);
        return next == m_marked.end() ? std::nullopt : std::optional(*next);
    }
    const auto here = std::lower_bound(m_marked.begin(), m_marked.end(), from);
    return here == m_marked.begin() ? std::nullopt : std::optional(*std::prev(here));
}

} // namespace zelvane
