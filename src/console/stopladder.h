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

    /// Begins, or takes the next step at once where it has begun: the user is out of patience.
    /// @return what to send
    StopSignal Press(qint64 nowMs);
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
