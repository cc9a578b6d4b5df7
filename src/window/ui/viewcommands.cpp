// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/viewcommands.h"

#include "shell/bands.h"
#include "shell/command.h"
#include "shell/layoutkeys.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/layoutparts.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/toolbutton.h"
#include "window/ui/workspace.h"

namespace zelvane
{

namespace
{

/// Checks or unchecks the row. @return whether it is checked now
bool Toggle(Commands &commands, Command row)
{
    const bool checked = !commands.IsChecked(row);
    commands.SetChecked(row, checked);
    return checked;
}

} // namespace

void BindViewCommands(const WindowContext &context, Workspace &workspace, QToolBar &toolbar)
{
    Commands &commands = context.commands;
    commands.Bind(Cmd::mnuShowToolbar, [&commands, &workspace](WindowBand band) {
        workspace.Bands().SetBandVisible(band, Toggle(commands, Cmd::mnuShowToolbar[band]));
    });
    commands.Bind(Cmd::mnuShowStatusbar, [&commands, &workspace] {
        workspace.ShowStatusBar(Toggle(commands, Cmd::mnuShowStatusbar));
    });
    commands.Bind(Cmd::mnuLabels[LabelPlace::Toolbar], [&commands, &workspace, &toolbar] {
        ShowToolLabels(toolbar, Toggle(commands, Cmd::mnuLabels[LabelPlace::Toolbar]));
        workspace.LayOut();
    });
    commands.Bind(Cmd::mnuLabels[LabelPlace::Panel], [&commands, &workspace] {
        workspace.Panel().ShowCaptions(Toggle(commands, Cmd::mnuLabels[LabelPlace::Panel]));
        workspace.LayOut();
    });
    context.layout.KeepRow(LayoutPart::Labels, Keys::Labels, Cmd::mnuLabels[LabelPlace::Toolbar]);
    context.layout.KeepRow(LayoutPart::PanelLabels, Keys::PanelLabels, Cmd::mnuLabels[LabelPlace::Panel]);

    for (const WindowBand band : AllBands<WindowBand>())
        commands.SetChecked(Cmd::mnuShowToolbar[band], true);
    commands.SetChecked(Cmd::mnuShowStatusbar, true);
}

} // namespace zelvane
