// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/viewcommands.h"

#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/sidepanel.h"
#include "window/ui/workspace.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

ViewCommands::ViewCommands(Workspace &workspace, DocumentSteps &steps, Commands &commands, Hooks hooks,
                           QObject *parent)
    : QObject(parent), m_workspace(workspace), m_steps(steps), m_commands(commands), m_hooks(std::move(hooks))
{
    m_commands.Bind(Cmd::mnuShowToolbar, [this](WindowBand band) { ShowToolbar(band); });
    m_commands.Bind(Cmd::mnuShowStatusbar, [this] {
        const bool shown = !m_commands.IsChecked(Cmd::mnuShowStatusbar);
        m_commands.SetChecked(Cmd::mnuShowStatusbar, shown);
        m_workspace.ShowStatusBar(shown);
    });
    m_commands.Bind(Cmd::mnuLabels, [this](LabelPlace place) { ShowLabels(place); });
    m_commands.Bind(Cmd::mnuBrowse, [this] { ToggleBrowse(); });
    m_commands.Bind(Cmd::mnuRelated, [this] { ToggleRelated(); });

    for (const WindowBand band :
         {WindowBand::Toolbar, WindowBand::Opcodes, WindowBand::Player, WindowBand::Presets})
        m_commands.SetChecked(Cmd::mnuShowToolbar[band], true);
    m_commands.SetChecked(Cmd::mnuShowStatusbar, true);
}

void ViewCommands::ShowToolbar(WindowBand band)
{
    const bool shown = !m_commands.IsChecked(Cmd::mnuShowToolbar[band]);
    m_commands.SetChecked(Cmd::mnuShowToolbar[band], shown);
    m_workspace.Bands().SetBandVisible(int(band), shown);
    m_workspace.ShowBars();
    if (band == WindowBand::Opcodes && shown)
        m_hooks.loadOpcodes();
}

void ViewCommands::ShowLabels(LabelPlace place)
{
    const bool shown = !m_commands.IsChecked(Cmd::mnuLabels[place]);
    m_commands.SetChecked(Cmd::mnuLabels[place], shown);
    if (place == LabelPlace::Toolbar)
        m_hooks.showToolbarLabels(shown);
    else if (place == LabelPlace::Presets)
        m_hooks.showPresetLabels(shown);
    else
        m_workspace.Panel().ShowCaptions(shown);
    m_workspace.LayOut();
}

void ViewCommands::ToggleBrowse()
{
    const bool shown = !m_commands.IsChecked(Cmd::mnuBrowse);
    m_commands.SetChecked(Cmd::mnuBrowse, shown);
    m_workspace.Panel().SetBandVisible(BrowseBand, shown);
    if (!shown)
        m_hooks.clearOutline();
    m_workspace.ShowBars();
    if (shown) {
        m_workspace.Panel().repaint();
        m_steps.outline->BuildOutline();
    }
}

void ViewCommands::ToggleRelated()
{
    const bool shown = !m_commands.IsChecked(Cmd::mnuRelated);
    m_commands.SetChecked(Cmd::mnuRelated, shown);
    m_workspace.Panel().SetBandVisible(RelatedBand, shown);
    if (!shown)
        m_hooks.clearRelatedFiles();
    m_workspace.ShowBars();
    if (shown) {
        m_workspace.Panel().repaint();
        m_steps.relatedFiles->BuildRelatedFiles();
    }
}

} // namespace zelvane
