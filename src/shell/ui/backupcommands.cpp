// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/backupcommands.h"

#include "shell/backup.h"
#include "shell/command.h"
#include "shell/documentkeys.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "shell/windowsteps.h"

#include <QDir>
#include <QWidget>

namespace zelvane
{

BackupCommands::BackupCommands(const WindowContext &context)
    : QObject(context.window), m_progress(context.window), m_files(context.editor.desktop, m_progress)
{
    EditorContext &editor = context.editor;
    context.commands.Bind(Cmd::mnuBackupNow, [this, &editor] { BackupNow(editor, m_files); });
    context.commands.Bind(Cmd::mnuDeleteTempFiles,
                          [this, &editor] { DeleteTempFiles(true, QDir::tempPath(), editor, m_files); });
    context.windowSteps.Add(WindowMoment::CleanUp, [this, &editor] {
        if (editor.settings.Flag(Keys::DeleteTempFiles))
            DeleteTempFiles(false, QDir::tempPath(), editor, m_files);
    });
}

} // namespace zelvane
