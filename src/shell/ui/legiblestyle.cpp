// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/legiblestyle.h"

#include "platform/ui/systemcolours.h"

#include <algorithm>
#include <QAction>
#include <QFontMetrics>
#include <QKeySequence>
#include <QMenu>
#include <QPainter>
#include <QPalette>
#include <QScreen>
#include <QStyleOptionComboBox>
#include <QStyleOptionMenuItem>
#include <QStyleOptionSlider>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int ArrowRoom = 6;       ///< from the middle of a tree's arrow to where its lines begin, pixels
constexpr int SeparatorMargin = 5; ///< pixels
constexpr int FieldCorner = 2;     ///< radius, pixels
constexpr int LeastMenuWidth = 80; ///< pixels

/// Of a line in front of the text field's colour as well as the window's.
QColor LineColour(const QPalette &palette)
{
    return VisibleLine(palette.color(QPalette::WindowText),
                       {palette.color(QPalette::Window), palette.color(QPalette::Base)});
}

void DrawBox(const QStyleOption &option, QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0.5, 0.5);
    painter.setPen(LineColour(option.palette));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}

/// On the rounded frame that the style has drawn.
void DrawField(const QStyleOption &option, QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0.5, 0.5);
    painter.setPen(LineColour(option.palette));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(option.rect.adjusted(0, 0, -1, -1), FieldCorner, FieldCorner);
}

/// On the circle that the style has drawn.
void DrawCircle(const QStyleOption &option, QPainter &painter)
{
    const int width = option.rect.width();
    const double radius = (width + (width + 1) % 2) / 2.0 - 1;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(LineColour(option.palette), 1.3));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(option.rect.center() + QPoint(1, 1)), radius, radius);
}

/// The lines from a row to its parent and to its siblings; where the row has children, around their arrow.
void DrawBranch(const QStyleOption &option, QPainter &painter)
{
    const QRect &rect = option.rect;
    const QPoint middle = rect.center();
    const int room = option.state & QStyle::State_Children ? ArrowRoom : 0;
    const QColor colour = LineColour(option.palette);
    const auto fill = [&](int left, int top, int right, int bottom) {
        if (left <= right && top <= bottom)
            painter.fillRect(QRect(QPoint(left, top), QPoint(right, bottom)), colour);
    };
    if (option.state & (QStyle::State_Item | QStyle::State_Sibling))
        fill(middle.x(), rect.top(), middle.x(), middle.y() - room);
    if (option.state & QStyle::State_Sibling)
        fill(middle.x(), middle.y() + room, middle.x(), rect.bottom());
    if (!(option.state & QStyle::State_Item))
        return;
    if (option.direction == Qt::LeftToRight)
        fill(middle.x() + room, middle.y(), rect.right(), middle.y());
    else
        fill(rect.left(), middle.y(), middle.x() - room, middle.y());
}

/// A separator that is only a line, over the one that the style has drawn.
void DrawSeparator(const QStyleOption &option, QPainter &painter)
{
    const QRect &rect = option.rect;
    painter.fillRect(
        QRect(rect.left() + SeparatorMargin, rect.center().y(), rect.width() - 2 * SeparatorMargin, 1),
        LineColour(option.palette));
}

/// The width that a menu needs beside its captions and pictures: keys, frame.
int WidthBesideCaptions(const QMenu &menu, const QStyle &style)
{
    const QFontMetrics metrics(menu.font());
    int keys = 0;
    for (const QAction *action : menu.actions()) {
        const QString caption = action->text();
        const qsizetype tab = caption.indexOf(u'\t');
        const QString key =
            tab < 0 ? action->shortcut().toString(QKeySequence::NativeText) : caption.mid(tab + 1);
        keys = std::max(keys, metrics.horizontalAdvance(key));
    }
    return keys + 2 * (style.pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, &menu) +
                       style.pixelMetric(QStyle::PM_MenuHMargin, nullptr, &menu));
}

} // namespace

LegibleStyle::LegibleStyle(QStyle *base) : QProxyStyle(base) {}

