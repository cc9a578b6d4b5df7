// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/mailbox.h"

#include "platform/desktop.h"
#include "shell/commandline.h"
#include "shell/documentkeys.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/settings.h"
#include "shell/splitpath.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMetaObject>
#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

bool Mailbox::Send(const CommandLine &command, SettingsStore &settings, const RunningEditor &editor)
{
    const bool alone = settings.StoredText(Keys::MultipleInstances).value_or(u"0"_s) != u"0" ||
                       command.Form() == StartForm::NewInstance;
    if (alone || !editor.find())
        return false;
    const bool hasMail = !command.Text().isEmpty();
    if (hasMail)
        settings.SaveText(Keys::Open, command.Text());
    if (editor.call(hasMail))
        return true;
    if (hasMail)
        Take(settings);
    return false;
}

QString Mailbox::Take(SettingsStore &settings)
{
    const QString mail = settings.Text(Keys::Open);
    if (!mail.isEmpty())
        settings.DeleteSetting(Keys::Open);
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
    Guarded(m_editor.desktop, [&] { m_editor.operations.OpenFile(name); });
    // Whatever the opening met, the mail has been read. What came while the file opened stays for its own
    // wake-up.
    Guarded(m_editor.desktop, [&] {
        if (m_editor.settings.Text(Keys::Open) == name)
            m_editor.settings.DeleteSetting(Keys::Open);
    });
    m_editor.windows.RaiseMainWindow();
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
