// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/messageplace.h"
#include "shell/mailbox.h"

#include <functional>
#include <QElapsedTimer>
#include <QString>
#include <QTimer>

namespace zelvane
{

class SettingsStore;

/// Brings an editor to a place in a file: a running one, or one that is started for it, which gets the place
/// as soon as it listens.
class PlaceOpener
{
public:
    struct Ways {
        Mailbox::RunningEditor running;
        /// Starts an editor on a file. @return whether it was started
        std::function<bool(const QString &path)> start;
        /// Whether an editor listens by now, which `running.call` then calls. Waits for nothing.
        std::function<bool()> listens;
        std::function<void(const QString &why)> failed; ///< to be told to the user
        std::function<void()> done;                     ///< nothing is waited for any more
    };
    /// How long a started editor may take before the user is told to do without it.
    static constexpr qint64 PatienceMs = 60'000;

    PlaceOpener(SettingsStore &settings, Ways ways, qint64 patienceMs = PatienceMs);

    /// Opens a place. One that waits for its editor is forgotten: the user wants the newer one, which that
    /// editor gets.
    void Open(const MessagePlace &place);
    /// Whether an editor was started whose place it has not got yet.
    bool IsWaiting() const { return m_look.isActive(); }

private:
    void Look();
    void Fail(const QString &why);

    SettingsStore &m_settings;
    Ways m_ways;
    qint64 m_patienceMs;
    MessagePlace m_place;
    QElapsedTimer m_waited;
    QTimer m_look;
};

} // namespace zelvane
