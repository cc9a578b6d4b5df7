// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

class QStyleOptionSlider;

namespace zelvane
{

/// The desktop's style, with the thin lines of check boxes, option buttons, fields, menus, trees and the
/// ticks of sliders drawn so that they can be seen: the toolkit's own style derives them from the window's
/// colour, and on a dark desktop they vanish. A style that the desktop brings along draws its lines itself.
/// No menu is wider than the screen: captions that are too long lose their middle.
class LegibleStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// @param base becomes a child; null for the desktop's style
    explicit LegibleStyle(QStyle *base = nullptr);

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;

private:
    bool DrawsLines() const;
    void DrawSlider(const QStyleOptionSlider &option, QPainter *painter, const QWidget *widget) const;
};

} // namespace zelvane
