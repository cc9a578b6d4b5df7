// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane::fuzz
{

/// A folder that only this process uses, removed at its end; in TMPDIR.
const QString &WorkFolder();

} // namespace zelvane::fuzz
