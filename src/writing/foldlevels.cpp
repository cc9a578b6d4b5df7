// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/foldlevels.h"

#include <algorithm>
#include <cstddef>

namespace zelvane
{

namespace
{

/// Lines from 0, both included.
struct LineRange {
    qint32 first = 0;
    qint32 last = 0;
};

std::vector<qint32> LineStarts(QStringView text)
{
    std::vector<qint32> starts = {0};
    for (qsizetype feed = -1; (feed = text.indexOf(u'\n', feed + 1)) >= 0;)
        starts.push_back(qint32(feed) + 1);
    return starts;
}

/// The lines of the blocks that have several, one for each first line, in their order.
std::vector<LineRange> LinesOf(const std::vector<Block> &blocks, const std::vector<qint32> &starts)
{
    const auto lineOf = [&starts](qint32 offset) {
        return qint32(std::upper_bound(starts.begin(), starts.end(), offset) - starts.begin()) - 1;
    };
    std::vector<LineRange> ranges;
    for (const Block &block : blocks) {
        const LineRange range{lineOf(block.start), lineOf(block.end - 1)};
        if (range.last > range.first)
            ranges.push_back(range);
    }
    std::sort(ranges.begin(), ranges.end(), [](const LineRange &one, const LineRange &other) {
        return one.first != other.first ? one.first < other.first : one.last > other.last;
    });
    const auto behind =
        std::unique(ranges.begin(), ranges.end(),
                    [](const LineRange &one, const LineRange &other) { return one.first == other.first; });
    ranges.erase(behind, ranges.end());
    return ranges;
}

} // namespace

std::vector<FoldLine> FoldLevels(QStringView text, const std::vector<Block> &blocks)
{
    const std::vector<qint32> starts = LineStarts(text);
    const std::vector<LineRange> ranges = LinesOf(blocks, starts);
    std::vector<FoldLine> lines(starts.size());
    std::vector<LineRange> open; // the outermost first; none ends before one that stands in it
    auto next = ranges.begin();
    for (qint32 line = 0; line < qint32(lines.size()); ++line) {
        while (!open.empty() && open.back().last < line)
            open.pop_back();
        const bool begins = next != ranges.end() && next->first == line;
        while (begins && !open.empty() && open.back().last < next->last) {
            // It ends in the middle of the new one, so it ends before it.
            if (open.back().first == line - 1)
                lines[std::size_t(line) - 1].isHeader = false;
            open.pop_back();
        }
        lines[std::size_t(line)] = {quint16(std::min<std::size_t>(open.size(), DeepestFold)),
                                    begins && open.size() < DeepestFold};
        if (begins)
            open.push_back(*next++);
    }
    return lines;
}

} // namespace zelvane
