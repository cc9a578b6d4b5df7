// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <optional>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

// A score i statement as text. Offsets count from 0.

/// The letter i of the statement that the caret is in: the nearest one before the caret or under it, in its
/// line, that begins a word.
std::optional<qsizetype> FindStatement(QStringView text, qsizetype caret);

/// The number that stands right behind the letter of the statement at the caret: 0 when there is no digit, -1
/// when there is no letter. @throws RunTimeError 6 "Overflow" beyond 16 bits
qint16 StatementInstrument(QStringView text, qsizetype caret);

/// The p-fields of a statement, and where it stands.
struct Statement {
    /// From behind the letter to behind the last token that something follows. Before a semicolon it ends one
    /// character earlier (kept: what is not in it is never written).
    TextSpan range;
    QStringList values; ///< p1 first; of each token that something follows

    bool operator==(const Statement &) const = default;
};

/// Reads the statement at the caret, which may go on over several lines, up to the next one, a comment or a
/// tag. Blanks do not end a token inside brackets and double quotes.
/// @return nothing when there is no letter, or no token behind it that something follows
std::optional<Statement> ParseStatement(QStringView text, qsizetype caret);

/// A statement's text with other values. The last token has nothing behind it and stays as it is; so do
/// tokens beyond the values.
/// @param text of the statement's range @param values p1 first
QString WriteStatement(QStringView text, const QStringList &values);

} // namespace zelvane
