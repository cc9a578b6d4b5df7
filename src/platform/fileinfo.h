// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

class Desktop;

/// What the tooltip of a command says about a file: its name, its type and, for a program, the kind of
/// executable. Empty for a path that the desktop does not know.
QString FileInfoText(const QString &path, const Desktop &desktop);

/// Whether the path names a file that can be started as a process.
bool IsExecutableFile(const QString &path, const Desktop &desktop);

} // namespace zelvane
