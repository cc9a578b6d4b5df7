// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QByteArray>
#include <set>

// The extended attributes of open files. For platform/ alone.
namespace zelvane::native
{

/// The names of a file's extended attributes; no value when they cannot be had.
std::optional<std::set<QByteArray>> AttributeNames(int descriptor);
/// Whether the system labels new files by its own rules with this attribute: whoever may not set it may not
/// mend it either.
bool IsLabel(const QByteArray &attribute);
/// @return whether the attribute could be read and set
bool CopyAttribute(int from, int to, const QByteArray &attribute);

} // namespace zelvane::native
