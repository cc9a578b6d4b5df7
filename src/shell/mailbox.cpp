// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/mailbox.h"

#include "platform/desktop.h"
#include "platform/textbuffer.h"
#include "shell/commandline.h"
#include "shell/document.h"
#include "shell/documentkeys.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/mailboxkeys.h"
#include "shell/settings.h"
#include "shell/splitpath.h"

#include <algorithm>
#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QMetaObject>
#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool IsSameFile(const QString &one, const QString &other)
{
    if (one.isEmpty() || other.isEmpty())
        return false;
    const QFileInfo first(one);
    const QFileInfo second(other);
    return one == other || (first.exists() && first == second);
}

void DropLine(SettingsStore &settings)
{
    if (settings.StoredText(Keys::OpenLine))
        settings.DeleteSetting(Keys::OpenLine);
}

} // namespace

bool Mailbox::Send(const CommandLine &command, SettingsStore &settings, const RunningEditor &editor)
{
    const bool alone = settings.StoredText(Keys::MultipleInstances).value_or(u"0"_s) != u"0" ||
                       command.Form() == StartForm::NewInstance;
    if (alone || !editor.find())
        return false;
    const bool hasMail = !command.Text().isEmpty();
    if (hasMail) {
        DropLine(settings);
        settings.SaveText(Keys::Open, command.Text());
    }
    if (editor.call(hasMail))
        return true;
    if (hasMail)
        Take(settings);
    return false;
}

bool Mailbox::SendPlace(const QString &path, int line, SettingsStore &settings, const RunningEditor &editor)
{
    if (!editor.find())
        return false;
    // The line first: the file is the mail, and a line without one means nothing.
    if (line > 0)
        settings.SaveNumber(Keys::OpenLine, line);
    else
        DropLine(settings);
    settings.SaveText(Keys::Open, path);
    if (editor.call(true))
        return true;
    Take(settings);
    return false;
}

QString Mailbox::Take(SettingsStore &settings)
{
    const QString mail = settings.Text(Keys::Open);
    if (!mail.isEmpty())
        settings.DeleteSetting(Keys::Open);
    DropLine(settings);
    return mail;
}

Mailbox::Mailbox(EditorContext &editor, std::function<bool()> mayOpen)
    : m_editor(editor), m_mayOpen(std::move(mayOpen))
{
}

void Mailbox::Wake()
{
    const bool mayOpen = m_mayOpen();
    if (!mayOpen)
        m_editor.windows.RaiseMainWindow();
    if (IsOpening() || !mayOpen) {
        m_state = IsOpening() ? State::OpeningAgain : State::Waiting;
        return;
    }
    const auto opened = qScopeGuard([this] { m_state = Left() ? State::Waiting : State::Idle; });
    do {
        m_state = State::Opening;
        Open();
    } while (m_state == State::OpeningAgain && m_mayOpen());
}

void Mailbox::Open()
{
    m_editor.windows.RaiseMainWindow(); // the opening may ask something
    const QString name = m_editor.settings.Text(Keys::Open);
    const int line = m_editor.settings.Integer(Keys::OpenLine);
    Guarded(m_editor.desktop, [&] {
        if (line > 0)
            m_editor.settings.DeleteSetting(Keys::OpenLine);
        if (line <= 0 || !IsSameFile(name, m_editor.document.CurrentFile))
            m_editor.operations.OpenFile(name);
        if (line > 0)
            SelectPlace(name, line);
    });
    // Whatever the opening met, the mail has been read. What came while the file opened stays for its own
    // wake-up.
    Guarded(m_editor.desktop, [&] {
        if (m_editor.settings.Text(Keys::Open) == name)
            m_editor.settings.DeleteSetting(Keys::Open);
    });
    m_editor.windows.RaiseMainWindow();
}

void Mailbox::SelectPlace(const QString &name, int line)
{
    if (!IsSameFile(name, m_editor.document.CurrentFile))
        return; // the opening was cancelled, or has failed
    TextBuffer &text = m_editor.text;
    const qsizetype row = std::min<qsizetype>(line, text.LineCount()) - 1;
    text.SetSelection(text.LineStart(row), text.LineEnd(row));
}

void Mailbox::ServeAfterDialogsOf(QObject &window)
{
    window.installEventFilter(this);
}

bool Mailbox::eventFilter(QObject *watched, QEvent *event)
{
    // Not at once: the command that showed the dialog has not come to its end.
    if (event->type() == QEvent::WindowUnblocked && Left())
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (Left())
                    Wake();
            },
            Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void Mailbox::PassOn()
{
    const QString mail = Left() ? Take(m_editor.settings) : QString();
    if (mail.isEmpty())
        return;
    m_editor.desktop.ShellRun({.verb = u"open"_s,
                               .file = QCoreApplication::applicationFilePath(),
                               .parameters = SplitPath(PathPart::Quoted, DropOuterQuotes(mail))});
}

} // namespace zelvane
