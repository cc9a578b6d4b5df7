// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/playerroom.h"

#include "player/playerkeys.h"
#include "player/ui/playerpanel.h"
#include "shell/bands.h"
#include "shell/command.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/layoutparts.h"

namespace zelvane
{

PlayerRoom::PlayerRoom(const WindowContext &context) : PicPlayer(new PlayerPanel(context.commands))
{
    context.bands.AddBand(WindowBand::Player, PicPlayer);
    // The player's button follows the row.
    context.layout.KeepRow(LayoutPart::LoopMode, Keys::LoopMode, Cmd::mnuLoop,
                           [&commands = context.commands] { commands.SetChecked(Cmd::mnuLoop, true); });
}

} // namespace zelvane
