// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// The full path of the program that a command names, empty when there is none. A command with a folder in it
/// names that file, a relative one below `folder`; a bare name ("csound") is looked up in PATH.
QString FindExecutable(const QString &command, const QString &folder = {});

/// The full path of a tool as it was set, without quotes: a bare name means the program in PATH. Empty where
/// no tool is set.
QString ProgramPath(const QString &tool);

/// A word for the kind of executable that a file is: "ELF 64-bit", "ELF 32-bit", "Mach-O", "Win32", "DOS",
/// "Script", or "<unknown executable>" for a program that may be run and not read. Empty for a document, also
/// for one whose permission bits say that it may be run: on some file systems every file's do.
QString ExecutableFileKind(const QString &path);

} // namespace zelvane
