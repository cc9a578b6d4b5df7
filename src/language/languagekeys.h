// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// Colours of the language, outline and related files.
#define ZELVANE_LANGUAGE_KEYS(SETTING)                                                                       \
    SETTING(FlagKey, SyntaxHighlight, true, KeyWriter::Preferences)                                          \
    SETTING(ColourKey, CommentsColor, 0x008000)                                                              \
    SETTING(ColourKey, OpcodeColor, 0xFF0000)                                                                \
    SETTING(ColourKey, KeywordColor, 0x800000)                                                               \
    SETTING(ColourKey, MacroColor, 0x800080)                                                                 \
    SETTING(ColourKey, LiteralColor, 0x808000)                                                               \
    SETTING(ColourKey, TagColor, 0x000080)                                                                   \
    /* Read, but written by nothing in the program: for those who set it by hand. */                         \
    SETTING(FlagKey, ColorComments, false)                                                                   \
    SETTING(FlagKey, SingleSelection, true, KeyWriter::Preferences)                                          \
    SETTING(FlagKey, ExpandBrowse, false, KeyWriter::Preferences)

namespace zelvane::Keys
{
ZELVANE_LANGUAGE_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
