// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

class PlayerPanel;

/// The sound player in the window: its panel is a band of the bar.
class PlayerRoom
{
public:
    explicit PlayerRoom(const WindowContext &context);

private:
    PlayerPanel *PicPlayer;
};

} // namespace zelvane
