// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/styledtext.h"

#include "platform/systemcolour.h"

#include <algorithm>
#include <cstring>
#include <QByteArray>
#include <utility>

namespace zelvane
{

namespace
{

/// Runs of rising order without overlaps: what is between them is filled.
class Filler
{
public:
    explicit Filler(size_t runs) { m_runs.reserve(2 * runs + 1); }

    void Add(qsizetype start, qsizetype end, StyleClass style)
    {
        FillTo(start);
        Put(end, style);
    }
    void FillTo(qsizetype end) { Put(end, StyleClass::Text); }
    StyleRuns Take() { return std::move(m_runs); }

private:
    void Put(qsizetype end, StyleClass style)
    {
        if (end <= m_end)
            return;
        if (!m_runs.empty() && m_runs.back().style == style)
            m_runs.back().length += qint32(end - m_end);
        else
            m_runs.push_back({qint32(m_end), qint32(end - m_end), style});
        m_end = end;
    }

    StyleRuns m_runs;
    qsizetype m_end = 0;
};

bool AreInOrder(const StyleRuns &runs)
{
    qsizetype end = 0;
    for (const StyleRun &run : runs) {
        if (run.start < end || run.length < 0)
            return false;
        end = qsizetype(run.start) + run.length;
    }
    return true;
}

/// The runs by the class of each character, which any runs can be painted on.
StyleRuns Painted(const StyleRuns &runs, qsizetype length)
{
    QByteArray classes(length, char(StyleClass::Text));
    char *const cells = classes.data();
    for (const StyleRun &run : runs) {
        const qsizetype start = std::clamp<qsizetype>(run.start, 0, length);
        const qsizetype end = std::clamp<qsizetype>(qsizetype(run.start) + run.length, start, length);
        std::memset(cells + start, int(run.style), size_t(end - start));
    }
    Filler covering(runs.size());
    for (qsizetype start = 0; start < length;) {
        qsizetype end = start + 1;
        while (end < length && cells[end] == cells[start])
            ++end;
        covering.Add(start, end, StyleClass(cells[start]));
        start = end;
    }
    return covering.Take();
}

} // namespace

StyleRuns CoveringRuns(const StyleRuns &runs, qsizetype length)
{
    if (!AreInOrder(runs))
        return Painted(runs, length);
    Filler covering(runs.size());
    for (const StyleRun &run : runs) {
        const qsizetype start = std::min<qsizetype>(run.start, length);
        covering.Add(start, std::min<qsizetype>(start + run.length, length), run.style);
    }
    covering.FillTo(length);
    return covering.Take();
}

quint32 ColourOnPaper(const StyleFormat &format)
{
    return format.colour & SystemColourBit ? 0 : format.colour & 0xFFFFFF;
}

} // namespace zelvane
