// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/instancelink.h"

#include "platform/nativefile.h"
#include "platform/runtimeerror.h"
#include "platform/socketfolder.h"
#include "platform/ui/activationtoken.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QScopeGuard>
#include <QTimer>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int PatienceMs = 2000;
/// A sender writes its one line at once. Whoever is silent for so long, or one of so many, is none.
constexpr int IdleMs = 5000;
constexpr qsizetype MostCallers = 32;
constexpr qint64 LongestMessage = 4096;
const QString MarkSuffix = u".recent"_s;
/// How many digits a mark holds: one size for all, so that marks are overwritten whole and compare as text.
constexpr int MarkDigits = 20;
const QString LockSuffix = u".lock"_s;
const QString StartFile = u"/start"_s;

/// The first word of the message; the activation token is the rest of its line.
constexpr char HandOverWord[] = "open";
constexpr char RaiseWord[] = "raise";

/// This moment, as a mark holds it: by the clock that all processes share and nobody sets. The times of files
/// are too coarse on some systems, where two windows may be active within one tick.
QByteArray MarkOfNow()
{
    const std::chrono::nanoseconds sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return QByteArray::number(qint64(sinceStart.count())).rightJustified(MarkDigits, '0');
}

/// What stands in the mark beside a socket; empty, the oldest of all, where there is none.
QByteArray MarkOf(const QString &socket)
{
    QFile mark(socket + MarkSuffix);
    return mark.open(QIODevice::ReadOnly) ? mark.read(MarkDigits) : QByteArray();
}

/// How the name of a process's socket begins.
QString SocketStem(qint64 process)
{
    return QString::number(process) + u'-';
}

} // namespace

InstanceLink::InstanceLink(const QString &realm, QObject *parent)
    : QObject(parent), m_folder(SocketFolder(realm))
{
}

InstanceLink::~InstanceLink()
{
    Close();
}

QString InstanceLink::RealmOf(const QString &settingsFolder)
{
    QString display = qEnvironmentVariable("DISPLAY");
    if (const auto screen = display.lastIndexOf(u'.'); screen > display.lastIndexOf(u':'))
        display.truncate(screen);
    return QStringList{QFileInfo(settingsFolder).absoluteFilePath(), qEnvironmentVariable("WAYLAND_DISPLAY"),
                       display}
        .join(u'\n');
}

