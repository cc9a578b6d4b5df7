// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QAbstractItemView;

namespace zelvane
{

/// Keeps the double clicks of the other buttons from a list or tree, which would take them for the left
/// one's.
void OnlyLeftDoubleClicks(QAbstractItemView &view);

} // namespace zelvane
