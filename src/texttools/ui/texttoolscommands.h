// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <QObject>

namespace zelvane
{

class Commands;
class TextControl;

/// Binds the commands of the text tools.
class TextToolsCommands : public QObject
{
    Q_OBJECT

public:
    /// @param window the parent of the dialogs
    TextToolsCommands(EditorContext &editor, TextControl &text, Commands &commands, QWidget *window);
};

} // namespace zelvane
