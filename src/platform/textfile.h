// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"

#include <QByteArray>
#include <QString>

namespace zelvane
{

/// Reads a whole file. Refuses directories, FIFOs, devices and sockets with a clear description; never blocks
/// on them.
/// @param stamp given the state that the file was in before it was read
/// @throws RunTimeError
QByteArray ReadFileBytes(const QString &name, FileStamp *stamp = nullptr);
/// Writes a whole file so that a failure leaves the old one whole: beside the target, flushed, renamed over
/// it. Symbolic links are followed and permission bits kept; where the folder takes no second file, writes in
/// place.
/// @throws RunTimeError
void WriteFileBytes(const QString &name, const QByteArray &bytes);

/// The text of a file; empty for an empty name. @throws RunTimeError
QString ReadTextFile(const QString &name);
/// Writes text as UTF-8 and adds no line end. Does nothing for an empty name. @return true on success.
/// @throws RunTimeError
bool WriteTextFile(const QString &name, const QString &text);

} // namespace zelvane
