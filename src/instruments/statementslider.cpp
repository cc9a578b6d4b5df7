// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/statementslider.h"

#include "platform/numbers.h"
#include "platform/runtimeerror.h"

#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qint32 MostTicks = 32;

/// The more a real value has to run over, the coarser its slider, which stays within 16 bits.
qint32 ScaleOf(double min, double max)
{
    const auto range = ToInteger<qint32>(std::trunc(std::fabs(max - min)));
    if (range <= 64)
        return 1000;
    if (range <= 655)
        return 100;
    if (range <= 6553)
        return 10;
    return 0;
}

/// The product; where only the digits that a double does not have keep it from a whole number, that one: 16.1
/// times 1000 is not beyond 16100.
double Scaled(double number, qint32 scale)
{
    constexpr double exactness = 4 * std::numeric_limits<double>::epsilon();
    const double product = number * scale;
    const double whole = RoundHalfEven(product);
    return std::fabs(product - whole) <= std::fabs(whole) * exactness ? whole : product;
}

double Between(double minimum, double maximum, double random)
{
    return random * (maximum - minimum) + minimum;
}

} // namespace

SliderRange RangeOf(const pClass &field)
{
    switch (field.formato) {
    case PFormat::Real: {
        const qint32 scale = ScaleOf(field.min, field.max);
        return {ToInteger<qint32>(field.min * scale), ToInteger<qint32>(field.max * scale), scale};
    }
    case PFormat::Integer:
        return {ToInteger<qint32>(field.min), ToInteger<qint32>(field.max), 0};
    case PFormat::Boolean:
    case PFormat::String:
        return {0, 1, 0};
    }
    return {};
}

qint32 TickFrequency(const SliderRange &range)
{
    const double difference = std::fabs(double(range.maximum) - range.minimum);
    auto ticks = ToInteger<qint16>(difference);
    while (ticks > MostTicks)
        ticks = ToInteger<qint16>(ticks / 10.0);
    return ticks == 0 ? 0 : ToInteger<qint32>(difference / ticks);
}

std::optional<QString> TextOfSlider(PFormat format, const SliderRange &range, qint32 value, bool whole)
{
    switch (format) {
    case PFormat::Real:
        if (range.scale == 0)
            throw RunTimeError(ErrorNumber::DivisionByZero, u"Division by zero"_s);
        return NumberText(whole ? value / range.scale : double(value) / range.scale);
    case PFormat::Integer:
        return NumberText(value);
    case PFormat::Boolean:
        return value == 0 ? u"0"_s : u"1"_s;
    case PFormat::String:
        break;
    }
    return std::nullopt;
}

std::optional<qint32> SliderOfText(PFormat format, const SliderRange &range, qint32 value, QStringView text)
{
    double number = Val(text);
    if (format == PFormat::Real)
        number = Scaled(number, range.scale);
    else if (format == PFormat::Boolean && number != 0)
        number = 1;
    if (number == value || number < range.minimum || number > range.maximum)
        return std::nullopt;
    return ToInteger<qint32>(number);
}

std::optional<qint32> SliderTarget(SliderCommand command, const SliderRange &range, double random)
{
    switch (command) {
    case SliderCommand::Zero:
        return range.minimum <= 0 || range.maximum >= 0 ? std::optional(0) : std::nullopt;
    case SliderCommand::Centre:
        return ToInteger<qint32>((double(range.maximum) - range.minimum) / 2 + range.minimum);
    case SliderCommand::Random:
        return ToInteger<qint32>(Between(range.minimum, range.maximum, random));
    }
    return std::nullopt;
}

QString RandomValue(const pClass &field, double random)
{
    return NumberText(Between(field.min, field.max, random));
}

} // namespace zelvane
