// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/styledline.h"

#include <deque>
#include <optional>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// What a line of output is about.
enum class LineMark : quint8 { None, Warning, Error };

struct StoredLine {
    StyledLine line = {};
    LineMark mark = LineMark::None;
};

/// The last lines of a program's output, as many as two limits allow. Lines are numbered from 0 from the
/// first one on; a number stays with its line.
class LineStore
{
public:
    struct Limits {
        qint64 lines = 100'000;
        qint64 characters = 6'000'000; ///< UTF-16 units
    };

    LineStore() = default;
    explicit LineStore(Limits limits) : m_limits(limits) {}

    /// The newest line is kept however long it is. @return its number
    qint64 Append(StyledLine line);
    /// Puts lines before the oldest one, under the numbers before its own. They go first when more come.
    void PutFirst(std::vector<StoredLine> lines);
    /// Marks a line, if it is still there. A heavier mark stays.
    void Mark(qint64 number, LineMark mark);

    qint64 First() const { return m_first; } ///< the oldest line that is still there
    qint64 End() const { return m_first + qint64(m_lines.size()); }
    /// @param number from First to before End
    const StoredLine &At(qint64 number) const { return m_lines[size_t(number - m_first)]; }
    qsizetype LongestLine() const { return m_longest; } ///< of all that ever were

    /// The next marked line after (`step` 1) or before (`step` -1) a line; none where there is no more.
    std::optional<qint64> NextMarked(qint64 from, int step) const;

private:
    static qint64 Cost(const StoredLine &line);

    Limits m_limits = {};
    std::deque<StoredLine> m_lines;
    std::deque<qint64> m_marked; ///< in order
    qint64 m_first = 0;
    qint64 m_characters = 0;
    qsizetype m_longest = 0;
};

} // namespace zelvane
