// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/toolbutton.h"

#include <span>

namespace zelvane
{

/// The buttons of `Toolbar1`, in the order on the screen.
std::span<const ToolButton> ToolbarTable();

} // namespace zelvane
