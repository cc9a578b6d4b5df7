// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/settings.h"
#include "shell/ui/commands.h"

#include <functional>
#include <map>
#include <utility>

namespace zelvane
{

/// The parts of the kept layout that the window leaves to whom they belong, in the order in which they are
/// written.
enum class LayoutPart { Labels, PresetsLabels, PanelLabels, CodeOutline, RelatedFiles, LoopMode };

/// The parts that come back between the side panel's bands and the captions of the bands, in their order.
inline constexpr LayoutPart PartsOfThePanels[] = {LayoutPart::RelatedFiles, LayoutPart::CodeOutline,
                                                  LayoutPart::LoopMode};
/// The parts that come back last. The labels of the presets come back with the presets.
inline constexpr LayoutPart PartsOfTheLabels[] = {LayoutPart::Labels, LayoutPart::PanelLabels};

/// What is kept of the layout from one run to the next by whoever owns it. The window says when: parts come
/// back at their time of the start, and are all written when it closes.
class LayoutParts
{
public:
    /// How a part comes back and is written.
    struct Keeper {
        std::function<void(const SettingsStore &settings)> restore;
        std::function<void(SettingsStore &settings)> save;
    };

    LayoutParts(SettingsStore &settings, Commands &commands) : m_settings(settings), m_commands(commands) {}

    void Keep(LayoutPart part, Keeper keeper) { m_keepers[part] = std::move(keeper); }
    /// Keeps whether a row is checked, under the key of a flag.
    /// @param check checks the row
    template <typename Key>
    void KeepRow(LayoutPart part, const Key &key, Command row, std::function<void()> check)
    {
        Keep(part,
             {.restore =
                  [key, check = std::move(check)](const SettingsStore &settings) {
                      if (settings.Flag(key))
                          check();
                  },
              .save = [this, key,
                       row](SettingsStore &settings) { settings.SaveFlag(key, m_commands.IsChecked(row)); }});
    }
    /// Keeps a row that its own command checks.
    template <typename Key> void KeepRow(LayoutPart part, const Key &key, Command row)
    {
        KeepRow(part, key, row, [this, row] { m_commands.Run(row); });
    }

    /// A part that nobody keeps stays as it is.
    void Restore(LayoutPart part) const
    {
        const auto keeper = m_keepers.find(part);
        if (keeper != m_keepers.end())
            keeper->second.restore(m_settings);
    }
    void SaveAll()
    {
        for (const auto &[part, keeper] : m_keepers)
            keeper.save(m_settings);
    }

private:
    SettingsStore &m_settings;
    Commands &m_commands;
    std::map<LayoutPart, Keeper> m_keepers; ///< in the order of writing
};

} // namespace zelvane
