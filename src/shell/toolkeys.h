// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// Paths of the outside programs and of the help file.
#define ZELVANE_TOOL_KEYS(SETTING)                                                                           \
    SETTING(TextKey, Csound, u"", KeyWriter::Preferences)                                                    \
    SETTING(TextKey, Csound2, u"", KeyWriter::Preferences)                                                   \
    SETTING(TextKey, Help, u"", KeyWriter::Preferences)                                                      \
    SETTING(TextKey, Editor, u"", KeyWriter::Preferences)                                                    \
    SETTING(TextKey, Player, u"", KeyWriter::Preferences)

namespace zelvane::Keys
{
ZELVANE_TOOL_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
