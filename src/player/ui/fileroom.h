// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/fileoperations.h"
#include "platform/ui/progressbox.h"
#include "player/filecommands.h"
#include "shell/ui/windowcontext.h"

#include <QString>

namespace zelvane
{

/// The shell commands of the File menu in the window.
class FileRoom : public FileWindows
{
public:
    explicit FileRoom(const WindowContext &context);

    void ShowProperties(const QString &path) override;

private:
    WindowContext m_context;
    ProgressBox m_progress;
    SystemFileOperations m_operations;
    FileCommands m_commands;
};

} // namespace zelvane
