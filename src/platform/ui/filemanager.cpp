// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/filemanager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <QVariant>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::FileManager
{

namespace
{

constexpr int PatienceMs = 3000;

/// @return whether a service of the session has taken the call; the session starts one that is not running
bool Answered(const QDBusMessage &call)
{
    const QDBusConnection session = QDBusConnection::sessionBus();
    return session.isConnected() &&
           session.call(call, QDBus::Block, PatienceMs).type() == QDBusMessage::ReplyMessage;
}

/// Calls the file manager's own D-Bus interface.
bool Call(const QString &method, const QString &path)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, method);
    call.setArguments({QStringList{QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded())}, QString()});
    return Answered(call);
}

struct SearchTool {
    QString program;
    QString folderOption; ///< put before the folder; empty when the folder stands alone
};

} // namespace

bool ShowFolder(const QString &folder)
{
    return Call(u"ShowFolders"_s, folder);
}

bool ShowProperties(const QString &path)
{
    return Call(u"ShowItemProperties"_s, path);
}

bool OpenWith(const QString &path)
{
    // The portal takes an open file: a program in a sandbox may see other paths than this one.
    // It lets another program write only through a file that was opened so.
    QFile file(path);
    if (!QFileInfo(path).isFile())
        return false;
    const bool writable = file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly);
    if (!writable && !file.open(QIODevice::ReadOnly))
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                       u"/org/freedesktop/portal/desktop"_s,
                                                       u"org.freedesktop.portal.OpenURI"_s, u"OpenFile"_s);
    call.setArguments({QString(), QVariant::fromValue(QDBusUnixFileDescriptor(file.handle())),
                       QVariantMap{{u"ask"_s, true}, {u"writable"_s, writable}}});
    return Answered(call);
}

bool FindFiles(const QString &folder)
{
    const SearchTool tools[] = {
        {u"kfind"_s, {}},
        {u"catfish"_s, u"--path="_s},
        {u"mate-search-tool"_s, u"--path="_s},
        {u"gnome-search-tool"_s, u"--path="_s},
    };
    for (const SearchTool &tool : tools) {
        const QString program = QStandardPaths::findExecutable(tool.program);
        if (program.isEmpty())
            continue;
        QProcess search;
        search.setProgram(program);
        search.setArguments({tool.folderOption + folder});
        search.setWorkingDirectory(folder);
        search.setStandardInputFile(QProcess::nullDevice());
        if (search.startDetached())
            return true;
    }
    return false;
}

} // namespace zelvane::FileManager
