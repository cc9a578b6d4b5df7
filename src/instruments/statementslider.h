// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"

#include <optional>
#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

// The slider that moves a p-field. It knows whole numbers only, so a real value is that of the slider divided
// by a scale.

/// What a slider runs over. `maximum` may be below `minimum`; it cannot move then.
struct SliderRange {
    qint32 minimum = 0;
    qint32 maximum = 0;
    qint32 scale = 0; ///< of a real value; 0 for one so wide that its slider cannot move

    bool operator==(const SliderRange &) const = default;
};

/// @throws RunTimeError 6 "Overflow" for bounds beyond 32 bits
SliderRange RangeOf(const pClass &field);

/// The distance of the ticks, about 10 to 32 of them; 0 where there is nothing to move.
/// @throws RunTimeError 6 "Overflow" for a range beyond 16 bits
qint32 TickFrequency(const SliderRange &range);

/// The text of a p-field whose slider stands at a value; nothing for a string.
/// @param whole cuts the fraction of a real value off
/// @throws RunTimeError 11 "Division by zero" for a real value without a scale
std::optional<QString> TextOfSlider(PFormat format, const SliderRange &range, qint32 value, bool whole);

/// Where the slider has to go for a text: nothing when it is there, or when that is out of its range.
/// @throws RunTimeError 6 "Overflow" for a number that is none
std::optional<qint32> SliderOfText(PFormat format, const SliderRange &range, qint32 value, QStringView text);

/// The commands of the slider's menu, by their place in it; 2 is the separator.
enum class SliderCommand { Zero, Centre, Random = 3 };

/// Where a command takes the slider; nothing when it stays.
/// @param random from 0 up to, but not, 1
std::optional<qint32> SliderTarget(SliderCommand command, const SliderRange &range, double random);

/// A random value of a p-field, between its bounds. @param random from 0 up to, but not, 1
QString RandomValue(const pClass &field, double random);

} // namespace zelvane
