// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The player and the copy commands, with the folders they copied to last.
#define ZELVANE_PLAYER_KEYS(SETTING)                                                                         \
    SETTING(FlagKey, LoopMode, false)                                                                        \
    SETTING(TextKey, SFCopyTo, u"")                                                                          \
    SETTING(TextKey, CopyTo, u"")

namespace zelvane::Keys
{
ZELVANE_PLAYER_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
