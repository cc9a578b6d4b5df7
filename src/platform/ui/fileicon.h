// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>

namespace zelvane
{

/// The desktop's small icon of a file: of a program the icon that its name has in the icon theme, else that
/// of the file's type. A bare program name means the one in PATH. Null for a file that is not there.
QIcon SmallFileIcon(const QString &path);

} // namespace zelvane
