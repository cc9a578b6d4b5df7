// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/opcodeset.h"

#include <algorithm>
#include <bit>

namespace zelvane
{

OpcodeSet::Key OpcodeSet::MakeKey(const char16_t *word, qsizetype length)
{
    Key key;
    for (qsizetype i = 0; i < length; ++i) {
        const quint64 byte = std::min<char16_t>(word[i], 255);
        (i < 8 ? key.low : key.high) |= byte << (i % 8 * 8);
    }
    return key;
}

void OpcodeSet::Assign(const std::vector<QStringView> &words)
{
    m_words = QSet<QStringView>(words.begin(), words.end());
    m_longest = 0;
    m_allKeyed = true;

    // A quarter full at most. A word that would have to stand far from its slot is left to the common set, so
    // no choice of words makes the table slow.
    const std::size_t slots = std::bit_ceil(std::max<std::size_t>(std::size_t(m_words.size()) * 4, 2));
    constexpr quint64 farthest = 16;
    m_slots.assign(slots, {});
    m_shift = 64 - std::countr_zero(slots);
    for (const QStringView &word : std::as_const(m_words)) {
        m_longest = std::max(m_longest, word.size());
        const auto [least, most] = std::minmax_element(word.begin(), word.end());
        if (word.isEmpty() || word.size() > KeyLength || *least < QChar(33))
            continue; // not asked for by its key
        if (*most >= QChar(255)) {
            m_allKeyed = false;
            continue;
        }
        const Key key = MakeKey(word.utf16(), word.size());
        const quint64 home = Slot(key);
        quint64 distance = 0;
        while (distance < farthest && m_slots[(home + distance) & (slots - 1)].low != 0)
            ++distance;
        if (distance == farthest) {
            m_allKeyed = false;
            continue;
        }
        for (quint64 passed = 0; passed < distance; ++passed)
            m_slots[(home + passed) & (slots - 1)].high |= MoreBehind;
        Key &entry = m_slots[(home + distance) & (slots - 1)];
        entry = {key.low, key.high | (entry.high & MoreBehind)};
    }
}

} // namespace zelvane
