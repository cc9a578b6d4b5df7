// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// A caption that a window shows as it is: "[*]" in it is the toolkit's mark of a modified window, and the
/// doubled one stands for the text.
inline QString PlainCaption(QString title)
{
    return title.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

} // namespace zelvane
