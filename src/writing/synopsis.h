// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <optional>
#include <QString>
#include <QStringView>
#include <vector>

namespace zelvane
{

struct UserOpcode;

/// One form of an opcode as people read it: what it gives, its name, its arguments, optional ones in square
/// brackets.
struct Synopsis {
    QString text;                    ///< one line
    TextSpan name;                   ///< in the text
    std::vector<TextSpan> arguments; ///< in the text, without brackets and commas
    bool repeats = false;            ///< the last argument stands for any number: "..."

    bool operator==(const Synopsis &) const = default;

    /// What stands before the name, trimmed.
    QStringView Outputs() const { return QStringView(text).first(name.start).trimmed(); }
    /// Which of the arguments shows the one with this number, from 0; -1 when none does.
    int Shown(int argument) const;
    /// As rich text, the opcode and one argument in bold, long stretches between them shortened.
    /// @param argument -1 for none
    QString RichText(int argument) const;
};

/// A text of more than some hundred characters with dots for its middle.
QString Shortened(QStringView text);

struct ShownArgument {
    QString text;
    bool optional = false;
};
/// A list of arguments with brackets around each optional one.
QString JoinArguments(const std::vector<ShownArgument> &arguments);

/// Reads the arguments of a form. @param outputs may be empty
Synopsis MakeSynopsis(const QString &outputs, QStringView opcode, const QString &arguments);

/// Reads a line that has the form of a synopsis. Blanks and line ends become single blanks, a backslash that
/// continues a line goes. @return nothing when the opcode does not stand in it
std::optional<Synopsis> ReadSynopsis(QStringView line, QStringView opcode);

/// The synopsis of an opcode that the text defines: with the names of its body where there are as many as
/// types, else with the types.
Synopsis SynopsisOf(const UserOpcode &opcode);

/// The forms with those first that a call may mean: which give what is asked for, and have the argument.
/// Those that give something else are left out while any is left.
/// @param rate a type letter, or a null character @param argument from 0, or -1
std::vector<Synopsis> FormsForCall(const std::vector<Synopsis> &forms, QChar rate, int argument);

} // namespace zelvane
