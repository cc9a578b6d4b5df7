// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/mailbox.h"

#include "shell/commandline.h"
#include "shell/documentkeys.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/settings.h"

#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
bool MayHandOver(const CommandLine &command, const SettingsStore &settings)
{
    return settings.GetSetting(Sections::Options, Keys::MultipleInstances.Name(), u"0"_s) == u"0" &&
           command.Form() != StartForm::NewInstance;
}

bool PutMail(const CommandLine &command, SettingsStore &settings)
{
    if (command.Text().isEmpty())
        return false;
    settings.SaveText(Keys::Open, command.Text());
    return true;
}

QString TakeMail(SettingsStore &settings)
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
    m_waits = !m_mayOpen();
    if (m_waits)
        m_editor.windows.RaiseMainWindow();
    else
        Open();
}

void Mailbox::Open()
{
    if (m_opening) {
        m_wokenAgain = true;
        return;
    }
    m_opening = true;
    const auto done = qScopeGuard([this] { m_opening = false; });
    do {
        m_wokenAgain = false;
        const QString name = m_editor.settings.Text(Keys::Open);
        Guarded(m_editor.desktop, [&] { m_editor.operations.OpenFile(name); });
        // Whatever the opening met, the mail has been read.
        Guarded(m_editor.desktop, [&] { Remove(name); });
        m_editor.windows.RaiseMainWindow();
    } while (m_wokenAgain);
}

void Mailbox::Remove(const QString &name)
{
    // Mail that came while the file opened stays for its own wake-up.
    if (m_editor.settings.Text(Keys::Open) == name)
        m_editor.settings.DeleteSetting(Keys::Open);
}

} // namespace zelvane
