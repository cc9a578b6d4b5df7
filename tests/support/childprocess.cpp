// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/childprocess.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelvane::test
{

namespace
{

constexpr uid_t Nobody = 65534;
constexpr int Attempts = 5;
constexpr int PatienceMs = 10000;

/// The allocator of the sanitizers does not mind a fork: where another thread was in it at that moment, the
/// child finds it locked for ever. It had better find out before its work begins.
void TakeEachAllocatorsLock()
{
    for (size_t size = 8; size <= 1 << 20; size += size / 4 + 8) {
        void *volatile piece = std::malloc(size);
        std::free(piece);
    }
}

int CodeOf(const std::function<void()> &work)
{
    int code = 1;
    try {
        work();
        code = ::testing::Test::HasFailure() ? 1 : 0;
    } catch (const std::exception &error) {
        std::printf("the child process met: %s\n", error.what());
    }
    std::fflush(nullptr);
    return code;
}

} // namespace

pid_t StartChild(const std::function<void()> &work)
{
    std::fflush(nullptr);
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        int ready[2];
        if (pipe(ready) != 0)
            break;
        const pid_t child = fork();
        if (child == 0) {
            TakeEachAllocatorsLock();
            if (write(ready[1], "", 1) != 1)
                _exit(1);
            close(ready[0]);
            close(ready[1]);
            _exit(CodeOf(work));
        }
        pollfd begun{.fd = ready[0], .events = POLLIN, .revents = 0};
        const bool alive = child > 0 && poll(&begun, 1, PatienceMs) == 1;
        close(ready[0]);
        close(ready[1]);
        if (alive)
            return child;
        if (child <= 0)
            break;
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    ADD_FAILURE() << "no child process begins";
    return -1;
}

bool ChildSucceeded(pid_t child)
{
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool AsOrdinaryUser(const QString &folder, const std::function<void()> &work)
{
    const bool root = geteuid() == 0;
    if (root) {
        const auto give = [](const QString &path) {
            EXPECT_EQ(lchown(QFile::encodeName(path).constData(), Nobody, Nobody), 0);
        };
        give(folder);
        QDirIterator walk(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (walk.hasNext())
            give(walk.next());
    }
    return ChildSucceeded(StartChild([&] {
        if (root) {
            ASSERT_EQ(setgroups(0, nullptr), 0);
            ASSERT_EQ(setgid(Nobody), 0);
            ASSERT_EQ(setuid(Nobody), 0);
        }
        work();
    }));
}

bool WithFileSizeLimit(qint64 bytes, const std::function<void()> &work)
{
    return ChildSucceeded(StartChild([&] {
        const rlimit limit = {rlim_t(bytes), rlim_t(bytes)};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        work();
    }));
}

QStringList NamesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

} // namespace zelvane::test
