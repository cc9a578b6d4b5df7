// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/threadtime.h"

#include <chrono>
#include <gtest/gtest.h>
#include <QtGlobal>
#include <thread>

namespace zelvane
{
namespace
{

using namespace std::chrono_literals;

/// Works for so much processor time of this thread. @return whether it came to that
bool Work(std::chrono::nanoseconds time)
{
    const auto begin = ThreadTime();
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (ThreadTime() - begin < time) {
        if (std::chrono::steady_clock::now() > end)
            return false;
    }
    return true;
}

TEST(ThreadTime, GoesOnWithTheWork)
{
    const auto begin = ThreadTime();
    const auto passed = std::chrono::steady_clock::now();
    ASSERT_TRUE(Work(20ms));
    EXPECT_GE(ThreadTime() - begin, 20ms);
    // No clock of a thread outruns the one on the wall, a tick of it apart.
    EXPECT_GE(std::chrono::steady_clock::now() - passed, 15ms);
}

#ifdef Q_OS_LINUX

TEST(ThreadTime, StandsWhileTheThreadWaits)
{
    const auto begin = ThreadTime();
    std::this_thread::sleep_for(200ms);
    EXPECT_LT(ThreadTime() - begin, 100ms);
}

TEST(ThreadTime, DoesNotCountWhatOtherThreadsDo)
{
    const auto begin = ThreadTime();
    bool worked = false;
    std::thread([&worked] { worked = Work(200ms); }).join();
    EXPECT_TRUE(worked);
    EXPECT_LT(ThreadTime() - begin, 100ms);
}

#endif

} // namespace
} // namespace zelvane
