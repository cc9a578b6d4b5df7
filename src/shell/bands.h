// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace zelvane
{

/// The bands above the text.
enum class WindowBand { Toolbar, Opcodes, Player, Presets };
/// The bands of the side panel.
enum class PanelBand { Browse, Related };

template <typename Band> struct BandEntry {
    Band band;
    std::u16string_view caption; ///< shown when the captions of the bands are
};

/// The bands in their order on the screen, which is that of their numbers in the settings.
inline constexpr std::array<BandEntry<WindowBand>, 4> WindowBandTable{{{WindowBand::Toolbar, u"toolbar"},
                                                                       {WindowBand::Opcodes, u"opcodes"},
                                                                       {WindowBand::Player, u"player"},
                                                                       {WindowBand::Presets, u"presets"}}};
inline constexpr std::array<BandEntry<PanelBand>, 2> PanelBandTable{
    {{PanelBand::Browse, u"Code Outline"}, {PanelBand::Related, u"Related Files"}}};

constexpr const auto &BandTable(WindowBand)
{
    return WindowBandTable;
}
constexpr const auto &BandTable(PanelBand)
{
    return PanelBandTable;
}

/// Where the band stands in its table, from 0.
template <typename Band> constexpr size_t BandPlace(Band band)
{
    return size_t(band);
}
/// The number of the band in the settings, from 1.
template <typename Band> constexpr int BandNumber(Band band)
{
    return int(BandPlace(band)) + 1;
}

/// All bands of a kind in their order.
template <typename Band> constexpr auto AllBands()
{
    std::array<Band, BandTable(Band{}).size()> bands{};
    for (size_t i = 0; i < bands.size(); ++i)
        bands[i] = BandTable(Band{})[i].band;
    return bands;
}

/// Whether the rows of a table stand at the places of their bands.
template <typename Band> constexpr bool BandsStandInPlace()
{
    for (size_t i = 0; i < BandTable(Band{}).size(); ++i) {
        if (BandPlace(BandTable(Band{})[i].band) != i)
            return false;
    }
    return true;
}
static_assert(BandsStandInPlace<WindowBand>() && BandsStandInPlace<PanelBand>());

} // namespace zelvane
