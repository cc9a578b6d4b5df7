// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

/// The code repository in the window: its two commands.
class RepositoryRoom
{
public:
    explicit RepositoryRoom(const WindowContext &context);
};

} // namespace zelvane
