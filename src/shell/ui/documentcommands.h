// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

#include <functional>

namespace zelvane
{

/// Binds the commands of the File menu that make, open, store and export the document.
/// @param closeWindow what Exit does
void BindDocumentCommands(const WindowContext &context, std::function<void()> closeWindow);

} // namespace zelvane
