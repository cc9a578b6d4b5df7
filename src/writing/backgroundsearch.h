// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/worker.h"
#include "writing/filesearch.h"

#include <functional>
#include <memory>
#include <vector>

namespace zelvane
{

/// A search in files on a thread of its own, one at a time.
class BackgroundSearch
{
public:
    /// @param wake called on the other thread, some times a second and at the end, when there is something to
    /// take; not again before it was taken
    explicit BackgroundSearch(std::function<void()> wake);
    /// Stops the search, and waits for the file that is being searched.
    ~BackgroundSearch();
    BackgroundSearch(const BackgroundSearch &) = delete;
    BackgroundSearch &operator=(const BackgroundSearch &) = delete;

    /// Stops the search before; what it had found and was not taken is lost.
    void Start(const FileSearch &search);
    /// The search ends soon; what it has found can be taken still.
    void Stop();

    /// What came since the last time.
    struct News {
        std::vector<FoundLine> lines = {};
        SearchCounts counts = {};
        bool ended = true;
    };
    News Take();

private:
    class Run;

    std::function<void()> m_wake;
    std::shared_ptr<Run> m_run;
    Worker m_worker; // ends first
};

} // namespace zelvane
