// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"
#include "shell/showfolders.h"

#include <functional>
#include <QObject>

namespace zelvane
{

class Commands;

/// Binds the rows of Show folders; each is enabled while its folder is known.
class FolderCommands : public QObject
{
    Q_OBJECT

public:
    /// @param folders asked at each use: the tools may have been chosen anew
    FolderCommands(EditorContext &editor, Commands &commands, std::function<ProgramFolders()> folders,
                   QObject *parent);
};

} // namespace zelvane
