// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/preferencesroom.h"

#include "preferences/fileassociations.h"
#include "preferences/ui/formabout.h"
#include "preferences/ui/preferencescommands.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "shell/windowsteps.h"

namespace zelvane
{

PreferencesRoom::PreferencesRoom(const WindowContext &context)
{
    BindPreferences(context);
    EditorContext &editor = context.editor;
    QWidget *window = context.window;
    context.windowSteps.Add(WindowMoment::CleanUp, FollowMovedProgram);
    context.commands.Bind(Cmd::mnuAbout, [&editor, window] { Formabout(editor, window).exec(); });
}

} // namespace zelvane
