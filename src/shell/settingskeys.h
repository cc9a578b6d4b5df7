// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <span>

namespace zelvane
{

enum class SettingKind { Flag, Number, Colour, Text };

/// A key of section "Options": its name, its default as stored text, and how its value is read.
/// `byPreferences` marks the keys that are at once control names of the Preferences dialog.
struct SettingKey {
    QString name;
    QString fallback;
    SettingKind kind = SettingKind::Text;
    bool byPreferences = false;
};

namespace Sections
{
inline constexpr char16_t Options[] = u"Options";
inline constexpr char16_t RecentFiles[] = u"Recent File List";
inline constexpr char16_t RecentFindStrings[] = u"Recent Find Strings";
inline constexpr char16_t RecentCommandLines[] = u"Recent Command Lines";
inline constexpr char16_t Presets[] = u"Presets";
} // namespace Sections

} // namespace zelvane
