// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/fileoperations.h"
#include "platform/ui/progressbox.h"
#include "shell/ui/windowcontext.h"

#include <QObject>

namespace zelvane
{

/// Binds the commands for the backup of the document and for what Csound leaves in the temporary folder, and
/// clears that away at the start where the user wants it.
class BackupCommands : public QObject
{
public:
    explicit BackupCommands(const WindowContext &context);

private:
    ProgressBox m_progress;
    SystemFileOperations m_files;
};

} // namespace zelvane
