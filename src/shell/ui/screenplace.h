// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <vector>

namespace zelvane
{

/// Sizes and places beyond this are nonsense, and would overflow pixel arithmetic.
inline constexpr double MostTwips = 1e7;

/// One twip is 1/1440 inch: the unit of the stored window places.
double ToTwips(int pixels, int dotsPerInch);
int FromTwips(double twips, int dotsPerInch);

/// A window whose upper edge shows less height than this cannot be reached. Pixels.
inline constexpr int GrabHeight = 24;

/// A window place that can be reached: the place itself where enough of it is on a screen, else moved, and
/// cut if need be, into the nearest one. @param screens the usable areas of the screens
QRect OnScreen(const QRect &place, const std::vector<QRect> &screens);

} // namespace zelvane
