// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class QLocalServer;
class QLocalSocket;

namespace zelvane
{

class FileLock;

/// How the editors of one user find and wake each other. Each running editor listens at a local socket of its
/// own in the user's runtime folder, readable by that user only; where that folder's name is too long for a
/// socket, in a folder of this user alone among the temporary files. The one message says that there is mail,
/// or that the window is only wanted in front, and carries the desktop's leave to come there; what to open
/// stands in the settings store. So editors belong together when they share a store and a display, which is
/// what `realm` names.
class InstanceLink : public QObject
{
    Q_OBJECT

public:
    /// What the message wants of the running editor.
    enum class Call {
        Raise,   ///< to come to the front as it is
        HandOver ///< to open what stands in the store
    };

    /// @param realm any text that is the same in all processes that may hand over to each other
    explicit InstanceLink(const QString &realm, QObject *parent = nullptr);
    ~InstanceLink() override;

    /// The realm of this process: the folder of its settings store, and its display.
    static QString RealmOf(const QString &settingsFolder);

    /// Finds a running editor and opens the way to it; of several, the one of the process number `preferred`,
    /// else the one whose window was last active.
    /// Sockets that killed editors left are removed on the way. Of several processes that find nobody at the
    /// same time one becomes the editor; the others wait here until it listens, ten seconds at most.
    /// @return false when no editor runs: then nobody else becomes one before this process listens or ends
    bool FindRunning(qint64 preferred = 0);
    /// The same without any waiting, and without a claim to become the editor. @return whether one listens
    bool FindListening(qint64 preferred = 0);
    /// Sends the message to the editor that was found. It does not wait for an answer: the editor may
    /// be busy for as long as a render takes, and reads the message then.
    bool Notify(Call call, const QByteArray &activationToken);

    /// Makes this process one that others find. A missing runtime folder is not an error: then nobody finds
    /// it. @return whether others can find it
    bool Listen();
    /// What a message does; those that came before are delivered at once, as one, which is a hand-over if one
    /// of them was. A message that comes while another one is being served waits for its end.
    void SetHandler(std::function<void(Call)> handler);
    /// From here on nobody finds this editor, and nothing is delivered any more. @return whether a hand-over
    /// had come that was not delivered
    bool Close();
    /// This editor's window is the active one: of several, it is the one to be found.
    void MarkRecent();

private:
    QStringList RunningEditors(qint64 preferred) const;
    void Remove(const QString &editor) const;
    void TakeConnections();
    /// Hangs up on the oldest of too many that have sent nothing whole.
    void DropOldest();
    void TakeMessage(QLocalSocket &socket);
    void Deliver();

    QString m_folder; ///< empty where there is no runtime folder
    QString m_ownSocket;
    std::unique_ptr<QLocalServer> m_server;
    std::unique_ptr<QLocalSocket> m_running;
    std::unique_ptr<FileLock> m_starting;    ///< held by the process that is about to become the editor
    QList<QPointer<QLocalSocket>> m_callers; ///< connections without a message yet, the oldest first
    std::function<void(Call)> m_handler;
    std::optional<Call> m_pending;
    bool m_delivering = false;
};

} // namespace zelvane
