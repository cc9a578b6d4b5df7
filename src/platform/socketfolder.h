// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// The folder for the sockets of a realm, made if it is not there, for this user alone and with a name that
/// leaves forty bytes for that of a socket; empty where the desktop has no such place.
/// @param realm any text that is the same in all processes that look for each other
QString SocketFolder(const QString &realm);

} // namespace zelvane
