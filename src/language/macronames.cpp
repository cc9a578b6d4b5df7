// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/macronames.h"

#include <algorithm>
#include <numeric>

namespace zelvane
{

MacroNames::MacroNames(const std::vector<QStringView> &names)
{
    std::vector<qint32> order(names.size());
    std::iota(order.begin(), order.end(), 0);
    const auto nameAt = [&names](qint32 place) { return names[std::size_t(place)]; };
    std::stable_sort(order.begin(), order.end(),
                     [&](qint32 one, qint32 other) { return nameAt(one) < nameAt(other); });
    for (const qint32 place : order) {
        if (m_names.empty() || m_names.back().name != nameAt(place))
            m_names.push_back({nameAt(place), {}});
        m_names.back().places.push_back(place);
    }
}

void MacroNames::Narrow(Iterator &low, Iterator &high, qsizetype length, QChar c)
{
    low = std::partition_point(low, high, [&](const Name &name) { return name.name[length] < c; });
    high = std::partition_point(low, high, [&](const Name &name) { return name.name[length] == c; });
}

} // namespace zelvane
