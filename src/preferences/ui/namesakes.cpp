// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/namesakes.h"

#include "platform/runtimeerror.h"
#include "preferences/allsettingkeys.h"
#include "shell/ui/keyedcontrols.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QString>
#include <QWidget>
#include <type_traits>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Binds the control if it is one of these kinds, the first that can show the key.
template <typename... Kinds, typename Key>
bool BindControl(QWidget *control, KeyedControls &controls, const Key &key)
{
    return ([&] {
        auto *found = qobject_cast<Kinds *>(control);
        if (found)
            controls.Bind(found, key);
        return found != nullptr;
    }() || ...);
}

template <typename Key> bool BindNamesake(const QWidget &dialog, KeyedControls &controls, const Key &key)
{
    auto *control = dialog.findChild<QWidget *>(key.Name());
    if constexpr (std::is_base_of_v<OptionKeyOf<SettingKind::Flag>, Key>)
        return BindControl<QCheckBox, QRadioButton>(control, controls, key);
    else if constexpr (std::is_same_v<NumberKey, Key>)
        return BindControl<QComboBox, QLineEdit>(control, controls, key);
    else if constexpr (std::is_base_of_v<OptionKeyOf<SettingKind::Text>, Key>)
        return BindControl<QLineEdit>(control, controls, key);
    else
        return false;
}

/// A key without a default of its own.
template <typename Key>
constexpr bool IsBare = std::is_same_v<BareFlagKey, Key> || std::is_same_v<BareTextKey, Key>;

} // namespace

void BindNamesakes(const QWidget &dialog, KeyedControls &controls)
{
    const auto bind = [&]<typename Key>(const Key &key, bool bare) {
        if constexpr (std::is_base_of_v<OptionKey, Key>) { // no row of numbered keys
            if (key.writer != KeyWriter::Preferences || IsBare<Key> != bare)
                return;
            if (!BindNamesake(dialog, controls, key))
                throw RunTimeError(ErrorNumber::InvalidCall, u"No control for the setting "_s + key.Name());
        }
    };
    // An option without a default only says the contrary of its partner. Where the two do not agree, the
    // partner counts: the program reads that one.
    for (const bool bare : {true, false})
        ForEachSettingKey([&](const auto &key) { bind(key, bare); });
}

} // namespace zelvane
