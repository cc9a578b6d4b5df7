// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace zelvane
{

/// The length of the longest line in characters, without its end: LF or CR.
qsizetype LongestLine(QStringView text);

/// The longest line of a text in characters, where it is longer than a line that the text control shows well
/// and takes keys in without a wait; else 0.
qsizetype UnwieldyLineIn(QStringView text);

/// The longest line of a file in characters, where UnwieldyLineIn its text finds one; else 0. So is the
/// answer for a file that cannot be read.
qsizetype UnwieldyLineOf(const QString &name);

} // namespace zelvane
