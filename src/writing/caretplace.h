// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <functional>
#include <optional>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// What a place of the text belongs to.
enum class TextPart { Code, String, Comment };

/// What the end of a line's beginning belongs to. Knows strings, ";" and "//" comments and block comments.
/// @param inComment whether the line begins in a block comment
TextPart PartAtEnd(QStringView beginning, bool inComment);

/// The text with blanks in the place of comments and double quotes in that of strings.
QString CodeOf(QStringView text);

/// Whether `offset` is inside one of the spans, which are in order, or right behind one that ends with the
/// text: so a comment does that nothing closes.
bool IsInside(const std::vector<TextSpan> &spans, qsizetype offset, qsizetype textLength);

/// The word that touches a place of a line: letters, digits and underscores, with the "$" before it.
struct WordAt {
    TextSpan span;     ///< in the line; empty at the place where there is no word
    QStringView typed; ///< what of it stands before the place
};
/// @return no value where the place touches a number, which is no word; what becomes "0dbfs" is one
std::optional<WordAt> FindWord(QStringView line, qsizetype place);

/// A call of an opcode that a place of a statement is in.
struct OpcodeCall {
    QString opcode; ///< without the suffix of a form
    /// Which argument the place is in, from 0; -1 at the opcode itself and in what it gives.
    int argument = -1;
    /// The rate that is asked for: the type letter of the first variable that takes the result, or behind the
    /// colon of a function; a null character when nothing tells.
    QChar rate;
    qsizetype start = 0; ///< of the opcode, in the statement

    bool operator==(const OpcodeCall &) const = default;
};

/// The innermost call at a place of one statement, which may span lines that end in a backslash. Strings and
/// comments are passed over.
/// @param isOpcode tells whether a synopsis can be had of a name
std::optional<OpcodeCall> FindCall(QStringView statement, qsizetype place,
                                   const std::function<bool(QStringView name)> &isOpcode);

} // namespace zelvane
