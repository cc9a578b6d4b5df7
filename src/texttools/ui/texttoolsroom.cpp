// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/texttoolsroom.h"

#include "shell/command.h"
#include "shell/ui/commands.h"
#include "texttools/exporttext.h"
#include "texttools/ui/frmtabspace.h"
#include "texttools/ui/insertcommands.h"

namespace zelvane
{

TextToolsRoom::TextToolsRoom(const WindowContext &context)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    commands.Bind(Cmd::mnuTabSpace,
                  [context] { frmTabSpace(context.editor, context.text, context.window).exec(); });
    for (const ExportFormat format : {ExportFormat::Pc, ExportFormat::Unix, ExportFormat::Mac})
        commands.Bind(Cmd::mnuPlatformItem[format], [&editor, format] { ExportText(format, editor); });
    BindInsertCommands(context);
}

} // namespace zelvane
