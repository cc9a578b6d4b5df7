// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/charblocks.h"

#include <QSet>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// A set of words for a scanner that asks millions of times: a word of up to 15 code units, each from 33 to
/// 254, is one 16-byte key that stands in one of two slots of a table; any other word stands in a common set.
class OpcodeSet
{
public:
    /// The longest word that is a key, and how many code units LoadKey reads.
    static constexpr qsizetype KeyLength = 15;
    static constexpr qsizetype KeySize = 16;

    struct Key {
        quint64 low = 0;
        quint64 high = 0;

        bool operator==(const Key &other) const { return ((low ^ other.low) | (high ^ other.high)) == 0; }
    };

    /// Puts these words in place of all others. The set keeps the views, not copies.
    void Assign(const std::vector<QStringView> &words);

    bool Contains(QStringView word) const { return m_words.contains(word); }

    /// The key of a word. Code units above 254 have no key of their own.
    static Key MakeKey(QStringView word);
    /// The same for a word of up to KeyLength code units in a text that has KeySize of them from the word's
    /// start on. None of the word is beyond ASCII.
    static Key LoadKey(const char16_t *word, qsizetype length)
    {
#ifdef ZELVANE_SSE2
        const auto *mask = reinterpret_cast<const __m128i *>(KeyMasks[length]);
        const __m128i bytes = _mm_and_si128(LoadAsciiBytes(word), _mm_load_si128(mask));
        return {quint64(_mm_cvtsi128_si64(bytes)),
                quint64(_mm_cvtsi128_si64(_mm_unpackhi_epi64(bytes, bytes)))};
#else
        return MakeKey(QStringView(word, length));
#endif
    }
    /// Whether the table holds the key.
    bool ContainsKey(Key key) const
    {
        const quint64 hash = Hash(key);
        return m_slots[Slot(hash, m_salts[Bucket(hash)])] == key;
    }
    /// Whether the table holds every word of up to KeyLength code units above 32.
    bool AllKeyed() const
    {
        return m_allKeyed;
    }
    /// The length of the longest word.
    qsizetype Longest() const
    {
        return m_longest;
    }

private:
    struct Masks {
        alignas(16) quint8 bytes[KeySize][KeySize] = {};
        constexpr Masks()
        {
            for (int length = 0; length < KeySize; ++length)
                for (int i = 0; i < length; ++i)
                    bytes[length][i] = 255;
        }
        constexpr const quint8 *operator[](qsizetype length) const { return bytes[length]; }
    };
    /// For each length, what of sixteen bytes belongs to the word.
    static const Masks KeyMasks;

    static quint64 Hash(Key key)
    {
        return (key.low + key.high * 5) * 0x9E3779B97F4A7C15u;
    }
    quint64 Bucket(quint64 hash) const
    {
        return hash >> 40 & m_bucketMask;
    }
    quint64 Slot(quint64 hash, quint64 salt) const
    {
        return (hash ^ hash >> 32) * salt >> 40 & m_slotMask;
    }
    bool Place(const std::vector<Key> &keys);

    QSet<QStringView> m_words;
    std::vector<Key> m_slots = std::vector<Key>(1);
    std::vector<quint64> m_salts = std::vector<quint64>(1);
    quint64 m_slotMask = 0;
    quint64 m_bucketMask = 0;
    qsizetype m_longest = 0;
    bool m_allKeyed = true;
};

inline constexpr OpcodeSet::Masks OpcodeSet::KeyMasks;

} // namespace zelvane
