// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/instrumentsroom.h"

#include "instruments/ui/frminstredit.h"
#include "instruments/ui/frminstrgui.h"
#include "instruments/ui/frmpmapping.h"
#include "instruments/ui/numericinput.h"
#include "shell/command.h"
#include "shell/ui/commands.h"
#include "shell/ui/windowcontext.h"

namespace zelvane
{

InstrumentsRoom::InstrumentsRoom(const WindowContext &context)
{
    context.commands.Bind(Cmd::mnuInstrEdit, [&editor = context.editor, window = context.window] {
        frmInstrEdit(editor, window).exec();
    });
    context.commands.Bind(Cmd::mnuInstrGUI, [context] { ShowStatementDialog(context); });
    context.commands.Bind(Cmd::mnuPMapping,
                          [&editor = context.editor, &steps = context.steps, window = context.window] {
                              frmPMapping(editor, steps, window).exec();
                          });
    new NumericInput(context);
}

} // namespace zelvane
