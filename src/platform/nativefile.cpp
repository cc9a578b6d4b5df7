// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/nativefile.h"

#include "platform/runtimeerror.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <QRandomGenerator>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Beyond this a text cannot be held as UTF-16 by the string class and the text control.
constexpr qint64 MaxFileSize = 1'000'000'000;

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

[[noreturn]] void Fail(int error, const QString &name)
{
    throw RunTimeError(NumberOf(error), DescriptionOf(error), name);
}

QByteArray PathOf(const QString &name)
{
    if (name.contains(QChar(0)))
        throw RunTimeError(ErrorNumber::PathFileAccess, u"The file name holds a NUL character"_s, name);
    return QFile::encodeName(name);
}

/// @throws RunTimeError for what is no file with bytes of its own
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
    FileSizeSignalGuard()
    {
        sigemptyset(&m_set);
        sigaddset(&m_set, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &m_set, &m_old);
    }
    ~FileSizeSignalGuard()
    {
        const timespec now = {};
        while (sigtimedwait(&m_set, nullptr, &now) == SIGXFSZ) {
        }
        pthread_sigmask(SIG_SETMASK, &m_old, nullptr);
    }
    Q_DISABLE_COPY_MOVE(FileSizeSignalGuard)

private:
    sigset_t m_set;
    sigset_t m_old;
};

/// @return 0, or the error of the step that failed
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

/// Forces to the disk. A file system that cannot do so has said all it can.
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

/// Makes a renaming last through a power cut. The file itself is safe by now, so a failure is none of the
/// caller's.
void FlushFolder(const QByteArray &folder)
{
    const NativeFile file(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file.IsOpen())
        ::fsync(file.Descriptor());
}

/// A new file in a target's folder. Where the system can, it has no name while it is being written, so that a
/// killed process leaves nothing behind; its name is removed again unless it was renamed.
class TemporaryFile
{
public:
    explicit TemporaryFile(const QByteArray &folder) : m_folder(folder)
    {
        constexpr int flags = O_WRONLY | O_CLOEXEC;
        if (::access("/proc/self/fd", X_OK) == 0)
            m_file = NativeFile(Retry([&] { return ::open(folder.constData(), O_TMPFILE | flags, 0666); }));
        if (!m_file.IsOpen())
            m_error = FindName([&](const char *path) {
                m_file = NativeFile(
                    Retry([&] { return ::open(path, O_CREAT | O_EXCL | O_NOFOLLOW | flags, 0666); }));
                return m_file.IsOpen();
            });
    }
    ~TemporaryFile()
    {
        if (!m_path.isEmpty())
            ::unlink(m_path.constData());
    }
    Q_DISABLE_COPY_MOVE(TemporaryFile)

    int Error() const { return m_error; }
    int Descriptor() const { return m_file.Descriptor(); }

