// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <ctime>
#include <functional>
#include <limits>

namespace zelvane::test
{

/// The least processor time that one of some runs of a work has taken, in seconds. What other programs take
/// of the machine does not count, as it would by the clock on the wall; on some systems the steps are
/// hundredths of a second.
inline double LeastProcessorTime(int runs, const std::function<void()> &work)
{
    std::clock_t least = std::numeric_limits<std::clock_t>::max();
    for (int i = 0; i < runs; ++i) {
        const std::clock_t start = std::clock();
        work();
        least = std::min(least, std::clock() - start);
    }
    return double(least) / CLOCKS_PER_SEC;
}

} // namespace zelvane::test
