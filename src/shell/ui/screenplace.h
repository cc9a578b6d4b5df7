// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

#include <QRect>
#include <vector>

class QWidget;

namespace zelvane
{

class SettingsStore;

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

/// Puts a dialog, which must be laid out already, where it stood when it was last closed, or as near as a
/// screen has it. Without a stored place the dialog stays where the desktop puts it. @throws RunTimeError
void RestorePlace(QWidget &dialog, const SettingsStore &settings, const BareNumberKey &x,
                  const BareNumberKey &y);
void SavePlace(const QWidget &dialog, SettingsStore &settings, const BareNumberKey &x,
               const BareNumberKey &y);

} // namespace zelvane