    /// From here on a killed process leaves the file behind. @return 0 or the error
    int GiveName()
    {
        if (!m_path.isEmpty())
            return 0;
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(m_file.Descriptor());
        return FindName([&](const char *path) {
            return ::linkat(AT_FDCWD, self.constData(), AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0;
        });
    }

    /// @return 0 or the error
    int RenameTo(const QByteArray &target)
    {
        if (const int error = GiveName())
            return error;
        if (::rename(m_path.constData(), target.constData()) != 0)
            return errno;
        m_path.clear();
        return 0;
    }

private:
    /// Tries names until `take` has one. They are short: the target's name may already be as long as names
    /// can be.
    template <typename Take> int FindName(Take take)
    {
        static constexpr char letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
        for (int attempt = 0; attempt < 100; ++attempt) {
            QByteArray path = m_folder + "/.zelvane-";
            for (int i = 0; i < 8; ++i)
                path += letters[QRandomGenerator::global()->bounded(int(sizeof letters) - 1)];
            if (take(path.constData())) {
                m_path = path;
                return 0;
            }
            if (errno != EEXIST)
                return errno;
        }
        return EEXIST;
    }

    QByteArray m_folder;
    QByteArray m_path; // empty while the file has no name
    NativeFile m_file;
    int m_error = 0;
};

/// Makes a new file equal an old one in all but its bytes. @return false when it cannot be
bool CopyAttributes(int from, const struct stat &old, int to)
{
    struct stat made = {};
    if (::fstat(to, &made) != 0)
        return false;
    if ((made.st_uid != old.st_uid || made.st_gid != old.st_gid) && ::fchown(to, old.st_uid, old.st_gid) != 0)
        return false;
    if (::fchmod(to, old.st_mode & 07777) != 0)
        return false;
    QByteArray names(64 * 1024, Qt::Uninitialized);
    const ssize_t length = ::flistxattr(from, names.data(), size_t(names.size()));
    if (length < 0)
        return errno == ENOTSUP;
    for (const char *name = names.constData(); name < names.constData() + length;
         name += std::strlen(name) + 1) {
        QByteArray value(64 * 1024, Qt::Uninitialized);
        const ssize_t size = ::fgetxattr(from, name, value.data(), size_t(value.size()));
        // The system labels the new file by its own rules; whoever may not set the label may not mend it
        // either.
        const bool label = std::strncmp(name, "security.", 9) == 0 || std::strncmp(name, "trusted.", 8) == 0;
        if ((size < 0 || ::fsetxattr(to, name, value.constData(), size_t(size), 0) != 0) && !label)
            return false;
    }
    return true;
}

/// Writes over a file's own bytes, and puts the old ones back when a step fails. @return 0 or the error
int OverwriteInPlace(int descriptor, const QByteArray &old, const QByteArray &bytes, bool &restored)
{
    // A full disk shows here, before anything is changed, on all file systems that can tell beforehand.
    if (bytes.size() > old.size()) {
        const FileSizeSignalGuard guard;
        if (Retry([&] { return ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, bytes.size()); }) != 0 &&
            (errno == ENOSPC || errno == EDQUOT || errno == EFBIG))
            return errno;
    }
    const auto write = [&](const QByteArray &content) {
        if (::lseek(descriptor, 0, SEEK_SET) != 0)
            return errno;
        if (const int error = WriteAll(descriptor, content))
            return error;
        if (Retry([&] { return ::ftruncate(descriptor, content.size()); }) != 0)
            return errno;
        return Flush(descriptor);
    };
    const int error = write(bytes);
    restored = error == 0 || write(old) == 0;
    return error;
}

} // namespace

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
    if (::stat(path.constData(), &info) != 0)
        Fail(errno, name);
    RefuseSpecial(info.st_mode, name);
    NativeFile file(
        Retry([&] { return ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!file.IsOpen() || ::fstat(file.Descriptor(), &info) != 0)
        Fail(errno, name);
    RefuseSpecial(info.st_mode, name);
    return file;
}

QByteArray ReadWhole(const NativeFile &file, const QString &name)
{
    struct stat info = {};
    if (::fstat(file.Descriptor(), &info) != 0)
        Fail(errno, name);
    const auto refuseLarge = [&](qint64 size) {
        if (size > MaxFileSize)
            throw RunTimeError(ErrorNumber::PathFileAccess, u"The file is too large"_s, name);
    };
    refuseLarge(info.st_size);
    // One byte more than the size, so that the end shows without growing; a file may be longer than it says.
    QByteArray bytes(info.st_size + 1, Qt::Uninitialized);
    qsizetype done = 0;
    for (;;) {
        if (done == bytes.size()) {
            refuseLarge(done);
            bytes.resize(done + done / 2 + 4096);
        }
        const ssize_t count = Retry([&] {
            return ::pread(file.Descriptor(), bytes.data() + done, size_t(bytes.size() - done), done);
        });
        if (count < 0)
            Fail(errno, name);
        if (count == 0)
            break;
        done += count;
    }
    bytes.truncate(done);
    return bytes;
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

void ReplaceFile(const QString &name, const QByteArray &bytes)
{
    const QByteArray path = PathOf(FollowLinks(name));
    struct stat old = {};
    const bool exists = ::stat(path.constData(), &old) == 0;
    if (!exists && errno != ENOENT)
        Fail(errno, name);
    NativeFile target;
    if (exists) {
        const bool characters = S_ISCHR(old.st_mode);
        if (!characters)
            RefuseSpecial(old.st_mode, name);
        // Opening asks every rule of the system for the right to write, and changes nothing.
        target = NativeFile(
            Retry([&] { return ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
        if (!target.IsOpen() || ::fstat(target.Descriptor(), &old) != 0)
            Fail(errno, name);
        if (characters) {
            if (const int error = WriteAll(target.Descriptor(), bytes))
                Fail(error, name);
            return;
        }
        RefuseSpecial(old.st_mode, name);
    }

    TemporaryFile temporary(FolderOf(path));
    const bool beside = temporary.Error() == 0;
    if (!beside) {
        const int error = temporary.Error();
        if (error == ENOENT)
            throw RunTimeError(ErrorNumber::PathNotFound, DescriptionOf(error), name);
        if (!exists || (error != EACCES && error != EPERM && error != EROFS))
            Fail(error, name);
    } else {
        if (const int error = WriteAll(temporary.Descriptor(), bytes))
            Fail(error, name);
        if (const int error = Flush(temporary.Descriptor()))
            Fail(error, name);
        const bool same = !exists || (old.st_nlink == 1 &&
                                      CopyAttributes(target.Descriptor(), old, temporary.Descriptor()));
        if (same) {
            const int error = temporary.RenameTo(path);
            if (error == 0) {
                FlushFolder(FolderOf(path));
                return;
            }
            // A sticky folder, or a file mounted by itself: it can be written, but not replaced.
            if (!exists || (error != EACCES && error != EPERM && error != EBUSY))
                Fail(error, name);
        }
    }
    // The file beside, where there is one, holds the new text until the last step has been done.
    if (beside)
        temporary.GiveName();
    // A file that cannot be read cannot be put back either: it is refused here.
    const QByteArray oldBytes = ReadWhole(OpenRegularFile(QFile::decodeName(path)), name);
    bool restored = true;
    if (const int error = OverwriteInPlace(target.Descriptor(), oldBytes, bytes, restored)) {
        if (!restored)
            throw RunTimeError(NumberOf(error),
                               DescriptionOf(error) + u" (the old contents could not be put back)"_s, name);
        Fail(error, name);
    }
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
            pause = std::min(pause * 2, std::chrono::microseconds(1000));
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

} // namespace zelvane
