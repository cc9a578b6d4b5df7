// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/numberslider.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QStylePainter>
#include <QtGlobal>
#include <QWheelEvent>

namespace zelvane
{

namespace
{

/// Keys that move nothing by themselves: one that does may still be down.
bool IsModifier(int key)
{
    return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt || key == Qt::Key_Meta;
}

} // namespace

NumberSlider::NumberSlider(QWidget *parent) : QSlider(Qt::Vertical, parent)
{
    setInvertedAppearance(true);
    setInvertedControls(true);
}

void NumberSlider::paintEvent(QPaintEvent *)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    // The handle stands where it does, but ticks and filling begin at the lower end.
    option.upsideDown = !option.upsideDown;
    option.sliderPosition = int(qint64(option.minimum) + option.maximum - option.sliderPosition);
    option.sliderValue = option.sliderPosition;
    option.subControls = QStyle::SC_SliderGroove | QStyle::SC_SliderHandle | QStyle::SC_SliderTickmarks;
    if (isSliderDown()) {
        option.activeSubControls = QStyle::SC_SliderHandle;
        option.state |= QStyle::State_Sunken;
    }
    QStylePainter(this).drawComplexControl(QStyle::CC_Slider, option);
}

void NumberSlider::mouseReleaseEvent(QMouseEvent *event)
{
    QSlider::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton)
        Q_EMIT Released();
}

void NumberSlider::keyReleaseEvent(QKeyEvent *event)
{
    QSlider::keyReleaseEvent(event);
    if (!event->isAutoRepeat() && !IsModifier(event->key()))
        Q_EMIT Released();
}

void NumberSlider::wheelEvent(QWheelEvent *event)
{
    QSlider::wheelEvent(event);
    Q_EMIT Released();
}

} // namespace zelvane
