// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/withinscreen.h"

#include <QRect>
#include <QScreen>
#include <QWidget>

namespace zelvane
{

QSize WithinScreen(const QWidget &window, const QSize &size)
{
    return size.boundedTo(window.screen()->availableGeometry().size() - WindowFrame);
}

} // namespace zelvane
