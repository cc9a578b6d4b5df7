// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/worker.h"

#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

using namespace zelvane;

TEST(Worker, DoesAllInOrderOnOneOtherThread)
{
    std::vector<int> done;
    std::vector<std::thread::id> threads;
    {
        Worker worker;
        for (int i = 0; i < 1000; ++i) {
            worker.Do([&, i] {
                done.push_back(i);
                threads.push_back(std::this_thread::get_id());
            });
        }
    }
    ASSERT_EQ(done.size(), 1000u);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(done[size_t(i)], i);
        EXPECT_EQ(threads[size_t(i)], threads.front());
    }
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(Worker, HandingOverDoesNotWait)
{
    std::promise<void> gate;
    bool done = false;
    Worker worker;
    worker.Do([&] { gate.get_future().wait(); });
    worker.Do([&] { done = true; });
    EXPECT_FALSE(done);
    gate.set_value();
    worker.Finish();
    EXPECT_TRUE(done);
    worker.Finish(); // nothing to wait for
}

TEST(Worker, WhatWorkHeldIsGoneWhenItIsFinished)
{
    const auto held = std::make_shared<int>(1);
    Worker worker;
    worker.Do([held] {});
    worker.Finish();
    EXPECT_EQ(held.use_count(), 1);
}
