// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace zelvane
{

/// Lays out a filled menu whose captions have two columns, a tab between them. It scrolls where the screen is
/// too low for it, instead of breaking into several menus side by side; and it has no empty room: some
/// versions of the toolkit reserve the second column's width twice.
void SetColumns(QMenu &menu);

} // namespace zelvane
