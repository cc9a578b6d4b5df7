// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QList>
#include <QPalette>

namespace zelvane
{

/// The palette's colour for an index of the desktop's system colours (5 window, 8 window text, 13 highlight,
/// ...); indices without a counterpart give the nearest role. Window and window text are those of a text
/// field.
QColor SystemColour(int index, const QPalette &palette);

/// A stored colour: 0xBBGGRR, or with the top bit set a system colour whose index is the low byte.
QColor ResolveColour(quint32 stored, const QPalette &palette);

/// The contrast of two colours, 1 (none) to 21 (black on white).
double Contrast(const QColor &one, const QColor &other);

/// The colour itself where it can be read on the background, else the same hue made as light (on a light
/// background as dark) as reading needs.
QColor ReadableTwin(const QColor &colour, const QColor &background);

/// The least of the ink with which a thin line can be seen on each of the backgrounds: a contrast of 3 and a
/// bit, since a curve shares its pixels with the background.
QColor VisibleLine(const QColor &ink, const QList<QColor> &backgrounds);

} // namespace zelvane
