// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

class NativeFile;

/// All bytes from the start of a file. `name` goes into the error only. @throws RunTimeError
QByteArray ReadWhole(const NativeFile &file, const QString &name);
/// The same, read piece by piece.
/// @param goOn asked before each piece: whether to go on, with so many bytes read, at first with what the
/// file says it has
/// @return no value when it had the reading end
/// @throws RunTimeError
std::optional<QByteArray> ReadWhile(const NativeFile &file, const QString &name,
                                    const std::function<bool(qint64 bytes)> &goOn);

} // namespace zelvane
