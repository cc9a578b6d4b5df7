// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The dialog that finds in files.
#define ZELVANE_FIND_IN_FILES_KEYS(SETTING)                                                                  \
    SETTING(BareNumberKey, FindInFilesX)                                                                     \
    SETTING(BareNumberKey, FindInFilesY)                                                                     \
    SETTING(BareNumberKey, FindInFilesWidth)                                                                 \
    SETTING(BareNumberKey, FindInFilesHeight)                                                                \
    SETTING(TextKey, FindInFilesFolder, u"")                                                                 \
    /* Empty for those of the Csound files, whatever they are. */                                            \
    SETTING(TextKey, FindInFilesPatterns, u"")                                                               \
    SETTING(FlagKey, FindInFilesSubFolders, true)                                                            \
    SETTING(FlagKey, FindInFilesWholeWords, false)                                                           \
    SETTING(FlagKey, FindInFilesMatchCase, false)                                                            \
    SETTING(FlagKey, FindInFilesRegularExpression, false)

namespace zelvane::Keys
{
ZELVANE_FIND_IN_FILES_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
