// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/foldercommands.h"

#include "shell/ui/commands.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int Entries[] = {0, 1, 2, 3, 5, 6, 8, 9, 11};

} // namespace

FolderCommands::FolderCommands(EditorContext &editor, Commands &commands,
                               std::function<ProgramFolders()> folders, QObject *parent)
    : QObject(parent)
{
    commands.Bind(u"mnuDIR"_s, [&editor, folders](int entry) {
        OpenFolder(FolderTarget(entry, editor, folders()), editor.desktop);
    });
    commands.OnMenuOpening(u"mnuView"_s, [&editor, &commands, folders] {
        for (const int entry : Entries)
            commands.SetEnabled(u"mnuDIR"_s, entry, !FolderTarget(entry, editor, folders()).isEmpty());
    });
}

} // namespace zelvane
