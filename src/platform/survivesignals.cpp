// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/survivesignals.h"

#include <csignal>

namespace zelvane
{

namespace
{

[[maybe_unused]] void Survive(int signal)
{
    std::signal(signal, [](int) {});
}

} // namespace

void SurviveLostTerminal()
{
#ifdef SIGHUP
    Survive(SIGHUP);
#endif
#ifdef SIGPIPE
    Survive(SIGPIPE);
#endif
}

void SurviveFileSizeLimit()
{
#ifdef SIGXFSZ
    Survive(SIGXFSZ);
#endif
}

} // namespace zelvane
