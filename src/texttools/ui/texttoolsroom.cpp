// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/texttoolsroom.h"

#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/ui/commands.h"
#include "texttools/exporttext.h"
#include "texttools/ui/frmtabspace.h"
#include "texttools/ui/insertcommands.h"

namespace zelvane
{

TextToolsRoom::TextToolsRoom(const WindowContext &context) : m_progress(context.window)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    commands.Bind(Cmd::mnuTabSpace,
                  [context] { frmTabSpace(context.editor, context.text, context.window).exec(); });
    commands.Bind(Cmd::mnuPlatformItem,
                  [&editor, parts = ExportParts{context.text, context.view, m_progress}](
                      ExportFormat format) { ExportText(format, editor, parts); });
    BindInsertCommands(context);
}

} // namespace zelvane
