// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/replacefile.h"

#include "platform/fileattributes.h"
#include "platform/nativecalls.h"
#include "platform/nativefile.h"
#include "platform/readfile.h"
#include "platform/runtimeerror.h"
#include "platform/temporaryfile.h"
#include "platform/unsavedcopy.h"

#include <cerrno>
#include <fcntl.h>
#include <QFileInfo>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

using namespace native;

namespace
{

constexpr mode_t OwnerOnly = 0600;
/// What the umask, or the folder's own rules, leave of this is what the user wants new files to have.
constexpr mode_t AsTheUserWants = 0666;

/// Makes a new file equal an old one in all but its bytes, its rights last. @return false when it cannot be
bool CopyAttributes(int from, const struct stat &old, int to)
{
    struct stat made = {};
    const auto names = AttributeNames(from), inherited = AttributeNames(to);
    if (::fstat(to, &made) != 0 || !names || !inherited)
        return false;
    // What the folder gives to its new files, such as rights of other users, the old file may not have.
    for (const QByteArray &name : *inherited) {
        if (!names->contains(name) && ::fremovexattr(to, name.constData()) != 0 && !IsLabel(name))
            return false;
    }
    if ((made.st_uid != old.st_uid || made.st_gid != old.st_gid) && ::fchown(to, old.st_uid, old.st_gid) != 0)
        return false;
    for (const QByteArray &name : *names) {
        if (!CopyAttribute(from, to, name) && !IsLabel(name))
            return false;
    }
    return ::fchmod(to, old.st_mode & 07777) == 0;
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

/// The file that stands under the name now, opened to be written, with what it is. Not open when there is
/// none.
NativeFile OpenTarget(const QString &name, struct stat &old)
{
    // By the name as it was given, not by where its links lead to: the system's own rules for links, such as
    // those of a folder where anyone may put one, hold for it.
    const QByteArray path = PathOf(name);
    if (::stat(path.constData(), &old) != 0) {
        if (errno != ENOENT)
            Fail(errno, name);
        return {};
    }
    if (!S_ISCHR(old.st_mode))
        RefuseSpecial(old.st_mode, name);
    // Opening asks every rule of the system for the right to write, and changes nothing.
    NativeFile target(
        Retry([&] { return ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!target.IsOpen() || ::fstat(target.Descriptor(), &old) != 0)
        Fail(errno, name);
    return target;
}

/// Writes the bytes beside the target and puts the file in its place.
/// @param path the target behind all links @param target the file that stands there, if one does
/// @return false where the target can only be written in place
bool ReplaceBeside(const QString &name, const QByteArray &path, const NativeFile &target,
                   const struct stat &old, const QByteArray &bytes)
{
    const bool exists = target.IsOpen();
    TemporaryFile temporary(FolderOf(path), exists ? OwnerOnly : AsTheUserWants);
    if (const int error = temporary.Error()) {
        if (error == ENOENT)
            throw RunTimeError(ErrorNumber::PathNotFound, DescriptionOf(error), name);
        if (!exists || (error != EACCES && error != EPERM && error != EROFS))
            Fail(error, name);
        return false;
    }
    if (const int error = WriteAll(temporary.Descriptor(), bytes))
        Fail(error, name);
    if (const int error = Flush(temporary.Descriptor()))
        Fail(error, name);
    if (exists && !CopyAttributes(target.Descriptor(), old, temporary.Descriptor()))
        return false;
    if (const int error = exists ? temporary.RenameTo(path) : temporary.Become(path)) {
        // A sticky folder, or a file mounted by itself: it can be written, but not replaced.
        if (exists && (error == EACCES || error == EPERM || error == EBUSY))
            return false;
        Fail(error, name);
    }
    FlushFolder(FolderOf(path));
    RemoveLeftTemporaries(FolderOf(path));
    return true;
}

void WriteInPlace(const QString &name, const NativeFile &target, const QByteArray &bytes)
{
    // A file that cannot be read cannot be put back either: it is refused here.
    const NativeFile readable = OpenRegularFile(name);
    if (const FileStamp stamp = StampOf(readable), opened = StampOf(target);
        stamp.device != opened.device || stamp.file != opened.file)
        throw RunTimeError(ErrorNumber::PathFileAccess, u"The file was replaced by another meanwhile"_s,
                           name);
    const QByteArray old = ReadWhole(readable, name);
    // What a kill in the middle would end is whole in another place until the new text is complete.
    UnsavedCopy kept(UnsavedCopy::Kind::Replaced);
    try {
        kept.Write({.name = QFileInfo(name).absoluteFilePath(), .replacedBy = ContentHash(bytes)}, old);
    } catch (const RunTimeError &error) {
        throw RunTimeError(error.Number(),
                           u"The old contents cannot be kept in "_s + UnsavedCopy::Folder() + u": "_s +
                               error.Description(),
                           name);
    }
    bool restored = true;
    const int error = OverwriteInPlace(target.Descriptor(), old, bytes, restored);
    if (!restored) {
        const QString path = kept.Path();
        throw RunTimeError(NumberOf(error),
                           DescriptionOf(error) +
                               u" (the old contents could not be put back; they are kept in %1)"_s.arg(path),
                           name);
    }
    kept.Remove();
    if (error != 0)
        Fail(error, name);
}

} // namespace

void RemoveLeftBeside(const QString &name)
{
    try {
        RemoveLeftTemporaries(FolderOf(PathOf(FollowLinks(name))));
    } catch (const RunTimeError &) {
        // A name that leads nowhere has no folder to clear away in.
    }
}

void ReplaceFile(const QString &name, const QByteArray &bytes)
{
    struct stat old = {};
    const NativeFile target = OpenTarget(name, old);
    if (target.IsOpen() && S_ISCHR(old.st_mode)) {
        if (const int error = WriteAll(target.Descriptor(), bytes))
            Fail(error, name);
        return;
    }
    if (target.IsOpen())
        RefuseSpecial(old.st_mode, name);

    const QByteArray path = PathOf(FollowLinks(name));
    struct stat found = {};
    const bool replaceable =
        !target.IsOpen() || (old.st_nlink == 1 && ::lstat(path.constData(), &found) == 0 &&
                             found.st_dev == old.st_dev && found.st_ino == old.st_ino);
    if (!replaceable || !ReplaceBeside(name, path, target, old, bytes))
        WriteInPlace(name, target, bytes);
}

} // namespace zelvane
