// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// Presets and the Run Csound dialog.
#define ZELVANE_RUN_KEYS(SETTING)                                                                            \
    SETTING(FlagKey, MinimizeOnPresets, false, KeyWriter::Preferences)                                       \
    SETTING(FlagKey, ConfirmPresets, false, KeyWriter::Preferences)                                          \
    SETTING(FlagKey, OverwritePrompt, false, KeyWriter::Preferences)                                         \
    SETTING(FlagKey, ManualCsound2, false)                                                                   \
    SETTING(FlagKey, ManualSaveFirst, false)                                                                 \
    SETTING(FlagKey, ManualInitialFolder, true)

namespace zelvane::Keys
{
ZELVANE_RUN_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
