// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/styledtext.h"

#include <algorithm>
#include <array>
#include <functional>
#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

/// Asked now and then while a file is written; false ends it. Both figures are characters.
using WriteProgress = std::function<bool(qint64 done, qint64 total)>;

/// The most characters between two questions, and that one call of `put` gets.
inline constexpr qsizetype WrittenPiece = 8192;

/// Writes a coloured text as bytes: what the writers of files share.
/// @param begin given a class where a stretch of it begins, adds the bytes that turn its format on
/// @param put puts a stretch of one class at a place that has room for it, and answers the place behind it; a
/// pair of units comes whole
/// @param most the most bytes that `put` makes of one UTF-16 unit
/// @return false when `goOn` ended it
template <qsizetype most, typename Begin, typename Put>
bool WriteStretches(const StyledText &text, QByteArray &to, const WriteProgress &goOn, Begin begin, Put put)
{
    std::array<char, size_t(most * (WrittenPiece + 1))> room;
    const QStringView all = text.text;
    qsizetype asked = 0;
    for (const StyleRun &run : CoveringRuns(text.runs, all.size())) {
        begin(run.style, to);
        const qsizetype end = run.start + run.length;
        for (qsizetype at = run.start; at < end;) {
            qsizetype next = std::min(at + WrittenPiece, end);
            if (next < end && all[next - 1].isHighSurrogate() && all[next].isLowSurrogate())
                ++next;
            to.append(room.data(), put(room.data(), all.sliced(at, next - at)) - room.data());
            at = next;
            if (at - asked >= WrittenPiece) {
                asked = at;
                if (goOn && !goOn(at, all.size()))
                    return false;
            }
        }
    }
    return true;
}

/// A text as `put` writes it.
template <qsizetype most, typename Put> QByteArray Written(QStringView text, Put put)
{
    QByteArray bytes(text.size() * most, Qt::Uninitialized);
    bytes.truncate(put(bytes.data(), text) - bytes.data());
    return bytes;
}

/// Puts bytes as they are, and answers the place behind them.
inline char *PutBytes(char *to, QByteArrayView bytes)
{
    return std::copy(bytes.begin(), bytes.end(), to);
}

/// Puts a number in decimal digits, and answers the place behind them.
inline char *PutNumber(char *to, quint32 number)
{
    std::array<char, 10> digits;
    size_t count = 0;
    do {
        digits[count++] = char('0' + number % 10);
        number /= 10;
    } while (number > 0);
    while (count > 0)
        *to++ = digits[--count];
    return to;
}

} // namespace zelvane