QStringList InstanceLink::RunningEditors(qint64 preferred) const
{
    QStringList names;
    if (m_folder.isEmpty())
        return names;
    const QDir folder(m_folder);
    const auto sockets =
        folder.entryInfoList(QDir::System | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    std::vector<std::pair<QByteArray, QString>> found;
    for (const QFileInfo &info : sockets) {
        if (info.fileName().endsWith(MarkSuffix) || info.fileName().endsWith(LockSuffix) ||
            info.filePath() == m_ownSocket)
            continue;
        found.emplace_back(MarkOf(info.filePath()), info.filePath());
    }
    std::sort(found.begin(), found.end(), std::greater<>());
    const QString stem = SocketStem(preferred);
    std::stable_partition(found.begin(), found.end(), [&](const auto &editor) {
        return QFileInfo(editor.second).fileName().startsWith(stem);
    });
    for (const auto &[when, name] : found)
        names.append(name);
    return names;
}

void InstanceLink::Remove(const QString &editor) const
{
    QLocalServer::removeServer(editor);
    QFile::remove(editor + MarkSuffix);
}

bool InstanceLink::FindListening(qint64 preferred)
{
    for (const QString &editor : RunningEditors(preferred)) {
        auto socket = std::make_unique<QLocalSocket>();
        socket->connectToServer(editor);
        if (socket->waitForConnected(PatienceMs)) {
            m_running = std::move(socket);
            return true;
        }
        if (socket->error() == QLocalSocket::ConnectionRefusedError)
            Remove(editor); // nobody listens any more: that editor was killed
    }
    return false;
}

bool InstanceLink::FindRunning(qint64 preferred)
{
    if (FindListening(preferred))
        return true;
    if (m_folder.isEmpty() || m_server)
        return false;
    try {
        m_starting = std::make_unique<FileLock>(m_folder + StartFile);
    } catch (const RunTimeError &) {
        // No leave to lock, or the one that starts takes too long: two editors are better than none.
    }
    if (!FindListening(preferred))
        return false;
    m_starting.reset();
    return true;
}

bool InstanceLink::Notify(Call call, const QByteArray &activationToken)
{
    if (!m_running || m_running->state() != QLocalSocket::ConnectedState)
        return false;
    const QByteArray message =
        QByteArray(call == Call::HandOver ? HandOverWord : RaiseWord) + ' ' + activationToken;
    m_running->write(message.left(LongestMessage - 1).replace('\n', ' ') + '\n');
    while (m_running->bytesToWrite() > 0)
        if (!m_running->waitForBytesWritten(PatienceMs))
            return false;
    m_running->disconnectFromServer();
    return true;
}

bool InstanceLink::Listen()
{
    if (m_folder.isEmpty())
        return false;
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    m_ownSocket = m_folder + u'/' + SocketStem(QCoreApplication::applicationPid()) +
                  QString::number(QDateTime::currentMSecsSinceEpoch(), 36);
    connect(m_server.get(), &QLocalServer::newConnection, this, &InstanceLink::TakeConnections);
    const auto found = qScopeGuard([this] { m_starting.reset(); });
    if (!m_server->listen(m_ownSocket)) {
        m_server.reset();
        m_ownSocket.clear();
        return false;
    }
    MarkRecent();
    return true;
}

bool InstanceLink::Close()
{
    m_handler = {};
    if (m_server) {
        // Those that had found this editor have ended, in the belief that it reads what they sent.
        m_server->disconnect(this);
        while (m_server->waitForNewConnection(0))
            TakeConnections();
        for (QLocalSocket *socket : m_server->findChildren<QLocalSocket *>())
            if (socket->bytesAvailable() > 0 || socket->waitForReadyRead(0))
                TakeMessage(*socket);
        m_server->close();
        Remove(m_ownSocket);
        m_server.reset();
    }
    return std::exchange(m_pending, std::nullopt) == Call::HandOver;
}

void InstanceLink::MarkRecent()
{
    if (!m_server)
        return;
    QFile mark(m_ownSocket + MarkSuffix);
    if (mark.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) // never empty for whoever reads it now
        mark.write(MarkOfNow());
}

void InstanceLink::SetHandler(std::function<void(Call)> handler)
{
    m_handler = std::move(handler);
    Deliver();
}

void InstanceLink::TakeConnections()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { TakeMessage(*socket); });
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QTimer::singleShot(IdleMs, socket, &QLocalSocket::abort);
        m_callers.append(socket);
        TakeMessage(*socket);
        DropOldest();
    }
}

void InstanceLink::DropOldest()
{
    m_callers.removeIf(
        [](const auto &caller) { return !caller || caller->state() != QLocalSocket::ConnectedState; });
    while (m_callers.size() > MostCallers) {
        QLocalSocket &oldest = *m_callers.takeFirst();
        if (oldest.waitForReadyRead(0)) // it may have spoken while nobody looked
            TakeMessage(oldest);
        oldest.abort();
    }
}

void InstanceLink::TakeMessage(QLocalSocket &socket)
{
    if (!socket.canReadLine()) {
        if (socket.bytesAvailable() > LongestMessage)
            socket.abort(); // no message of ours
        return;
    }
    QByteArray message = socket.readLine(LongestMessage + 1);
    message.chop(1);
    socket.disconnectFromServer();
    const qsizetype blank = message.indexOf(' ');
    const QByteArray word = message.left(std::max<qsizetype>(0, blank));
    if (word != HandOverWord && word != RaiseWord)
        return; // no message of ours
    UseActivationToken(message.mid(blank + 1));
    if (word == HandOverWord)
        m_pending = Call::HandOver;
    else if (!m_pending)
        m_pending = Call::Raise;
    Deliver();
}

void InstanceLink::Deliver()
{
    if (m_delivering || !m_handler)
        return;
    m_delivering = true;
    const auto ended = qScopeGuard([this] { m_delivering = false; });
    while (m_pending)
        m_handler(*std::exchange(m_pending, std::nullopt));
}

} // namespace zelvane
