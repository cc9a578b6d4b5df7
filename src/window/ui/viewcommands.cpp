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
    m_commands.Bind(u"mnuShowToolbar"_s, [this](int entry) { ShowToolbar(entry); });
    m_commands.Bind(u"mnuShowStatusbar"_s, [this](int) {
        const bool shown = !m_commands.IsChecked(u"mnuShowStatusbar"_s);
        m_commands.SetChecked(u"mnuShowStatusbar"_s, 0, shown);
        m_workspace.ShowStatusBar(shown);
    });
    m_commands.Bind(u"mnuLabels"_s, [this](int entry) { ShowLabels(entry); });
    m_commands.Bind(u"mnuBrowse"_s, [this](int) { ToggleBrowse(); });
    m_commands.Bind(u"mnuRelated"_s, [this](int) { ToggleRelated(); });

    for (int entry = ToolbarBand; entry <= PresetsBand; ++entry)
        m_commands.SetChecked(u"mnuShowToolbar"_s, entry, true);
    m_commands.SetChecked(u"mnuShowStatusbar"_s, 0, true);
}

void ViewCommands::ShowToolbar(int entry)
{
    const bool shown = !m_commands.IsChecked(u"mnuShowToolbar"_s, entry);
    m_commands.SetChecked(u"mnuShowToolbar"_s, entry, shown);
    m_workspace.Bands().SetBandVisible(entry, shown);
    m_workspace.ShowBars();
    if (entry == OpcodesBand && shown)
        m_hooks.loadOpcodes();
}

void ViewCommands::ShowLabels(int entry)
{
    const bool shown = !m_commands.IsChecked(u"mnuLabels"_s, entry);
    m_commands.SetChecked(u"mnuLabels"_s, entry, shown);
    if (entry == 0)
        m_hooks.showToolbarLabels(shown);
    else if (entry == 1)
        m_hooks.showPresetLabels(shown);
    else
        m_workspace.Panel().ShowCaptions(shown);
    m_workspace.LayOut();
}

void ViewCommands::ToggleBrowse()
{
    const bool shown = !m_commands.IsChecked(u"mnuBrowse"_s);
    m_commands.SetChecked(u"mnuBrowse"_s, 0, shown);
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
    const bool shown = !m_commands.IsChecked(u"mnuRelated"_s);
    m_commands.SetChecked(u"mnuRelated"_s, 0, shown);
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
