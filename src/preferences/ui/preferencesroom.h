// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

/// What the program says of itself.
class PreferencesRoom
{
public:
    explicit PreferencesRoom(const WindowContext &context);
};

} // namespace zelvane
