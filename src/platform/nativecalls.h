// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/runtimeerror.h"

#include <cerrno>
#include <csignal>
#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <sys/types.h>

// What the modules that call the file system share, below their headers. For platform/ alone.
namespace zelvane::native
{

ErrorNumber NumberOf(int error);
QString DescriptionOf(int error);
/// @throws RunTimeError for a number of the system
[[noreturn]] void Fail(int error, const QString &name);
/// A name as the system takes it. @throws RunTimeError when it holds NUL
QByteArray PathOf(const QString &name);
/// @throws RunTimeError for what is no file with bytes of its own
void RefuseSpecial(mode_t mode, const QString &name);
/// The folder that a path lies in, as the system takes it.
QByteArray FolderOf(const QByteArray &path);

/// Repeats a call that a signal has interrupted.
template <typename Call> auto Retry(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Takes the signal that a write beyond the process's file size limit raises: the write's error is enough,
/// and the signal would end the program with the user's text in it.
class FileSizeSignalGuard
{
public:
    FileSizeSignalGuard();
    ~FileSizeSignalGuard();
    Q_DISABLE_COPY_MOVE(FileSizeSignalGuard)

private:
    sigset_t m_set;
    sigset_t m_old;
};

/// @return 0, or the error of the step that failed
int WriteAll(int descriptor, const QByteArray &bytes);
/// Forces to the disk. A file system that cannot do so has said all it can. @return 0 or the error
int Flush(int descriptor);
/// Makes a renaming last through a power cut. Failure is ignored: the file itself is on the disk already.
void FlushFolder(const QByteArray &folder);
/// Gives a file a name that nothing has yet. @return 0 or the error, EEXIST when something has it
int RenameNew(const QByteArray &from, const QByteArray &to);
/// The same on a file system that cannot look and rename in one step: by a second name of the file, which
/// never takes another's place.
int LinkNew(const QByteArray &from, const QByteArray &to);

} // namespace zelvane::native
