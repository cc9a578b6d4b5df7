// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/runtimeerror.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <QHash>
#include <QString>
#include <type_traits>
#include <utility>
#include <vector>

namespace zelvane
{

/// Items in the order in which they came, each under a key of its own. An item keeps its address until it is
/// removed.
template <typename Item> class KeyedCollection
{
public:
    /// Puts an item behind the last one. @throws RunTimeError 5 for a key that is taken; nothing changes then
    Item &Add(const QString &key, std::unique_ptr<Item> item)
    {
        Item *&place = m_byKey[key];
        if (place)
            throw RunTimeError(ErrorNumber::InvalidCall,
                               QStringLiteral("The key \"%1\" is there twice").arg(key));
        place = item.get();
        m_items.push_back({key, std::move(item)});
        return *m_items.back().item;
    }

    qsizetype Count() const { return qsizetype(m_items.size()); }
    bool IsEmpty() const { return m_items.empty(); }
    /// @param index from 0, below Count
    Item &At(qsizetype index) { return *m_items[std::size_t(index)].item; }
    const Item &At(qsizetype index) const { return *m_items[std::size_t(index)].item; }
    const QString &KeyAt(qsizetype index) const { return m_items[std::size_t(index)].key; }
    /// Null when there is no such key.
    Item *Find(const QString &key) { return m_byKey.value(key); }
    const Item *Find(const QString &key) const { return m_byKey.value(key); }

    /// The key of an item of the collection.
    QString KeyOf(const Item &item) const
    {
        return std::find_if(m_items.begin(), m_items.end(),
                            [&item](const Entry &entry) { return entry.item.get() == &item; })
            ->key;
    }

    /// @return false when there is no such key
    bool Remove(const QString &key)
    {
        if (!m_byKey.remove(key))
            return false;
        m_items.erase(std::find_if(m_items.begin(), m_items.end(),
                                   [&key](const Entry &entry) { return entry.key == key; }));
        return true;
    }

    /// Puts the items into another order. @param order each index of an item, once
    void Reorder(const std::vector<qsizetype> &order)
    {
        std::vector<Entry> items;
        items.reserve(order.size());
        for (const qsizetype index : order)
            items.push_back(std::move(m_items[std::size_t(index)]));
        m_items = std::move(items);
    }

private:
    struct Entry {
        QString key;
        std::unique_ptr<Item> item;
    };

    /// Walks over the items, not over their entries.
    template <typename Base, typename Value> class Walk
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using difference_type = std::ptrdiff_t;
        using value_type = std::remove_const_t<Value>;
        using pointer = Value *;
        using reference = Value &;

        Walk() = default;
        explicit Walk(Base at) : m_at(at) {}
        Value &operator*() const { return *m_at->item; }
        Value *operator->() const { return m_at->item.get(); }
        Walk &operator++()
        {
            ++m_at;
            return *this;
        }
        Walk operator++(int)
        {
            Walk before = *this;
            ++m_at;
            return before;
        }
        bool operator==(const Walk &) const = default;

    private:
        Base m_at = {};
    };
    using Entries = std::vector<Entry>;

public:
    using iterator = Walk<typename Entries::iterator, Item>;
    using const_iterator = Walk<typename Entries::const_iterator, const Item>;
    iterator begin() { return iterator(m_items.begin()); }
    iterator end() { return iterator(m_items.end()); }
    const_iterator begin() const { return const_iterator(m_items.cbegin()); }
    const_iterator end() const { return const_iterator(m_items.cend()); }

private:
    Entries m_items;
    QHash<QString, Item *> m_byKey;
};

} // namespace zelvane
