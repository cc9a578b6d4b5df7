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
    MakeNodes();
}

void MacroNames::MakeNodes()
{
    // The names that go on behind each node, whose place is that of the node.
    struct Names {
        std::size_t low, high;
    };
    std::vector<Names> names = {{0, m_names.size()}};
    m_nodes.push_back({});
    qsizetype length = 0;
    for (std::size_t level = 0, levelEnd = 1; level < levelEnd; ++length) {
        for (std::size_t node = level; node < levelEnd; ++node) {
            auto [low, high] = names[node - level];
            m_nodes[node].shorterName = LongestName(m_nodes[node].suffix);
            if (low < high && m_names[low].size() == length)
                m_nodes[node].group = qint32(low++);
            m_nodes[node].children = qint32(m_nodes.size());
            while (low < high) {
                const QChar c = m_names[low][length];
                const auto begin = m_names.begin() + std::ptrdiff_t(low);
                const auto end = m_names.begin() + std::ptrdiff_t(high);
                const auto behind =
                    std::partition_point(begin, end, [&](QStringView name) { return name[length] == c; });
                m_nodes.push_back({.suffix = Next(m_nodes[node].suffix, c), .c = c.unicode()});
                const auto next = std::size_t(behind - m_names.begin());
                names.push_back({low, next});
                low = next;
            }
            m_nodes[node].childrenEnd = qint32(m_nodes.size());
        }
        names.erase(names.begin(), names.begin() + std::ptrdiff_t(levelEnd - level));
        level = levelEnd;
        levelEnd = m_nodes.size();
    }
}

qint32 MacroNames::Next(qint32 node, QChar c) const
{
    for (; node != None; node = m_nodes[std::size_t(node)].suffix) {
        const Node &from = m_nodes[std::size_t(node)];
        const auto begin = m_nodes.begin() + from.children;
        const auto end = m_nodes.begin() + from.childrenEnd;
        const auto child =
            std::partition_point(begin, end, [c](const Node &other) { return other.c < c.unicode(); });
        if (child != end && child->c == c.unicode())
            return qint32(child - m_nodes.begin());
    }
    return c == u'$' ? 0 : None;
}

} // namespace zelvane
