// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace zelvane
{

/// UTF-8 to text; a byte order mark is a character like any other.
QString FromUtf8(QByteArrayView bytes);

/// Text to UTF-8, with every line end one LF. Half a pair becomes a question mark.
QByteArray ToUtf8(const QString &text);

} // namespace zelvane
