// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/consolestart.h"

#include <optional>
#include <QStringList>

namespace zelvane
{

/// What the console program is started with.
struct ConsoleOptions {
    ConsoleRun run = {};
    int notify = -1; ///< the descriptor at which somebody waits for the program's end, or -1

    bool operator==(const ConsoleOptions &) const = default;
};

/// Reads the command line that ConsoleArguments makes. A title that is not given is the program's name.
/// @param arguments without the console's own name
/// @return nothing where it is none, or names no program
std::optional<ConsoleOptions> ReadConsoleOptions(const QStringList &arguments);

} // namespace zelvane
