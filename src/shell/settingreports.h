// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace zelvane
{

class Desktop;
class SettingsStore;

/// Tells the user of stored values that cannot be read. Their readers go on with the defaults; the report
/// comes when these have done their work, since a box in their midst would let other events in.
class SettingReports : public QObject
{
public:
    SettingReports(SettingsStore &settings, Desktop &desktop);
    ~SettingReports() override;

    /// Tells in one report what has been noted so far, if anything has. What readers note from now on is told
    /// when the event loop comes round.
    void Tell();

private:
    SettingsStore &m_settings;
    Desktop &m_desktop;
    bool m_queued = true; // nothing is queued before the first Tell
};

} // namespace zelvane
