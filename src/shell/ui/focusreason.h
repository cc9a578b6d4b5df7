// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFocusEvent>

namespace zelvane
{

/// Whether the keyboard has only gone to or come back from a menu or another window: the user has not moved
/// it from one control to another.
inline bool IsAway(const QFocusEvent &event)
{
    return event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
}

} // namespace zelvane
