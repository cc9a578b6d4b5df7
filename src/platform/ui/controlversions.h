// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace zelvane
{

/// What the windows and the sound are made with, each with the version that runs.
QStringList ControlVersions();

} // namespace zelvane
