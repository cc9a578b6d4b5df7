// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"

namespace zelvane
{

/// Runs a preset, the one road behind buttons, menu rows, keys and the chooser: saves the document if the
/// preset asks for it, expands the macros, asks for confirmation, starts the first action. A preset with a
/// second action minimizes the window, blocks until the first action has ended, and starts the second.
/// @param confirm let the user confirm the files that macros name
/// @param edit show the preset editor instead; the saving and minimizing happen all the same (kept)
/// @throws RunTimeError; failures of macros have been reported
void RunPreset(const QString &name, bool confirm, bool edit, RunContext &context);

/// Starts the second action of a preset and does not wait for it. An empty folder stays empty.
void RunSecondAction(const QString &name, bool confirm, RunContext &context);

} // namespace zelvane
