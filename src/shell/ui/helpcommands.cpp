// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/helpcommands.h"

#include "platform/programfolder.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/helplinks.h"
#include "shell/ui/commands.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace zelvane
{

void BindHelpCommands(const WindowContext &context)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    commands.Bind(Cmd::mnuAppHelp, [&editor] {
        const QString executable = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
        OpenAppHelp(editor.desktop, ProgramFolder(), executable);
    });
    commands.Bind(Cmd::mnuWebPage,
                  [&editor] { OpenWebAddress(editor.desktop, QString::fromUtf16(WebAddress)); });
    commands.Bind(Cmd::mnuLinks, [&editor](WebLink link) { OpenCsoundLink(link, editor.desktop); });
}

} // namespace zelvane
