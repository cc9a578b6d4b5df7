// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// What the desktop's file manager and its search tool do for us. Each answers whether the request was taken.
namespace FileManager
{

/// Shows a folder in the file manager.
bool ShowFolder(const QString &folder);
/// Shows the properties sheet of a file.
bool ShowProperties(const QString &path);
/// Lets the user pick the program that opens a file.
bool OpenWith(const QString &path);
/// Starts the desktop's search for files in a folder.
bool FindFiles(const QString &folder);

} // namespace FileManager

} // namespace zelvane
