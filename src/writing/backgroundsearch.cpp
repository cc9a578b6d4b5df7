// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/backgroundsearch.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <utility>

namespace zelvane
{

namespace
{

/// Between two wakings.
constexpr auto Pause = std::chrono::milliseconds(50);

} // namespace

/// One search, shared by both threads.
class BackgroundSearch::Run : public FileSearchListener
{
public:
    explicit Run(std::function<void()> wake) : m_wake(std::move(wake)) {}

    void Search(const FileSearch &search)
    {
        const SearchCounts counts = SearchFiles(search, *this);
        {
            const std::lock_guard lock(m_mutex);
            m_news.counts = counts;
            m_news.ended = true;
        }
        Wake();
    }

    void Stop() { m_stopped = true; }
    /// Nobody listens any more.
    void Leave()
    {
        const std::lock_guard lock(m_mutex);
        m_wake = nullptr;
        m_stopped = true;
    }

    News Take()
    {
        const std::lock_guard lock(m_mutex);
        m_woken = false;
        News news = std::move(m_news);
        m_news = {.counts = news.counts, .ended = news.ended};
        return news;
    }

    bool Stopped() override { return m_stopped; }
    void Found(FoundLine line) override
    {
        {
            const std::lock_guard lock(m_mutex);
            m_news.lines.push_back(std::move(line));
        }
        WakeInTime();
    }
    void Counted(const SearchCounts &counts) override
    {
        {
            const std::lock_guard lock(m_mutex);
            m_news.counts = counts;
        }
        WakeInTime();
    }

private:
    void WakeInTime()
    {
        const auto now = std::chrono::steady_clock::now();
        if (now - m_last < Pause)
            return;
        m_last = now;
        Wake();
    }
    void Wake()
    {
        const std::lock_guard lock(m_mutex);
        if (m_woken || !m_wake)
            return;
        m_woken = true;
        m_wake();
    }

    std::function<void()> m_wake;
    std::atomic<bool> m_stopped = false;
    std::mutex m_mutex; ///< what stands below, and m_wake
    News m_news{.ended = false};
    bool m_woken = false;
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};

BackgroundSearch::BackgroundSearch(std::function<void()> wake) : m_wake(std::move(wake)) {}

BackgroundSearch::~BackgroundSearch()
{
    if (m_run)
        m_run->Leave();
}

void BackgroundSearch::Start(const FileSearch &search)
{
    if (m_run)
        m_run->Leave();
    m_run = std::make_shared<Run>(m_wake);
    m_worker.Do([run = m_run, search] { run->Search(search); });
}

void BackgroundSearch::Stop()
{
    if (m_run)
        m_run->Stop();
}

BackgroundSearch::News BackgroundSearch::Take()
{
    return m_run ? m_run->Take() : News();
}

} // namespace zelvane
