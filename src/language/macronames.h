// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/findtext.h"

#include <cstddef>
#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// Many names that are looked for at once. Equal ones are one group; the groups are numbered from 0.
class MacroNames
{
public:
    /// @param names may repeat; what they view has to outlive this
    explicit MacroNames(const std::vector<QStringView> &names);

    std::size_t GroupCount() const { return m_names.size(); }
    /// The group of a name, by its place among those given.
    std::size_t GroupOf(std::size_t place) const { return m_groups[place]; }

    /// Calls `found(start, end, group)` for each "$" with a name behind it in the text from `from` on that is
    /// not followed by a letter, digit or underscore, in the order of their ends; and before, in the order of
    /// the text, `sign(start)` for each "$". Reads each character once: the time is linear in the text, the
    /// names and what is found.
    template <typename Sign, typename Found>
    void ForEachCall(QStringView text, qsizetype from, Sign sign, Found found) const
    {
        qint32 state = None;
        for (qsizetype at = from; at < text.size(); ++at) {
            if (state == None && (at = text.indexOf(u'$', at)) < 0)
                return;
            if (text[at] == u'$')
                sign(at);
            state = Next(state, text[at]);
            qint32 hit = LongestName(state);
            if (hit == None || (at + 1 < text.size() && IsWordCharacter(text[at + 1])))
                continue;
            for (; hit != None; hit = m_nodes[std::size_t(hit)].shorterName) {
                const auto group = std::size_t(m_nodes[std::size_t(hit)].group);
                found(at - m_names[group].size(), at + 1, group);
            }
        }
    }

private:
    static constexpr qint32 None = -1;

    /// What has been read: a "$" and the beginning of a name. The first node is the "$" alone; those that go
    /// on from one by a character stand beside each other, sorted by it.
    struct Node {
        qint32 children = 0, childrenEnd = 0;
        /// The longest other beginning that what has been read ends with.
        qint32 suffix = None;
        /// The longest whole name that what has been read ends with, not counting the node's own.
        qint32 shorterName = None;
        qint32 group = None; ///< of the name that ends here
        char16_t c = 0;
    };

    /// The node that the next character leads to; None when no "$" is left in what counts.
    qint32 Next(qint32 node, QChar c) const;
    qint32 LongestName(qint32 node) const
    {
        return node == None || m_nodes[std::size_t(node)].group != None
                   ? node
                   : m_nodes[std::size_t(node)].shorterName;
    }
    void MakeNodes();

    std::vector<QStringView> m_names; ///< by group, sorted
    std::vector<std::size_t> m_groups;
    std::vector<Node> m_nodes; ///< shorter beginnings first
};

} // namespace zelvane
