// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/helpcommands.h"

#include "shell/errorreport.h"
#include "shell/helplinks.h"
#include "shell/ui/commands.h"

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

HelpCommands::HelpCommands(EditorContext &editor, Commands &commands, const QString &programFolder,
                           QObject *parent)
    : QObject(parent)
{
    commands.Bind(Cmd::mnuAppHelp, [&editor, programFolder] {
        const QString executable = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
        OpenAppHelp(editor.desktop, programFolder, executable);
    });
    commands.Bind(Cmd::mnuWebPage,
                  [&editor] { OpenWebAddress(editor.desktop, QString::fromUtf16(WebAddress)); });
    commands.Bind(Cmd::mnuLinks, [&editor](WebLink link) { OpenCsoundLink(link, editor.desktop); });
}

} // namespace zelvane
