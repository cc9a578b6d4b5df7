// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/foldercommands.h"

#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"

namespace zelvane
{

namespace
{

constexpr KnownFolder Folders[] = {KnownFolder::SoundFiles, KnownFolder::Samples, KnownFolder::Analysis,
                                   KnownFolder::Includes,   KnownFolder::Csound,  KnownFolder::Csound2,
                                   KnownFolder::Document,   KnownFolder::Backup,  KnownFolder::Program};

} // namespace

void BindFolderCommands(const WindowContext &context, const std::function<ProgramFolders()> &folders)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    commands.Bind(Cmd::mnuDIR, [&editor, folders](KnownFolder folder) {
        OpenFolder(FolderTarget(folder, editor, folders()), editor.desktop);
    });
    commands.OnMenuOpening(Menu::mnuView, [&editor, &commands, folders] {
        for (const KnownFolder folder : Folders)
            commands.SetEnabled(Cmd::mnuDIR[folder], !FolderTarget(folder, editor, folders()).isEmpty());
    });
}

} // namespace zelvane
