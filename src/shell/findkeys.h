// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The find dialog.
#define ZELVANE_FIND_KEYS(SETTING)                                                                           \
    SETTING(BareNumberKey, FindX)                                                                            \
    SETTING(BareNumberKey, FindY)                                                                            \
    SETTING(TextKey, FindReplace, u"")                                                                       \
    SETTING(FlagKey, FindWholeWords, false)                                                                  \
    SETTING(FlagKey, FindMatchCase, false)                                                                   \
    SETTING(FlagKey, FindWrapSearches, false)                                                                \
    /* Whether there are regular expressions at all, and whether the last search was for one. */             \
    SETTING(FlagKey, RegularExpressions, false, KeyWriter::Preferences)                                      \
    SETTING(FlagKey, FindRegularExpression, false)                                                           \
    /* Written by each search. */                                                                            \
    SETTING(BareNumberKey, FindScope)

namespace zelvane::Keys
{
ZELVANE_FIND_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
