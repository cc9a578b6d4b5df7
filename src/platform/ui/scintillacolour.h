// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

namespace zelvane
{

/// A colour as Scintilla's messages have it, 0xBBGGRR, and back.
inline int ScintillaColour(const QColor &colour)
{
    return colour.red() | (colour.green() << 8) | (colour.blue() << 16);
}

inline QColor FromScintilla(long colour)
{
    return QColor(int(colour & 0xFF), int((colour >> 8) & 0xFF), int((colour >> 16) & 0xFF));
}

} // namespace zelvane
