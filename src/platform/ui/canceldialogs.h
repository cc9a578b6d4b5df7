// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QObject;

namespace zelvane
{

/// Closes every open menu and cancels every modal dialog, the innermost first, also one that would ask before
/// it goes: the system ends the session or the process. The commands that showed them have not come to their
/// end when this returns.
void CancelDialogs();

/// Cancels what is open, and does `then` when the commands that had shown it have come to their end.
/// @param owner when it goes before that, nothing is done
void CancelDialogs(QObject &owner, std::function<void()> then);

} // namespace zelvane
