// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/worker.h"

#include <system_error>
#include <utility>

namespace zelvane
{

Worker::~Worker()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void Worker::Do(std::function<void()> work)
{
    if (!m_thread.joinable()) {
        try {
            m_thread = std::thread([this] { Run(); });
        } catch (const std::system_error &) {
            work();
            return;
        }
    }
    {
        const std::lock_guard lock(m_mutex);
        m_works.push_back(std::move(work));
    }
    m_changed.notify_all();
}

void Worker::Finish()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_works.empty(); });
}

void Worker::Run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_ending || !m_works.empty(); });
        if (m_works.empty())
            return;
        // It is gone, with all that it held, before anybody who waits goes on.
        std::function<void()> work = std::move(m_works.front());
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
        m_works.pop_front();
        m_changed.notify_all();
    }
}

} // namespace zelvane
