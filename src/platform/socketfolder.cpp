// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/socketfolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// What the system takes as the name of a socket, less the socket's own name and the folder that it is made
/// in.
constexpr qsizetype LongestFolder = 107 - 40;

/// Makes the folder if it is not there. @return whether it is a folder of this user that nobody else can
/// enter
bool MakeOwnFolder(const QString &folder)
{
    if (!QDir().mkpath(folder))
        return false;
    const QFileInfo info(folder);
#ifdef Q_OS_UNIX
    if (info.ownerId() != ::geteuid())
        return false;
#endif
    return !info.isSymLink() &&
           QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

QString SocketFolder(const QString &realm)
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty())
        return {};
    const auto hash = [](const QString &text) {
        return QString::fromLatin1(
            QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex().left(10));
    };
    QString folder = runtime + u"/zelvane-"_s + hash(realm);
    if (QFile::encodeName(folder).size() > LongestFolder)
        folder = QDir::tempPath() + u"/zelvane-"_s + hash(runtime + u'\n' + realm);
    return MakeOwnFolder(folder) ? folder : QString();
}

} // namespace zelvane
