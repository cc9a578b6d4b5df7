// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/unsavedcopy.h"
#include "support/childprocess.h"

#include <csignal>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QStringList>
#include <QTemporaryDir>
#include <sys/types.h>
#include <unistd.h>

namespace zelvane::test
{

/// A state folder of its own, as long as it lives, and the copies of unsaved texts in it.
class OwnStateFolder
{
public:
    OwnStateFolder() { qputenv("XDG_STATE_HOME", QFile::encodeName(m_folder.path())); }
    ~OwnStateFolder() { qputenv("XDG_STATE_HOME", m_before); }
    OwnStateFolder(const OwnStateFolder &) = delete;
    OwnStateFolder &operator=(const OwnStateFolder &) = delete;

    QString Path() const { return m_folder.path(); }

    /// The paths of the copies with this ending (".open", ".kept", ".old"), sorted by name.
    static QStringList Copies(const QString &ending = {})
    {
        QStringList paths;
        for (const QString &name : NamesIn(UnsavedCopy::Folder())) {
            if (name.endsWith(ending))
                paths.append(UnsavedCopy::Folder() + u'/' + name);
        }
        return paths;
    }
    /// The text in a copy; a test failure when it is not whole.
    static QByteArray TextIn(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        const QByteArray whole = file.readAll();
        const qsizetype end = whole.indexOf("\n\n");
        EXPECT_GT(end, 0);
        EXPECT_TRUE(
            whole.first(end + 1).endsWith("Bytes: " + QByteArray::number(whole.size() - end - 2) + '\n'))
            << whole.toStdString();
        return whole.sliced(end + 2);
    }
    /// Writes a copy in a process that is killed then; each a minute after the one before, since the clock
    /// of files may stand still for longer than a write takes, and some file systems keep whole seconds.
    static void Leave(const CopyInfo &info, const QByteArray &bytes,
                      UnsavedCopy::Kind kind = UnsavedCopy::Kind::Unsaved)
    {
        constexpr qint64 minute = 60;
        const QStringList before = Copies();
        const pid_t child = StartChild([&] {
            UnsavedCopy copy(kind);
            copy.Write(info, bytes);
            ::kill(::getpid(), SIGKILL);
        });
        EXPECT_FALSE(ChildSucceeded(child));
        for (const QString &path : Copies()) {
            if (before.contains(path))
                continue;
            QFile copy(path);
            EXPECT_TRUE(copy.open(QIODevice::ReadWrite));
            EXPECT_TRUE(copy.setFileTime(QDateTime::currentDateTime().addSecs(before.size() * minute),
                                         QFileDevice::FileModificationTime));
        }
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_before = qgetenv("XDG_STATE_HOME");
};

} // namespace zelvane::test
