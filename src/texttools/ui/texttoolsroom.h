// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/progressbox.h"
#include "shell/ui/windowcontext.h"
#include "texttools/ui/frmprint.h"

namespace zelvane
{

/// The text tools in the window: their commands and dialogs.
class TextToolsRoom
{
public:
    explicit TextToolsRoom(const WindowContext &context);

private:
    ProgressBox m_progress;
    frmPrint m_print;
};

} // namespace zelvane
