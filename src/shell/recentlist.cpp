// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/recentlist.h"

namespace zelvane
{

namespace
{

void AddItem(SettingsStore &settings, const QString &text, QStringView section, int count,
             Qt::CaseSensitivity sensitivity)
{
    QStringList items = {text};
    for (int key = 1; key <= count; ++key) {
        const QString item = settings.GetSetting(section, QString::number(key));
        if (!item.isEmpty() && item.compare(text, sensitivity) != 0)
            items.append(item);
    }
    // In one step: half a list would have lost an entry.
    std::vector<std::pair<QString, QString>> entries;
    for (int key = 1; key <= count && key <= items.size(); ++key)
        entries.emplace_back(QString::number(key), items[key - 1]);
    settings.SaveSettings(section, entries);
}

} // namespace

void AddRecentItem(SettingsStore &settings, const QString &text, QStringView section, int count)
{
    AddItem(settings, text, section, count, Qt::CaseSensitive);
}

void AddRecentFile(SettingsStore &settings, const QString &path)
{
    AddItem(settings, path, Sections::RecentFiles, RecentFileCount, Qt::CaseInsensitive);
}

QStringList RecentItems(const SettingsStore &settings, QStringView section, int count)
{
    QStringList items;
    for (int key = 1; key <= count; ++key) {
        const QString item = settings.GetSetting(section, QString::number(key));
        if (item.isEmpty())
            break;
        items.append(item);
    }
    return items;
}

} // namespace zelvane
