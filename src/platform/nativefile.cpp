// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/nativefile.h"

#include "platform/lostnames.h"
#include "platform/nativecalls.h"
#include "platform/runtimeerror.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <QDateTime>
#include <QFile>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <tuple>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

using namespace native;

NativeFile::~NativeFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

NativeFile OpenRegularFile(const QString &name)
{
    const QByteArray path = PathOf(name);
    // Looked at before it is opened, since opening a pipe or a device can already do something, and after,
    // since it may have become another.
    struct stat info = {};
    if (::stat(path.constData(), &info) != 0) {
        if (errno == ENOENT && IsLostName(name))
            throw RunTimeError(ErrorNumber::FileNotFound, LostNameText(), name);
        Fail(errno, name);
    }
    RefuseSpecial(info.st_mode, name);
    NativeFile file(
        Retry([&] { return ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!file.IsOpen() || ::fstat(file.Descriptor(), &info) != 0)
        Fail(errno, name);
    RefuseSpecial(info.st_mode, name);
    return file;
}

NativeFile LockLeftFile(const QString &name)
{
    const QByteArray path = PathOf(name);
    NativeFile file(Retry(
        [&] { return ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC); }));
    struct stat held = {}, named = {};
    if (!file.IsOpen() || ::fstat(file.Descriptor(), &held) != 0 || !S_ISREG(held.st_mode))
        return {};
    if (::flock(file.Descriptor(), LOCK_EX | LOCK_NB) != 0) {
        constexpr time_t day = 24 * 60 * 60;
        if (errno == EWOULDBLOCK || std::time(nullptr) - held.st_mtime < day)
            return {};
    }
    // It may have been replaced or removed between the two calls.
    if (::lstat(path.constData(), &named) != 0 || named.st_ino != held.st_ino || named.st_dev != held.st_dev)
        return {};
    return file;
}

namespace
{

FileStamp StampFrom(const struct stat &info)
{
    const auto nanoseconds = [](const timespec &time) {
        return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
    };
    return {quint64(info.st_dev), quint64(info.st_ino), qint64(info.st_size), nanoseconds(info.st_mtim),
            nanoseconds(info.st_ctim)};
}

} // namespace

FileStamp StampOf(const NativeFile &file)
{
    struct stat info = {};
    return ::fstat(file.Descriptor(), &info) == 0 ? StampFrom(info) : FileStamp();
}

std::optional<FileStamp> StampOf(const QString &name)
{
    struct stat info = {};
    if (name.contains(QChar(0)))
        return std::nullopt;
    if (::stat(QFile::encodeName(name).constData(), &info) == 0)
        return StampFrom(info);
    if (errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    return FileStamp();
}

bool IsSettled(const FileStamp &stamp)
{
    constexpr qint64 slowestTick = 2'500'000'000;
    // A program may set the time of the last modification back, but not that of the last change.
    const qint64 last = std::max(stamp.modified, stamp.changed);
    return QDateTime::currentMSecsSinceEpoch() * 1'000'000 - last > slowestTick;
}

QString FollowLinks(const QString &name)
{
    QByteArray path = PathOf(name);
    for (int links = 0; links <= 40; ++links) {
        QByteArray target(4096, Qt::Uninitialized);
        const ssize_t length = ::readlink(path.constData(), target.data(), size_t(target.size()));
        if (length < 0)
            return QFile::decodeName(path);
        target.truncate(length);
        path = target.startsWith('/') ? target : FolderOf(path) + '/' + target;
    }
    Fail(ELOOP, name);
}

FileLock::FileLock(const QString &name, std::chrono::milliseconds patience)
{
    const QByteArray path = PathOf(name + u".lock"_s);
    const auto end = std::chrono::steady_clock::now() + patience;
    auto pause = std::chrono::microseconds(20);
    for (;;) {
        const auto open = [&](int access) {
            return NativeFile(Retry([&] {
                return ::open(path.constData(), access | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0644);
            }));
        };
        m_file = open(O_RDWR);
        // Made by another user, perhaps by root on this one's behalf: it can be locked all the same.
        if (!m_file.IsOpen() && errno == EACCES)
            m_file = open(O_RDONLY);
        if (!m_file.IsOpen())
            Fail(errno, name);
        while (::flock(m_file.Descriptor(), LOCK_EX | LOCK_NB) != 0) {
            // A file system without locks: the writes are still whole, each by itself.
            if (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS)
                return;
            if (errno != EWOULDBLOCK && errno != EINTR)
                Fail(errno, name);
            // Asked for again and again, not waited for: a stopped process must not stop this one for good.
            if (std::chrono::steady_clock::now() > end)
                throw RunTimeError(ErrorNumber::PermissionDenied, u"Another process keeps the file locked"_s,
                                   name);
            std::this_thread::sleep_for(pause);
            pause = std::min(pause * 2, std::chrono::microseconds(200));
        }
        // Someone may have removed the lock's file between the two calls: then others lock another one.
        struct stat held = {}, named = {};
        if (::fstat(m_file.Descriptor(), &held) == 0 && ::stat(path.constData(), &named) == 0 &&
            held.st_ino == named.st_ino && held.st_dev == named.st_dev)
            return;
    }
}

NativeFile ReplaceLockedFile(const QString &name, const QByteArray &bytes)
{
    const QByteArray path = PathOf(name);
    const QByteArray temporary = PathOf(name + u".tmp"_s);
    struct stat old = {};
    const bool exists = ::stat(path.constData(), &old) == 0;
    if (exists)
        RefuseSpecial(old.st_mode, name);
    if (exists && ::faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS) != 0)
        Fail(errno, name);

    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const auto open = [&] {
        return NativeFile(Retry([&] { return ::open(temporary.constData(), flags, 0600); }));
    };
    NativeFile file = open();
    if (!file.IsOpen() && errno == EEXIST) {
        ::unlink(temporary.constData());
        file = open();
    }
    if (!file.IsOpen())
        Fail(errno, name);
    int error = WriteAll(file.Descriptor(), bytes);
    if (error == 0 && exists) {
        if (old.st_uid != ::geteuid() || old.st_gid != ::getegid())
            std::ignore =
                ::fchown(file.Descriptor(), old.st_uid, old.st_gid); // the new file is then the writer's
        if (::fchmod(file.Descriptor(), old.st_mode & 07777) != 0)
            error = errno;
    }
    // First the bytes, then the name: a power cut between the two would leave an empty file under it.
    if (error == 0)
        error = Flush(file.Descriptor());
    // Some network file systems tell a full disk only when a file is closed; the caller's copy stays open.
    if (error == 0) {
        const int copy = ::fcntl(file.Descriptor(), F_DUPFD_CLOEXEC, 0);
        if (copy < 0 || ::close(copy) != 0)
            error = errno;
    }
    if (error == 0 && ::rename(temporary.constData(), path.constData()) != 0)
        error = errno;
    if (error != 0) {
        ::unlink(temporary.constData());
        Fail(error, name);
    }
    return file;
}

void FlushName(const QString &name)
{
    FlushFolder(FolderOf(PathOf(name)));
}

} // namespace zelvane
