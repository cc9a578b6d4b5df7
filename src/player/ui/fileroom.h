// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/fileoperations.h"
#include "platform/ui/progressbox.h"
#include "player/filecommands.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/ui/windowcontext.h"

#include <QString>

namespace zelvane
{

class Player;

/// The shell commands of the window: those of the File menu, those of the sound in the player, and those that
/// other rooms have for their files.
class FileRoom : public FileWindows, public FileStep
{
public:
    FileRoom(const WindowContext &context, Player &player);

    void ShowProperties(const QString &path) override;

    bool ServesFiles() const override { return true; }
    void OpenWith(const QString &path) override;
    bool RunFileOperation(FileOperation operation, const QString &path) override;

private:
    WindowContext m_context;
    ProgressBox m_progress;
    SystemFileOperations m_operations;
    FileCommands m_commands;
};

} // namespace zelvane
