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
    commands.Bind(u"mnuRunCsound"_s, [context, window](int) { frmManual(context, window).exec(); });
    commands.Bind(u"mnuPresetsBox"_s, [context](int) { ShowPresetEditor(context); });
}

} // namespace zelvane
