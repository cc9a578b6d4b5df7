// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outlinebuilder.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace zelvane
{

void OutlineBuilder::AddMacros(const std::vector<FoundMacro> &macros,
                               const std::vector<std::vector<Call>> &calls, const MacroNames &names)
{
    std::vector<qsizetype> starts; // of the calls of each name in the outline's list
    for (const std::vector<Call> &ofName : calls) {
        starts.push_back(qsizetype(m_outline.m_calls.size()));
        m_outline.m_calls.insert(m_outline.m_calls.end(), ofName.begin(), ofName.end());
    }
    const qint32 root = AddRoot(OutlineKind::Macro);
    m_outline.m_firstMacro = Count();
    qsizetype places = 0;
    for (std::size_t i = 0; i < macros.size(); ++i) {
        const FoundMacro &macro = macros[i];
        const std::vector<Call> &ofName = calls[names.GroupOf(i)];
        const auto first =
            std::lower_bound(ofName.begin(), ofName.end(), macro.define,
                             [](const Call &call, qsizetype define) { return call.tag < define; });
        const qsizetype start = starts[names.GroupOf(i)];
        places += ofName.end() - first;
        m_outline.m_macros.push_back(
            {start + (first - ofName.begin()), start + qsizetype(ofName.size()), places});
        Add({.kind = OutlineKind::Macro,
             .parent = root,
             .number = qint32(i) + 1,
             .tag = qint32(macro.define),
             .caption = macro.caption});
    }
}

Outline OutlineBuilder::Done()
{
    const std::vector<OutlineNode> &nodes = m_outline.m_nodes;
    std::vector<qint32> &ends = m_outline.m_childrenEnd;
    ends.assign(nodes.size() + 1, 0);
    for (const OutlineNode &node : nodes)
        ++ends[std::size_t(node.parent + 1)];
    m_outline.m_rows.reserve(nodes.size());
    std::vector<qint32> next(ends.size());
    std::exclusive_scan(ends.begin(), ends.end(), next.begin(), 0);
    const std::vector<qint32> starts = next;
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    m_outline.m_children.resize(nodes.size());
    for (std::size_t place = 0; place < nodes.size(); ++place) {
        const auto parent = std::size_t(nodes[place].parent + 1);
        m_outline.m_rows.push_back(next[parent] - starts[parent]);
        m_outline.m_children[std::size_t(next[parent]++)] = qint32(place);
    }
    return std::move(m_outline);
}

} // namespace zelvane
