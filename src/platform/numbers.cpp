// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/numbers.h"

#include "platform/runtimeerror.h"

#include <cmath>
#include <cstdlib>
#include <QByteArray>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

[[noreturn]] void Overflow()
{
    throw RunTimeError(ErrorNumber::Overflow, u"Overflow"_s);
}

qsizetype SkipDigits(QStringView text, qsizetype at)
{
    while (at < text.size() && IsDigit(text[at]))
        ++at;
    return at;
}

/// The length of the longest number that the text begins with, 0 when it begins with none.
qsizetype NumberLength(QStringView text)
{
    qsizetype at = 0;
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-'))
        ++at;
    const qsizetype whole = at;
    at = SkipDigits(text, at);
    qsizetype digits = at - whole;
    if (at < text.size() && text[at] == u'.') {
        const qsizetype fraction = SkipDigits(text, at + 1);
        digits += fraction - at - 1;
        at = fraction;
    }
    if (digits == 0)
        return 0;
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        qsizetype exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == u'+' || text[exponent] == u'-'))
            ++exponent;
        if (const qsizetype end = SkipDigits(text, exponent); end > exponent)
            at = end;
    }
    return at;
}

/// The value of a text that NumberLength took whole; infinite when it is too large.
double Value(QStringView number)
{
    bool ok = false;
    const double value = number.toDouble(&ok);
    // Too small for a float: what is left of it is 0.
    if (!ok && value == 0)
        return 0;
    return ok ? value : HUGE_VAL;
}

/// A number of thousandths, without zeros at the ends of what stands behind the point.
QString DecimalText(qint64 thousandths)
{
    constexpr qint64 one = 1000;
    if (thousandths % one == 0)
        return QString::number(thousandths / one);
    QString text;
    text.reserve(20);
    if (thousandths < 0)
        text += u'-';
    const qint64 size = std::abs(thousandths);
    if (size >= one)
        text += QString::number(size / one);
    text += u'.';
    qint64 rest = size % one;
    for (qint64 place = one / 10; rest != 0; place /= 10) {
        text += QChar(char16_t(u'0' + rest / place));
        rest %= place;
    }
    return text;
}

} // namespace

std::optional<double> ParseNumber(QStringView text)
{
    const QStringView number = text.trimmed();
    if (number.isEmpty() || NumberLength(number) != number.size())
        return std::nullopt;
    const double value = Value(number);
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

bool IsNumeric(QStringView text)
{
    return ParseNumber(text).has_value();
}

double ToNumber(QStringView text)
{
    const QStringView number = text.trimmed();
    if (number.isEmpty() || NumberLength(number) != number.size())
        throw RunTimeError(ErrorNumber::TypeMismatch, u"Type mismatch"_s);
    const double value = Value(number);
    if (!std::isfinite(value))
        Overflow();
    return value;
}

double Val(QStringView text)
{
    qsizetype start = 0;
    while (start < text.size() && text[start].isSpace())
        ++start;
    const QStringView rest = text.sliced(start);
    const qsizetype length = NumberLength(rest);
    if (length == 0)
        return 0;
    const double value = Value(rest.first(length));
    if (!std::isfinite(value))
        Overflow();
    return value;
}

QString NumberText(double number)
{
    if (!std::isfinite(number))
        Overflow();
    // What people write: whole numbers, and 0, also the negative one, and up to three decimals. Fifteen
    // digits of the float nearest to such a number are the number.
    constexpr double exact = 1e15;
    constexpr double decimals = 1000;
    const double thousandths = number * decimals;
    if (std::fabs(thousandths) < exact && std::trunc(thousandths) == thousandths &&
        thousandths / decimals == number)
        return DecimalText(qint64(thousandths));
    QString text = QString::number(number, 'g', 15).toUpper();
    if (text.startsWith(u"0."))
        text.remove(0, 1);
    else if (text.startsWith(u"-0."))
        text.remove(1, 1);
    return text;
}

double RoundHalfEven(double number)
{
    const double below = std::floor(number);
    const double rest = number - below;
    if (rest < 0.5 || (rest == 0.5 && std::fmod(below, 2) == 0))
        return below;
    return below + 1;
}

qint64 RoundInRange(double number, qint64 lowest, qint64 highest)
{
    const double rounded = RoundHalfEven(number);
    if (!(rounded >= double(lowest) && rounded <= double(highest)))
        Overflow();
    return qint64(rounded);
}

} // namespace zelvane
