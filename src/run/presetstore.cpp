// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/presetstore.h"

#include "platform/windowstate.h"
#include "run/presetkeys.h"
#include "shell/settings.h"

#include <algorithm>
#include <array>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString PresetStore::RecordSection(const PresetKey &name)
{
    static const std::array<QStringView, 6> own{Sections::Options,
                                                Sections::RecentFiles,
                                                Sections::RecentFindStrings,
                                                Sections::RecentCommandLines,
                                                Sections::RecentFileSearches,
                                                Sections::Presets};
    static const QString beside = u" (preset)"_s;
    // "Options" goes to "Options (preset)", so a preset of that name must give way too, and so on.
    QStringView stem = name;
    while (stem.endsWith(beside, Qt::CaseInsensitive))
        stem.chop(beside.size());
    const bool taken = std::any_of(own.begin(), own.end(), [stem](QStringView section) {
        return stem.compare(section, Qt::CaseInsensitive) == 0;
    });
    return taken ? name + beside : name;
}

QStringList PresetStore::ReadPresetList() const
{
    QStringList names;
    for (const auto &[key, value] : m_settings.GetAllSettings(Sections::Presets))
        names.append(key);
    return names;
}

bool PresetStore::PresetExists(const PresetKey &name, const QDate &today) const
{
    const QString absent = QLocale::system().toString(today, QLocale::ShortFormat);
    return name != absent && m_settings.GetSetting(Sections::Presets, name, absent) != absent;
}

void PresetStore::AddToIndex(const PresetKey &name)
{
    m_settings.SaveSetting(Sections::Presets, name, {});
}

void PresetStore::Remove(const PresetKey &name)
{
    m_settings.InOneStep([&] {
        m_settings.DeleteSetting(RecordSection(name));
        m_settings.DeleteSetting(Sections::Presets, name);
    });
}

void PresetStore::RewritePresetOrder(const QStringList &names)
{
    std::vector<std::pair<QString, QString>> entries;
    for (const QString &name : names)
        entries.emplace_back(name, QString());
    m_settings.ReplaceSection(Sections::Presets, entries);
}

QString PresetStore::Text(const PresetKey &name, const RecordTextKey &key) const
{
    return m_settings.GetSetting(RecordSection(name), key.Name(), QStringView(key.fallback).toString());
}

QString PresetStore::Text(const PresetKey &name, const BareRecordTextKey &key, const QString &fallback) const
{
    return m_settings.GetSetting(RecordSection(name), key.Name(), fallback);
}

QString PresetStore::StoredText(const PresetKey &name, const RecordKey &key) const
{
    return m_settings.GetSetting(RecordSection(name), key.Name());
}

WindowState PresetStore::State(const PresetKey &name, const RecordNumberKey &key) const
{
    return WindowStateOf(m_settings.Integer(RecordSection(name), key));
}

bool PresetStore::Flag(const PresetKey &name, const RecordFlagKey &key) const
{
    return m_settings.Flag(RecordSection(name), key);
}

PresetRecord PresetStore::ReadRecord(const PresetKey &name) const
{
    return {.Command = Text(name, PresetKeys::Command),
            .Args = Text(name, PresetKeys::Args),
            .Folder = Text(name, PresetKeys::Folder),
            .Window = State(name, PresetKeys::Window),
            .SaveFirst = Flag(name, PresetKeys::SaveFirst),
            .Name = Text(name, PresetKeys::Name, {}),
            .Tooltip = Text(name, PresetKeys::Tooltip, {}),
            .CreateButton = Flag(name, PresetKeys::CreateButton),
            .NewGroup = Flag(name, PresetKeys::NewGroup),
            .Image = Text(name, PresetKeys::Image),
            .SecondCommand = Text(name, PresetKeys::SecondCommand),
            .SecondArgs = Text(name, PresetKeys::SecondArgs),
            .SecondFolder = Text(name, PresetKeys::SecondFolder),
            .SecondWindow = State(name, PresetKeys::SecondWindow)};
}

void PresetStore::SaveText(const PresetKey &name, const RecordKeyOf<SettingKind::Text> &key,
                           const QString &value)
{
    SaveStoredText(name, key, value);
}

void PresetStore::SaveTextOrDelete(const PresetKey &name, const RecordKeyOf<SettingKind::Text> &key,
                                   const QString &value)
{
    if (value.isEmpty())
        DeleteKey(name, key);
    else
        SaveText(name, key, value);
}

void PresetStore::SaveNumber(const PresetKey &name, const RecordKeyOf<SettingKind::Number> &key, int value)
{
    SaveStoredText(name, key, QString::number(value));
}

void PresetStore::SaveFlag(const PresetKey &name, const RecordKeyOf<SettingKind::Flag> &key, bool value)
{
    SaveStoredText(name, key, value ? u"1"_s : u"0"_s);
}

void PresetStore::SaveStoredText(const PresetKey &name, const RecordKey &key, const QString &text)
{
    m_settings.SaveSetting(RecordSection(name), key.Name(), text);
}

void PresetStore::DeleteKey(const PresetKey &name, const RecordKey &key)
{
    m_settings.DeleteSetting(RecordSection(name), key.Name());
}

} // namespace zelvane
