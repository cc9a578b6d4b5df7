// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/linkbutton.h"

#include "platform/ui/systemcolours.h"

#include <QFont>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace zelvane
{

namespace
{

constexpr int FrameRoom = 2; ///< around the text, for the mark of the focus

} // namespace

LinkButton::LinkButton(const QString &text, QWidget *parent) : QAbstractButton(parent)
{
    setText(text);
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const
{
    return fontMetrics().size(Qt::TextHideMnemonic, text()) + QSize(2 * FrameRoom, 2 * FrameRoom);
}

QSize LinkButton::minimumSizeHint() const
{
    return sizeHint();
}

void LinkButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void LinkButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // Not every dark desktop has a light colour for links.
    painter.setPen(ReadableTwin(palette().color(QPalette::Link), palette().color(QPalette::Window)));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextHideMnemonic, text());
    if (hasFocus()) {
        QStyleOptionFocusRect frame;
        frame.initFrom(this);
        frame.backgroundColor = palette().color(QPalette::Window);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
    }
}

} // namespace zelvane
