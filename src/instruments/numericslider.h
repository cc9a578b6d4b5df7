// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

/// How the slider of a number is set up. Its values grow downward, so they are the number's negative; in the
/// fine mode, for small numbers, thousandths of it.
struct NumericSlider {
    bool fine = true;
    qint32 minimum = 0; ///< the upper end
    qint32 maximum = 0;
    qint32 tickFrequency = 0;
    qint32 largeChange = 0;
    qint32 smallChange = 0;
    qint32 value = 0;
};

/// The slider of a number, which is the longest numeric beginning of the text.
/// @param negative whether it also covers numbers below 0
/// @throws RunTimeError 6 "Overflow" for a number beyond 32 bits
NumericSlider SetUpNumericSlider(QStringView number, bool negative);

/// The number that a value of the slider stands for. @param whole without what is behind the point
double NumberOfSlider(bool fine, qint32 value, bool whole);
/// A value of the fine mode without what the number has behind the point.
qint32 SnappedSliderValue(qint32 value);

/// What the status line tells while the slider moves.
QString SliderStatus(const QString &original, double number);

} // namespace zelvane
