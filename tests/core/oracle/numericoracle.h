// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <QRegularExpression>
#include <QString>

/// Numeric editing as plain loops. Slow and obvious; nothing but tests uses them.
namespace zelvane::test::oracle
{

struct EditedText {
    QString text;
    qsizetype start = 0;
    qsizetype end = 0;
    bool overflow = false; ///< the text is as it was
    bool operator==(const EditedText &) const = default;
};

inline bool IsWholeNumber(const QString &text)
{
    static const QRegularExpression number(
        QStringLiteral("^[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)?(?![\\s\\S])"));
    return number.match(text.trimmed()).hasMatch();
}

inline double NumberAtStart(const QString &text)
{
    for (qsizetype length = text.size(); length > 0; --length) {
        if (IsWholeNumber(text.first(length)))
            return text.first(length).trimmed().toDouble();
    }
    return 0;
}

inline QString ShortNumber(double number)
{
    const QString text = QString::number(number, 'g', 15).toUpper();
    if (text == QStringLiteral("-0"))
        return QStringLiteral("0");
    if (text.startsWith(QStringLiteral("0.")))
        return text.mid(1);
    if (text.startsWith(QStringLiteral("-0.")))
        return QStringLiteral("-") + text.mid(2);
    return text;
}

/// The first loop is the one over the whole text; `mode` is 0 to 6.
inline EditedText EditNumber(EditedText edited, int mode, double random)
{
    const QString ofNumber = QStringLiteral("0123456789.-");
    if (edited.start == edited.end) {
        while (edited.end < edited.text.size() && ofNumber.contains(edited.text[edited.end]))
            edited.end += 1;
        while (edited.start > 0 && ofNumber.contains(edited.text[edited.start - 1]))
            edited.start -= 1;
    }
    const QString number = edited.text.mid(edited.start, edited.end - edited.start);
    double value = NumberAtStart(number);
    if (!std::isfinite(value)) {
        edited.overflow = true;
        return edited;
    }
    if (value == 0 && !IsWholeNumber(number))
        return edited;
    if (number.contains(QLatin1Char(',')))
        return edited;
    if (mode == 0)
        value = value + 1;
    if (mode == 1)
        value = value - 1;
    if (mode == 2)
        value = value + 0.1;
    if (mode == 3)
        value = value - 0.1;
    if (mode == 4)
        value = value + 10;
    if (mode == 5)
        value = value - 10;
    if (mode == 6)
        value = std::fabs(value * random * 1000) < 9007199254740992.0
                    ? std::nearbyint(value * random * 1000) / 1000
                    : value * random;
    if (!std::isfinite(value)) {
        edited.overflow = true;
        return edited;
    }
    const QString result = ShortNumber(value);
    edited.text = edited.text.left(edited.start) + result + edited.text.mid(edited.end);
    edited.end = edited.start + result.size();
    return edited;
}

struct SliderSetup {
    bool fine = false;
    double minimum = 0;
    double maximum = 0;
    double value = 0;
    int tickFrequency = 0;
};

inline SliderSetup SetUpSlider(double v, bool negative)
{
    int n = 0;
    while (!(std::fabs(v) < std::pow(2.0, n)))
        n += 1;
    SliderSetup setup;
    setup.fine = n < 4;
    setup.minimum = setup.fine ? -std::pow(2.0, n) * 1000 : -std::pow(2.0, n);
    setup.maximum = negative ? -setup.minimum : 0;
    setup.value = std::nearbyint(setup.fine ? -v * 1000 : -v);
    if (n < 2)
        setup.tickFrequency = 100;
    else if (n <= 3)
        setup.tickFrequency = 1000;
    else if (n == 4)
        setup.tickFrequency = 1;
    else if (n <= 7)
        setup.tickFrequency = 10;
    else if (n <= 11)
        setup.tickFrequency = 100;
    else if (n <= 14)
        setup.tickFrequency = 1000;
    else
        setup.tickFrequency = 10000;
    return setup;
}

} // namespace zelvane::test::oracle
