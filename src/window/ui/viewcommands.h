// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

class QToolBar;

namespace zelvane
{

class Workspace;

/// Binds the commands of the View menu that show and hide bands, status bar and labels. The labels of a
/// room's own bar are bound by the room.
void BindViewCommands(const WindowContext &context, Workspace &workspace, QToolBar &toolbar);

} // namespace zelvane
