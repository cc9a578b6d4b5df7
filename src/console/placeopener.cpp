// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/placeopener.h"

#include "platform/runtimeerror.h"
#include "shell/mailbox.h"
#include "shell/settings.h"

#include <QObject>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LookEveryMs = 100;

QString NameOf(const MessagePlace &place)
{
    return place.line > 0 ? u"Line "_s + QString::number(place.line) + u" of "_s + place.path : place.path;
}

} // namespace

PlaceOpener::PlaceOpener(SettingsStore &settings, Ways ways, qint64 patienceMs)
    : m_settings(settings), m_ways(std::move(ways)), m_patienceMs(patienceMs)
{
    m_look.setInterval(LookEveryMs);
    QObject::connect(&m_look, &QTimer::timeout, &m_look, [this] { Look(); });
}

void PlaceOpener::Open(const MessagePlace &place)
{
    // The one that is on its way: no other is started, nor waited for as the ways to a running editor may.
    const bool waits = IsWaiting();
    m_place = place;
    try {
        const Mailbox::RunningEditor started{.find = m_ways.listens, .call = m_ways.running.call};
        if (Mailbox::SendPlace(place.path, place.line, m_settings, waits ? started : m_ways.running)) {
            m_look.stop();
            return;
        }
    } catch (const RunTimeError &error) {
        Fail(error.Description());
        return;
    }
    if (waits) {
        m_waited.start();
        return;
    }
    if (!m_ways.start(place.path)) {
        Fail(u"The editor cannot be started."_s);
        return;
    }
    if (place.line <= 0)
        return; // it has been started on all there is to tell
    m_waited.start();
    m_look.start();
}

void PlaceOpener::Look()
{
    try {
        const Mailbox::RunningEditor started{.find = m_ways.listens, .call = m_ways.running.call};
        if (Mailbox::SendPlace(m_place.path, m_place.line, m_settings, started)) {
            m_look.stop();
            m_ways.done();
        } else if (m_waited.elapsed() > m_patienceMs) {
            Fail(u"The editor does not answer."_s);
        }
    } catch (const RunTimeError &error) {
        Fail(error.Description());
    }
}

void PlaceOpener::Fail(const QString &why)
{
    m_look.stop();
    m_ways.failed(NameOf(m_place) + u" cannot be shown in the editor:\n"_s + why);
    m_ways.done();
}

} // namespace zelvane
