// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/foldercommands.h"

#include "shell/ui/commands.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr KnownFolder Folders[] = {KnownFolder::SoundFiles, KnownFolder::Samples, KnownFolder::Analysis,
                                   KnownFolder::Includes,   KnownFolder::Csound,  KnownFolder::Csound2,
                                   KnownFolder::Document,   KnownFolder::Backup,  KnownFolder::Program};

} // namespace

FolderCommands::FolderCommands(EditorContext &editor, Commands &commands,
                               std::function<ProgramFolders()> folders, QObject *parent)
    : QObject(parent)
{
    commands.Bind(Cmd::mnuDIR, [&editor, folders](KnownFolder folder) {
        OpenFolder(FolderTarget(folder, editor, folders()), editor.desktop);
    });
    commands.OnMenuOpening(Menu::mnuView, [&editor, &commands, folders] {
        for (const KnownFolder folder : Folders)
            commands.SetEnabled(Cmd::mnuDIR[folder], !FolderTarget(folder, editor, folders()).isEmpty());
    });
}

} // namespace zelvane
