// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The writing aids, each on or off. Regular expressions stand with the keys of their dialog.
#define ZELVANE_WRITING_KEYS(SETTING)                                                                        \
    SETTING(FlagKey, LiveColours, false, KeyWriter::Preferences)                                             \
    SETTING(FlagKey, Completion, false, KeyWriter::Preferences)                                              \
    SETTING(FlagKey, AutoComplete, false, KeyWriter::Preferences)                                            \
    SETTING(FlagKey, ArgumentHint, false, KeyWriter::Preferences)                                            \
    SETTING(FlagKey, LineNumbers, false, KeyWriter::Preferences)                                             \
    SETTING(FlagKey, CurrentLine, false, KeyWriter::Preferences)                                             \
    SETTING(FlagKey, BracketMatch, false, KeyWriter::Preferences)                                            \
    SETTING(FlagKey, SameWord, false, KeyWriter::Preferences)                                                \
    SETTING(FlagKey, AutoIndent, false, KeyWriter::Preferences)                                              \
    SETTING(FlagKey, MoveLines, false, KeyWriter::Preferences)                                               \
    SETTING(FlagKey, Folding, false, KeyWriter::Preferences)                                                 \
    SETTING(FlagKey, Bookmarks, false, KeyWriter::Preferences)                                               \
    SETTING(FlagKey, FindInFiles, false, KeyWriter::Preferences)

namespace zelvane::Keys
{
ZELVANE_WRITING_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
