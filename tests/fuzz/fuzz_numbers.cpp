// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "shell/settings.h"

#include <cmath>
#include <cstdlib>
#include <optional>

using namespace zelvane;

namespace
{

/// Whether a text is a sign, digits with a point among them, and an exponent; each but the digits may lack.
bool LooksLikeNumber(const QString &text)
{
    qsizetype i = 0;
    const auto take = [&](const QString &any) {
        const bool there = i < text.size() && any.contains(text[i]);
        i += there ? 1 : 0;
        return there;
    };
    const auto digits = [&] {
        int count = 0;
        while (take(QStringLiteral("0123456789")))
            ++count;
        return count;
    };
    take(QStringLiteral("+-"));
    int count = digits();
    if (take(QStringLiteral(".")))
        count += digits();
    if (count == 0)
        return false;
    if (take(QStringLiteral("eE"))) {
        take(QStringLiteral("+-"));
        if (digits() == 0)
            return false;
    }
    return i == text.size();
}

/// The value, or no value for an overflow.
template <typename Call> std::optional<double> NumberOf(Call call)
{
    try {
        return call();
    } catch (const RunTimeError &error) {
        fuzz::Expect("overflow", error.Number() == ErrorNumber::Overflow);
        return std::nullopt;
    }
}

std::optional<double> SystemNumber(const QString &text)
{
    const double value = std::strtod(text.toLatin1().constData(), nullptr);
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace

/// Numbers in texts, beside the C library's on texts that are none but numbers.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const QString text = input.Text();
    const QString trimmed = text.trimmed();

    const bool isNumber = LooksLikeNumber(trimmed);
    const std::optional<double> whole = isNumber ? SystemNumber(trimmed) : std::nullopt;
    fuzz::Expect("whole", ParseNumber(text) == whole, text);
    fuzz::ExpectSame("numeric", IsNumeric(text), whole.has_value(), text);

    QString longest = text;
    while (!longest.isEmpty() && longest[0].isSpace())
        longest = longest.mid(1);
    while (!longest.isEmpty() && !LooksLikeNumber(longest))
        longest.chop(1);
    const std::optional<double> value = longest.isEmpty() ? 0.0 : SystemNumber(longest);
    fuzz::Expect("value", NumberOf([&] { return Val(text); }) == value, text, longest);

    if (whole) {
        const QString shown = NumberText(*whole);
        fuzz::Expect("text of a number", LooksLikeNumber(shown) && !shown.startsWith(QStringLiteral("0.")),
                     text, shown);
        if (const std::optional<double> again = NumberOf([&] { return Val(shown); }))
            fuzz::Expect("fifteen digits", std::abs(*again - *whole) <= std::abs(*whole) * 1e-14, text,
                         shown);
        const double rounded = RoundHalfEven(*whole);
        fuzz::Expect("round", std::abs(rounded - *whole) <= 0.5 && std::floor(rounded) == rounded, text);
    }
    // What the settings make of it: a value, or an error.
    try {
        ToBoolean(text);
    } catch (const RunTimeError &) {
    }
    try {
        ToColour(text);
    } catch (const RunTimeError &) {
    }
    return 0;
}
