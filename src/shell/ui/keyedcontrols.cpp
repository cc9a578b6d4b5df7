// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/keyedcontrols.h"

#include "platform/numbers.h"
#include "shell/settings.h"

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
    Bind(box, static_cast<const BareFlagKey &>(key));
    m_controls.back().showDefault = [box, key] { box->setChecked(key.fallback); };
}

void KeyedControls::Bind(QCheckBox *box, const BareFlagKey &key)
{
    m_controls.push_back(
        {.key = key.Name(),
         .showStored = [this, box, key] { box->setChecked(m_settings.Flag(key, box->isChecked())); },
         .text = [box] { return box->isChecked() ? u"1"_s : u"0"_s; }});
}

void KeyedControls::Bind(QRadioButton *option, const FlagKey &key)
{
    Bind(option, static_cast<const BareFlagKey &>(key));
    m_controls.back().showDefault = [option, key] { option->setChecked(key.fallback); };
}

void KeyedControls::Bind(QRadioButton *option, const BareFlagKey &key)
{
    m_controls.push_back(
        {.key = key.Name(),
         .showStored = [this, option, key] { option->setChecked(m_settings.Flag(key, option->isChecked())); },
         .text = [option] { return option->isChecked() ? u"True"_s : u"False"_s; }});
}

void KeyedControls::Bind(QComboBox *list, const NumberKey &key)
{
    m_controls.push_back({.key = key.Name(),
                          .showStored = [this, list, key] { list->setCurrentIndex(m_settings.Integer(key)); },
                          .text = [list] { return QString::number(list->currentIndex()); },
                          .showDefault = [list, key] { list->setCurrentIndex(int(key.fallback)); }});
}

void KeyedControls::Bind(QLineEdit *field, const TextKey &key)
{
    Bind(field, static_cast<const BareTextKey &>(key));
    m_controls.back().showDefault = [field, key] { field->setText(QStringView(key.fallback).toString()); };
}

void KeyedControls::Bind(QLineEdit *field, const BareTextKey &key)
{
    BindText(field, key);
}

void KeyedControls::Bind(QLineEdit *field, const NumberKey &key)
{
    BindText(field, key);
    m_controls.back().showDefault = [field, key] { field->setText(NumberText(key.fallback)); };
}

void KeyedControls::BindText(QLineEdit *field, const SettingKey &key)
{
    m_controls.push_back({.key = key.Name(),
                          .showStored =
                              [this, field, name = key.Name()] {
                                  field->setText(
                                      m_settings.GetSetting(Sections::Options, name, field->text()));
                              },
                          .text = [field] { return field->text(); }});
}

void KeyedControls::Load() const
{
    for (const Bound &bound : m_controls) {
        if (bound.showDefault)
            bound.showDefault();
        bound.showStored();
    }
}

void KeyedControls::Save() const
{
    std::vector<std::pair<QString, QString>> entries;
    for (const Bound &bound : m_controls)
        entries.emplace_back(bound.key, bound.text());
    m_settings.SaveSettings(Sections::Options, entries);
}

} // namespace zelvane
