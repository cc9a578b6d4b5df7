// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace zelvane
{

class Desktop;

/// Starts the first volume control that the system has: a mixer, the desktop's sound settings, or a mixer in
/// a terminal. With Ctrl it comes up with what is recorded, with Shift, which goes first, with what is heard.
/// A message where there is none.
void OpenVolumeControl(Desktop &desktop);

} // namespace zelvane
