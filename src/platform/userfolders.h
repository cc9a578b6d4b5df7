// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// `zelvane` in the user's configuration folder; it may not exist yet.
QString ConfigFolder();

/// `zelvane` in the user's folder for what programs keep of their own runs; it may not exist yet.
QString StateFolder();

} // namespace zelvane
