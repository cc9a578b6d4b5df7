// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings.h"

#include "platform/numbers.h"
#include "platform/profilefile.h"
#include "platform/programfolder.h"
#include "platform/runtimeerror.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

SettingsStore::SettingsStore() : SettingsStore(ConfigFolder() + u"/settings"_s) {}

SettingsStore::SettingsStore(const QString &file) : m_file(std::make_unique<ProfileFile>(file)) {}

SettingsStore::~SettingsStore() = default;

QString SettingsStore::GetSetting(const QString &section, const QString &key, const QString &fallback) const
{
    return m_file->Value(section, key).value_or(fallback);
}

void SettingsStore::SaveSetting(const QString &section, const QString &key, const QString &value)
{
    m_file->SetValue(section, key, value);
}

void SettingsStore::SaveSettings(const QString &section,
                                 const std::vector<std::pair<QString, QString>> &entries)
{
    m_file->SetValues(section, entries);
}

std::vector<std::pair<QString, QString>> SettingsStore::GetAllSettings(const QString &section) const
{
    return m_file->Entries(section);
}

void SettingsStore::DeleteSetting(const QString &section, const QString &key)
{
    m_file->RemoveKey(section, key);
}

void SettingsStore::DeleteSetting(const QString &section)
{
    m_file->RemoveSection(section);
}

void SettingsStore::ReplaceSection(const QString &section,
                                   const std::vector<std::pair<QString, QString>> &entries)
{
    m_file->ReplaceSection(section, entries);
}

namespace
{

bool FlagFrom(const SettingKey &key, const QString &value)
{
    return key.kind == SettingKind::NumericFlag ? ToNumber(value) != 0 : ToBoolean(value);
}

} // namespace

QString SettingsStore::Text(const SettingKey &key) const
{
    return Text(key, key.fallback);
}

bool SettingsStore::Flag(const SettingKey &key) const
{
    return FlagFrom(key, Text(key));
}

double SettingsStore::Number(const SettingKey &key) const
{
    return ToNumber(Text(key));
}

int SettingsStore::Integer(const SettingKey &key) const
{
    return ToInteger<int>(Number(key));
}

quint32 SettingsStore::Colour(const SettingKey &key) const
{
    return ToColour(Text(key));
}

QString SettingsStore::Text(const SettingKey &key, const QString &fallback) const
{
    return m_file->Value(Sections::Options, key.name).value_or(fallback);
}

bool SettingsStore::Flag(const SettingKey &key, bool fallback) const
{
    const std::optional<QString> value = m_file->Value(Sections::Options, key.name);
    return value ? FlagFrom(key, *value) : fallback;
}

double SettingsStore::Number(const SettingKey &key, double fallback) const
{
    const std::optional<QString> value = m_file->Value(Sections::Options, key.name);
    return value ? ToNumber(*value) : fallback;
}

int SettingsStore::Integer(const SettingKey &key, int fallback) const
{
    return ToInteger<int>(Number(key, double(fallback)));
}

void SettingsStore::SaveText(const SettingKey &key, const QString &value)
{
    m_file->SetValue(Sections::Options, key.name, value);
}

void SettingsStore::SaveFlag(const SettingKey &key, bool value)
{
    SaveText(key, value ? u"-1"_s : u"0"_s);
}

void SettingsStore::SaveNumber(const SettingKey &key, double value)
{
    SaveText(key, NumberText(value));
}

void SettingsStore::SaveColour(const SettingKey &key, quint32 value)
{
    SaveText(key, QString::number(qint32(value)));
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
