// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/scoreprogress.h"

#include <algorithm>
#include <cmath>

namespace zelvane
{

std::optional<double> ScoreProgress(QStringView line)
{
    constexpr QStringView total = u" TT";
    if (!line.startsWith(u'B') || !line.contains(u" .."))
        return {};
    const qsizetype at = line.indexOf(total);
    if (at < 0)
        return {};
    QStringView rest = line.sliced(at + total.size());
    while (rest.startsWith(u' '))
        rest = rest.sliced(1);
    const auto *end =
        std::find_if_not(rest.begin(), rest.end(), [](QChar c) { return c == u'.' || c.isDigit(); });
    bool isNumber = false;
    const double seconds = rest.first(end - rest.begin()).toDouble(&isNumber);
    return isNumber && std::isfinite(seconds) ? std::optional(seconds) : std::nullopt;
}

} // namespace zelvane
