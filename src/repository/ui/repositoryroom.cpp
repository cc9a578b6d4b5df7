// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/repositoryroom.h"

#include "repository/coderepository.h"
#include "repository/ui/frmcoderes.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"

namespace zelvane
{

RepositoryRoom::RepositoryRoom(const WindowContext &context)
{
    context.commands.Bind(Cmd::mnuCodeRes, [context] {
        frmCodeRes dialog(context.editor, context.steps, context.window);
        dialog.CodeInit();
        dialog.exec();
    });
    context.commands.Bind(Cmd::mnuCodeResAdd, [context] {
        frmCodeRes dialog(context.editor, context.steps, context.window);
        dialog.CodeInit();
        dialog.AddCode(TextForRepository(context.editor.text));
        dialog.exec();
    });
}

} // namespace zelvane
