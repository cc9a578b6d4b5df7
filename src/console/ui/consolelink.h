// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <QObject>
#include <QString>

class QLocalServer;

namespace zelvane
{

/// How the consoles of one preset find each other: each listens at a local socket of its own in the user's
/// runtime folder. Where there is none they do not, and finished consoles stay until they are closed.
class ConsoleLink : public QObject
{
    Q_OBJECT

public:
    /// @param key the same for all runs that replace each other
    explicit ConsoleLink(const QString &key, QObject *parent = nullptr);
    ~ConsoleLink() override;

    /// Tells the others that this run has begun.
    void TellOthers() const;
    /// Makes this console one that others tell. @param told called when another run has begun
    void Listen(std::function<void()> told);

private:
    QString m_folder; ///< empty where the desktop has no such place
    QString m_stem;   ///< how the names of the sockets of this key begin
    QString m_own;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace zelvane
