// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// The numbers that the arrows beside a field step through.
struct SpinRange {
    double least = 0;
    double most = 0;
    double step = 1;
};

/// What an arrow makes of the text of a number field: the number at its beginning, 0 when there is none, one
/// step further and held in the range. @param direction 1 for up, -1 for down
/// @throws RunTimeError 6 "Overflow" for a number beyond a 64-bit float
QString SteppedNumber(const QString &text, int direction, const SpinRange &range);

} // namespace zelvane
