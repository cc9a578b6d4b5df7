// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/consolelink.h"

#include "platform/socketfolder.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QFileInfoList>
#include <QLocalServer>
#include <QLocalSocket>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int PatienceMs = 500;

} // namespace

ConsoleLink::ConsoleLink(const QString &key, QObject *parent)
    : QObject(parent),
      m_folder(SocketFolder(u"consoles"_s)),
      m_stem(u"zelvane-console-"_s +
             QString::fromLatin1(
                 QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha1).toHex().left(10)) +
             u'-')
{
}

ConsoleLink::~ConsoleLink()
{
    if (m_server) {
        m_server->close();
        QLocalServer::removeServer(m_own);
    }
}

void ConsoleLink::TellOthers() const
{
    if (m_folder.isEmpty())
        return;
    const QFileInfoList sockets = QDir(m_folder).entryInfoList({m_stem + u'*'}, QDir::System | QDir::Files);
    for (const QFileInfo &socket : sockets) {
        if (socket.filePath() == m_own)
            continue;
        QLocalSocket caller;
        caller.connectToServer(socket.filePath());
        if (!caller.waitForConnected(PatienceMs) && caller.error() == QLocalSocket::ConnectionRefusedError)
            QLocalServer::removeServer(socket.filePath()); // that console was killed
    }
}

void ConsoleLink::Listen(std::function<void()> told)
{
    if (m_folder.isEmpty())
        return;
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    m_own = m_folder + u'/' + m_stem + QString::number(QCoreApplication::applicationPid());
    connect(m_server.get(), &QLocalServer::newConnection, this, [this, call = std::move(told)] {
        while (QLocalSocket *caller = m_server->nextPendingConnection())
            delete caller; // to be called is all the news
        call();
    });
    if (!m_server->listen(m_own)) {
        m_server.reset();
        m_own.clear();
    }
}

} // namespace zelvane
