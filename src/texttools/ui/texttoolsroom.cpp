// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/texttoolsroom.h"

#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/ui/commands.h"
#include "texttools/exporttext.h"
#include "texttools/printtext.h"
#include "texttools/ui/frmtabspace.h"
#include "texttools/ui/insertcommands.h"

namespace zelvane
{

TextToolsRoom::TextToolsRoom(const WindowContext &context)
    : m_progress(context.window), m_print(context.window)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    commands.Bind(Cmd::mnuTabSpace,
                  [context] { frmTabSpace(context.editor, context.text, context.window).exec(); });
    commands.Bind(Cmd::mnuPlatformItem,
                  [&editor, parts = ExportParts{context.text, context.view, m_progress}](
                      ExportFormat format) { ExportText(format, editor, parts); });
    commands.Bind(Cmd::mnuPrint, [this, context] { PrintText(context.editor, context.text, m_print); });
    BindInsertCommands(context);
}

} // namespace zelvane
