// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/fileroom.h"

#include "player/fileproperties.h"
#include "player/player.h"
#include "player/ui/frmproperties.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"

#include <QFileInfo>

namespace zelvane
{

FileRoom::FileRoom(const WindowContext &context, Player &player)
    : m_context(context),
      m_progress(context.window),
      m_operations(context.editor.desktop, m_progress),
      m_commands(context.editor, context.documents, m_operations, *this)
{
    Commands &commands = context.commands;
    commands.Bind(Cmd::mnuFSO, [this](FileOperation operation) { m_commands.mnuFSO(operation); });
    commands.Bind(Cmd::mnuOpenWith, [this] { m_commands.mnuOpenWith(); });
    commands.Bind(Cmd::mnuSearchFiles, [this] { m_commands.mnuSearchFiles(); });
    commands.Bind(Cmd::mnuSSO, [this, &player](FileOperation operation) {
        m_commands.mnuSSO(operation, player.SoundShellTag(), [&player] { player.MCIstop(); });
    });
    context.steps.files.Take(*this);
}

void FileRoom::OpenWith(const QString &path)
{
    m_commands.OpenWith(path);
}

bool FileRoom::RunFileOperation(FileOperation operation, const QString &path)
{
    return m_commands.RunFileOperation(operation, path);
}

void FileRoom::ShowProperties(const QString &path)
{
    frmProperties(QFileInfo(path).fileName(), FileProperties(path, m_context.editor.desktop),
                  m_context.window)
        .exec();
}

} // namespace zelvane
