// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace zelvane
{

class KeyedControls;

/// Binds each setting that the Preferences dialog writes to the control of the same name: a check box, a
/// list, a text field or an option.
/// @throws RunTimeError when one has no such control: a setting that nobody can change is a mistake of the
/// program
void BindNamesakes(const QWidget &dialog, KeyedControls &controls);

} // namespace zelvane
