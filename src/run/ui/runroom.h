// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"
#include "run/toolpaths.h"
#include "shell/ui/windowcontext.h"

namespace zelvane
{

class PresetBar;

/// Presets and the Run Csound dialog in the window: the Presets bar and menu, the keys that run presets, and
/// the outside programs that the user has chosen.
class RunRoom : public PresetWindows
{
public:
    explicit RunRoom(const WindowContext &context);

    void EditPreset(const QString &name) override;
    void RebuildPresets() override;

private:
    /// Builds the presets, which may name the tools, and brings their labels back.
    void LoadPresets();
    void ToggleLabels();

    WindowContext m_context;
    ToolPaths m_tools;
    RunContext m_run;
    PresetBar *tbPresets;
};

} // namespace zelvane
