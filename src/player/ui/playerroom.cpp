// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/playerroom.h"

#include "player/ui/playerpanel.h"
#include "shell/command.h"
#include "shell/ui/bandbar.h"

namespace zelvane
{

PlayerRoom::PlayerRoom(const WindowContext &context) : PicPlayer(new PlayerPanel(context.commands))
{
    context.bands.AddBand(WindowBand::Player, PicPlayer);
}

} // namespace zelvane
