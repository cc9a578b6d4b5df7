// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/toolpaths.h"

#include "platform/executables.h"
#include "shell/settings.h"
#include "shell/toolkeys.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

ToolPaths ReadToolPaths(const SettingsStore &settings)
{
    QString csound = settings.Text(Keys::Csound);
    if (csound.isEmpty())
        csound = FindExecutable(u"csound"_s);
    return {.Csound = csound,
            .Csound2 = settings.Text(Keys::Csound2),
            .Help = settings.Text(Keys::Help),
            .Editor = settings.Text(Keys::Editor),
            .Player = settings.Text(Keys::Player)};
}

} // namespace zelvane
