// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settingreports.h"

#include "shell/errorreport.h"
#include "shell/settings.h"

#include <QMetaObject>
#include <QStringList>
#include <vector>

namespace zelvane
{

SettingReports::SettingReports(SettingsStore &settings, Desktop &desktop)
    : m_settings(settings), m_desktop(desktop)
{
    m_settings.OnUnreadable([this] {
        if (!m_queued)
            m_queued = QMetaObject::invokeMethod(this, &SettingReports::Tell, Qt::QueuedConnection);
    });
}

SettingReports::~SettingReports()
{
    m_settings.OnUnreadable({});
}

void SettingReports::Tell()
{
    m_queued = false;
    const std::vector<UnreadableSetting> unreadable = m_settings.TakeUnreadable();
    if (unreadable.empty())
        return;
    QStringList entries;
    for (const UnreadableSetting &setting : unreadable)
        entries.append(setting.entry);
    ReportError(m_desktop, unreadable.front().error, entries.join(QLatin1Char('\n')));
}

} // namespace zelvane
