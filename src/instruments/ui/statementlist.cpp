// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/statementlist.h"

#include "instruments/instrclass.h"
#include "instruments/statementfields.h"

#include <algorithm>
#include <QBrush>
#include <QHeaderView>
#include <QKeyEvent>
#include <QList>
#include <QPalette>
#include <QSize>
#include <QString>
#include <QTreeWidgetItem>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int BuiltInFields = 3; ///< the first p-fields, which every instrument has
constexpr int ListRows = 10;     ///< that a long list shows at least

constexpr int PositionRole = Qt::UserRole;

qsizetype PositionOf(const QTreeWidgetItem &item)
{
    return item.data(0, PositionRole).toLongLong();
}

} // namespace

StatementList::StatementList(QWidget *parent) : QTreeWidget(parent)
{
    setHeaderLabels({u"Name"_s, u"p-Field"_s, u"Value"_s, u"Unit"_s, u"Group"_s});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    const auto browsed = [this](const QTreeWidgetItem *item) {
        if (item)
            Q_EMIT Browsed(PositionOf(*item));
    };
    connect(this, &QTreeWidget::itemClicked, this, browsed);
    connect(this, &QTreeWidget::currentItemChanged, this, browsed);
    connect(this, &QTreeWidget::itemDoubleClicked, this,
            [this](const QTreeWidgetItem *item) { Q_EMIT Chosen(PositionOf(*item)); });
    connect(this, &QTreeWidget::itemSelectionChanged, this, &StatementList::MarkSelectedItem);
}

void StatementList::Fill(const InstrClass &instrument)
{
    clear();
    QList<QTreeWidgetItem *> items;
    const QBrush grey = palette().brush(QPalette::Disabled, QPalette::Text);
    for (qsizetype position = 1; position <= instrument.pCol.Count(); ++position) {
        const pClass &field = instrument.pCol.At(position - 1);
        auto *item =
            new QTreeWidgetItem({field.nome, FieldName(position), field.value, field.unit, field.group});
        item->setData(0, PositionRole, position);
        for (int column = 0; position <= BuiltInFields && column < item->columnCount(); ++column)
            item->setForeground(column, grey);
        items.append(item);
    }
    addTopLevelItems(items);
    for (int column = 0; column < columnCount(); ++column)
        resizeColumnToContents(column);
}

void StatementList::Enter(qsizetype position)
{
    QTreeWidgetItem *item = topLevelItem(int(position - 1));
    setCurrentItem(item);
    scrollToItem(item);
    setFocus(Qt::OtherFocusReason);
}

QSize StatementList::Content() const
{
    const int rows = std::min(std::max(topLevelItemCount(), 1), ListRows);
    return {header()->length() + 2 * frameWidth(),
            header()->sizeHint().height() + rows * sizeHintForRow(0) + 2 * frameWidth()};
}

void StatementList::MarkSelectedItem()
{
    for (int row = 0; row < topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = topLevelItem(row);
        for (int column = 0; column < columnCount(); ++column)
            item->setToolTip(column,
                             item->isSelected() ? u"Double-click to jump to selected item."_s : QString());
    }
}

void StatementList::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QTreeWidget::keyPressEvent(event);
        return;
    }
    if (const QTreeWidgetItem *item = currentItem())
        Q_EMIT Chosen(PositionOf(*item));
}

} // namespace zelvane
