// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

/// Binds the Insert menu, and gives the rows of the line separators their captions.
void BindInsertCommands(const WindowContext &context);

} // namespace zelvane
