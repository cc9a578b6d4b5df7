// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <functional>
#include <QChar>
#include <QString>
#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// The options of a search; their sum travels as one number.
enum FindOption {
    FindAnywhere = 0,
    FindWholeWord = 2,
    FindMatchCase = 4,
    FindRegularExpression = 8 ///< FindNextText only
};

/// Whether the character keeps what touches it from being a whole word.
bool IsWordCharacter(QChar c);

/// The first hit of `needle` that lies in [start, end); offsets count from 0, an `end` of -1 is the text's
/// length. A whole word has no letter, digit or underscore next to it, also beyond the range.
/// @return the offset of the hit, -1 when there is none or the needle is empty
qsizetype FindText(QStringView text, QStringView needle, qsizetype start, qsizetype end, int options);

/// Where the hits in [start, end) start that Replace All takes, in one pass: the search goes on behind each
/// hit, and what is put in its place is not searched, but counts as the neighbour of a hit right behind it.
/// Each hit is as long as the needle.
std::vector<qint32> HitsToReplace(QStringView text, QStringView needle, QStringView replacement,
                                  qsizetype start, qsizetype end, int options);

/// Searches from the end of the selection, with `wrap` also from the start of the text; selects the hit and
/// tells it in the status line, or tells that there is none, or what is wrong with a regular expression. An
/// empty hit where the caret stands is passed over. @return whether there was a hit
bool FindNextText(EditorContext &editor, const QString &needle, bool wrap, int options);

/// What is said of a regular expression that cannot be used.
QString BadPatternText(const QString &expression, const QString &error);
/// Tells what is wrong with a regular expression. @return whether all is well with it
bool TellBadPattern(EditorContext &editor, const QString &expression, const QString &error);
/// Tells that a search for a regular expression was given up.
void TellHardPattern(EditorContext &editor, const QString &expression);
/// How long a search that the user waits for may take before it is given up: asked by PatternSearch.
std::function<bool()> StopWhenLong();

/// Find Again: the newest recent string with the stored options, never wrapping.
void FindAgain(EditorContext &editor);

} // namespace zelvane
