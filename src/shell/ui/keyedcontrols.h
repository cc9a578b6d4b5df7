// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

#include <functional>
#include <QString>
#include <QtGlobal>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace zelvane
{

class SettingsStore;

/// The controls of a dialog that show settings, each bound to its key. They are loaded and saved in the order
/// of their binding; the controls have to live as long.
class KeyedControls
{
public:
    explicit KeyedControls(SettingsStore &settings) : m_settings(settings) {}

    /// Stored as "1" or "0".
    void Bind(QCheckBox *box, const FlagKey &key);
    /// Stored as "True" or "False".
    void Bind(QRadioButton *option, const FlagKey &key);
    /// The chosen row, from 0.
    void Bind(QComboBox *list, const NumberKey &key);
    /// The text as it stands.
    void Bind(QLineEdit *field, const TextKey &key);
    /// The same: what is typed there is a number only for those who read it.
    void Bind(QLineEdit *field, const NumberKey &key);
    /// A key without a default of its own leaves the control as it is when the store does not have it.
    void Bind(QCheckBox *box, const BareFlagKey &key);
    void Bind(QRadioButton *option, const BareFlagKey &key);
    void Bind(QLineEdit *field, const BareTextKey &key);
    /// A control of the caller's for a colour, stored as a number.
    void Bind(const ColourKey &key, std::function<void(quint32)> show, std::function<quint32()> colour);

    /// @throws RunTimeError when there is a store that cannot be read: Load would show the defaults
    void RequireReadable() const;
    /// Shows the stored values, and the keys' defaults where there is none or one that cannot be read.
    void Load();
    /// Saves in one step what differs from what was shown, what the store does not have, and what is stored
    /// in another form than the control's. What others have stored since, and what could not be read, stays,
    /// and is shown from now on. @throws RunTimeError when the store cannot be read or written
    void Save();

private:
    struct Bound {
        QString key;
        std::function<void()> show;                     ///< the stored value, else the default
        std::function<QString()> text;                  ///< what is stored
        std::function<bool(const QString &)> isShownBy; ///< whether this stored text says the same
        QString shown = {};                             ///< the text after the last Load or Save
    };

    void Show(const std::vector<Bound *> &controls);
    void BindBox(QCheckBox *box, const SettingKey &key, std::function<void()> show);
    void BindOption(QRadioButton *option, const SettingKey &key, std::function<void()> show,
                    std::function<bool(const QString &)> isShownBy);
    void BindField(QLineEdit *field, const OptionKey &key, std::function<QString()> fallback);

    SettingsStore &m_settings;
    std::vector<Bound> m_controls;
};

} // namespace zelvane
