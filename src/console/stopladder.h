// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/terminalprocess.h"

#include <optional>
#include <QtGlobal>

namespace zelvane
{

/// The steps by which a program is stopped: the gentle ones first, so that it closes its files.
class StopLadder
{
public:
    /// How long a program has after a signal before the next one comes.
    static constexpr qint64 PatienceMs = 4000;

    /// How long a program has at least, however often the user presses: a signal on the heels of another cuts
    /// off what the first one made the program do.
    static constexpr qint64 LeastMs = 1000;

    /// Begins, or takes the next step before its time where it has begun: the user is out of patience.
    /// @param nowMs of any clock that only goes forward
    /// @return what to send; nothing where the last signal is younger than LeastMs
    std::optional<StopSignal> Press(qint64 nowMs);
    /// To be asked several times a second while anything runs. @return what to send now, if anything
    std::optional<StopSignal> Due(qint64 nowMs);

    bool HasBegun() const { return m_last.has_value(); }
    std::optional<StopSignal> Last() const { return m_last; }

private:
    StopSignal Step(qint64 nowMs);

    std::optional<StopSignal> m_last;
    qint64 m_sentMs = 0;
};

} // namespace zelvane
