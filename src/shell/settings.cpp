// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings.h"

#include "platform/numbers.h"
#include "platform/profilefile.h"
#include "platform/userfolders.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

SettingsStore::SettingsStore() : SettingsStore(ConfigFolder() + u"/settings"_s) {}

SettingsStore::SettingsStore(const QString &file) : m_file(std::make_unique<ProfileFile>(file)) {}

SettingsStore::~SettingsStore() = default;

QString SettingsStore::GetSetting(QStringView section, QStringView key, const QString &fallback) const
{
    return m_file->Value(section, key).value_or(fallback);
}

void SettingsStore::SaveSetting(QStringView section, QStringView key, QStringView value)
{
    m_file->SetValue(section, key, value);
}

void SettingsStore::SaveSettings(QStringView section, const std::vector<std::pair<QString, QString>> &entries)
{
    m_file->SetValues(section, entries);
}

std::vector<std::pair<QString, QString>> SettingsStore::GetAllSettings(QStringView section) const
{
    return m_file->Entries(section);
}

void SettingsStore::DeleteSetting(QStringView section, QStringView key)
{
    m_file->RemoveKey(section, key);
}

void SettingsStore::DeleteSetting(QStringView section)
{
    m_file->RemoveSection(section);
}

void SettingsStore::ReplaceSection(QStringView section,
                                   const std::vector<std::pair<QString, QString>> &entries)
{
    m_file->ReplaceSection(section, entries);
}

void SettingsStore::InOneStep(const std::function<void()> &work)
{
    m_file->InOneStep(work);
}

template <typename Value, typename Convert>
std::optional<Value> SettingsStore::Read(QStringView section, const SettingKey &key, Convert convert) const
{
    const QString name = key.Name();
    const std::optional<QString> text = m_file->Value(section, name);
    if (!text)
        return std::nullopt;
    try {
        return convert(*text);
    } catch (const RunTimeError &error) {
        constexpr qsizetype shown = 100;
        QString entry = name + u'=' + *text;
        if (section != QStringView(Sections::Options))
            entry = u'[' + section.toString() + u"] "_s + entry;
        if (!m_known.contains(entry)) {
            m_known.insert(entry);
            if (entry.size() > shown)
                entry = entry.first(shown) + u"..."_s;
            m_unreadable.push_back({entry, error});
            if (m_noted)
                m_noted();
        }
        return std::nullopt;
    }
}

std::vector<UnreadableSetting> SettingsStore::TakeUnreadable() const
{
    return std::exchange(m_unreadable, {});
}

namespace
{

int IntegerFrom(const QString &text)
{
    return ToInteger<int>(ToNumber(text));
}

} // namespace

std::optional<bool> SettingsStore::ReadFlag(QStringView section, const SettingKey &key) const
{
    return Read<bool>(section, key, [&key](const QString &text) {
        return key.kind == SettingKind::NumericFlag ? ToNumber(text) != 0 : ToBoolean(text);
    });
}

QString SettingsStore::Text(const TextKey &key) const
{
    return StoredText(key).value_or(QStringView(key.fallback).toString());
}

bool SettingsStore::Flag(const FlagKey &key) const
{
    return ReadFlag(Sections::Options, key).value_or(key.fallback);
}

double SettingsStore::Number(const NumberKey &key) const
{
    return Read<double>(Sections::Options, key, ToNumber).value_or(key.fallback);
}

int SettingsStore::Integer(const NumberKey &key) const
{
    return Read<int>(Sections::Options, key, IntegerFrom).value_or(int(key.fallback));
}

quint32 SettingsStore::Colour(const ColourKey &key) const
{
    return StoredColour(key).value_or(key.fallback);
}

QString SettingsStore::Text(const BareTextKey &key, const QString &fallback) const
{
    return StoredText(key).value_or(fallback);
}

bool SettingsStore::Flag(const BareFlagKey &key, bool fallback) const
{
    return ReadFlag(Sections::Options, key).value_or(fallback);
}

double SettingsStore::Number(const BareNumberKey &key, double fallback) const
{
    return Read<double>(Sections::Options, key, ToNumber).value_or(fallback);
}

int SettingsStore::Integer(const BareNumberKey &key, int fallback) const
{
    return Read<int>(Sections::Options, key, IntegerFrom).value_or(fallback);
}

std::optional<quint32> SettingsStore::StoredColour(const ColourKey &key) const
{
    return Read<quint32>(Sections::Options, key, ToColour);
}

std::optional<QString> SettingsStore::StoredText(const OptionKey &key) const
{
    return m_file->Value(Sections::Options, key.Name());
}

bool SettingsStore::Flag(QStringView section, const RecordFlagKey &key) const
{
    return ReadFlag(section, key).value_or(key.fallback);
}

int SettingsStore::Integer(QStringView section, const RecordNumberKey &key) const
{
    return Read<int>(section, key, IntegerFrom).value_or(int(key.fallback));
}

void SettingsStore::SaveText(const OptionKeyOf<SettingKind::Text> &key, const QString &value)
{
    SaveStoredText(key, value);
}

void SettingsStore::SaveFlag(const OptionKeyOf<SettingKind::Flag> &key, bool value)
{
    SaveStoredText(key, value ? u"-1"_s : u"0"_s);
}

void SettingsStore::SaveNumber(const OptionKeyOf<SettingKind::Number> &key, double value)
{
    SaveStoredText(key, NumberText(value));
}

void SettingsStore::SaveColour(const ColourKey &key, quint32 value)
{
    SaveStoredText(key, QString::number(qint32(value)));
}

void SettingsStore::SaveStoredText(const OptionKey &key, const QString &text)
{
    m_file->SetValue(Sections::Options, key.Name(), text);
}

void SettingsStore::DeleteSetting(const OptionKey &key)
{
    m_file->RemoveKey(Sections::Options, key.Name());
}

bool ToBoolean(const QString &value)
{
    const QString word = value.trimmed();
    if (word.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (word.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    return ToNumber(word) != 0;
}

quint32 ToColour(const QString &value)
{
    return quint32(RoundInRange(ToNumber(value), std::numeric_limits<qint32>::min(),
                                std::numeric_limits<quint32>::max()));
}

} // namespace zelvane
