// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// Window, bands and panel. Bare keys default to the design size or to the size on the screen.
#define ZELVANE_LAYOUT_KEYS(SETTING)                                                                         \
    /* The window: place and size in twips, state 0 normal or 2 maximized. */                                \
    SETTING(BareNumberKey, X)                                                                                \
    SETTING(BareNumberKey, Y)                                                                                \
    SETTING(BareNumberKey, Width)                                                                            \
    SETTING(BareNumberKey, Height)                                                                           \
    SETTING(NumberKey, Window, 0)                                                                            \
    SETTING(FlagKey, Splash, true, KeyWriter::Preferences)                                                   \
    SETTING(NumericFlagKey, FlatButtons, true, KeyWriter::Preferences)                                       \
    SETTING(FlagKey, HotTracking, false, KeyWriter::Preferences)                                             \
    SETTING(FlagKey, BandLabels, false, KeyWriter::Preferences)                                              \
    SETTING(FlagKey, Labels, false)                                                                          \
    SETTING(FlagKey, PresetsLabels, false)                                                                   \
    SETTING(FlagKey, PanelLabels, false)                                                                     \
    /* Toolbar n of the View menu is shown; its band's width in pixels; it starts a new row. */              \
    SETTING(Numbered<FlagKey>, Band, true)                                                                   \
    SETTING(Numbered<BareNumberKey>, BandWidth)                                                              \
    SETTING(Numbered<FlagKey>, BandRow, true)                                                                \
    SETTING(BareNumberKey, PanelWidth)                                                                       \
    /* The height of side panel band n in pixels. */                                                         \
    SETTING(Numbered<BareNumberKey>, PanelBandHeight)                                                        \
    /* Written at close and never read: kept for compatibility of the store. */                              \
    SETTING(Numbered<BareFlagKey>, PanelBandRow)                                                             \
    SETTING(FlagKey, StatusBar, true)                                                                        \
    SETTING(NumericFlagKey, CodeOutline, true)                                                               \
    SETTING(NumericFlagKey, RelatedFiles, true)                                                              \
    /* How often the program was closed, plus 1. */                                                          \
    SETTING(NumberKey, Used, 1)

namespace zelvane::Keys
{
ZELVANE_LAYOUT_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
