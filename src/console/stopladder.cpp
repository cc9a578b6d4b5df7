// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/stopladder.h"

namespace zelvane
{

std::optional<StopSignal> StopLadder::Press(qint64 nowMs)
{
    if (m_last && nowMs - m_sentMs < LeastMs)
        return {};
    return Step(nowMs);
}

std::optional<StopSignal> StopLadder::Due(qint64 nowMs)
{
    if (!m_last || nowMs - m_sentMs < PatienceMs)
        return {};
    return Step(nowMs);
}

StopSignal StopLadder::Step(qint64 nowMs)
{
    m_sentMs = nowMs;
    if (!m_last)
        m_last = StopSignal::Interrupt;
    else
        m_last = m_last == StopSignal::Interrupt ? StopSignal::Terminate : StopSignal::Kill;
    return *m_last;
}

} // namespace zelvane
