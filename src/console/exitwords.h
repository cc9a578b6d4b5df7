// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/terminalprocess.h"

#include <optional>
#include <QString>

namespace zelvane
{

/// The end of a program in words: "Ended with exit code 1.", "Crashed: segmentation fault (SIGSEGV)."
/// @param stopped the last signal that it was stopped by, if it was: after any but the first one a file that
/// it wrote may lack its end
QString ExitWords(const ProgramEnd &end, const std::optional<StopSignal> &stopped);

/// The end of what a program had left running, where it needed more than an interrupt; else empty.
QString LeftoverWords(const std::optional<StopSignal> &stopped);

/// The end of a run whose window the display took along.
QString LostWindowWords(StopSignal stopped);

/// What is under way from a signal on: "Stopping...".
QString StopWords(StopSignal signal);

/// A stretch of time on the screen: "0:07", "12:34", "1:00:05".
/// @param milliseconds not negative
QString DurationText(qint64 milliseconds);

} // namespace zelvane
