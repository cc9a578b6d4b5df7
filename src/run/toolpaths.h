// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

class SettingsStore;

/// The outside programs that the user has chosen, as they stood at start-up or when Preferences last closed.
struct ToolPaths {
    QString Csound = {};  ///< the main compiler; the one in PATH where none is set
    QString Csound2 = {}; ///< an alternative compiler
    QString Help = {};
    QString Editor = {}; ///< the sound editor
    QString Player = {}; ///< the sound player
};

ToolPaths ReadToolPaths(const SettingsStore &settings);

} // namespace zelvane
