// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// What comes with a file in the mailbox.
#define ZELVANE_MAILBOX_KEYS(SETTING)                                                                        \
    /* The line to be selected in the file, from 1; 0 for none. */                                           \
    SETTING(NumberKey, OpenLine, 0)

namespace zelvane::Keys
{
ZELVANE_MAILBOX_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
