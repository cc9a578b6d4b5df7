// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/svgpicture.h"

#include <QPainter>
#include <QSvgRenderer>

namespace zelvane
{

SvgPicture::SvgPicture(const QString &file, QWidget *parent)
    : QWidget(parent), m_picture(new QSvgRenderer(file, this))
{
    setFixedSize(m_picture->defaultSize());
}

QSize SvgPicture::sizeHint() const
{
    return m_picture->defaultSize();
}

void SvgPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_picture->render(&painter, rect());
}

} // namespace zelvane
