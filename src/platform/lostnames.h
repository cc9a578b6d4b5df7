// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

// File names are any bytes to the system, and UTF-16 to the program. Those that are not UTF-8 come in with a
// character in the place of what was lost, and no file can be reached by such a name.

/// Whether a name holds that character.
bool IsLostName(const QString &name);

/// What is told when such a name is to be opened.
QString LostNameText();

/// How many files and folders of a folder, not counting hidden ones, have names that are not UTF-8.
int CountLostNames(const QString &folder);

} // namespace zelvane
