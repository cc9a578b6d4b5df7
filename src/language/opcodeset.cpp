// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/opcodeset.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

namespace zelvane
{

OpcodeSet::Key OpcodeSet::MakeKey(QStringView word)
{
    Key key;
    for (qsizetype i = 0; i < word.size(); ++i) {
        const quint64 byte = std::min<char16_t>(word[i].unicode(), 255);
        (i < 8 ? key.low : key.high) |= byte << (i % 8 * 8);
    }
    return key;
}

void OpcodeSet::Assign(const std::vector<QStringView> &words)
{
    m_words = QSet<QStringView>(words.begin(), words.end());
    m_longest = 0;
    m_allKeyed = true;
    std::vector<Key> keys;
    for (const QStringView &word : std::as_const(m_words)) {
        m_longest = std::max(m_longest, word.size());
        const auto [least, most] = std::minmax_element(word.begin(), word.end());
        if (word.isEmpty() || word.size() > KeyLength || *least < QChar(33))
            continue; // never asked for by its key
        if (*most < QChar(255))
            keys.push_back(MakeKey(word));
        else
            m_allKeyed = false;
    }
    m_allKeyed &= Place(keys);
}

/// Gives each key its slot. @return false when a bucket finds no salt, which then leaves its keys out
bool OpcodeSet::Place(const std::vector<Key> &keys)
{
    const std::size_t slots = std::bit_ceil(keys.size() * 5 / 4 + 1);
    const std::size_t buckets = std::max<std::size_t>(slots / 4, 1);
    m_slots.assign(slots, {});
    m_salts.assign(buckets, 0);
    m_slotMask = slots - 1;
    m_bucketMask = buckets - 1;

    // The fullest buckets first, while there is most room.
    std::vector<std::vector<Key>> members(buckets);
    for (const Key &key : keys)
        members[Bucket(Hash(key))].push_back(key);
    std::vector<std::size_t> order(buckets);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t one, std::size_t other) {
        return members[one].size() > members[other].size();
    });

    bool allPlaced = true;
    for (const std::size_t bucket : order) {
        constexpr quint64 tries = 10000;
        std::size_t placed = 0;
        for (quint64 i = 0; i < tries && placed < members[bucket].size(); ++i) {
            const quint64 salt = m_salts[bucket] = 0xC2B2AE3D27D4EB4Fu * (2 * i + 1);
            for (placed = 0; placed < members[bucket].size(); ++placed) {
                Key &slot = m_slots[Slot(Hash(members[bucket][placed]), salt)];
                if (slot != Key())
                    break;
                slot = members[bucket][placed];
            }
            if (placed < members[bucket].size())
                for (std::size_t taken = 0; taken < placed; ++taken)
                    m_slots[Slot(Hash(members[bucket][taken]), salt)] = {};
        }
        allPlaced &= placed == members[bucket].size();
    }
    return allPlaced;
}

} // namespace zelvane
