// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/textcommands.h"

#include "platform/ui/textcontrol.h"
#include "shell/documentlifecycle.h"
#include "shell/findtext.h"
#include "shell/textops.h"
#include "shell/ui/commands.h"
#include "shell/ui/frmfind.h"

#include <QEvent>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

TextCommands::TextCommands(EditorContext &editor, TextControl &text, DocumentLifecycle &documents,
                           DocumentView &view, Commands &commands, QWidget *window)
    : QObject(window),
      m_editor(editor),
      m_text(text),
      m_documents(documents),
      m_view(view),
      m_commands(commands),
      m_window(window)
{
    commands.Bind(Cmd::mnuComment, [this] { CommentSelection(m_editor); });
    commands.Bind(Cmd::mnuUncomment, [this] { UncommentSelection(m_editor); });
    commands.Bind(Cmd::mnuRemoveComments, [this] { RemoveCommentsQuietly(); });
    commands.Bind(Cmd::mnuIndent, [this](IndentChange change) {
        IndentSelection(m_editor, change == IndentChange::Decrease);
    });
    commands.Bind(Cmd::mnuCase, [this](CaseChange change) { ChangeCase(m_editor, change); });
    commands.Bind(Cmd::mnuGoTo, [this] { GoToLine(m_editor); });
    commands.Bind(Cmd::mnuFind, [this] { ShowFind(false); });
    commands.Bind(Cmd::mnuReplace, [this] { ShowFind(true); });
    commands.Bind(Cmd::mnuFindAgain, [this] { FindAgain(m_editor); });
    window->installEventFilter(this);
}

bool TextCommands::eventFilter(QObject *watched, QEvent *event)
{
    // The window has been closed, and is not only minimized: the dialog closes in its own way, saving its
    // place.
    if (watched == m_window && event->type() == QEvent::Hide && !event->spontaneous() && m_find)
        m_find->close();
    return QObject::eventFilter(watched, event);
}

void TextCommands::RemoveCommentsQuietly()
{
    const bool removed = RemoveComments(m_editor);
    // The events that were passed over meanwhile: the text has to count as changed all the same.
    if (removed)
        m_documents.TextChanged();
    m_view.SelectionChanged();
}

void TextCommands::ShowFind(bool replace)
{
    if (m_find)
        m_find->SetFindMode(replace);
    else
        m_find = new frmFind(m_editor, m_text, m_commands, replace, m_window);
    m_find->show();
    m_find->raise();
    m_find->activateWindow();
}

} // namespace zelvane
