// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace zelvane
{

/// The style classes of a text that takes the place of another. Where both have the same characters, but for
/// upper and lower case and for the blanks, line ends and comment marks (`;`, `/`, `*`) that came or went,
/// each character keeps its class, and a mark that came takes the class of the one before it, the first of
/// them `before`. Characters outside ASCII count as the same, but for those with an ASCII letter as their
/// other case.
/// @param oldClasses one class for each code unit of `oldText`
/// @return one class for each code unit of `newText`; empty when the texts differ in more
QByteArray KeptClasses(QByteArrayView oldText, QByteArrayView oldClasses, QByteArrayView newText,
                       char before);
QByteArray KeptClasses(QStringView oldText, QByteArrayView oldClasses, QStringView newText, char before);

} // namespace zelvane
