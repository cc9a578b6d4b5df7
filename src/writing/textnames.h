// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "writing/wordlist.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// An opcode that the text defines: the types of what it gives and takes, one for each, and the variables
/// that its body names for them, as far as it does.
struct UserOpcode {
    QString name;
    QStringList outputTypes, inputTypes;
    QStringList outputs, inputs;

    bool operator==(const UserOpcode &) const = default;
};

/// What the writing aids know of a text.
struct TextNames {
    /// The names in the orchestra's and the score's own text and in strings: macros with their "$",
    /// instruments, tables that a variable stands for, opcodes, and every other word of at most 200 letters.
    WordList code;
    WordList comments; ///< the words of comments
    std::vector<UserOpcode> opcodes;
    std::vector<TextSpan> blockComments; ///< in order; one that is not closed ends with the text
    std::vector<TextSpan> bracedStrings; ///< with their double braces, in order; their words are in `code`
    /// The sections of a unified text, each from its tag to the closing one or to the end; empty without one.
    TextSpan orchestra, score;
};

/// Reads a text once. Comments and strings are what colours them (see ScanRange), and comments also what "//"
/// begins. A unified text has sections, other texts have none.
TextNames FindNames(QStringView text, bool isUnified);

/// The types of a list as an opcode's definition writes it: "kS[]o" is "k", "S[]", "o"; "0" is none.
QStringList ReadTypes(QStringView types);

} // namespace zelvane
