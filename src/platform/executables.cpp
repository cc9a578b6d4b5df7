// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/executables.h"

#include "platform/parameters.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool IsBareName(const QString &command)
{
    return !command.contains(u'/') && !command.contains(QDir::separator());
}

QString KindOfHead(const QByteArray &head)
{
    if (head.startsWith("\x7f"
                        "ELF"))
        return head.size() > 4 && head[4] == 1 ? u"ELF 32-bit"_s : u"ELF 64-bit"_s;
    if (head.startsWith("#!"))
        return u"Script"_s;
    for (const char *magic : {"\xfe\xed\xfa\xce", "\xfe\xed\xfa\xcf", "\xce\xfa\xed\xfe", "\xcf\xfa\xed\xfe"})
        if (head.startsWith(magic))
            return u"Mach-O"_s;
#ifdef Q_OS_WIN
    if (head.startsWith("MZ"))
        return u"Win32"_s;
    return u"DOS"_s; // a batch file: the suffix has made it executable
#else
    return {};
#endif
}

} // namespace

QString FindExecutable(const QString &command, const QString &folder)
{
    if (command.isEmpty())
        return {};
    if (IsBareName(command))
        return QStandardPaths::findExecutable(command);
    const QFileInfo file(QDir(folder.isEmpty() ? QDir::currentPath() : folder), command);
    if (!file.isFile() || !file.isExecutable())
        return {};
    return file.absoluteFilePath();
}

QString ProgramPath(const QString &tool)
{
    const QString plain = UnquoteFile(tool);
    const QString found = plain.isEmpty() ? QString() : FindExecutable(plain);
    return found.isEmpty() ? plain : found;
}

QString ExecutableFileKind(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isExecutable())
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return u"<unknown executable>"_s;
    return KindOfHead(file.read(8));
}

} // namespace zelvane
