// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/inserts.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

TEST(Inserts, DateAndTimeAreShort)
{
    const QDateTime now(QDate(2001, 3, 7), QTime(14, 5, 59));
    EXPECT_EQ(DateAndTime(now, QLocale(QLocale::German, QLocale::Germany)), u"07.03.01 14:05"_s);
    EXPECT_EQ(DateAndTime(now, QLocale::c()), u"7 Mar 2001 14:05:59"_s);
}

} // namespace
