// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

// Whole files from one place to another. Until a transfer is complete there is nothing at the target but what
// was there before, and the source is whole; that holds for failures, for a stop and for a killed process.

/// Told how far a transfer is, in bytes. @return false to stop it
using TransferProgress = std::function<bool(qint64 done, qint64 total)>;

enum class Replacing { Refused, Allowed };

enum class TransferEnd {
    Done,
    Stopped, ///< by the progress
    Exists,  ///< the target is there, and must not be replaced; nothing was done
};

/// Copies a regular file, or the one behind a link, with its permission bits, times and attributes. The copy
/// belongs to the user. A target that is a link is replaced itself.
/// @throws RunTimeError with the system's description; also when the two are one file, and when the source
/// was written meanwhile
TransferEnd CopyFileTo(const QString &source, const QString &target, Replacing replacing,
                       const TransferProgress &progress);
/// The same, and the source goes. A link is moved itself, and leads where it led.
TransferEnd MoveFileTo(const QString &source, const QString &target, Replacing replacing,
                       const TransferProgress &progress);

/// The same to a target that is not there yet, for a file that is to come back: a link keeps its text.
TransferEnd MoveFileAsItIs(const QString &source, const QString &target, const TransferProgress &progress);

/// Removes a regular file, or a link and not what it leads to, for good. @throws RunTimeError
void RemoveFile(const QString &path);

} // namespace zelvane
