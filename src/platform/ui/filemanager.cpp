// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/filemanager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::FileManager
{

namespace
{

constexpr int PatienceMs = 3000;

/// Calls the file manager's own D-Bus interface, which the session starts when it is not running.
bool Call(const QString &method, const QString &path)
{
    QDBusConnection session = QDBusConnection::sessionBus();
    if (!session.isConnected())
        return false;
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, method);
    call.setArguments({QStringList{QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded())}, QString()});
    return session.call(call, QDBus::Block, PatienceMs).type() == QDBusMessage::ReplyMessage;
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
