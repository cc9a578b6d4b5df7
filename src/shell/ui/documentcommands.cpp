// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/documentcommands.h"

#include "shell/command.h"
#include "shell/documentlifecycle.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"

#include <utility>

namespace zelvane
{

void BindDocumentCommands(const WindowContext &context, std::function<void()> closeWindow)
{
    Commands &commands = context.commands;
    DocumentLifecycle &documents = context.documents;
    commands.Bind(Cmd::mnuNew, [&documents] { documents.New(); });
    commands.Bind(Cmd::mnuOpen, [&documents] { documents.Open(); });
    commands.Bind(Cmd::mnuSave, [&documents] { documents.Save(); });
    commands.Bind(Cmd::mnuSaveAs, [&documents] { documents.SaveAs(); });
    commands.Bind(Cmd::mnuNewInstance, [&documents] { documents.NewInstance(); });
    commands.Bind(Cmd::MRUfolder, [&documents](int number) { documents.OpenRecent(number); });
    commands.Bind(Cmd::mnuExit, [closeWindow = std::move(closeWindow)] { closeWindow(); });
    commands.OnMenuOpening(Menu::mnuFile, [&documents] { documents.FileMenuOpening(); });
}

} // namespace zelvane
