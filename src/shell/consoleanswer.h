// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace zelvane
{

/// What the program prints instead of starting.
struct ConsoleAnswer {
    QString text;         ///< whole lines
    bool failure = false; ///< belongs on the error output, exit code 2
};

/// The answer to a command line that asks for text only: "-h", "--help", "-v", "--version", or an option of
/// two dashes that the program does not know. A file of that name is a document all the same, and the
/// toolkit's own options are left to it.
/// @param arguments those of the process, without the program's own name; the first one decides
/// @return nothing when the program is to start
std::optional<ConsoleAnswer> AnswerOnConsole(const QStringList &arguments);

} // namespace zelvane
