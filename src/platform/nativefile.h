// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <optional>
#include <QByteArray>
#include <QString>
#include <utility>

namespace zelvane
{

// The file system calls that Qt has no exact word for: refusing what is no file without waiting for it,
// replacing a file in one step, locks that end with their process. Names may hold any character but NUL. All
// failures are RunTimeErrors with the system's description.

/// An open file of the system; the destructor closes it.
class NativeFile
{
public:
    NativeFile() = default;
    explicit NativeFile(int descriptor) : m_descriptor(descriptor) {}
    NativeFile(NativeFile &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    NativeFile &operator=(NativeFile &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~NativeFile();

    bool IsOpen() const { return m_descriptor >= 0; }
    int Descriptor() const { return m_descriptor; }

private:
    int m_descriptor = -1;
};

/// Tells one state of a file from another. While a NativeFile is open on a file, no other file can come to
/// the same `device` and `file`, so a file that was replaced always shows, however fast; one written in place
/// shows by the rest.
struct FileStamp {
    quint64 device = 0;
    quint64 file = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< nanoseconds since 1970
    qint64 changed = 0;

    bool operator==(const FileStamp &) const = default;
};

/// Opens an existing file to be read. Directories, FIFOs, devices and sockets are refused, and never waited
/// for.
NativeFile OpenRegularFile(const QString &name);
/// Opens and locks a file that another process kept locked as long as it lived. Not open while that process
/// lives, or where there is no such file. Where the system has no locks, a day without a change counts as the
/// process's end.
NativeFile LockLeftFile(const QString &name);

FileStamp StampOf(const NativeFile &file);
/// No value when there is no such file. A name that cannot be looked at for another reason has an empty
/// stamp.
std::optional<FileStamp> StampOf(const QString &name);

/// Whether a file that is written from now on has another stamp for sure. Clocks of files tick slowly, on
/// some file systems every two seconds: within that time a file that is written in place may keep its stamp.
bool IsSettled(const FileStamp &stamp);

/// The name behind all symbolic links at the end of a path; the last one may not exist.
QString FollowLinks(const QString &name);

/// The right to write a file, held against all other processes that ask for it. It lies on the file beside
/// it, `name` plus ".lock", which stays. The system takes it back when the process ends, however it ends.
class FileLock
{
public:
    /// @throws RunTimeError 70 when the lock has not come within `patience`
    explicit FileLock(const QString &name, std::chrono::milliseconds patience = std::chrono::seconds(10));

private:
    NativeFile m_file;
};

/// Replaces or creates a file whose FileLock the caller holds, in one step, for readers that take no lock.
/// `name` is no link. The second file always has the same name, so that what a killed process left is used up
/// by the next. The bytes are forced to the disk: a power cut leaves the old file or the new one.
/// @return the new file, open
NativeFile ReplaceLockedFile(const QString &name, const QByteArray &bytes);
/// Makes the last renaming to a name last through a power cut. What the disk has against it is told nowhere:
/// the file under the name is whole either way.
void FlushName(const QString &name);

} // namespace zelvane
