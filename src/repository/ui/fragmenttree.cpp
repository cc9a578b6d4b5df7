// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/fragmenttree.h"

#include "platform/ui/systemcolours.h"

#include <cstddef>
#include <QColor>
#include <QMouseEvent>
#include <QPalette>
#include <QScopedValueRollback>
#include <QtGlobal>
#include <QTreeWidgetItem>
#include <vector>

namespace zelvane
{

namespace
{

constexpr int FileRole = Qt::UserRole; ///< the path of a fragment's file; a group has none

QString FileOf(const QTreeWidgetItem &item)
{
    return item.data(0, FileRole).toString();
}

void MakeFragment(QTreeWidgetItem &item, const QString &file)
{
    item.setData(0, FileRole, file);
    item.setFlags(item.flags() | Qt::ItemIsEditable);
}

} // namespace

FragmentTree::FragmentTree(QWidget *parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(this, &QTreeWidget::currentItemChanged, this, [this] {
        if (!m_quiet)
            Q_EMIT Moved();
    });
    connect(this, &QTreeWidget::itemExpanded, this, &FragmentTree::CloseOthers);
    connect(this, &QTreeWidget::itemCollapsed, this, &FragmentTree::KeepCurrentInSight);
}

bool FragmentTree::IsFragment(const QTreeWidgetItem *item)
{
    return item && !FileOf(*item).isEmpty();
}

FragmentPlace FragmentTree::PlaceOf(const QTreeWidgetItem &item)
{
    return {.file = FileOf(item), .name = item.text(0)};
}

QStringList FragmentTree::Names() const
{
    QStringList names;
    for (const QTreeWidgetItem *item : m_fragments)
        names += item->text(0);
    return names;
}

// The rows

void FragmentTree::Build(const RepositoryTree &tree)
{
    const QScopedValueRollback quiet(m_quiet, true);
    hide();
    clear();
    m_fragments.clear();
    m_shown = nullptr;
    const QColor grey =
        ReadableTwin(palette().color(QPalette::Disabled, QPalette::Text), palette().color(QPalette::Base));
    std::vector<QTreeWidgetItem *> items;
    items.reserve(tree.nodes.size());
    for (const RepositoryNode &node : tree.nodes)
        items.push_back(NewRow(node, grey));
    const auto all = [&](const std::vector<qsizetype> &numbers) {
        QList<QTreeWidgetItem *> row;
        for (const qsizetype number : numbers)
            row.append(items[std::size_t(number)]);
        return row;
    };
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i]->addChildren(all(tree.nodes[i].children));
    addTopLevelItems(all(tree.roots));
    if (!m_single)
        expandAll();
    show();
    setFocus(Qt::OtherFocusReason);
    if (QTreeWidgetItem *first = topLevelItem(0))
        SelectQuietly(first);
}

QTreeWidgetItem *FragmentTree::NewRow(const RepositoryNode &node, const QColor &groups)
{
    auto *item = new QTreeWidgetItem({node.text});
    if (node.IsFragment()) {
        MakeFragment(*item, node.file);
        m_fragments.append(item);
    } else {
        item->setForeground(0, groups);
    }
    return item;
}

QTreeWidgetItem *FragmentTree::AddNameless(const QString &file)
{
    auto *item = new QTreeWidgetItem;
    MakeFragment(*item, file);
    const QScopedValueRollback quiet(m_quiet, true);
    addTopLevelItem(item);
    m_fragments.append(item);
    return item;
}

void FragmentTree::Remove(QTreeWidgetItem *item)
{
    const QScopedValueRollback quiet(m_quiet, true);
    while (item && item->childCount() == 0) {
        QTreeWidgetItem *parent = item->parent();
        m_fragments.removeOne(item);
        if (m_shown == item)
            m_shown = nullptr;
        delete item;
        item = parent;
    }
}

QTreeWidgetItem *FragmentTree::TwinOf(const QTreeWidgetItem &item) const
{
    for (QTreeWidgetItem *other : m_fragments) {
        if (other != &item && FileOf(*other) == FileOf(item) &&
            other->text(0).compare(item.text(0), Qt::CaseInsensitive) == 0)
            return other;
    }
    return nullptr;
}

void FragmentTree::PutInOrder(QTreeWidgetItem *item)
{
    QTreeWidgetItem *parent = item->parent();
    if (!parent)
        return;
    const QScopedValueRollback quiet(m_quiet, true);
    const bool current = currentItem() == item;
    parent->takeChild(parent->indexOfChild(item));
    int place = 0;
    while (place < parent->childCount() && !SortsBefore(item->text(0), parent->child(place)->text(0)))
        ++place;
    parent->insertChild(place, item);
    if (current)
        SelectQuietly(item);
}

// The current row

void FragmentTree::SelectQuietly(QTreeWidgetItem *item)
{
    const QScopedValueRollback quiet(m_quiet, true);
    setCurrentItem(item);
    if (item)
        scrollToItem(item);
}

void FragmentTree::CloseOthers(QTreeWidgetItem *opened)
{
    if (!m_single)
        return;
    QTreeWidgetItem *parent = opened->parent() ? opened->parent() : invisibleRootItem();
    for (int i = 0; i < parent->childCount(); ++i) {
        if (parent->child(i) != opened)
            parent->child(i)->setExpanded(false);
    }
}

void FragmentTree::KeepCurrentInSight(QTreeWidgetItem *closed)
{
    for (QTreeWidgetItem *item = currentItem(); item; item = item->parent()) {
        if (item->parent() == closed) {
            setCurrentItem(closed);
            return;
        }
    }
}

void FragmentTree::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        QTreeWidget::mouseDoubleClickEvent(event);
}

} // namespace zelvane
