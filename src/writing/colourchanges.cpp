// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/colourchanges.h"

#include "language/opcodelist.h"
#include "language/scanner.h"

#include <algorithm>
#include <span>
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
    ClassWalk(std::span<const StyleRun> runs, qsizetype length) : m_runs(runs), m_length(length) {}

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
    std::span<const StyleRun> m_runs;
    qsizetype m_length;
    size_t m_next = 0;
};

/// Where the classes differ, in the order of the text.
std::vector<TextSpan> Differences(ClassWalk now, ClassWalk then, qsizetype length)
{
    std::vector<TextSpan> spans;
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
    return spans;
}

std::vector<ColourChange> ChangesOf(const std::vector<TextSpan> &spans, const StyleRuns &wanted)
{
    std::vector<ColourChange> changes;
    for (const TextSpan &span : spans) {
        ColourChange change{span, {}};
        for (auto run = FirstBehind(wanted, span.start); run != wanted.end() && run->start < span.end; ++run)
            Append(change.runs, *run, span.start, span.end, 0);
        changes.push_back(std::move(change));
    }
    return changes;
}

} // namespace

StyleRuns PlainRuns(StyleRuns runs, qsizetype length)
{
    // A long text has a million of them: they are made plain where they stand.
    auto kept = runs.begin();
    for (StyleRun run : runs) {
        const qsizetype from = std::max<qsizetype>(run.start, 0);
        const qsizetype to = std::min(EndOf(run), length);
        if (from >= to || run.style == StyleClass::Text)
            continue;
        run = {qint32(from), qint32(to - from), run.style};
        if (kept != runs.begin() && kept[-1].style == run.style && EndOf(kept[-1]) == from)
            kept[-1].length += run.length;
        else
            *kept++ = run;
    }
    runs.erase(kept, runs.end());
    return runs;
}

std::optional<StyleRuns> RefreshedColours(QStringView text, FileKind kind, const OpcodeList &opcodes)
{
    const auto plain = [&text](StyleRuns runs) { return PlainRuns(std::move(runs), text.size()); };
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
    return ChangesOf(Differences(ClassWalk(shown, length), ClassWalk(wanted, length), length), wanted);
}

void KnownColours::Know(StyleRuns runs)
{
    m_known = true;
    m_runs = std::move(runs);
    m_edited = false;
    m_longerBy = 0;
}

void KnownColours::Edited(const TextEdit &edit)
{
    m_longerBy += edit.added - edit.removed;
    if (!std::exchange(m_edited, true)) {
        m_unknown = {edit.offset, edit.offset + edit.added};
        return;
    }
    m_unknown.start = std::min(m_unknown.start, edit.offset);
    m_unknown.end = std::max(m_unknown.end, edit.offset + edit.removed) + edit.added - edit.removed;
}

TextSpan KnownColours::Unknown(qsizetype length) const
{
    if (!m_known)
        return {0, length};
    return m_edited ? m_unknown : TextSpan();
}

std::vector<ColourChange> KnownColours::Changes(const StyleRuns &stretch, const StyleRuns &wanted,
                                                qsizetype length) const
{
    const TextSpan unknown = Unknown(length);
    // Most runs are as they were: those before the edits, and those behind them but for where they stand.
    const auto same = [](const StyleRun &known, const StyleRun &run, qsizetype by) {
        return known.start + by == run.start && known.length == run.length && known.style == run.style;
    };
    const qsizetype most = m_known ? qsizetype(std::min(m_runs.size(), wanted.size())) : 0;
    qsizetype before = 0;
    while (before < most && EndOf(m_runs[size_t(before)]) <= unknown.start &&
           same(m_runs[size_t(before)], wanted[size_t(before)], 0))
        ++before;
    qsizetype behind = 0;
    for (auto known = m_runs.rbegin(), run = wanted.rbegin();
         behind < most - before && known->start + m_longerBy >= unknown.end && same(*known, *run, m_longerBy);
         ++known, ++run)
        ++behind;
    const auto between = [before, behind](const StyleRuns &runs) {
        return std::span<const StyleRun>(runs).subspan(size_t(before), runs.size() - size_t(before + behind));
    };
    const StyleRuns shown = Joined(m_known ? between(m_runs) : std::span<const StyleRun>(), stretch, length);
    return ChangesOf(Differences(ClassWalk(shown, length), ClassWalk(between(wanted), length), length),
                     wanted);
}

StyleRuns KnownColours::With(const StyleRuns &stretch, qsizetype length) const
{
    return Joined(m_known ? std::span<const StyleRun>(m_runs) : std::span<const StyleRun>(), stretch, length);
}

StyleRuns KnownColours::Joined(std::span<const StyleRun> known, const StyleRuns &stretch,
                               qsizetype length) const
{
    const TextSpan unknown = Unknown(length);
    StyleRuns runs;
    runs.reserve(stretch.size() + known.size() + 1);
    const qsizetype behind = unknown.end - m_longerBy; // in the text of the known runs
    for (const StyleRun &run : known) {
        if (run.start >= unknown.start)
            break;
        Append(runs, run, 0, unknown.start, 0);
    }
    for (const StyleRun &run : stretch)
        Append(runs, run, 0, unknown.Length(), unknown.start);
    for (const StyleRun &run : known) {
        if (EndOf(run) > behind)
            Append(runs, run, behind, length - m_longerBy, m_longerBy);
    }
    return runs;
}

} // namespace zelvane
