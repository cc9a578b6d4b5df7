// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace zelvane
{

/// The libraries for sound files and XML, each with its version.
QStringList LibraryVersions();

} // namespace zelvane
