// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/filetransfer.h"

#include "platform/fileattributes.h"
#include "platform/nativecalls.h"
#include "platform/nativefile.h"
#include "platform/runtimeerror.h"
#include "platform/temporaryfile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

using namespace native;

namespace
{

constexpr qsizetype ChunkSize = 1024 * 1024;
/// So much is forced to the disk in one go, so that the wait for it is short each time.
constexpr qint64 FlushEvery = 32 * ChunkSize;
constexpr mode_t OwnerOnly = 0600;

enum class Owner { Taken, Kept };
enum class MovedLink { LeadsWhereItLed, SaysTheSame };

bool SameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool SameState(const struct stat &one, const struct stat &other)
{
    return SameFile(one, other) && one.st_size == other.st_size &&
           one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

/// Whether there is something at the target. @throws RunTimeError for what no file can take the place of
bool LookAtTarget(const QByteArray &source, const QByteArray &path, const QString &target)
{
    struct stat from = {}, to = {};
    if (::stat(path.constData(), &to) == 0) {
        if (::stat(source.constData(), &from) == 0 && SameFile(from, to))
            throw RunTimeError(ErrorNumber::PathFileAccess, u"They are one and the same file"_s, target);
        RefuseSpecial(to.st_mode, target);
        return true;
    }
    return ::lstat(path.constData(), &to) == 0;
}

[[noreturn]] void FailForTarget(int error, const QString &target)
{
    if (error == ENOENT)
        throw RunTimeError(ErrorNumber::PathNotFound, u"The target folder does not exist"_s, target);
    Fail(error, target);
}

/// A full disk shows here, before the long work, on all file systems that can tell beforehand.
void Reserve(int descriptor, qint64 size, const QString &target)
{
    const FileSizeSignalGuard guard;
    if (size > 0 && Retry([&] { return ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, size); }) != 0 &&
        (errno == ENOSPC || errno == EDQUOT || errno == EFBIG))
        Fail(errno, target);
}

[[noreturn]] void FailForWritten(const QString &source)
{
    throw RunTimeError(ErrorNumber::PathFileAccess, u"Another program has written the file meanwhile"_s,
                       source);
}

/// @return false when it was stopped
bool CopyBytes(const NativeFile &from, const struct stat &begun, const QString &source, int to,
               const QString &target, const TransferProgress &progress)
{
    Reserve(to, begun.st_size, target);
    const auto flush = [&] {
        if (const int error = Flush(to))
            Fail(error, target);
    };
    QByteArray buffer(ChunkSize, Qt::Uninitialized);
    qint64 done = 0, flushed = 0;
    for (;;) {
        if (!progress(done, begun.st_size))
            return false;
        const ssize_t count =
            Retry([&] { return ::read(from.Descriptor(), buffer.data(), size_t(buffer.size())); });
        if (count < 0)
            Fail(errno, source);
        if (count == 0)
            break;
        if (const int error = WriteAll(to, QByteArray::fromRawData(buffer.constData(), count)))
            Fail(error, target);
        done += count;
        if (done - flushed >= FlushEvery) {
            flush();
            flushed = done;
        }
    }
    flush();
    struct stat ended = {};
    if (::fstat(from.Descriptor(), &ended) != 0 || !SameState(begun, ended))
        FailForWritten(source);
    // Many programs save by putting a new file in the place of the old one, which stands open here.
    struct stat named = {};
    if (::stat(PathOf(source).constData(), &named) == 0 && !SameState(begun, named))
        FailForWritten(source);
    return true;
}

/// What the target's file system cannot hold is left out: no reason to refuse the bytes.
void GiveAttributes(int from, const struct stat &old, int to, Owner owner)
{
    bool owned = old.st_uid == ::geteuid() && old.st_gid == ::getegid();
    if (!owned && owner == Owner::Kept)
        owned = ::fchown(to, old.st_uid, old.st_gid) == 0;
    if (const auto names = AttributeNames(from)) {
        for (const QByteArray &name : *names) {
            if (!IsLabel(name))
                CopyAttribute(from, to, name);
        }
    }
    // After the attributes, which a file without write permission does not take. A program that acts with its
    // owner's rights must not get another owner's.
    std::ignore = ::fchmod(to, old.st_mode & (owned ? 07777 : 0777));
    const timespec times[] = {old.st_atim, old.st_mtim};
    std::ignore = ::futimens(to, times);
}

/// Copies the file that stands open as `from`.
TransferEnd CopyOpen(const NativeFile &from, const struct stat &info, const QString &source,
                     const QString &target, Replacing replacing, Owner owner,
                     const TransferProgress &progress)
{
    const QByteArray path = PathOf(target);
    const QByteArray folder = FolderOf(path);
    TemporaryFile temporary(folder, OwnerOnly);
    if (const int error = temporary.Error())
        FailForTarget(error, target);
    if (!CopyBytes(from, info, source, temporary.Descriptor(), target, progress))
        return TransferEnd::Stopped;
    GiveAttributes(from.Descriptor(), info, temporary.Descriptor(), owner);
    if (const int error = Flush(temporary.Descriptor()))
        Fail(error, target);
    const int error = replacing == Replacing::Allowed ? temporary.RenameTo(path) : temporary.BecomeNew(path);
    if (error == EEXIST)
        return TransferEnd::Exists;
    if (error != 0)
        Fail(error, target);
    FlushFolder(folder);
    // Of transfers that were killed: they can be as large as the files.
    RemoveLeftTemporaries(folder);
    return TransferEnd::Done;
}

struct stat StatusOf(const NativeFile &file, const QString &name)
{
    struct stat info = {};
    if (::fstat(file.Descriptor(), &info) != 0)
        Fail(errno, name);
    return info;
}

/// What a link says.
QByteArray TextOf(const QByteArray &link, const QString &name)
{
    QByteArray text(64 * 1024, Qt::Uninitialized);
    const ssize_t length = ::readlink(link.constData(), text.data(), size_t(text.size()));
    if (length < 0)
        Fail(errno, name);
    text.truncate(length);
    return text;
}

/// What a link of one folder has to say in another one to lead where it led.
QByteArray LinkText(const QByteArray &text, const QByteArray &folder, const QByteArray &newFolder)
{
    struct stat here = {}, there = {};
    if (text.startsWith('/') || (::stat(folder.constData(), &here) == 0 &&
                                 ::stat(newFolder.constData(), &there) == 0 && SameFile(here, there)))
        return text;
    return QFile::encodeName(QFileInfo(QFile::decodeName(folder)).canonicalFilePath()) + '/' + text;
}

/// Makes a link anew at the target. @return 0 or the error
int PutLink(const QByteArray &text, const QByteArray &path, Replacing replacing)
{
    if (replacing == Replacing::Refused)
        return ::symlink(text.constData(), path.constData()) == 0 ? 0 : errno;
    const QByteArray beside =
        FolderOf(path) + "/.zelvane-link-" + QByteArray::number(QRandomGenerator::global()->generate64(), 36);
    if (::symlink(text.constData(), beside.constData()) != 0)
        return errno;
    if (::rename(beside.constData(), path.constData()) == 0)
        return 0;
    const int error = errno;
    ::unlink(beside.constData());
    return error;
}

/// Takes the source away behind its complete copy, but never what another program has put in its place. A
/// target that was not there before goes again only while the source is seen to stand: nothing is ever the
/// last copy.
void RemoveMoved(const QByteArray &source, const struct stat &copied, const QByteArray &path, bool replaced,
                 const QString &name)
{
    struct stat now = {};
    const auto stands = [&] { return ::lstat(source.constData(), &now) == 0; };
    if (stands() && !SameState(copied, now))
        FailForWritten(name);
    if (::unlink(source.constData()) == 0 || errno == ENOENT)
        return;
    const int error = errno;
    const bool takeBack = !replaced && stands() && SameState(copied, now);
    if (takeBack)
        ::unlink(path.constData());
    throw RunTimeError(
        NumberOf(error),
        DescriptionOf(error) + (takeBack ? u""_s : u" (it was copied, and the original stays)"_s), name);
}

/// To another file system: a copy, and then the source goes.
TransferEnd MoveAcross(const QString &source, const QString &target, Replacing replacing, bool replaced,
                       const TransferProgress &progress)
{
    const QByteArray old = PathOf(source);
    // Whoever may not take the source away is told before the long work.
    if (::faccessat(AT_FDCWD, FolderOf(old).constData(), W_OK | X_OK, AT_EACCESS) != 0)
        Fail(errno, source);
    const NativeFile from = OpenRegularFile(source);
    const struct stat copied = StatusOf(from, source);
    const TransferEnd end = CopyOpen(from, copied, source, target, replacing, Owner::Kept, progress);
    if (end != TransferEnd::Done)
        return end;
    RemoveMoved(old, copied, PathOf(target), replaced, source);
    FlushFolder(FolderOf(old));
    return TransferEnd::Done;
}

/// @return 0 or the error, EEXIST when something has the name and may not be replaced
int RenameAs(const QByteArray &from, const QByteArray &to, Replacing replacing)
{
    if (replacing == Replacing::Refused)
        return RenameNew(from, to);
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

TransferEnd Move(const QString &source, const QString &target, Replacing replacing,
                 const TransferProgress &progress, MovedLink moved)
{
    const QByteArray old = PathOf(source), path = PathOf(target);
    struct stat info = {};
    if (::lstat(old.constData(), &info) != 0)
        Fail(errno, source);
    const bool isLink = S_ISLNK(info.st_mode);
    if (!isLink)
        RefuseSpecial(info.st_mode, source);
    const bool replaced = LookAtTarget(old, path, target);
    if (replaced && replacing == Replacing::Refused)
        return TransferEnd::Exists;

    const QByteArray folder = FolderOf(path);
    const auto makeAnew = [&](const QByteArray &text) {
        if (const int error = PutLink(text, path, replacing); error == EEXIST)
            return TransferEnd::Exists;
        else if (error != 0)
            FailForTarget(error, target);
        FlushFolder(folder);
        RemoveMoved(old, info, path, replaced, source);
        FlushFolder(FolderOf(old));
        return TransferEnd::Done;
    };
    const QByteArray said = isLink ? TextOf(old, source) : QByteArray();
    const QByteArray text =
        isLink && moved == MovedLink::LeadsWhereItLed ? LinkText(said, FolderOf(old), folder) : said;
    if (text != said)
        return makeAnew(text);

    const int error = RenameAs(old, path, replacing);
    if (error == 0) {
        FlushFolder(folder);
        FlushFolder(FolderOf(old));
        return TransferEnd::Done;
    }
    if (error == EEXIST)
        return TransferEnd::Exists;
    if (error != EXDEV)
        FailForTarget(error, target);
    return isLink ? makeAnew(text) : MoveAcross(source, target, replacing, replaced, progress);
}

} // namespace

TransferEnd CopyFileTo(const QString &source, const QString &target, Replacing replacing,
                       const TransferProgress &progress)
{
    const NativeFile from = OpenRegularFile(source);
    const struct stat info = StatusOf(from, source);
    if (LookAtTarget(PathOf(source), PathOf(target), target) && replacing == Replacing::Refused)
        return TransferEnd::Exists;
    return CopyOpen(from, info, source, target, replacing, Owner::Taken, progress);
}

TransferEnd MoveFileTo(const QString &source, const QString &target, Replacing replacing,
                       const TransferProgress &progress)
{
    return Move(source, target, replacing, progress, MovedLink::LeadsWhereItLed);
}

TransferEnd MoveFileAsItIs(const QString &source, const QString &target, const TransferProgress &progress)
{
    return Move(source, target, Replacing::Refused, progress, MovedLink::SaysTheSame);
}

void RemoveFile(const QString &path)
{
    const QByteArray name = PathOf(path);
    struct stat info = {};
    if (::lstat(name.constData(), &info) != 0)
        Fail(errno, path);
    if (!S_ISLNK(info.st_mode))
        RefuseSpecial(info.st_mode, path);
    if (::unlink(name.constData()) != 0)
        Fail(errno, path);
}

} // namespace zelvane
