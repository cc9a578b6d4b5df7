// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/mediacontrol.h"
#include "player/player.h"
#include "shell/ui/windowcontext.h"

#include <memory>

namespace zelvane
{

class PlayerPanel;

/// The sound player in the window: its panel is a band of the bar, its commands those of the Player menu.
class PlayerRoom
{
public:
    /// Plays through the sound device of the system.
    explicit PlayerRoom(const WindowContext &context);
    PlayerRoom(const WindowContext &context, std::unique_ptr<MediaControl> media);

    /// For what works on the file of the open sound.
    Player &ThePlayer() { return m_player; }

private:
    void BindCommands();
    void ConnectPanel();
    void ToggleLoop();
    void MenuOpening();

    WindowContext m_context;
    std::unique_ptr<MediaControl> m_media;
    PlayerPanel *PicPlayer;
    Player m_player;
};

} // namespace zelvane