bool LegibleStyle::DrawsLines() const
{
    return baseStyle()->name() == u"fusion"_s;
}

void LegibleStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                 const QWidget *widget) const
{
    const bool draws = option && DrawsLines();
    painter->save();
    if (draws && element == PE_IndicatorBranch)
        DrawBranch(*option, *painter);
    painter->restore();
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!draws)
        return;
    painter->save();
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_FrameMenu:
        DrawBox(*option, *painter);
        break;
    case PE_IndicatorRadioButton:
        DrawCircle(*option, *painter);
        break;
    case PE_FrameLineEdit:
        if (!(option->state & State_HasFocus)) // which has a colour of its own
            DrawField(*option, *painter);
        break;
    default:
        break;
    }
    painter->restore();
}

void LegibleStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                               const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (element != CE_MenuItem || !item || !qobject_cast<const QMenu *>(widget)) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    if (item->menuItemType == QStyleOptionMenuItem::Separator) {
        QProxyStyle::drawControl(element, option, painter, widget);
        if (DrawsLines() && item->text.isEmpty())
            DrawSeparator(*option, *painter);
        return;
    }
    QStyleOptionMenuItem shown(*item);
    const QString caption = item->text.section(u'\t', 0, 0);
    const QFontMetrics metrics(item->font);
    const int wide = metrics.boundingRect({}, Qt::TextSingleLine | Qt::TextShowMnemonic, caption).width();
    QStyleOptionMenuItem alone(*item);
    alone.text = caption;
    // What the style puts beside a caption: the column of pictures and checks, margins.
    const int beside =
        QProxyStyle::sizeFromContents(CT_MenuItem, &alone, QSize(wide, metrics.height()), widget).width() -
        wide;
    if (const int room = item->rect.width() - beside; wide > room)
        shown.text = metrics.elidedText(caption, Qt::ElideMiddle, std::max(0, room), Qt::TextShowMnemonic) +
                     item->text.mid(caption.size());
    QProxyStyle::drawControl(element, &shown, painter, widget);
}

void LegibleStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (control == CC_Slider && slider && slider->subControls.testFlag(SC_SliderTickmarks) && DrawsLines()) {
        DrawSlider(*slider, painter, widget);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    const auto *list = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (control != CC_ComboBox || !list || !list->editable || !list->frame ||
        (option->state & State_HasFocus) || !DrawsLines())
        return;
    painter->save();
    DrawField(*option, *painter);
    painter->restore();
}

void LegibleStyle::DrawSlider(const QStyleOptionSlider &option, QPainter *painter,
                              const QWidget *widget) const
{
    constexpr int darker = 140; // per cent: what the style takes for its lines from the window's colour
    QStyleOptionSlider part(option);
    part.subControls = option.subControls & SC_SliderGroove;
    QProxyStyle::drawComplexControl(CC_Slider, &part, painter, widget);
    part.subControls = SC_SliderTickmarks;
    part.palette.setColor(QPalette::Window, LineColour(option.palette).lighter(darker));
    QProxyStyle::drawComplexControl(CC_Slider, &part, painter, widget);
    part.palette = option.palette;
    part.subControls = option.subControls & SC_SliderHandle;
    QProxyStyle::drawComplexControl(CC_Slider, &part, painter, widget);
}

QSize LegibleStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                     const QWidget *widget) const
{
    QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    const auto *menu = qobject_cast<const QMenu *>(widget);
    if (type == CT_MenuItem && menu && menu->screen()) {
        const int most = menu->screen()->availableGeometry().width() - WidthBesideCaptions(*menu, *proxy());
        whole.setWidth(std::min(whole.width(), std::max(most, LeastMenuWidth)));
    }
    return whole;
}

int LegibleStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    const int pixels = QProxyStyle::pixelMetric(metric, option, widget);
    // Without a frame of its own the rows would cover the line around the menu.
    return metric == PM_MenuPanelWidth && DrawsLines() ? std::max(pixels, 1) : pixels;
}

} // namespace zelvane
