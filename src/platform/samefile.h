// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// Whether two paths lead to one file, through whatever links. A file that is not there is that of one path
/// only, and an empty path leads to none.
bool IsSameFile(const QString &one, const QString &other);

} // namespace zelvane
