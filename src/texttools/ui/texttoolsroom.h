// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

/// The text tools in the window: their commands and dialogs.
class TextToolsRoom
{
public:
    explicit TextToolsRoom(const WindowContext &context);
};

} // namespace zelvane
