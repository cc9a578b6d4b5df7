// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

class QWidget;

namespace zelvane
{

/// About what the window manager puts around a dialog, pixels.
inline constexpr QSize WindowFrame(16, 48);

/// The size of a window without its frame, or what of it the window's screen has room for. Pixels.
QSize WithinScreen(const QWidget &window, const QSize &size);

} // namespace zelvane
