// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

/// Binds the commands of the Help menu that open pages.
void BindHelpCommands(const WindowContext &context);

} // namespace zelvane
