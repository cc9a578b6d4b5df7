// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/numericslider.h"

#include "platform/numbers.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qint32 FineScale = 1000;
constexpr int LeastCoarse = 4;

qint32 TickFrequency(int exponent)
{
    struct Row {
        int below;
        qint32 frequency;
    };
    constexpr Row rows[] = {{2, 100}, {4, 1000}, {5, 1}, {8, 10}, {12, 100}, {15, 1000}};
    for (const Row &row : rows) {
        if (exponent < row.below)
            return row.frequency;
    }
    return 10000;
}

} // namespace

NumericSlider SetUpNumericSlider(QStringView number, bool negative)
{
    const double value = Val(number);
    int exponent = 0;
    while (std::abs(value) >= std::ldexp(1, exponent))
        ++exponent;
    NumericSlider slider;
    slider.fine = exponent < LeastCoarse;
    const double scale = slider.fine ? FineScale : 1;
    const double end = std::ldexp(scale, exponent);
    slider.minimum = ToInteger<qint32>(-end);
    slider.maximum = negative ? ToInteger<qint32>(end) : 0;
    slider.tickFrequency = TickFrequency(exponent);
    slider.largeChange = slider.fine ? 1000 : 10;
    slider.smallChange = slider.fine ? 100 : 1;
    slider.value = ToInteger<qint32>(-value * scale);
    return slider;
}

double NumberOfSlider(bool fine, qint32 value, bool whole)
{
    const qint64 number = -qint64(value);
    if (!fine)
        return double(number);
    return whole ? double(number / FineScale) : double(number) / FineScale;
}

qint32 SnappedSliderValue(qint32 value)
{
    return value / FineScale * FineScale;
}

QString SliderStatus(const QString &original, double number)
{
    return u"Original value: "_s + original + u" - New value: "_s + NumberText(number);
}

} // namespace zelvane
