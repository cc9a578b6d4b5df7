// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/runcommands.h"

#include "run/ui/frmmanual.h"
#include "run/ui/frmpresets.h"
#include "shell/ui/commands.h"

#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

RunCommands::RunCommands(const RunContext &context, Commands &commands, QWidget *window) : QObject(window)
{
    commands.Bind(Cmd::mnuRunCsound, [context, window] { frmManual(context, window).exec(); });
    commands.Bind(Cmd::mnuPresetsBox, [context] { ShowPresetEditor(context); });
}

} // namespace zelvane
