// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

namespace zelvane
{

struct EditorContext;
struct ToolPaths;

/// The windows that show presets, as far as running them asks for it.
class PresetWindows
{
public:
    virtual ~PresetWindows() = default;
    /// Shows the preset editor with the preset selected if it is there; modal.
    virtual void EditPreset(const QString &name) = 0;
    /// Builds the Presets bar and menu again after a change of the store.
    virtual void RebuildPresets() = 0;
};

/// What running works on: the editor, the tool paths in memory, and the windows that show presets. The parts
/// outlive every user of it.
struct RunContext {
    EditorContext &editor;
    const ToolPaths &tools;
    PresetWindows &presets;
};

} // namespace zelvane
