// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace zelvane
{

/// One thread that does pieces of work one after the other, so that a slow disk keeps nobody waiting. It
/// begins with the first piece; the destructor waits for the last.
class Worker
{
public:
    Worker() = default;
    ~Worker();
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;

    /// Hands over a piece of work, which must not throw. Where no thread can be had it is done at once.
    void Do(std::function<void()> work);
    /// Waits until all is done that was handed over.
    void Finish();

private:
    void Run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_works; // the first one is being done
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace zelvane
