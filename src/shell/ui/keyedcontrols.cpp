// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/keyedcontrols.h"

#include "platform/numbers.h"
#include "platform/runtimeerror.h"
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

namespace
{

/// Whether a stored text can be read, and is read as this.
template <typename Check> bool Understood(const Check &check)
{
    try {
        return check();
    } catch (const RunTimeError &) {
        return false;
    }
}

bool IsFlag(const QString &stored, bool shown)
{
    return Understood([&] { return ToBoolean(stored) == shown; });
}

} // namespace

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
    m_controls.push_back({key.Name(), std::move(show), [box] { return box->isChecked() ? u"1"_s : u"0"_s; },
                          [box](const QString &stored) { return IsFlag(stored, box->isChecked()); }});
}

void KeyedControls::Bind(QRadioButton *option, const FlagKey &key)
{
    BindOption(
        option, key, [this, option, key] { option->setChecked(m_settings.Flag(key)); },
        [option](const QString &stored) { return IsFlag(stored, option->isChecked()); });
}

void KeyedControls::Bind(QRadioButton *option, const BareFlagKey &key)
{
    // It says the contrary of its partner, whatever is stored.
    BindOption(
        option, key, [this, option, key] { option->setChecked(m_settings.Flag(key, option->isChecked())); },
        [](const QString &) { return true; });
}

void KeyedControls::BindOption(QRadioButton *option, const SettingKey &key, std::function<void()> show,
                               std::function<bool(const QString &)> isShownBy)
{
    m_controls.push_back({key.Name(), std::move(show),
                          [option] { return option->isChecked() ? u"True"_s : u"False"_s; },
                          std::move(isShownBy)});
}

void KeyedControls::Bind(QComboBox *list, const NumberKey &key)
{
    const auto show = [this, list, key] {
        const int row = m_settings.Integer(key);
        list->setCurrentIndex(row >= 0 && row < list->count() ? row : int(key.fallback));
    };
    m_controls.push_back({key.Name(), show, [list] { return QString::number(list->currentIndex()); },
                          [list](const QString &stored) {
                              return Understood(
                                  [&] { return ToInteger<int>(ToNumber(stored)) == list->currentIndex(); });
                          }});
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
                          [field] { return field->text(); },
                          [field](const QString &stored) { return stored == field->text(); }});
}

void KeyedControls::Bind(const ColourKey &key, std::function<void(quint32)> show,
                         std::function<quint32()> colour)
{
    m_controls.push_back({key.Name(), [this, key, show = std::move(show)] { show(m_settings.Colour(key)); },
                          [colour] { return QString::number(qint32(colour())); },
                          [colour](const QString &stored) {
                              return Understood([&] { return ToColour(stored) == colour(); });
                          }});
}

void KeyedControls::RequireReadable() const
{
    m_settings.SaveSettings(Sections::Options, {}); // nothing, which only needs to read
}

void KeyedControls::Load()
{
    std::vector<Bound *> all;
    for (Bound &bound : m_controls)
        all.push_back(&bound);
    Show(all);
}

void KeyedControls::Show(const std::vector<Bound *> &controls)
{
    for (const Bound *bound : controls)
        bound->show();
    // Not before: options change one another.
    for (Bound *bound : controls)
        bound->shown = bound->text();
}

void KeyedControls::Save()
{
    m_settings.InOneStep([this] {
        RequireReadable(); // else all keys would seem to be absent
        std::vector<Bound *> untouched;
        for (Bound &bound : m_controls) {
            if (bound.text() == bound.shown)
                untouched.push_back(&bound);
        }
        Show(untouched);
        std::vector<std::pair<QString, QString>> entries;
        for (const Bound &bound : m_controls) {
            const QString text = bound.text();
            const QString stored = m_settings.GetSetting(Sections::Options, bound.key, text);
            if (text != bound.shown || stored == text || bound.isShownBy(stored))
                entries.emplace_back(bound.key, text);
        }
        m_settings.SaveSettings(Sections::Options, entries);
    });
    for (Bound &bound : m_controls)
        bound.shown = bound.text();
}

} // namespace zelvane
