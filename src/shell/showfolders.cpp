// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/showfolders.h"

#include "shell/documentkeys.h"
#include "shell/splitpath.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString FolderTarget(KnownFolder folder, const EditorContext &editor, const ProgramFolders &folders)
{
    switch (folder) {
    case KnownFolder::SoundFiles:
        return editor.desktop.EnvironmentVariable(u"SFDIR"_s);
    case KnownFolder::Samples:
        return editor.desktop.EnvironmentVariable(u"SSDIR"_s);
    case KnownFolder::Analysis:
        return editor.desktop.EnvironmentVariable(u"SADIR"_s);
    case KnownFolder::Includes:
        return editor.desktop.EnvironmentVariable(u"INCDIR"_s);
    case KnownFolder::Csound:
        return SplitPath(PathPart::Folder, folders.csound);
    case KnownFolder::Csound2:
        return SplitPath(PathPart::Folder, folders.csound2);
    case KnownFolder::Document:
        return SplitPath(PathPart::Folder, editor.document.CurrentFile);
    case KnownFolder::Backup: {
        const QString backup = editor.settings.Text(Keys::BakPath);
        return backup.isEmpty() ? folders.program : backup;
    }
    case KnownFolder::Program:
        return folders.program;
    }
    return {};
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
