// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <concepts>
#include <limits>
#include <optional>
#include <QChar>
#include <QString>
#include <QStringView>

namespace zelvane
{

// Numbers in texts and files, always in the C locale: the point is the decimal mark, and nothing groups the
// digits.

/// Whether a character is an ASCII digit.
constexpr bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// The number that a whole text is, white space around it apart: a sign, digits, a point, an exponent. No
/// value for any other text and for a number that a 64-bit float cannot hold.
std::optional<double> ParseNumber(QStringView text);
/// Whether a text as a whole is a number.
bool IsNumeric(QStringView text);
/// The number that a whole text is. @throws RunTimeError 13 "Type mismatch", or 6 "Overflow"
double ToNumber(QStringView text);
/// The number that the longest numeric beginning of a text is, white space before it apart; 0 when there is
/// none.
/// @throws RunTimeError 6 "Overflow"
double Val(QStringView text);

/// A number with up to 15 significant digits and no zero before the point: "0", ".5", "-.5", "200", "1E+20".
/// @throws RunTimeError 6 "Overflow" for what is no finite number
QString NumberText(double number);

/// The nearest whole number; a half goes to the even neighbour, so that 0.5 is 0 and 1.5 is 2.
double RoundHalfEven(double number);

/// @throws RunTimeError 6 "Overflow" unless `lowest` <= RoundHalfEven(number) <= `highest`
qint64 RoundInRange(double number, qint64 lowest, qint64 highest);

/// The nearest integer of a type of at most 32 bits, by RoundHalfEven. @throws RunTimeError 6 "Overflow"
template <std::integral Integer> Integer ToInteger(double number)
{
    static_assert(sizeof(Integer) <= 4);
    return Integer(
        RoundInRange(number, std::numeric_limits<Integer>::min(), std::numeric_limits<Integer>::max()));
}

} // namespace zelvane
