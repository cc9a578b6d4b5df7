// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// The history as the steps that define it, one entry at a time.
namespace zelvane::oracle
{

struct HistoryEntry {
    QString filename;
    int selStart = 0;
    int selEnd = 0;
};

struct History {
    QList<HistoryEntry> items; ///< item n stands at n - 1
    int current = 0;
    bool navigating = false;

    HistoryEntry *ItemAt(int position)
    {
        if (position < 1 || position > items.size())
            return nullptr;
        return &items[position - 1];
    }
    bool CanGoBack() const
    {
        return current >= 1 && current <= items.size() && !items.isEmpty() && current > 1;
    }
    bool CanGoNext() const { return current < items.size() && current >= 0; }
    HistoryEntry BackItem() const { return CanGoBack() ? items[current - 1 - 1] : HistoryEntry(); }
    HistoryEntry NextItem() const { return CanGoNext() ? items[current + 1 - 1] : HistoryEntry(); }

    void Add(const HistoryEntry &item)
    {
        for (int i = int(items.size()); i > current && i >= 1; --i)
            items.removeAt(i - 1);
        for (int i = int(items.size()); i >= 1; --i)
            if (ItemAt(i)->filename.toLower() == item.filename.toLower())
                items.removeAt(i - 1);
        items.append(item);
        current = int(items.size());
    }
    void BeforeOpen(int caret, int length)
    {
        if (navigating)
            return;
        HistoryEntry thrownAway;
        HistoryEntry *entry = ItemAt(current);
        if (!entry)
            entry = &thrownAway;
        entry->selStart = caret;
        entry->selEnd = caret + length;
    }
    void AfterOpen(const QString &file)
    {
        if (navigating)
            navigating = false;
        else
            Add({file, 0, 0});
    }
};

} // namespace zelvane::oracle
