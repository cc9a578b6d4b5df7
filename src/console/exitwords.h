// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/terminalprocess.h"

#include <QString>

namespace zelvane
{

/// The end of a program in words: "Ended with exit code 1.", "Crashed: segmentation fault (SIGSEGV)."
/// @param stopped the user has stopped it
QString ExitWords(const ProgramEnd &end, bool stopped);

/// A stretch of time on the screen: "0:07", "12:34", "1:00:05".
/// @param milliseconds not negative
QString DurationText(qint64 milliseconds);

} // namespace zelvane
