// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// A text of the user's as a tooltip, shown as it stands even where it looks like marked-up text.
QString PlainToolTip(const QString &text);

} // namespace zelvane
