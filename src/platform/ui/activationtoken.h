// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace zelvane
{

/// The desktop's leave to bring a window to the front, as the launcher put it into the environment; empty
/// when it gave none. To be asked before the application object is made, which takes it for a window of this
/// process.
QByteArray ActivationToken();

/// Makes a token that another process gave the one that the next window that comes to the front uses.
void UseActivationToken(const QByteArray &token);

/// A token is good for one use, and not for programs that are started later.
void ForgetActivationToken();

} // namespace zelvane
