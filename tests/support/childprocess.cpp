// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/childprocess.h"

#include <cstdio>
#include <cstdlib>
#include <grp.h>
#include <gtest/gtest.h>
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

} // namespace

pid_t StartChild(const std::function<void()> &work)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        int code = 1;
        try {
            work();
            code = ::testing::Test::HasFailure() ? 1 : 0;
        } catch (const std::exception &error) {
            std::printf("the child process met: %s\n", error.what());
        }
        std::fflush(nullptr);
        _exit(code);
    }
    EXPECT_GT(child, 0);
    return child;
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
