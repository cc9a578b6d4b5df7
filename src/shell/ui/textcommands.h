// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <QObject>
#include <QPointer>

namespace zelvane
{

class Commands;
class DocumentLifecycle;
class DocumentView;
class frmFind;
class TextControl;

/// Binds the commands of the Edit and Search menus that transform and search the text. Each is one step of
/// undo.
class TextCommands : public QObject
{
    Q_OBJECT

public:
    /// @param window the parent of the find dialog
    TextCommands(EditorContext &editor, TextControl &text, DocumentLifecycle &documents, DocumentView &view,
                 Commands &commands, QWidget *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void RemoveCommentsQuietly();
    void ShowFind(bool replace);

    EditorContext &m_editor;
    TextControl &m_text;
    DocumentLifecycle &m_documents;
    DocumentView &m_view;
    Commands &m_commands;
    QWidget *m_window;
    QPointer<frmFind> m_find;
};

} // namespace zelvane
