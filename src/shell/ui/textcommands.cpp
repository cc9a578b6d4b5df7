// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/textcommands.h"

#include "platform/ui/textcontrol.h"
#include "shell/documentlifecycle.h"
#include "shell/findtext.h"
#include "shell/textops.h"
#include "shell/ui/commands.h"
#include "shell/ui/frmfind.h"

#include <QEvent>
#include <QScopeGuard>
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
    Bind(u"mnuComment"_s, [this](int) { CommentSelection(m_editor); });
    Bind(u"mnuUncomment"_s, [this](int) { UncommentSelection(m_editor); });
    Bind(u"mnuRemoveComments"_s, [this](int) { RemoveCommentsQuietly(); });
    Bind(u"mnuIndent"_s, [this](int entry) { IndentSelection(m_editor, entry == 1); });
    Bind(u"mnuCase"_s, [this](int entry) { ChangeCase(m_editor, CaseChange(entry)); });
    commands.Bind(u"mnuGoTo"_s, [this](int) { GoToLine(m_editor); });
    commands.Bind(u"mnuFind"_s, [this](int) { ShowFind(false); });
    commands.Bind(u"mnuReplace"_s, [this](int) { ShowFind(true); });
    commands.Bind(u"mnuFindAgain"_s, [this](int) { FindAgain(m_editor); });
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

void TextCommands::Bind(const QString &name, std::function<void(int index)> work)
{
    m_commands.Bind(name, [this, work = std::move(work)](int index) {
        m_text.BeginCommand();
        const auto end = qScopeGuard([this] { m_text.EndCommand(); });
        work(index);
    });
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
