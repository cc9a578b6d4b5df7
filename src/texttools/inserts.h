// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace zelvane
{

/// Date, a blank and time, in the short formats of the desktop.
QString DateAndTime(const QDateTime &now, const QLocale &locale = QLocale::system());

} // namespace zelvane
