// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemView>
#include <QStyledItemDelegate>

namespace zelvane
{

/// Draws the items of a tree; while switched on, the item under the pointer is highlighted.
class HotTracking : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit HotTracking(QAbstractItemView *view);

    void SetEnabled(bool enabled);
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    QAbstractItemView *m_view;
    bool m_enabled = false;
};

} // namespace zelvane
