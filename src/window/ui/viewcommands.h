// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/documentsteps.h"

#include <functional>
#include <QObject>

namespace zelvane
{

class Commands;
class Workspace;

/// The commands of the View menu that show and hide parts of the window and their labels.
class ViewCommands : public QObject
{
    Q_OBJECT

public:
    /// Bands of the side panel.
    enum PanelBand { BrowseBand, RelatedBand };

    /// What the commands need of the window beyond its regions.
    struct Hooks {
        std::function<void()> loadOpcodes;           ///< fills the opcode list if it is empty
        std::function<void(bool)> showToolbarLabels; ///< of `Toolbar1`
        std::function<void(bool)> showPresetLabels;  ///< of `tbPresets`
        std::function<void()> clearOutline;          ///< empties `tvwBrowse`
        std::function<void()> clearRelatedFiles;     ///< empties `tvwRelated`
    };

    ViewCommands(Workspace &workspace, DocumentSteps &steps, Commands &commands, Hooks hooks,
                 QObject *parent);

private:
    void ShowToolbar(WindowBand band);
    void ShowLabels(LabelPlace place);
    void ToggleBrowse();
    void ToggleRelated();

    Workspace &m_workspace;
    DocumentSteps &m_steps;
    Commands &m_commands;
    Hooks m_hooks;
};

} // namespace zelvane
