// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/stylerun.h"

#include <QByteArrayView>
#include <QtGlobal>

namespace zelvane
{

// The text control measures the whole of a line whenever it changes, and is quick with short pieces of one
// style that it has met before. So in a long line steps of two characters take turns between two styles that
// look the same: the bytes of both hold the same class.

/// Lines of so many bytes are long.
inline constexpr qsizetype LongLineBytes = 4096;

/// The bit of a style byte, above the class, that tells neighbouring steps apart.
inline constexpr char StepBit = 8;
static_assert(StyleClassCount <= StepBit);

/// The class in a style byte.
constexpr char ClassOf(char style)
{
    return char(style & (StepBit - 1));
}

/// Gives the style bytes of a long line their turns, piece by piece.
class StepAlternation
{
public:
    /// @param before the style byte before the first piece, 0 where there is none
    explicit StepAlternation(char before) : m_bit(before & StepBit ? 0 : StepBit) {}

    /// Goes on with the next piece, in UTF-8. A step ends before a character that looks
    /// the same wherever the text before it ends: letters that join, and marks, stay with what they follow.
    /// @param styles one for each byte of the text; they keep their classes
    void Apply(QByteArrayView text, char *styles);

private:
    char m_bit;
    int m_taken = 0; ///< characters of the present step
};

} // namespace zelvane
