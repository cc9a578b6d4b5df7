// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/nativecalls.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::native
{

ErrorNumber NumberOf(int error)
{
    switch (error) {
    case ENOENT:
        return ErrorNumber::FileNotFound;
    case ENOTDIR:
        return ErrorNumber::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
        return ErrorNumber::PermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ErrorNumber::DiskFull;
    case EIO:
    case ENXIO:
    case ENODEV:
        return ErrorNumber::DeviceError;
    default:
        return ErrorNumber::PathFileAccess;
    }
}

QString DescriptionOf(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

void Fail(int error, const QString &name)
{
    throw RunTimeError(NumberOf(error), DescriptionOf(error), name);
}

QByteArray PathOf(const QString &name)
{
    if (name.contains(QChar(0)))
        throw RunTimeError(ErrorNumber::PathFileAccess, u"The file name holds a NUL character"_s, name);
    return QFile::encodeName(name);
}

void RefuseSpecial(mode_t mode, const QString &name)
{
    QString text;
    if (S_ISDIR(mode))
        text = u"It is a folder, not a file"_s;
    else if (S_ISFIFO(mode))
        text = u"It is a named pipe, not a file"_s;
    else if (S_ISCHR(mode) || S_ISBLK(mode))
        text = u"It is a device, not a file"_s;
    else if (S_ISSOCK(mode))
        text = u"It is a socket, not a file"_s;
    else if (!S_ISREG(mode))
        text = u"It is not a file"_s;
    else
        return;
    throw RunTimeError(ErrorNumber::PathFileAccess, text, name);
}

FileSizeSignalGuard::FileSizeSignalGuard()
{
    sigemptyset(&m_set);
    sigaddset(&m_set, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &m_set, &m_old);
}

FileSizeSignalGuard::~FileSizeSignalGuard()
{
    const timespec now = {};
    while (sigtimedwait(&m_set, nullptr, &now) == SIGXFSZ) {
    }
    pthread_sigmask(SIG_SETMASK, &m_old, nullptr);
}

int WriteAll(int descriptor, const QByteArray &bytes)
{
    const FileSizeSignalGuard guard;
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            Retry([&] { return ::write(descriptor, bytes.constData() + done, size_t(bytes.size() - done)); });
        if (count < 0)
            return errno;
        if (count == 0)
            return EIO;
        done += count;
    }
    return 0;
}

int Flush(int descriptor)
{
    if (Retry([&] { return ::fsync(descriptor); }) == 0 || errno == EINVAL || errno == ENOTSUP ||
        errno == ENOSYS)
        return 0;
    return errno;
}

QByteArray FolderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return "."_ba;
    return slash == 0 ? "/"_ba : path.first(slash);
}

void FlushFolder(const QByteArray &folder)
{
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

int RenameNew(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return errno;
    return LinkNew(from, to);
}

int LinkNew(const QByteArray &from, const QByteArray &to)
{
    if (::link(from.constData(), to.constData()) == 0) {
        if (::unlink(from.constData()) == 0 || errno == ENOENT)
            return 0;
        const int error = errno;
        ::unlink(to.constData());
        return error;
    }
    if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS && errno != EMLINK && errno != EINVAL)
        return errno;
    // A file system that can give a file no second name either.
    struct stat found = {};
    if (::lstat(to.constData(), &found) == 0)
        return EEXIST;
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

} // namespace zelvane::native
