// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/toolpaths.h"

#include "platform/executables.h"
#include "platform/parameters.h"
#include "shell/settings.h"
#include "shell/toolkeys.h"

namespace zelvane
{

ToolPaths ReadToolPaths(const SettingsStore &settings)
{
    return {.Csound = settings.Text(Keys::Csound),
            .Csound2 = settings.Text(Keys::Csound2),
            .Help = settings.Text(Keys::Help),
            .Editor = settings.Text(Keys::Editor),
            .Player = settings.Text(Keys::Player)};
}

QString ProgramPath(const QString &tool)
{
    const QString plain = UnquoteFile(tool);
    const QString found = plain.isEmpty() ? QString() : FindExecutable(plain);
    return found.isEmpty() ? plain : found;
}

} // namespace zelvane
