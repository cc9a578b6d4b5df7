// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/volumecontrol.h"

#include "platform/audiopanel.h"
#include "platform/desktop.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void OpenVolumeControl(Desktop &desktop)
{
    AudioSide side = AudioSide::Both;
    if (desktop.IsKeyDown(KeyCode::Ctrl))
        side = AudioSide::Recorded;
    if (desktop.IsKeyDown(KeyCode::Shift))
        side = AudioSide::Heard;
    if (!OpenAudioPanel(desktop, side))
        desktop.MessageBox(
            {.text = u"Cannot start Volume Control. Maybe it's not installed."_s, .icon = BoxIcon::Warning});
}

} // namespace zelvane
