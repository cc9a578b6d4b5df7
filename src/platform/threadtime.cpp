// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/threadtime.h"

#include <ctime>

namespace zelvane
{

std::chrono::nanoseconds ThreadTime()
{
#ifdef CLOCK_THREAD_CPUTIME_ID
    timespec taken{};
    if (::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &taken) == 0)
        return std::chrono::seconds(taken.tv_sec) + std::chrono::nanoseconds(taken.tv_nsec);
#endif
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace zelvane
