// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace zelvane
{

/// A colour that follows the desktop: the top bit, and the number of the desktop's colour. Stores hold it.
inline constexpr quint32 SystemColourBit = 0x80000000;
inline constexpr quint32 SystemWindow = SystemColourBit | 5;     ///< behind the text of a field
inline constexpr quint32 SystemWindowText = SystemColourBit | 8; ///< the text of a field

} // namespace zelvane
