// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/temporaryfile.h"

#include "platform/nativecalls.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <QByteArrayList>
#include <QFile>
#include <QRandomGenerator>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zelvane
{

using namespace native;

namespace
{

constexpr char Prefix[] = "/.zelvane-";
constexpr char Letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr int LetterCount = 8;

/// Whether a file that was made under a name is this process's: nobody who clears away left files has taken
/// it in the moment before it was locked.
bool Claim(const NativeFile &file)
{
    struct stat info = {};
    if (::flock(file.Descriptor(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    return ::fstat(file.Descriptor(), &info) == 0 && info.st_nlink > 0;
}

/// Whether a name in a folder is one that FindName gives.
bool IsTemporaryName(const QByteArray &name)
{
    const qsizetype prefix = qsizetype(sizeof Prefix) - 2; // without the separator
    return name.size() == prefix + LetterCount && name.startsWith(Prefix + 1) &&
           std::all_of(name.begin() + prefix, name.end(),
                       [](char letter) { return letter != 0 && std::strchr(Letters, letter); });
}

} // namespace

void RemoveLeftTemporaries(const QByteArray &folder)
{
    DIR *listing = ::opendir(folder.constData());
    if (!listing)
        return;
    QByteArrayList left;
    while (const dirent *entry = ::readdir(listing)) {
        if (IsTemporaryName(entry->d_name))
            left.append(folder + '/' + entry->d_name);
    }
    ::closedir(listing);
    for (const QByteArray &path : left) {
        if (const NativeFile file = LockLeftFile(QFile::decodeName(path)); file.IsOpen())
            ::unlink(path.constData());
    }
}

TemporaryFile::TemporaryFile(const QByteArray &folder, mode_t mode) : m_folder(folder)
{
    constexpr int flags = O_RDWR | O_CLOEXEC;
    if (::access("/proc/self/fd", X_OK) == 0)
        m_file = NativeFile(Retry([&] { return ::open(folder.constData(), O_TMPFILE | flags, mode); }));
    if (m_file.IsOpen()) {
        ::flock(m_file.Descriptor(), LOCK_EX | LOCK_NB);
        return;
    }
    m_error = FindName([&](const char *path) {
        m_file = NativeFile(Retry([&] { return ::open(path, O_CREAT | O_EXCL | O_NOFOLLOW | flags, mode); }));
        if (m_file.IsOpen() && !Claim(m_file)) {
            m_file = {};
            errno = EEXIST;
        }
        return m_file.IsOpen();
    });
}

TemporaryFile::~TemporaryFile()
{
    if (!m_path.isEmpty())
        ::unlink(m_path.constData());
}

int TemporaryFile::GiveName()
{
    if (!m_path.isEmpty())
        return 0;
    return FindName([&](const char *path) { return Link(path); });
}

/// Gives the file without a name this one. @return false with errno, EEXIST when something has the name
bool TemporaryFile::Link(const char *path)
{
    const QByteArray self = "/proc/self/fd/" + QByteArray::number(m_file.Descriptor());
    return ::linkat(AT_FDCWD, self.constData(), AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0;
}

int TemporaryFile::RenameTo(const QByteArray &target)
{
    if (const int error = GiveName())
        return error;
    if (::rename(m_path.constData(), target.constData()) != 0)
        return errno;
    m_path.clear();
    return 0;
}

int TemporaryFile::Become(const QByteArray &target)
{
    return m_path.isEmpty() && Link(target.constData()) ? 0 : RenameTo(target);
}

int TemporaryFile::BecomeNew(const QByteArray &target)
{
    if (m_path.isEmpty()) {
        if (Link(target.constData()))
            return 0;
        if (errno == EEXIST)
            return errno;
        if (const int error = GiveName())
            return error;
    }
    const int error = RenameNew(m_path, target);
    if (error == 0)
        m_path.clear();
    return error;
}

/// Tries names until `make` has one. They are short: the target's name may already be as long as names
/// can be.
template <typename Make> int TemporaryFile::FindName(Make make)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        QByteArray path = m_folder + Prefix;
        for (int i = 0; i < LetterCount; ++i)
            path += Letters[QRandomGenerator::global()->bounded(int(sizeof Letters) - 1)];
        if (make(path.constData())) {
            m_path = path;
            return 0;
        }
        if (errno != EEXIST)
            return errno;
    }
    return EEXIST;
}

} // namespace zelvane
