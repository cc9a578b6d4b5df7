// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/charblocks.h"

#include <QSet>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// A set of words for a scanner that asks millions of times: a word of up to 15 code units, each from 33 to
/// 254, is one 16-byte key of a hash table; any other word stands in a common set.
class OpcodeSet
{
public:
    /// Puts these words in place of all others. The set keeps the views, not copies.
    void Assign(const std::vector<QStringView> &words);

    bool Contains(QStringView word) const { return m_words.contains(word); }

    /// The same for the word [word, word + length) of a longer text that ends at `textEnd`, for a word of at
    /// least one code unit and none below 33.
    bool ContainsWord(const char16_t *word, qsizetype length, const char16_t *textEnd) const
    {
        if (length > KeyLength) [[unlikely]]
            return m_longest >= length && Contains(QStringView(word, length));
        Key key;
        if (textEnd - word < KeySize) [[unlikely]]
            key = MakeKey(word, length);
        else
            key = LoadKey(word, length);
        const bool found = FindKey(key);
        return m_allKeyed ? found : found || Contains(QStringView(word, length));
    }

private:
    static constexpr qsizetype KeyLength = 15;
    static constexpr qsizetype KeySize = 16;
    static constexpr quint64 MoreBehind = quint64(1) << 56; ///< in the last byte of a slot

    struct Key {
        quint64 low = 0;
        quint64 high = 0;
    };

    static Key MakeKey(const char16_t *word, qsizetype length);
    static Key LoadKey(const char16_t *word, qsizetype length)
    {
#ifdef ZELVANE_SSE2
        // The bytes behind the word's end are cut off by a window into a row of ones and zeros.
        alignas(32) static constexpr quint8 window[32] = {255, 255, 255, 255, 255, 255, 255, 255,
                                                          255, 255, 255, 255, 255, 255, 255, 255};
        const __m128i mask = _mm_loadu_si128(reinterpret_cast<const __m128i *>(window + 16 - length));
        const __m128i bytes = _mm_and_si128(LoadBytes(word), mask);
        Key key;
        _mm_storeu_si128(reinterpret_cast<__m128i *>(&key), bytes);
        return key;
#else
        return MakeKey(word, length);
#endif
    }

    quint64 Slot(Key key) const
    {
        return (key.low * 0x9E3779B97F4A7C15u + key.high * 0xC2B2AE3D27D4EB4Fu) >> m_shift;
    }

    bool FindKey(Key key) const
    {
        quint64 slot = Slot(key);
        const Key *entry = &m_slots[slot];
        bool found = (entry->low == key.low) & ((entry->high & ~MoreBehind) == key.high);
        while (entry->high & MoreBehind)
            [[unlikely]]
            {
                slot = (slot + 1) & (m_slots.size() - 1);
                entry = &m_slots[slot];
                found |= (entry->low == key.low) & ((entry->high & ~MoreBehind) == key.high);
            }
        return found;
    }

    QSet<QStringView> m_words;
    std::vector<Key> m_slots = std::vector<Key>(2);
    int m_shift = 63;
    qsizetype m_longest = 0; ///< length of the longest word
    bool m_allKeyed = true;  ///< every word of up to KeyLength is in m_slots
};

} // namespace zelvane
