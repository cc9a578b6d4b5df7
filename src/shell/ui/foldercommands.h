// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/showfolders.h"
#include "shell/ui/windowcontext.h"

#include <functional>

namespace zelvane
{

/// Binds the rows of Show folders; each is enabled while its folder is known.
/// @param folders asked at each use: the tools may have been chosen anew
void BindFolderCommands(const WindowContext &context, const std::function<ProgramFolders()> &folders);

} // namespace zelvane
