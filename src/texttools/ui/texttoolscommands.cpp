// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/texttoolscommands.h"

#include "platform/ui/textcontrol.h"
#include "shell/ui/commands.h"
#include "texttools/ui/frmtabspace.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

TextToolsCommands::TextToolsCommands(EditorContext &editor, TextControl &text, Commands &commands,
                                     QWidget *window)
    : QObject(window)
{
    commands.Bind(Cmd::mnuTabSpace, [&editor, &text, window] { frmTabSpace(editor, text, window).exec(); });
}

} // namespace zelvane
