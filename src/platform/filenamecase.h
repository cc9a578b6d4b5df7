// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <Qt>
#include <QtGlobal>

namespace zelvane
{

/// Whether the names of files differ by case alone, as file systems of this platform mostly have it.
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
inline constexpr Qt::CaseSensitivity FileNameCase = Qt::CaseInsensitive;
#else
inline constexpr Qt::CaseSensitivity FileNameCase = Qt::CaseSensitive;
#endif

} // namespace zelvane
