// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/systemcolour.h"
#include "shell/settingkey.h"

/// The text control and the commands on its text. The font defaults to the control's own.
#define ZELVANE_EDITOR_KEYS(SETTING)                                                                         \
    SETTING(FlagKey, SystemColors, true, KeyWriter::Preferences)                                             \
    SETTING(ColourKey, FontColor, SystemWindowText)                                                          \
    SETTING(ColourKey, BackColor, SystemWindow)                                                              \
    SETTING(BareTextKey, Font)                                                                               \
    SETTING(BareNumberKey, FontSize)                                                                         \
    SETTING(BareFlagKey, FontItalic)                                                                         \
    SETTING(BareFlagKey, FontBold)                                                                           \
    SETTING(FlagKey, WordWrap, false)                                                                        \
    SETTING(FlagKey, DragAndDrop, true, KeyWriter::Preferences)                                              \
    /* The tab stop in dialog units; 0 is the control's own. */                                              \
    SETTING(NumberKey, TabSize, 0, KeyWriter::Preferences)                                                   \
    SETTING(NumberKey, TabSpaces, 8, KeyWriter::Preferences)                                                 \
    SETTING(FlagKey, TabInsertSpaces, false, KeyWriter::Preferences)                                         \
    SETTING(BareFlagKey, RealTabs, KeyWriter::Preferences)                                                   \
    SETTING(FlagKey, CppComments, false, KeyWriter::Preferences)                                             \
    SETTING(BareFlagKey, FixedPitchFonts, KeyWriter::Preferences)

namespace zelvane::Keys
{
ZELVANE_EDITOR_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
