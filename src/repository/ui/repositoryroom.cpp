// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/repositoryroom.h"

#include "repository/coderepository.h"
#include "repository/ui/frmcoderes.h"
#include "shell/command.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"

#include <QDialog>

namespace zelvane
{

namespace
{

void Show(frmCodeRes &dialog, DocumentView &view)
{
    if (dialog.exec() == QDialog::Accepted)
        view.FocusText(); // the user goes on at what was inserted
}

} // namespace

RepositoryRoom::RepositoryRoom(const WindowContext &context)
{
    context.commands.Bind(Cmd::mnuCodeRes, [context] {
        frmCodeRes dialog(context.editor, context.steps, context.window);
        dialog.CodeInit();
        Show(dialog, context.view);
    });
    context.commands.Bind(Cmd::mnuCodeResAdd, [context] {
        frmCodeRes dialog(context.editor, context.steps, context.window);
        dialog.CodeInit();
        dialog.AddCode(TextForRepository(context.editor.text));
        Show(dialog, context.view);
    });
}

} // namespace zelvane
