// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/texttoolsroom.h"

#include "shell/command.h"
#include "shell/ui/commands.h"
#include "texttools/ui/frmtabspace.h"

namespace zelvane
{

TextToolsRoom::TextToolsRoom(const WindowContext &context)
{
    context.commands.Bind(Cmd::mnuTabSpace,
                          [context] { frmTabSpace(context.editor, context.text, context.window).exec(); });
}

} // namespace zelvane
