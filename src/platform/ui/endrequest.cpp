// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/endrequest.h"

#include <QSocketNotifier>
#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#endif

namespace zelvane
{

#ifdef Q_OS_UNIX

namespace
{

constexpr std::array Signals = {SIGTERM, SIGINT};

// A signal handler reaches nothing but what is global.
int s_pipe[2] = {-1, -1};
struct sigaction s_before[Signals.size()];

void Write(int)
{
    const int number = errno;
    const char byte = 0;
    // A full pipe holds requests enough.
    [[maybe_unused]] const ssize_t written = ::write(s_pipe[1], &byte, 1);
    errno = number;
}

} // namespace

EndRequest::EndRequest(QObject *parent) : QObject(parent)
{
    if (::pipe(s_pipe) != 0)
        return;
    for (const int end : s_pipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    m_notifier = new QSocketNotifier(s_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &EndRequest::Read);
    struct sigaction action = {};
    action.sa_handler = Write;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < Signals.size(); ++i)
        ::sigaction(Signals[i], &action, &s_before[i]);
}

EndRequest::~EndRequest()
{
    if (!m_notifier)
        return;
    for (size_t i = 0; i < Signals.size(); ++i)
        ::sigaction(Signals[i], &s_before[i], nullptr);
    delete m_notifier;
    for (int &end : s_pipe) {
        ::close(end);
        end = -1;
    }
}

bool EndRequest::IsPending() const
{
    pollfd pipe = {s_pipe[0], POLLIN, 0};
    return m_notifier && ::poll(&pipe, 1, 0) > 0;
}

void EndRequest::Read()
{
    std::array<char, 64> bytes;
    while (::read(s_pipe[0], bytes.data(), bytes.size()) > 0) {
    }
    Q_EMIT Received();
}

#else

EndRequest::EndRequest(QObject *parent) : QObject(parent) {}
EndRequest::~EndRequest() = default;
bool EndRequest::IsPending() const
{
    return false;
}
void EndRequest::Read() {}

#endif

} // namespace zelvane
