// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settings.h"

#include <QString>
#include <QStringList>
#include <QStringView>

namespace zelvane
{

/// How many entries the recent lists hold, under the keys "1" upward.
inline constexpr int RecentFileCount = 9;
inline constexpr int RecentFindStringCount = 8;
inline constexpr int RecentCommandLineCount = 12;

/// Puts `text` first in the recent list that stands under the keys "1" to `count` of a section, and moves the
/// others down. Entries equal to it go: for find strings and command lines only by exact comparison, so that
/// a string that differs by case has an entry of its own. Only as many keys are written as there are entries;
/// what stands beyond them keeps its old value. @throws RunTimeError when the store cannot be written
void AddRecentItem(SettingsStore &settings, const QString &text, QStringView section, int count);

/// The same for the recent documents: nine entries, equal without regard to case.
void AddRecentFile(SettingsStore &settings, const QString &path);

/// The values of the keys "1" to `count` up to the first that is empty or absent.
QStringList RecentItems(const SettingsStore &settings, QStringView section, int count);

} // namespace zelvane
