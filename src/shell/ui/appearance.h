// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace zelvane
{

class SettingsStore;
class TextControl;

/// What follows a setting.
enum class Look {
    FlatButtons,  ///< of the toolbars
    HotTracking,  ///< of the trees
    BandLabels,   ///< the captions of the bands
    TextColours,  ///< of fresh text, and of its background
    TabStops,     ///< of the text
    WordWrap,     ///< of the text
    Font,         ///< of the text
    DragMode,     ///< whether the text is moved with the mouse
    ToolPaths,    ///< the outside programs in memory: nothing to see, but set with the others
    ClassFormats, ///< of the coloured text
    WritingAids,  ///< which of them are on
};

/// The times of the start at which looks are applied, in their order. Between them stands other work.
enum class LookTime { Toolbars, Trees, Captions, Text, Tools, Tables };

/// Whether a look follows its setting while the program runs.
enum class LookChange {
    Anytime,
    AtStart ///< commands change it for the run, or it waits for the next one
};

/// All looks in the order of the start.
struct LookRow {
    Look look;
    LookTime time;
    LookChange change;
};
inline constexpr LookRow LookTable[] = {
    {Look::FlatButtons, LookTime::Toolbars, LookChange::Anytime},
    {Look::HotTracking, LookTime::Trees, LookChange::Anytime},
    {Look::BandLabels, LookTime::Captions, LookChange::Anytime},
    {Look::TextColours, LookTime::Text, LookChange::Anytime},
    {Look::TabStops, LookTime::Text, LookChange::AtStart},
    {Look::WordWrap, LookTime::Text, LookChange::AtStart},
    {Look::Font, LookTime::Text, LookChange::AtStart},
    {Look::DragMode, LookTime::Text, LookChange::Anytime},
    {Look::ToolPaths, LookTime::Tools, LookChange::Anytime},
    {Look::ClassFormats, LookTime::Tables, LookChange::AtStart},
    {Look::WritingAids, LookTime::Tables, LookChange::Anytime},
};

/// Makes the window look as the settings say. Whoever owns a control adds what a look means for it; the start
/// applies the looks of each time, and whoever has changed settings applies all.
class Appearance
{
public:
    using Part = std::function<void(const SettingsStore &settings)>;

    explicit Appearance(const SettingsStore &settings) : m_settings(settings) {}

    void Add(Look look, Part part) { m_parts[look].push_back(std::move(part)); }

    // Looks are applied in the order of the table, the parts of each in the order in which they were added.

    /// The looks of one time of the start.
    void ApplyAtStart(LookTime time) const;
    /// All looks that follow their settings while the program runs. What commands have changed since the
    /// start, such as the size of the font, stays.
    void ApplyAll() const;
    void Apply(Look look) const;

private:
    const SettingsStore &m_settings;
    std::map<Look, std::vector<Part>> m_parts;
};

/// Adds colours, tab stops, font and drag mode of the text control. A font setting that is absent leaves what
/// the control has.
void AddTextLooks(Appearance &appearance, TextControl &text);
/// Stores the font that the text control has, in one step. @throws RunTimeError when the store cannot be
/// written
void SaveTextFont(const TextControl &text, SettingsStore &settings);

} // namespace zelvane
