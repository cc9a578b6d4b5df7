// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <QObject>

namespace zelvane
{

class Commands;
class TextControl;

/// Binds the rows of the Edit and View menus that the text control itself carries out: undo, clipboard,
/// selection, font size, word wrap.
class EditCommands : public QObject
{
    Q_OBJECT

public:
    EditCommands(EditorContext &editor, TextControl &text, Commands &commands, QObject *parent);

    /// Enables the rows, and so the toolbar buttons, by selection, clipboard and undo buffer.
    void EnableRows();

private:
    EditorContext &m_editor;
    TextControl &m_text;
    Commands &m_commands;
};

} // namespace zelvane
