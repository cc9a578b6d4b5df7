// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

namespace zelvane
{

class SettingsStore;
class TextControl;

/// What follows a setting.
enum class Look {
    BandLabels,  ///< the captions of the bands
    FlatButtons, ///< of the toolbars
    HotTracking, ///< of the trees
    TextColours, ///< of fresh text, and of its background
    Font,        ///< of the text
    ToolPaths    ///< the outside programs in memory: nothing to see, but set with the others
};

/// Makes the window look as the settings say. Whoever owns a control adds what a look means for it; start-up
/// applies each look at its time, and whoever has changed the settings those that changed.
class Appearance
{
public:
    using Part = std::function<void(const SettingsStore &settings)>;

    explicit Appearance(const SettingsStore &settings) : m_settings(settings) {}

    void Add(Look look, Part part) { m_parts[look].push_back(std::move(part)); }
    /// Applies looks in the order given, the parts of each in the order in which they were added.
    void Apply(std::initializer_list<Look> looks) const;

private:
    const SettingsStore &m_settings;
    std::map<Look, std::vector<Part>> m_parts;
};

/// Adds colours and font of the text control. A font setting that is absent leaves what the control has.
void AddTextLooks(Appearance &appearance, TextControl &text);
/// Stores the font that the text control has.
void SaveTextFont(const TextControl &text, SettingsStore &settings);

} // namespace zelvane
