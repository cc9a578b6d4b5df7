// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/profilefile.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

// The texts of a repository file (*.csr): a plain profile file with a section for each fragment.

/// What is read of a value, of the list of a file's sections and of a section that gets another name: so many
/// UTF-16 units. Kept: the files are exchanged with earlier versions, which read no more.
inline constexpr qsizetype ReadLimit = 32767;

/// Puts a text on one line: line ends become `\n`, tabs `\t`. Kept as the files have it: the last character
/// stays as it is, and a backslash has no escape of its own.
QString EscapeFragment(QStringView text);
/// Gives a line its line ends, which are CR LF, and its tabs back. Any other backslash stays.
QString UnescapeFragment(QStringView line);

/// The file that a user's new fragments go to, without its folder.
QString PersonalFileName(const QString &login);

/// How many of the names the list of a file's sections has room for; each takes one unit more than its
/// length.
qsizetype NamesWithinLimit(const QStringList &names);

/// The first `units` of a text, or one less: a character of two units is not parted.
QString StartOf(const QString &text, qsizetype units);

/// Cuts the entries of a section where its text, `key=value` and one unit for each, goes beyond the limit. Of
/// a key that is cut nothing stays. @return how many units were lost
qsizetype CutSection(ProfileEntries &entries);

} // namespace zelvane
