// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

class SettingsStore;

/// More blanks than any line has a use for. Without a bound one press of Tab could ask for all of the memory.
inline constexpr int WidestTab = 256;

/// `TabSpaces`, what one tab is worth in characters, but never more than WidestTab. It may be 0 or less.
int TabWidth(const SettingsStore &settings);

/// What indenting puts in front of a line: a tab, or as many blanks where `TabInsertSpaces` wants these.
QString IndentUnit(const SettingsStore &settings);

} // namespace zelvane
