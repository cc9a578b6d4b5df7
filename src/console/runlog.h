// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"

#include <memory>
#include <QByteArrayView>
#include <QDateTime>
#include <QFile>
#include <QString>

namespace zelvane
{

/// The log of a run: all that a program wrote, or where that is too much its head and its tail. For this user
/// alone. A disk that takes no more ends the log and nothing else.
class RunLog
{
public:
    struct Limits {
        qint64 head = 50'000'000; ///< bytes from the start that are kept
        qint64 tail = 50'000'000; ///< bytes at the end that are kept, at most; half of them at least
        int logs = 20;            ///< logs in the folder, this one and those of other running runs among them
    };

    /// Where logs lie: a folder of the user's own.
    static QString Folder();

    /// Begins a log and removes the oldest ones beyond the limit whose runs have ended.
    /// @param name of the preset or program; it becomes part of the file's name
    RunLog(const QString &folder, const QString &name, const QDateTime &begun, Limits limits);
    RunLog(const QString &folder, const QString &name, const QDateTime &begun);
    /// Finishes the log.
    ~RunLog();
    RunLog(const RunLog &) = delete;
    RunLog &operator=(const RunLog &) = delete;

    void Write(QByteArrayView bytes);
    /// Puts the tail behind the head. Until then it lies in files of its own beside the log, which stand for
    /// the log's end where the program is killed. What is written after all stands behind that.
    void Finish();

    /// Whether all that is to be kept could be written so far.
    bool IsWhole() const { return m_isWhole; }
    QString Path() const { return m_path; } ///< empty where no log can be written

private:
    bool OpenAgain();
    void WriteTail(QByteArrayView bytes);
    void GiveUp();
    void AppendTail(const QString &path);
    QString TailPath() const;
    QString OlderTailPath() const;

    Limits m_limits;
    QString m_path;
    QFile m_file;
    NativeFile m_lock; ///< tells other runs that this one goes on
    qint64 m_headLength = 0;
    std::unique_ptr<QFile> m_tail; ///< the newer half of the tail
    qint64 m_tailLength = 0;
    qint64 m_dropped = 0; ///< bytes that are kept nowhere
    qint64 m_olderLength = 0;
    bool m_isWhole = false;
    bool m_isFinished = false;
};

} // namespace zelvane
