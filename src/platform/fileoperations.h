// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/filetransfer.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

class Desktop;

/// The path of a name in a folder. Any name is one of the folder's, also those that Qt's joining takes for
/// paths of their own (":x").
QString PathInFolder(const QString &folder, const QString &name);

enum class Deletion { ToTrash, ForGood };

/// The service for whole files. It asks its own questions (over an existing target, before a deletion), shows
/// the progress of long work and tells its own failures: the caller learns whether the thing was done. What
/// was refused, stopped or failed has left all files as they were.
class FileOperations
{
public:
    virtual ~FileOperations() = default;
    virtual bool Move(const QString &source, const QString &target) = 0;
    virtual bool Copy(const QString &source, const QString &target) = 0;
    /// Gives a file another name in its folder.
    virtual bool Rename(const QString &source, const QString &name) = 0;
    virtual bool Delete(const QString &path, Deletion way) = 0;
    /// Deletes files for good, without a question; what is gone already is no failure. All failures are told
    /// in one message.
    virtual bool DeleteUnasked(const QStringList &paths) = 0;
};

/// How far a piece of work is, for the user to see when it takes long.
class WorkProgress
{
public:
    virtual ~WorkProgress() = default;
    /// @param what "Copying x.wav..."
    virtual void Begin(const QString &what) = 0;
    /// @return false when the user has stopped the work
    virtual bool GoOn(qint64 done, qint64 total) = 0;
    virtual void End() = 0;
};

/// The service over the system's files.
class SystemFileOperations : public FileOperations
{
public:
    /// The arguments outlive it.
    SystemFileOperations(Desktop &desktop, WorkProgress &progress) : m_desktop(desktop), m_progress(progress)
    {
    }

    bool Move(const QString &source, const QString &target) override;
    bool Copy(const QString &source, const QString &target) override;
    bool Rename(const QString &source, const QString &name) override;
    bool Delete(const QString &path, Deletion way) override;
    bool DeleteUnasked(const QStringList &paths) override;

private:
    using Transfer = TransferEnd (*)(const QString &, const QString &, Replacing, const TransferProgress &);

    bool Run(Transfer transfer, const QString &verb, const QString &doing, const QString &source,
             const QString &target);
    bool MayReplace(const QString &target);
    bool DeleteForGood(const QString &path);
    void Tell(const QString &what, const QString &why);

    Desktop &m_desktop;
    WorkProgress &m_progress;
};

} // namespace zelvane
