// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/hottracking.h"

#include <QPainter>

namespace zelvane
{

HotTracking::HotTracking(QAbstractItemView *view) : QStyledItemDelegate(view), m_view(view)
{
    view->setItemDelegate(this);
}

void HotTracking::SetEnabled(bool enabled)
{
    m_enabled = enabled;
    m_view->setMouseTracking(enabled);
    m_view->viewport()->setMouseTracking(enabled);
    m_view->viewport()->update();
}

void HotTracking::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem shown = option;
    const bool hot = option.state & QStyle::State_MouseOver;
    if (m_enabled && hot) {
        shown.font.setUnderline(true);
        if (!(option.state & QStyle::State_Selected)) {
            QColor back = option.palette.color(QPalette::Highlight);
            back.setAlphaF(0.18F);
            painter->fillRect(option.rect, back);
        }
    }
    shown.state.setFlag(QStyle::State_MouseOver, m_enabled && hot);
    QStyledItemDelegate::paint(painter, shown, index);
}

} // namespace zelvane
