// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace zelvane
{

class Desktop;

/// What a panel for sound comes up with.
enum class AudioSide { Both, Recorded, Heard };

/// Starts the first panel for sound that the system has: a mixer, the desktop's sound settings, or a mixer in
/// a terminal. @return false where there is none
bool OpenAudioPanel(Desktop &desktop, AudioSide side);

} // namespace zelvane
