// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace zelvane
{

/// The processor time that the calling thread has taken, from some moment on: what it had to wait for, and
/// what other threads and programs have taken of the machine, does not count. Only differences mean
/// something, and only between two calls in one thread. Where the system does not tell it, it is the time
/// that has passed.
std::chrono::nanoseconds ThreadTime();

} // namespace zelvane
