// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/mailbox.h"

#include "platform/desktop.h"
#include "platform/nativefile.h"
#include "platform/runtimeerror.h"
#include "platform/samefile.h"
#include "platform/textbuffer.h"
#include "platform/userfolders.h"
#include "shell/commandline.h"
#include "shell/document.h"
#include "shell/documentkeys.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/mailboxkeys.h"
#include "shell/settingkey.h"
#include "shell/settings.h"
#include "shell/splitpath.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QMetaObject>
#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr std::chrono::seconds LockPatience(2);

void Drop(const OptionKey &key, SettingsStore &settings)
{
    if (settings.StoredText(key))
        settings.DeleteSetting(key);
}

void Empty(SettingsStore &settings)
{
    Drop(Keys::Open, settings);
    Drop(Keys::OpenLine, settings);
}

/// Held while mail is put, or compared and removed, so that nobody's mail comes between. Without it, where it
/// is not to be had, mail that comes in that moment may be lost.
std::unique_ptr<FileLock> Alone()
{
    try {
        QDir().mkpath(ConfigFolder());
        return std::make_unique<FileLock>(ConfigFolder() + u"/mailbox"_s, LockPatience);
    } catch (const RunTimeError &) {
        return nullptr; // the store tells, when it cannot be written either
    }
}

/// File and line come together, or another sender's line would be taken for this file's.
void Put(const Mailbox::Mail &mail, SettingsStore &settings)
{
    const auto alone = Alone();
    settings.InOneStep([&] {
        if (mail.line > 0)
            settings.SaveNumber(Keys::OpenLine, mail.line);
        else
            settings.DeleteSetting(Keys::OpenLine); // also one that has come since the store was read
        settings.SaveText(Keys::Open, mail.file);
    });
}

} // namespace

bool Mailbox::Send(const CommandLine &command, SettingsStore &settings, const RunningEditor &editor)
{
    const bool alone = settings.StoredText(Keys::MultipleInstances).value_or(u"0"_s) != u"0" ||
                       command.Form() == StartForm::NewInstance;
    if (alone || !editor.find())
        return false;
    const bool hasMail = !command.Text().isEmpty();
    Mail mail{.file = command.Text()};
    // An editor that has ended has left a line for the one that is started on this file.
    if (const Mail left = Look(settings); hasMail && left.file == DropOuterQuotes(mail.file))
        mail.line = left.line;
    if (hasMail)
        Put(mail, settings);
    if (editor.call(hasMail))
        return true;
    if (hasMail)
        Take(mail, settings);
    return false;
}

bool Mailbox::SendPlace(const QString &path, int line, SettingsStore &settings, const RunningEditor &editor)
{
    if (!editor.find())
        return false;
    const Mail mail{.file = path, .line = std::max(0, line)};
    Put(mail, settings);
    if (editor.call(true))
        return true;
    Take(mail, settings);
    return false;
}

Mailbox::Mail Mailbox::Look(SettingsStore &settings)
{
    Mail mail;
    settings.InOneStep([&] {
        mail = {.file = settings.Text(Keys::Open), .line = std::max(0, settings.Integer(Keys::OpenLine))};
    });
    return mail;
}

void Mailbox::Take(const Mail &mail, SettingsStore &settings)
{
    const auto alone = Alone();
    settings.InOneStep([&] {
        if (Look(settings) == mail)
            Empty(settings);
    });
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
    const Mail mail = Look(m_editor.settings);
    Guarded(m_editor.desktop, [&] {
        if (mail.line <= 0 || !IsSameFile(mail.file, m_editor.document.CurrentFile))
            m_editor.operations.OpenFile(mail.file);
        if (mail.line > 0)
            SelectPlace(mail);
    });
    // Whatever the opening met, the mail has been read. What came while the file opened stays for its own
    // wake-up.
    Guarded(m_editor.desktop, [&] { Take(mail, m_editor.settings); });
    m_editor.windows.RaiseMainWindow();
}

void Mailbox::SelectPlace(const Mail &mail)
{
    if (!IsSameFile(mail.file, m_editor.document.CurrentFile))
        return; // the opening was cancelled, or has failed
    TextBuffer &text = m_editor.text;
    const qsizetype row = std::min<qsizetype>(mail.line, text.LineCount()) - 1;
    text.SetSelection(text.LineStart(row), text.LineEnd(row));
}

void Mailbox::TakeLeftLine()
{
    const Mail mail = Look(m_editor.settings);
    if (mail.line <= 0 || !IsSameFile(mail.file, m_editor.document.CurrentFile))
        return;
    SelectPlace(mail);
    Take(mail, m_editor.settings);
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
    const Mail mail = Left() ? Look(m_editor.settings) : Mail();
    if (mail.file.isEmpty())
        return;
    if (mail.line <= 0) // else it stays there for the editor that is started
        Take(mail, m_editor.settings);
    m_editor.desktop.ShellRun({.verb = u"open"_s,
                               .file = QCoreApplication::applicationFilePath(),
                               .parameters = SplitPath(PathPart::Quoted, DropOuterQuotes(mail.file))});
}

} // namespace zelvane
