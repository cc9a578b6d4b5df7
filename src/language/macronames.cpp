// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/macronames.h"

#include <algorithm>

namespace zelvane
{

MacroNames::MacroNames(const std::vector<QStringView> &names) : m_names(names)
{
    std::sort(m_names.begin(), m_names.end());
    m_names.erase(std::unique(m_names.begin(), m_names.end()), m_names.end());
    m_groups.reserve(names.size());
    for (const QStringView name : names)
        m_groups.push_back(
            std::size_t(std::lower_bound(m_names.begin(), m_names.end(), name) - m_names.begin()));
}

void MacroNames::Narrow(Iterator &low, Iterator &high, qsizetype length, QChar c)
{
    low = std::partition_point(low, high, [&](QStringView name) { return name[length] < c; });
    high = std::partition_point(low, high, [&](QStringView name) { return name[length] == c; });
}

} // namespace zelvane
