// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/powercut.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

namespace zelvane::test
{

namespace
{

PowerCut *Watching = nullptr;
bool DiskIsIdle = false;

QByteArray BytesOf(int descriptor)
{
    QByteArray bytes;
    char block[4096];
    ssize_t count = 0;
    while ((count = ::pread(descriptor, block, sizeof block, bytes.size())) > 0)
        bytes.append(block, count);
    return bytes;
}

} // namespace

PowerCut::PowerCut(const QString &folder) : m_folder(QFile::encodeName(folder))
{
    EXPECT_EQ(Watching, nullptr);
    Watching = this;
    for (const auto &[name, file] : Names()) {
        const int descriptor = ::open((m_folder + '/' + name).constData(), O_RDONLY | O_CLOEXEC);
        m_bytes[file] = BytesOf(descriptor);
        m_mayBe[name] = {file};
        ::close(descriptor);
    }
}

PowerCut::~PowerCut()
{
    Watching = nullptr;
}

std::map<QByteArray, std::uint64_t> PowerCut::Names() const
{
    std::map<QByteArray, std::uint64_t> names;
    DIR *folder = ::opendir(m_folder.constData());
    while (const dirent *entry = folder ? ::readdir(folder) : nullptr) {
        struct stat info = {};
        const QByteArray path = m_folder + '/' + entry->d_name;
        if (::stat(path.constData(), &info) == 0 && S_ISREG(info.st_mode))
            names[entry->d_name] = info.st_ino;
    }
    if (folder)
        ::closedir(folder);
    return names;
}

std::set<std::optional<QByteArray>> PowerCut::Left(const QByteArray &name) const
{
    std::set<std::optional<QByteArray>> left;
    const auto files = m_mayBe.find(name);
    if (files == m_mayBe.end())
        return {std::nullopt};
    for (const std::uint64_t file : files->second) {
        const auto bytes = m_bytes.find(file);
        if (file == 0)
            left.insert(std::nullopt);
        else
            left.insert(bytes == m_bytes.end() ? QByteArray() : bytes->second);
    }
    return left;
}

void PowerCut::Note()
{
    for (const auto &[name, files] : m_mayBe) {
        const auto left = Left(name);
        m_ever[name].insert(left.begin(), left.end());
    }
}

void PowerCut::Flushed(int descriptor)
{
    struct stat flushed = {}, folder = {};
    if (::fstat(descriptor, &flushed) != 0 || ::stat(m_folder.constData(), &folder) != 0)
        return;
    if (S_ISREG(flushed.st_mode)) {
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(descriptor);
        const int readable = ::open(self.constData(), O_RDONLY | O_CLOEXEC);
        m_bytes[flushed.st_ino] = BytesOf(readable);
        ::close(readable);
    } else if (flushed.st_dev == folder.st_dev && flushed.st_ino == folder.st_ino) {
        const std::map<QByteArray, std::uint64_t> names = Names();
        for (auto &[name, files] : m_mayBe) {
            const auto present = names.find(name);
            files = {present == names.end() ? 0 : present->second};
        }
        for (const auto &[name, file] : names)
            m_mayBe[name] = {file};
    }
    Note();
}

void PowerCut::Renamed(const QByteArray &from, const QByteArray &to)
{
    const qsizetype slash = to.lastIndexOf('/');
    struct stat info = {};
    if (to.first(std::max<qsizetype>(slash, 0)) != m_folder || ::stat(to.constData(), &info) != 0)
        return;
    const QByteArray name = to.sliced(slash + 1);
    ++m_replaced[name];
    // Until the folder is flushed the name may stand for the file before, or for none.
    std::set<std::uint64_t> &files = m_mayBe[name];
    if (files.empty())
        files.insert(0);
    files.insert(info.st_ino);
    m_mayBe[from.sliced(from.lastIndexOf('/') + 1)].insert(0);
    Note();
}

IdleDisk::IdleDisk()
{
    DiskIsIdle = true;
}

IdleDisk::~IdleDisk()
{
    DiskIsIdle = false;
}

} // namespace zelvane::test

// The system's calls, taken by the program that this file is linked into.

extern "C" int fsync(int descriptor)
{
    using Call = int (*)(int);
    static const Call system = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "fsync"));
    if (zelvane::test::DiskIsIdle)
        return 0;
    const int result = system(descriptor);
    const int error = errno;
    if (result == 0 && zelvane::test::Watching)
        zelvane::test::Watching->Flushed(descriptor);
    errno = error;
    return result;
}

extern "C" int rename(const char *from, const char *to) noexcept
{
    using Call = int (*)(const char *, const char *);
    static const Call system = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "rename"));
    const int result = system(from, to);
    const int error = errno;
    if (result == 0 && zelvane::test::Watching)
        zelvane::test::Watching->Renamed(from, to);
    errno = error;
    return result;
}
