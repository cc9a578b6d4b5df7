// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/bands.h"
#include "shell/settingkey.h"

#include <string_view>

namespace zelvane
{

/// A row of keys, one for each band: `Keys::Band(WindowBand::Player)` is the key "Band3".
template <typename Key, typename Band> struct NumberedByBand {
    Numbered<Key> keys;

    template <typename... Arguments>
    constexpr explicit NumberedByBand(std::u16string_view name, Arguments... arguments)
        : keys(name, arguments...)
    {
    }
    constexpr Key operator()(Band band) const { return keys(BandNumber(band)); }
};
template <typename Key> using ByWindowBand = NumberedByBand<Key, WindowBand>;
template <typename Key> using ByPanelBand = NumberedByBand<Key, PanelBand>;

} // namespace zelvane

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
    SETTING(ByWindowBand<FlagKey>, Band, true)                                                               \
    SETTING(ByWindowBand<BareNumberKey>, BandWidth)                                                          \
    SETTING(ByWindowBand<FlagKey>, BandRow, true)                                                            \
    SETTING(BareNumberKey, PanelWidth)                                                                       \
    /* The height of side panel band n in pixels. */                                                         \
    SETTING(ByPanelBand<BareNumberKey>, PanelBandHeight)                                                     \
    /* Written at close and never read: kept for compatibility of the store. */                              \
    SETTING(ByPanelBand<BareFlagKey>, PanelBandRow)                                                          \
    SETTING(FlagKey, StatusBar, true)                                                                        \
    SETTING(NumericFlagKey, CodeOutline, true)                                                               \
    SETTING(NumericFlagKey, RelatedFiles, true)                                                              \
    /* How often the program was closed, plus 1. */                                                          \
    SETTING(NumberKey, Used, 1)

namespace zelvane::Keys
{
ZELVANE_LAYOUT_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
