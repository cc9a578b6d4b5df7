// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

namespace zelvane
{

class Desktop;

/// Binds the rows of the Edit and View menus that the text control itself carries out: undo, clipboard,
/// selection, font size, word wrap.
void BindEditCommands(const WindowContext &context);

/// Enables these rows, and so the toolbar buttons, by selection, clipboard and undo buffer.
void EnableEditRows(const TextControl &text, const Desktop &desktop, Commands &commands);

} // namespace zelvane
