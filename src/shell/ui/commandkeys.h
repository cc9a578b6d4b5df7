// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/menutable.h"

class QKeyEvent;

namespace zelvane
{

class Commands;

/// Runs the command whose key this is, if the key belongs to the taker: Text or Window. Modifiers that do not
/// choose a command are ignored: the keypad for Text, Shift and Meta for Window.
/// @return whether the taker has a command on the key
bool RunCommandOfKey(KeyTaker taker, const QKeyEvent &event, Commands &commands);

} // namespace zelvane
