// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/showfolders.h"

#include "shell/documentkeys.h"
#include "shell/splitpath.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString FolderTarget(int entry, const EditorContext &editor, const ProgramFolders &folders)
{
    switch (entry) {
    case 0:
        return editor.desktop.EnvironmentVariable(u"SFDIR"_s);
    case 1:
        return editor.desktop.EnvironmentVariable(u"SSDIR"_s);
    case 2:
        return editor.desktop.EnvironmentVariable(u"SADIR"_s);
    case 3:
        return editor.desktop.EnvironmentVariable(u"INCDIR"_s);
    case 5:
        return SplitPath(PathPart::Folder, folders.csound);
    case 6:
        return SplitPath(PathPart::Folder, folders.csound2);
    case 8:
        return SplitPath(PathPart::Folder, editor.document.CurrentFile);
    case 9: {
        const QString backup = editor.settings.Text(Keys::BakPath);
        return backup.isEmpty() ? folders.program : backup;
    }
    case 11:
        return folders.program;
    default:
        return {};
    }
}

void OpenFolder(const QString &folder, Desktop &desktop)
{
    if (folder.isEmpty())
        return;
    ShellRequest request;
    request.verb = u"open"_s;
    if (desktop.IsKeyDown(KeyCode::Ctrl))
        request.verb = u"find"_s;
    else if (desktop.IsKeyDown(KeyCode::Shift))
        request.verb = u"explore"_s;
    request.file = folder;
    if (desktop.ShellRun(request) <= ShellFailure)
        desktop.MessageBox({.text = u"Cannot open folder."_s, .icon = BoxIcon::Warning});
}

} // namespace zelvane
