// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

class Desktop;
class SettingsStore;

/// Binds the command that shows the Preferences dialog.
void BindPreferences(const WindowContext &context);

/// Shows the Preferences dialog in a program without a text: the font that is set there is stored.
void ShowPreferencesAlone(SettingsStore &settings, Desktop &desktop);

} // namespace zelvane
