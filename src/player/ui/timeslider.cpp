// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/timeslider.h"

#include "player/player.h"

#include <algorithm>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QToolTip>
#include <QWheelEvent>

namespace zelvane
{

namespace
{

// Parts of the length that the keys move by, so that they are of use in a sound of any length.
constexpr int Steps = 100;
constexpr int Pages = 10;

} // namespace

TimeSlider::TimeSlider(QWidget *parent) : QSlider(Qt::Horizontal, parent) {}

void TimeSlider::SetLength(int length)
{
    setMaximum(length);
    setSingleStep(std::max(1, length / Steps));
    setPageStep(std::max(1, length / Pages));
}

void TimeSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || event->buttons() != Qt::LeftButton)
        return event->ignore();
    m_dragged = true;
    Q_EMIT Taken();
    MoveTo(event->position().toPoint());
    QSlider::mousePressEvent(event);
    ShowTip();
}

void TimeSlider::mouseMoveEvent(QMouseEvent *event)
{
    QSlider::mouseMoveEvent(event);
    if (m_dragged)
        ShowTip();
}

void TimeSlider::mouseReleaseEvent(QMouseEvent *event)
{
    QSlider::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || !m_dragged)
        return;
    m_dragged = false;
    QToolTip::hideText();
    Q_EMIT Released(value());
}

void TimeSlider::keyPressEvent(QKeyEvent *event)
{
    TakeByKey();
    QSlider::keyPressEvent(event);
}

void TimeSlider::keyReleaseEvent(QKeyEvent *event)
{
    QSlider::keyReleaseEvent(event);
    if (event->isAutoRepeat())
        return;
    // Shift moves nothing: a key that did is still down.
    if (event->key() == Qt::Key_Shift && m_noted && *m_noted != value())
        return;
    LetKeyGo();
}

void TimeSlider::wheelEvent(QWheelEvent *event)
{
    TakeByKey();
    QSlider::wheelEvent(event);
    LetKeyGo();
}

void TimeSlider::focusOutEvent(QFocusEvent *event)
{
    QSlider::focusOutEvent(event);
    LetKeyGo(); // it comes up elsewhere
}

void TimeSlider::changeEvent(QEvent *event)
{
    QSlider::changeEvent(event);
    if (event->type() != QEvent::EnabledChange || isEnabled())
        return;
    // The sound has ended under the user's hand.
    if (m_dragged)
        QToolTip::hideText();
    m_dragged = false;
    m_noted.reset();
}

void TimeSlider::TakeByKey()
{
    if (m_noted)
        return;
    m_noted = value();
    Q_EMIT Taken();
}

void TimeSlider::LetKeyGo()
{
    if (!m_noted)
        return;
    const bool moved = *m_noted != value();
    m_noted.reset();
    if (moved)
        Q_EMIT Released(value());
    else
        Q_EMIT Kept();
}

void TimeSlider::MoveTo(const QPoint &place)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect groove = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
    const QRect handle = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    if (handle.contains(place))
        return;
    setValue(QStyle::sliderValueFromPosition(minimum(), maximum(),
                                             place.x() - handle.width() / 2 - groove.x(),
                                             groove.width() - handle.width(), option.upsideDown));
}

void TimeSlider::ShowTip()
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    QToolTip::showText(mapToGlobal(handle.bottomLeft()), TimeText(sliderPosition()), this);
}

} // namespace zelvane
