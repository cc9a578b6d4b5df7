// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// What each of our programs tells the desktop and the toolkit of itself: its name, version, desktop entry
/// and icon. Numbers are read and written in one way in every country. To be called right after the
/// application object was made, which takes the locale of the environment.
void NameApplication(const QString &name);

} // namespace zelvane
