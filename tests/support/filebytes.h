// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace zelvane::test
{

/// What stands in a file, read by other means than the program's; "(none)" for one that cannot be read.
inline QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

} // namespace zelvane::test
