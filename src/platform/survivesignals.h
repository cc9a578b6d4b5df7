// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace zelvane
{

// What would end this process otherwise, where the system has such signals. They are caught and not ignored:
// programs that this process starts inherit an ignored signal, and a caught one they do not.

/// The end of the terminal that this process was started in, and of who reads its output, is no end of it.
void SurviveLostTerminal();

/// A file that may not grow any more is a failed write.
void SurviveFileSizeLimit();

} // namespace zelvane
