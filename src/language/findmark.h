// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

/// The offset, from 0, of the first mark of these two characters at or behind `from`, -1 without one. To look
/// for the first one alone, and then at its neighbour, is several times faster than to look for both.
inline qsizetype FindMark(QStringView text, char16_t first, char16_t second, qsizetype from)
{
    while ((from = text.indexOf(first, from)) >= 0) {
        if (text.sliced(from + 1).startsWith(second))
            return from;
        ++from;
    }
    return -1;
}

} // namespace zelvane
