// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

#include <QRect>
#include <QSize>
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

/// The least that a window manager puts around a window, pixels.
inline constexpr QSize LeastFrame(4, 28);

/// The usable areas of all screens.
std::vector<QRect> UsableScreens();

/// A window place that can be seen: the place itself where the screens hold the whole of it, else moved, and
/// cut if need be, into the one that shows most of it or is nearest.
QRect OnScreen(const QRect &place, const std::vector<QRect> &screens);

/// Puts a dialog, which must be laid out already, where it stood when it was last closed, or as near as a
/// screen has it. Without a stored place the dialog stays where the desktop puts it. @throws RunTimeError
void RestorePlace(QWidget &dialog, const SettingsStore &settings, const BareNumberKey &x,
                  const BareNumberKey &y);
void SavePlace(const QWidget &dialog, SettingsStore &settings, const BareNumberKey &x,
               const BareNumberKey &y);

/// Moves a dialog off what it covers, a place on the screen, as little as may be; where the screen has no
/// room for both it stays.
void MoveOff(QWidget &dialog, const QRect &covered);

/// Moves a shown dialog that has grown, or is just coming, onto the screen as a whole.
void KeepOnScreen(QWidget &dialog);

} // namespace zelvane
