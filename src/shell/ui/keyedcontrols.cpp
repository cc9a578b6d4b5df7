// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/keyedcontrols.h"

#include "platform/numbers.h"
#include "shell/settings.h"

#include <optional>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void KeyedControls::Bind(QCheckBox *box, const FlagKey &key)
{
    BindBox(box, key, [this, box, key] { box->setChecked(m_settings.Flag(key)); });
}

void KeyedControls::Bind(QCheckBox *box, const BareFlagKey &key)
{
    BindBox(box, key, [this, box, key] { box->setChecked(m_settings.Flag(key, box->isChecked())); });
}

void KeyedControls::BindBox(QCheckBox *box, const SettingKey &key, std::function<void()> show)
{
    m_controls.push_back({key.Name(), std::move(show), [box] { return box->isChecked() ? u"1"_s : u"0"_s; }});
}

void KeyedControls::Bind(QRadioButton *option, const FlagKey &key)
{
    BindOption(option, key, [this, option, key] { option->setChecked(m_settings.Flag(key)); });
}

void KeyedControls::Bind(QRadioButton *option, const BareFlagKey &key)
{
    BindOption(option, key,
               [this, option, key] { option->setChecked(m_settings.Flag(key, option->isChecked())); });
}

void KeyedControls::BindOption(QRadioButton *option, const SettingKey &key, std::function<void()> show)
{
    m_controls.push_back(
        {key.Name(), std::move(show), [option] { return option->isChecked() ? u"True"_s : u"False"_s; }});
}

void KeyedControls::Bind(QComboBox *list, const NumberKey &key)
{
    m_controls.push_back({key.Name(), [this, list, key] { list->setCurrentIndex(m_settings.Integer(key)); },
                          [list] { return QString::number(list->currentIndex()); }});
}

void KeyedControls::Bind(QLineEdit *field, const TextKey &key)
{
    BindField(field, key, [key] { return QStringView(key.fallback).toString(); });
}

void KeyedControls::Bind(QLineEdit *field, const NumberKey &key)
{
    BindField(field, key, [key] { return NumberText(key.fallback); });
}

void KeyedControls::Bind(QLineEdit *field, const BareTextKey &key)
{
    BindField(field, key, [field] { return field->text(); });
}

void KeyedControls::BindField(QLineEdit *field, const OptionKey &key, std::function<QString()> fallback)
{
    m_controls.push_back({key.Name(),
                          [this, field, key, fallback = std::move(fallback)] {
                              const std::optional<QString> stored = m_settings.StoredText(key);
                              field->setText(stored ? *stored : fallback());
                          },
                          [field] { return field->text(); }});
}

void KeyedControls::Load() const
{
    for (const Bound &bound : m_controls)
        bound.show();
}

void KeyedControls::Save() const
{
    std::vector<std::pair<QString, QString>> entries;
    for (const Bound &bound : m_controls)
        entries.emplace_back(bound.key, bound.text());
    m_settings.SaveSettings(Sections::Options, entries);
}

} // namespace zelvane
