// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/playerroom.h"

#include "platform/mediaengine.h"
#include "platform/ui/sdlaudiooutput.h"
#include "platform/ui/textcontrol.h"
#include "player/playerkeys.h"
#include "player/ui/playerpanel.h"
#include "player/ui/timeslider.h"
#include "player/volumecontrol.h"
#include "shell/bands.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/layoutparts.h"
#include "shell/ui/menutable.h"
#include "shell/ui/sidepanel.h"
#include "shell/windowsteps.h"

#include <QMenu>
#include <QPoint>
#include <QTimer>
#include <utility>

namespace zelvane
{

PlayerRoom::PlayerRoom(const WindowContext &context)
    : PlayerRoom(context, std::make_unique<MediaEngine>(std::make_unique<SdlAudioOutput>()))
{
}

PlayerRoom::PlayerRoom(const WindowContext &context, std::unique_ptr<MediaControl> media)
    : m_context(context),
      m_media(std::move(media)),
      PicPlayer(new PlayerPanel(context.commands, &context.text)),
      m_player(context.editor, *m_media, *PicPlayer)
{
    context.bands.AddBand(WindowBand::Player, PicPlayer);
    context.steps.sound.Take(m_player);
    context.windowSteps.Add(WindowMoment::Closing, [this] { m_player.Close(); });
    // The player's button follows the row.
    context.layout.KeepRow(LayoutPart::LoopMode, Keys::LoopMode, Cmd::mnuLoop,
                           [&commands = context.commands] { commands.SetChecked(Cmd::mnuLoop, true); });
    BindCommands();
    ConnectPanel();
}

void PlayerRoom::BindCommands()
{
    Commands &commands = m_context.commands;
    commands.Bind(Cmd::mnuPlay, [this] { m_player.mnuPlay(); });
    commands.Bind(Cmd::mnuPause, [this] { m_player.MCIpause(); });
    commands.Bind(Cmd::mnuStop, [this] { m_player.MCIstop(); });
    commands.Bind(Cmd::mnuLoop, [this] { ToggleLoop(); });
    commands.Bind(Cmd::mnuOpenSoundfile, [this] { m_player.mnuOpenSoundfile(); });
    commands.Bind(Cmd::mnuVolumeControl, [this] { OpenVolumeControl(m_context.editor.desktop); });
    commands.OnMenuOpening(Menu::mnuPlayer, [this] { MenuOpening(); });
}

void PlayerRoom::ConnectPanel()
{
    QObject::connect(PicPlayer->Timer1, &QTimer::timeout, PicPlayer, [this] { m_player.Tick(); });
    QObject::connect(PicPlayer, &PlayerPanel::TimeClicked, PicPlayer, [this] { m_player.SwapTimeMode(); });
    QObject::connect(PicPlayer->SliderTime, &TimeSlider::Taken, PicPlayer,
                     [this] { m_player.SliderTaken(); });
    QObject::connect(PicPlayer->SliderTime, &TimeSlider::Released, PicPlayer,
                     [this](int value) { m_player.SliderReleased(value); });
    QObject::connect(PicPlayer->SliderTime, &TimeSlider::Kept, PicPlayer, [this] { m_player.SliderKept(); });
    QObject::connect(PicPlayer, &QWidget::customContextMenuRequested, PicPlayer, [this](const QPoint &at) {
        m_context.menus.Menu(Menu::mnuPlayer)->popup(PicPlayer->mapToGlobal(at));
    });
}

void PlayerRoom::ToggleLoop()
{
    Commands &commands = m_context.commands;
    commands.SetChecked(Cmd::mnuLoop, !commands.IsChecked(Cmd::mnuLoop));
    if (!commands.IsChecked(Cmd::mnuBrowse))
        return;
    if (QWidget *outline = m_context.panel.Control(PanelBand::Browse))
        outline->setFocus();
}

void PlayerRoom::MenuOpening()
{
    m_player.MenuOpening();
    for (const FileOperation operation : {FileOperation::Move, FileOperation::Copy, FileOperation::Rename,
                                          FileOperation::Delete, FileOperation::Properties})
        m_context.commands.SetEnabled(Cmd::mnuSSO[operation], PicPlayer->IsSoundEnabled());
}

} // namespace zelvane
