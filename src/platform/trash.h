// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/filetransfer.h"

#include <QString>

namespace zelvane
{

/// Moves a file, or a link itself, to the user's trash: to that of its own file system where there is one or
/// can be, else to the one in the user's data folder. It is kept there beside a note of where it came from
/// and when, as the desktop's file managers read it. Never answers Exists.
/// @throws RunTimeError; the file stands where it stood then
TransferEnd MoveToTrash(const QString &path, const TransferProgress &progress);

} // namespace zelvane
