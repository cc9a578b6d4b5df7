// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>
#include <sys/types.h>

namespace zelvane::test
{

/// Starts a process that runs `work` and ends; its failed expectations make its end a failure.
pid_t StartChild(const std::function<void()> &work);
/// Waits for a child. @return true when all its expectations held
bool ChildSucceeded(pid_t child);

/// Runs `work` in a process that permissions bind: as another user where the tests run as root. `folder` and
/// all that lies in it are given to that user first.
bool AsOrdinaryUser(const QString &folder, const std::function<void()> &work);

/// Runs `work` in a process that cannot write a file beyond `bytes`. The signal of the system is left as it
/// is by default: it ends the process.
bool WithFileSizeLimit(qint64 bytes, const std::function<void()> &work);

/// The names in a folder, hidden ones too, sorted.
QStringList NamesIn(const QString &folder);

} // namespace zelvane::test
