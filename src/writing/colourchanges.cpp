// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/colourchanges.h"

#include "language/opcodelist.h"
#include "language/scanner.h"

#include <algorithm>
#include <utility>

namespace zelvane
{

namespace
{

/// Differences with fewer characters between them are coloured in one go.
constexpr qsizetype Near = 64;
/// More differences than this are coloured as one stretch.
constexpr size_t Most = 64;

qsizetype EndOf(const StyleRun &run)
{
    return qsizetype(run.start) + run.length;
}

/// Puts what of a run lies in [start, end), moved by so much, behind plain runs.
void Append(StyleRuns &runs, const StyleRun &run, qsizetype start, qsizetype end, qsizetype moved)
{
    const qsizetype from = std::max<qsizetype>(run.start, start);
    const qsizetype to = std::min(EndOf(run), end);
    if (from >= to || run.style == StyleClass::Text)
        return;
    if (!runs.empty() && runs.back().style == run.style && EndOf(runs.back()) == from + moved)
        runs.back().length += qint32(to - from);
    else
        runs.push_back({qint32(from + moved), qint32(to - from), run.style});
}

/// The first run that ends behind an offset.
StyleRuns::const_iterator FirstBehind(const StyleRuns &runs, qsizetype offset)
{
    return std::partition_point(runs.begin(), runs.end(),
                                [offset](const StyleRun &run) { return EndOf(run) <= offset; });
}

/// Walks the classes of a text.
class ClassWalk
{
public:
    ClassWalk(const StyleRuns &runs, qsizetype length) : m_runs(runs), m_length(length) {}

    /// The class at an offset, and where another one may begin; offsets must not fall.
    std::pair<StyleClass, qsizetype> At(qsizetype offset)
    {
        while (m_next < m_runs.size() && EndOf(m_runs[m_next]) <= offset)
            ++m_next;
        if (m_next == m_runs.size())
            return {StyleClass::Text, m_length};
        const StyleRun &run = m_runs[m_next];
        if (run.start > offset)
            return {StyleClass::Text, run.start};
        return {run.style, EndOf(run)};
    }

private:
    const StyleRuns &m_runs;
    qsizetype m_length;
    size_t m_next = 0;
};

} // namespace

StyleRuns PlainRuns(const StyleRuns &runs, qsizetype length)
{
    StyleRuns plain;
    plain.reserve(runs.size());
    for (const StyleRun &run : runs)
        Append(plain, run, 0, length, 0);
    return plain;
}

std::optional<StyleRuns> RefreshedColours(QStringView text, FileKind kind, const OpcodeList &opcodes)
{
    const auto plain = [&text](const StyleRuns &runs) { return PlainRuns(runs, text.size()); };
    switch (kind) {
    case FileKind::Other:
        return StyleRuns();
    case FileKind::Orchestra:
        // A scan that fails has coloured what it had found.
        return plain(ScanRange(text, 0, 0, ScanMode::Orchestra, opcodes).runs);
    case FileKind::Score:
        return plain(ScanRange(text, 0, 0, ScanMode::Score, opcodes).runs);
    case FileKind::Unified:
        return plain(ScanUnified(text, opcodes));
    default:
        return {};
    }
}

std::vector<ColourChange> ColourChanges(const StyleRuns &shown, const StyleRuns &wanted, qsizetype length)
{
    std::vector<TextSpan> spans;
    ClassWalk now(shown, length);
    ClassWalk then(wanted, length);
    for (qsizetype at = 0; at < length;) {
        const auto [one, oneEnd] = now.At(at);
        const auto [other, otherEnd] = then.At(at);
        const qsizetype end = std::min({oneEnd, otherEnd, length});
        if (one != other) {
            if (!spans.empty() && at - spans.back().end < Near)
                spans.back().end = end;
            else
                spans.push_back({at, end});
        }
        at = end;
    }
    if (spans.size() > Most)
        spans = {{spans.front().start, spans.back().end}};

    std::vector<ColourChange> changes;
    for (const TextSpan &span : spans) {
        ColourChange change{span, {}};
        for (auto run = FirstBehind(wanted, span.start); run != wanted.end() && run->start < span.end; ++run)
            Append(change.runs, *run, span.start, span.end, 0);
        changes.push_back(std::move(change));
    }
    return changes;
}

void KnownColours::Know(StyleRuns runs)
{
    m_known = true;
    m_runs = std::move(runs);
    m_edited = false;
    m_longerBy = 0;
}

void KnownColours::Edited(qsizetype offset, qsizetype removed, qsizetype added)
{
    m_longerBy += added - removed;
    if (!std::exchange(m_edited, true)) {
        m_unknown = {offset, offset + added};
        return;
    }
    m_unknown.start = std::min(m_unknown.start, offset);
    m_unknown.end = std::max(m_unknown.end, offset + removed) + added - removed;
}

TextSpan KnownColours::Unknown(qsizetype length) const
{
    if (!m_known)
        return {0, length};
    return m_edited ? m_unknown : TextSpan();
}

StyleRuns KnownColours::With(const StyleRuns &stretch, qsizetype length) const
{
    const TextSpan unknown = Unknown(length);
    StyleRuns runs;
    runs.reserve(stretch.size() + (m_known ? m_runs.size() + 1 : 0));
    const qsizetype behind = unknown.end - m_longerBy; // in the text of the known runs
    if (m_known) {
        for (auto run = m_runs.begin(); run != m_runs.end() && run->start < unknown.start; ++run)
            Append(runs, *run, 0, unknown.start, 0);
    }
    for (const StyleRun &run : stretch)
        Append(runs, run, 0, unknown.Length(), unknown.start);
    if (m_known) {
        for (auto run = FirstBehind(m_runs, behind); run != m_runs.end(); ++run)
            Append(runs, *run, behind, length - m_longerBy, m_longerBy);
    }
    return runs;
}

} // namespace zelvane
