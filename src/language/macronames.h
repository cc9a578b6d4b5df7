// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/findtext.h"

#include <cstddef>
#include <QStringView>
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

    /// Calls `found(length, group)` for each name that stands at `offset` of the text and is not followed by
    /// a letter, digit or underscore.
    template <typename Found> void ForEachAt(QStringView text, qsizetype offset, Found found) const
    {
        auto low = m_names.begin();
        auto high = m_names.end();
        for (qsizetype length = 0; low != high; ++length) {
            const bool atEnd = offset + length == text.size();
            if (low->size() == length) {
                if (atEnd || !IsWordCharacter(text[offset + length]))
                    found(length, std::size_t(low - m_names.begin()));
                ++low;
            }
            if (atEnd)
                return;
            Narrow(low, high, length, text[offset + length]);
        }
    }

private:
    using Iterator = std::vector<QStringView>::const_iterator;

    /// Leaves only those names of the range, all longer than `length`, that have `c` at that place.
    static void Narrow(Iterator &low, Iterator &high, qsizetype length, QChar c);

    std::vector<QStringView> m_names; ///< by group, sorted
    std::vector<std::size_t> m_groups;
};

} // namespace zelvane
