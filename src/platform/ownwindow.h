// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// Whether a program needs no console: a desktop entry names it as one with windows of its own, or it is one
/// of ours, or it only hands a file over to another. Interpreters are none, whatever entries run by them.
/// @param program a path
bool HasOwnWindow(const QString &program);

} // namespace zelvane
