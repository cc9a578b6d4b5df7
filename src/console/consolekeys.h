// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The console of started programs.
#define ZELVANE_CONSOLE_KEYS(SETTING)                                                                        \
    /* Programs without a window of their own get a console; a preset's own section may say otherwise. */    \
    SETTING(FlagKey, Console, true)                                                                          \
    SETTING(FlagKey, ConsoleKeepOpen, false)

namespace zelvane::Keys
{
ZELVANE_CONSOLE_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
