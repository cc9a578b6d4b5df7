// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace zelvane
{

/// Cuts the parameters of a program, kept as one text, into its arguments. Blanks separate; a tab does not,
/// since a file name may hold one. Double quotes group and are dropped, also in the middle of an argument
/// (-o"a b.wav"); "" alone is an empty argument. Two quotes in a row inside a group stand for one quote. An
/// unbalanced quote runs to the end of the text.
QStringList SplitParameters(const QString &parameters);

/// Puts a file name in double quotes when it holds a blank or a quote, so that SplitParameters gives it back
/// whole.
QString QuoteFile(const QString &path);

/// Takes one pair of surrounding double quotes off a file name, as QuoteFile put them on; any other text
/// stays.
QString UnquoteFile(const QString &text);

} // namespace zelvane
