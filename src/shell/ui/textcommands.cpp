// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/textcommands.h"

#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/documentlifecycle.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/editorkeys.h"
#include "shell/errorreport.h"
#include "shell/findnext.h"
#include "shell/settings.h"
#include "shell/tabwidth.h"
#include "shell/textops.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commandkeys.h"
#include "shell/ui/commands.h"
#include "shell/ui/frmfind.h"

#include <QEvent>
#include <QWidget>
#include <utility>

namespace zelvane
{

namespace
{

/// Gives the text control what it asks for while it handles a key, and makes each command one step of undo.
void HookText(const WindowContext &context)
{
    TextControl &text = context.text;
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    TextControlHooks hooks;
    hooks.tabInsertsSpaces = [&editor] { return editor.settings.Flag(Keys::TabInsertSpaces); };
    hooks.tabSpaces = [&editor] { return TabWidth(editor.settings); };
    hooks.indentSelection = [&commands](bool decrease) {
        commands.Run(Cmd::mnuIndent[decrease ? IndentChange::Decrease : IndentChange::Increase]);
    };
    hooks.commandKey = [&commands](const QKeyEvent &event) {
        return RunCommandOfKey(KeyTaker::Text, event, commands);
    };
    hooks.changeFontSize = [&commands](bool larger) {
        commands.Run(Cmd::mnuFontSize[larger ? FontSizeChange::Increase : FontSizeChange::Decrease]);
    };
    hooks.reportError = [&editor](const RunTimeError &error) { ReportError(editor.desktop, error); };
    text.SetHooks(std::move(hooks));
    commands.Around([&text] { text.BeginCommand(); }, [&text] { text.EndCommand(); });
}

} // namespace

TextCommands::TextCommands(const WindowContext &context) : QObject(context.window), m_context(context)
{
    Commands &commands = context.commands;
    commands.Bind(Cmd::mnuComment, [this] { CommentSelection(m_context.editor); });
    commands.Bind(Cmd::mnuUncomment, [this] { UncommentSelection(m_context.editor); });
    commands.Bind(Cmd::mnuRemoveComments, [this] { RemoveCommentsQuietly(); });
    commands.Bind(Cmd::mnuIndent, [this](IndentChange change) {
        IndentSelection(m_context.editor, change == IndentChange::Decrease);
    });
    commands.Bind(Cmd::mnuCase, [this](CaseChange change) { ChangeCase(m_context.editor, change); });
    commands.Bind(Cmd::mnuGoTo, [this] {
        GoToLine(m_context.editor);
        m_context.view.FocusText();
    });
    commands.Bind(Cmd::mnuFind, [this] { ShowFind(false); });
    commands.Bind(Cmd::mnuReplace, [this] { ShowFind(true); });
    commands.Bind(Cmd::mnuFindAgain, [this] { FindAgain(m_context.editor); });
    context.appearance.Add(Look::WritingAids, [this](const SettingsStore &) {
        if (m_find)
            m_find->FollowSettings();
    });
    HookText(context);
    context.window->installEventFilter(this);
}

bool TextCommands::eventFilter(QObject *watched, QEvent *event)
{
    // The window has been closed, and is not only minimized: the dialog closes in its own way, saving its
    // place.
    if (watched == m_context.window && event->type() == QEvent::Hide && !event->spontaneous() && m_find)
        m_find->close();
    return QObject::eventFilter(watched, event);
}

void TextCommands::RemoveCommentsQuietly()
{
    const bool removed = RemoveComments(m_context.editor);
    // The events that were passed over meanwhile: the text has to count as changed all the same.
    if (removed)
        m_context.documents.TextChanged();
    m_context.view.SelectionChanged();
}

void TextCommands::ShowFind(bool replace)
{
    if (m_find)
        m_find->StartAgain(replace);
    else
        m_find = new frmFind(m_context.editor, m_context.text, m_context.commands, replace, m_context.window);
    m_find->show();
    m_find->raise();
    m_find->activateWindow();
}

} // namespace zelvane
