// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/runroom.h"

#include "platform/executables.h"
#include "platform/programfolder.h"
#include "run/ui/frmmanual.h"
#include "run/ui/frmpresets.h"
#include "run/ui/presetbar.h"
#include "run/ui/presetdigits.h"
#include "shell/bands.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/layoutkeys.h"
#include "shell/showfolders.h"
#include "shell/ui/appearance.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/foldercommands.h"
#include "shell/ui/layoutparts.h"
#include "shell/ui/menutable.h"
#include "shell/ui/toolbutton.h"
#include "shell/windowsteps.h"

#include <QObject>
#include <QString>

namespace zelvane
{

RunRoom::RunRoom(const WindowContext &context)
    : m_context(context),
      m_run{context.editor, m_tools, *this},
      tbPresets(new PresetBar(m_run, context.commands, *context.menus.Menu(Menu::mnuPresets),
                              *context.menus.Menu(Menu::mnuPresetPopup)))
{
    BandBar &bands = context.bands;
    bands.AddBand(WindowBand::Presets, tbPresets);
    ShowExtensionInTextColour(*tbPresets);
    QObject::connect(tbPresets, &PresetBar::Rebuilt, &bands,
                     [&bands] { bands.FitBand(WindowBand::Presets); });
    context.appearance.Add(Look::FlatButtons,
                           [this](const SettingsStore &settings) { ShowFlatButtons(*tbPresets, settings); });
    context.appearance.Add(Look::ToolPaths,
                           [this](const SettingsStore &settings) { m_tools = ReadToolPaths(settings); });
    context.windowSteps.Add(WindowMoment::Bars, [this] { LoadPresets(); });
    context.layout.KeepRow(LayoutPart::PresetsLabels, Keys::PresetsLabels,
                           Cmd::mnuLabels[LabelPlace::Presets]);
    new PresetDigits(context.window, *tbPresets);

    Commands &commands = context.commands;
    commands.Bind(Cmd::mnuRunCsound, [this] { frmManual(m_run, m_context.window).exec(); });
    commands.Bind(Cmd::mnuPresetsBox, [this] { ShowPresetEditor(m_run); });
    commands.Bind(Cmd::mnuLabels[LabelPlace::Presets], [this] { ToggleLabels(); });
    BindFolderCommands(context, [this] {
        return ProgramFolders{ProgramFolder(), ProgramPath(m_tools.Csound), ProgramPath(m_tools.Csound2)};
    });
}

void RunRoom::LoadPresets()
{
    tbPresets->PresetsButtons();
    m_context.layout.Restore(LayoutPart::PresetsLabels);
}

void RunRoom::EditPreset(const QString &name)
{
    ShowPresetEditor(m_run, name);
}

void RunRoom::RebuildPresets()
{
    tbPresets->PresetsButtons();
}

void RunRoom::ToggleLabels()
{
    const Command row = Cmd::mnuLabels[LabelPlace::Presets];
    const bool shown = !m_context.commands.IsChecked(row);
    m_context.commands.SetChecked(row, shown);
    tbPresets->ShowLabels(shown);
}

} // namespace zelvane
