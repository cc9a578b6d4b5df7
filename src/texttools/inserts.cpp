// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/inserts.h"

namespace zelvane
{

QString DateAndTime(const QDateTime &now, const QLocale &locale)
{
    return locale.toString(now.date(), QLocale::ShortFormat) + u' ' +
           locale.toString(now.time(), QLocale::ShortFormat);
}

} // namespace zelvane
