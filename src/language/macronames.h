// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/findtext.h"

#include <QStringView>
#include <vector>

namespace zelvane
{

/// Many names that are looked for at once.
class MacroNames
{
public:
    /// @param names may repeat; what they view has to outlive this
    explicit MacroNames(const std::vector<QStringView> &names);

    /// Calls `found(length, places)` for each name that stands at `offset` of the text and is not followed by
    /// a letter, digit or underscore: its length, and its places among those given, in order.
    template <typename Found> void ForEachAt(QStringView text, qsizetype offset, Found found) const
    {
        auto low = m_names.begin();
        auto high = m_names.end();
        for (qsizetype length = 0; low != high; ++length) {
            const bool atEnd = offset + length == text.size();
            if (low->name.size() == length) {
                if (atEnd || !IsWordCharacter(text[offset + length]))
                    found(length, low->places);
                ++low;
            }
            if (atEnd)
                return;
            Narrow(low, high, length, text[offset + length]);
        }
    }

private:
    struct Name {
        QStringView name;
        std::vector<qint32> places;
    };
    using Iterator = std::vector<Name>::const_iterator;

    /// Leaves only those names of the range, all longer than `length`, that have `c` at that place.
    static void Narrow(Iterator &low, Iterator &high, qsizetype length, QChar c);

    std::vector<Name> m_names; ///< sorted, each once
};

} // namespace zelvane
