// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace zelvane
{

/// Fills `names` with the full paths of a folder's files that match a pattern of "*" and "?", in the order of
/// their names. Links count as files, whatever they lead to. What is no file, and what belongs to another
/// user, is as if it were not there: the folder of temporary files is everybody's, and what is listed in it
/// is deleted, which nobody means for another user's file or a program's pipe. A closing separator on
/// `folder`, "\" or "/", is dropped first.
/// @return whether anything matched, also if it was all folders, which are not listed
bool ListFiles(const QString &folder, const QString &pattern, QStringList &names);

} // namespace zelvane
