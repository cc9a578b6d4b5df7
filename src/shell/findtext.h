// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>
#include <QFlags>
#include <QString>
#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// The options of a search.
enum FindOption {
    FindAnywhere = 0,
    FindWholeWord = 2,
    FindMatchCase = 4,
    FindRegularExpression = 8 ///< FindNextText only
};
Q_DECLARE_FLAGS(FindOptions, FindOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(FindOptions)

/// Whether the character keeps what touches it from being a whole word.
bool IsWordCharacter(QChar c);

/// The first hit of `needle` that lies in [start, end); offsets count from 0, an `end` of -1 is the text's
/// length. A whole word has no letter, digit or underscore next to it, also beyond the range.
/// @return the offset of the hit, -1 when there is none or the needle is empty
qsizetype FindText(QStringView text, QStringView needle, qsizetype start, qsizetype end, FindOptions options);

/// Where the hits in [start, end) start that Replace All takes, in one pass: the search goes on behind each
/// hit, and what is put in its place is not searched, but counts as the neighbour of a hit right behind it.
/// Each hit is as long as the needle.
std::vector<qint32> HitsToReplace(QStringView text, QStringView needle, QStringView replacement,
                                  qsizetype start, qsizetype end, FindOptions options);

} // namespace zelvane
