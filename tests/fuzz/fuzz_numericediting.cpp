// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/numericoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "fuzz/fuzzstart.h"
#include "instruments/numericediting.h"
#include "instruments/numericslider.h"
#include "platform/runtimeerror.h"
#include "shell/settings.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <QString>

using namespace zelvane;

namespace
{

/// No value where the number is beyond its range.
std::optional<NumericSlider> Slider(const QString &number, bool negative)
{
    try {
        return SetUpNumericSlider(number, negative);
    } catch (const RunTimeError &) {
        return std::nullopt;
    }
}

} // namespace

/// A number of the text changed by a key, and its slider, beside their loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static SettingsStore settings(fuzz::WorkFolder() + QStringLiteral("/settings"));
    fuzz::Input input(data, size);
    const int mode = input.Number(0, 6);
    const double random = input.Number(0, 999) / 1000.0;
    const bool negative = input.Bit(), selects = input.Bit();
    const quint8 one = input.Byte(), other = input.Byte();
    test::oracle::EditedText before{fuzz::WithoutHalves(input.Text())};
    before.start = fuzz::Place(one, before.text.size());
    before.end = selects ? fuzz::Place(other, before.text.size()) : before.start;
    if (before.start > before.end)
        std::swap(before.start, before.end);

    fuzz::Editor editor(settings);
    editor.text.SetText(before.text);
    before.text = editor.text.text; // its line ends
    before.start = std::min(before.start, before.text.size());
    before.end = std::min(before.end, before.text.size());
    editor.text.SetSelection(before.start, before.end);
    bool overflow = false;
    try {
        NumericEditing(editor.context, NumericMode(mode), random);
    } catch (const RunTimeError &) {
        overflow = true;
    }
    const test::oracle::EditedText after = test::oracle::EditNumber(before, mode, random);
    fuzz::ExpectSame("overflow", overflow, after.overflow, before.text, before.start, before.end, mode);
    fuzz::ExpectSame("text", editor.text.text, after.text, before.text, before.start, before.end, mode);
    fuzz::ExpectSame("start", editor.text.Selection().start, after.start, before.text, before.start);
    fuzz::ExpectSame("end", editor.text.Selection().end, after.end, before.text, before.start);

    const QString number = before.text.sliced(before.start, before.end - before.start);
    const double value = test::oracle::NumberAtStart(number);
    const std::optional<NumericSlider> slider = Slider(number, negative);
    if (!std::isfinite(value)) {
        fuzz::Expect("a slider without end", !slider, number);
        return 0;
    }
    const test::oracle::SliderSetup expected = test::oracle::SetUpSlider(value, negative);
    const double most = std::max(-expected.minimum - 1, expected.maximum);
    fuzz::ExpectSame("range", slider.has_value(), most <= std::numeric_limits<qint32>::max(), number,
                     negative);
    if (!slider)
        return 0;
    fuzz::ExpectSame("fine", slider->fine, expected.fine, number);
    fuzz::ExpectSame("minimum", slider->minimum, expected.minimum, number);
    fuzz::ExpectSame("maximum", slider->maximum, expected.maximum, number);
    fuzz::ExpectSame("value", slider->value, expected.value, number);
    fuzz::ExpectSame("ticks", slider->tickFrequency, expected.tickFrequency, number);
    return 0;
}
