// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/colourbutton.h"

#include "platform/ui/systemcolours.h"
#include "shell/ui/form.h"

#include <QColor>
#include <QColorDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace zelvane
{

namespace
{

constexpr int SwatchWidth = 8; ///< of the colour, in characters
constexpr int FrameRoom = 2;   ///< between the colour and the button's edge, pixels
constexpr double DisabledOpacity = 0.35;

quint32 StoredColour(const QColor &colour)
{
    return quint32(colour.red()) | quint32(colour.green()) << 8 | quint32(colour.blue()) << 16;
}

} // namespace

ColourButton::ColourButton(const QString &title, QWidget *parent) : QPushButton(parent), m_title(title)
{
    Describe();
    connect(this, &QPushButton::clicked, this, &ColourButton::Pick);
}

void ColourButton::SetColour(quint32 colour)
{
    m_colour = colour;
    Describe();
    update();
}

QColor ColourButton::Shown() const
{
    return ResolveColour(m_colour, palette());
}

void ColourButton::Describe()
{
    const QString name = Shown().name();
    setToolTip(name);
    setAccessibleDescription(name);
}

void ColourButton::Pick()
{
    const QColor before = Shown();
    const QColor picked = QColorDialog::getColor(before, window(), m_title);
    // What was only looked at is still the desktop's own.
    if (picked.isValid() && picked.rgb() != before.rgb())
        SetColour(StoredColour(picked));
}

QSize ColourButton::sizeHint() const
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const QSize contents(CharacterWidth(*this, SwatchWidth), fontMetrics().height());
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

void ColourButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButton, option);
    const QRect swatch = style()
                             ->subElementRect(QStyle::SE_PushButtonContents, &option, this)
                             .adjusted(FrameRoom, FrameRoom, -FrameRoom, -FrameRoom);
    if (!isEnabled())
        painter.setOpacity(DisabledOpacity);
    painter.setPen(VisibleLine(palette().color(QPalette::WindowText), {palette().color(QPalette::Button)}));
    painter.setBrush(Shown());
    painter.drawRect(swatch.adjusted(0, 0, -1, -1));
}

void ColourButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        Describe();
    QPushButton::changeEvent(event);
}

} // namespace zelvane
