// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace zelvane
{

/// The moments in the life of the window at which rooms have work of their own, in their order.
enum class WindowMoment {
    Bars,    ///< start: what the bars show; then the window comes to the front
    Tables,  ///< start: what documents are read with; then the first one comes up
    CleanUp, ///< start: what earlier runs have left
    Lists,   ///< start: what has waited for the document; then the splash goes
    Closing  ///< the window closes; its layout is not written yet
};

/// What rooms do at the start and at the end. A room adds its work to a moment, the window runs each moment
/// once.
class WindowSteps
{
public:
    using Work = std::function<void()>;

    WindowSteps() = default;
    WindowSteps(const WindowSteps &) = delete;
    WindowSteps &operator=(const WindowSteps &) = delete;

    void Add(WindowMoment moment, Work work) { m_works[moment].push_back(std::move(work)); }
    /// Does the work of a moment in the order in which it was added; nothing if there is none.
    /// @throws what the work throws; the work behind it is not done
    void Run(WindowMoment moment) const
    {
        const auto works = m_works.find(moment);
        if (works == m_works.end())
            return;
        for (const Work &work : works->second)
            work();
    }

private:
    std::map<WindowMoment, std::vector<Work>> m_works;
};

} // namespace zelvane
