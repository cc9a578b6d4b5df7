// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// The program's folder, without a separator at its end: `opcodes.txt`, the help page and the code repository
/// lie in it. It is the environment variable ZELVANE_HOME, else the executable's folder where that holds
/// `opcodes.txt` and can be written (a build tree, a portable copy), else `zelvane` in the user's data
/// folder, which is made and given the shipped files that it lacks; a repository file is given once only,
/// and the help page is always the shipped one.
/// Never fails: what is missing is told by those who read it.
QString ProgramFolder();

/// The folder of the installed files: `share/zelvane` beside the executable's folder, else where the build
/// was told to install.
QString ShippedFolder();

/// The rule of ProgramFolder with all its inputs given. `home` may be empty.
QString ChooseProgramFolder(const QString &home, const QString &executableFolder, const QString &dataFolder,
                            const QString &shippedFolder);

} // namespace zelvane
