// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/splitter.h"

#include <algorithm>
#include <QMouseEvent>
#include <QPainter>

namespace zelvane
{

Splitter::Splitter(QWidget *parent) : QWidget(parent)
{
    setCursor(Qt::SplitHCursor);
}

void Splitter::paintEvent(QPaintEvent *)
{
    if (!m_dragged)
        return;
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Highlight));
}

void Splitter::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragged = true;
    m_dragOffset = event->position().toPoint().x();
    raise();
    update();
}

void Splitter::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragged)
        return;
    const int left = mapToParent(event->position().toPoint()).x() - m_dragOffset;
    move(std::clamp(left, 0, std::max(0, parentWidget()->width() - width())), y());
}

void Splitter::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_dragged)
        return;
    m_dragged = false;
    update();
    Q_EMIT Dropped(x() + width());
}

} // namespace zelvane
