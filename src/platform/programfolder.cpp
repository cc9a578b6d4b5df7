// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/programfolder.h"

#include "platform/runtimeerror.h"
#include "platform/textfile.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Whether a shipped file is the user's own once he has it: it does not come back when he deletes it.
bool IsGivenOnce(const QFileInfo &shipped)
{
    return shipped.suffix() == u"csr"_s;
}

/// Whether a shipped file tells of this version of the program: the one of an earlier version gives way to
/// it.
bool IsOfThisVersion(const QFileInfo &shipped)
{
    return shipped.suffix() == u"html"_s;
}

/// The mark that a file was given.
QString MarkOf(const QString &own)
{
    const QFileInfo file(own);
    return file.path() + u"/."_s + file.fileName() + u".given"_s;
}

void Give(const QFileInfo &shipped, const QString &own)
{
    const bool once = IsGivenOnce(shipped);
    if (once && QFileInfo::exists(MarkOf(own)))
        return;
    if (!QFileInfo::exists(own)) {
        WriteFileBytes(own, ReadFileBytes(shipped.filePath()));
    } else if (IsOfThisVersion(shipped)) {
        const QByteArray bytes = ReadFileBytes(shipped.filePath());
        if (ReadFileBytes(own) != bytes)
            WriteFileBytes(own, bytes);
    }
    if (once)
        WriteFileBytes(MarkOf(own), {});
}

} // namespace

QString ChooseProgramFolder(const QString &home, const QString &executableFolder, const QString &dataFolder,
                            const QString &shippedFolder)
{
    if (!home.isEmpty()) {
        const QString folder = QDir::cleanPath(QDir(home).absolutePath());
        QDir().mkpath(folder);
        return folder;
    }
    if (QFileInfo(executableFolder + u"/opcodes.txt"_s).isFile() && QFileInfo(executableFolder).isWritable())
        return executableFolder;

    QDir().mkpath(dataFolder);
    for (const QFileInfo &shipped : QDir(shippedFolder).entryInfoList(QDir::Files)) {
        try {
            Give(shipped, dataFolder + u'/' + shipped.fileName());
        } catch (const RunTimeError &) {
            // Whoever needs the file says that it is missing.
        }
    }
    return dataFolder;
}

QString ShippedFolder()
{
    const QString beside = QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../share/zelvane"_s);
    return QFileInfo(beside).isDir() ? beside : QStringLiteral(ZELVANE_DATA_DIR);
}

QString ProgramFolder()
{
    return ChooseProgramFolder(qEnvironmentVariable("ZELVANE_HOME"), QCoreApplication::applicationDirPath(),
                               QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                   u"/zelvane"_s,
                               ShippedFolder());
}

} // namespace zelvane
