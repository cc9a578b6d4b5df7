// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QSocketNotifier;

namespace zelvane
{

/// Turns the system's requests to end this process (SIGTERM, SIGINT) into an event, so that the user is asked
/// about unsaved work as at any close. While it lives the signals end nothing by themselves. One at a time;
/// where the system has no such signals it does nothing.
class EndRequest : public QObject
{
    Q_OBJECT

public:
    explicit EndRequest(QObject *parent = nullptr);
    ~EndRequest() override;

    /// Whether a request has come that the event loop has not seen yet.
    bool IsPending() const;

Q_SIGNALS:
    /// Several signals that come before the event loop runs are told as one.
    void Received();

private:
    void Read();

    QSocketNotifier *m_notifier = nullptr;
};

} // namespace zelvane
