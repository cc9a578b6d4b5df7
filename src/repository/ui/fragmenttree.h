// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "repository/coderepository.h"
#include "repository/repositorytree.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTreeWidget>

class QColor;
class QMouseEvent;
class QTreeWidgetItem;
class QWidget;

namespace zelvane
{

/// The tree of all fragments under their groups. One of its rows is shown on a page: what becomes of that row
/// it knows.
class FragmentTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit FragmentTree(QWidget *parent);

    static bool IsFragment(const QTreeWidgetItem *item);
    static FragmentPlace PlaceOf(const QTreeWidgetItem &item);

    /// Opening a branch closes the others.
    void SetSingleSelection(bool single) { m_single = single; }
    /// Shows these rows in place of all others, and selects the first one.
    void Build(const RepositoryTree &tree);
    /// Adds a row without a name at the end.
    QTreeWidgetItem *AddNameless(const QString &file);
    /// Takes a row away, and the groups that are empty then.
    void Remove(QTreeWidgetItem *item);
    /// Another fragment of the same file and name; null when there is none.
    QTreeWidgetItem *TwinOf(const QTreeWidgetItem &item) const;
    /// Takes a row to its place by name in its group.
    void PutInOrder(QTreeWidgetItem *item);
    /// Selects a row without telling that it is another one.
    void SelectQuietly(QTreeWidgetItem *item);

    /// The rows of the fragments, in the order of their making.
    const QList<QTreeWidgetItem *> &Fragments() const { return m_fragments; }
    /// Their names, in the same order.
    QStringList Names() const;

    /// The row whose page is shown; null when it is gone.
    QTreeWidgetItem *Shown() const { return m_shown; }
    /// From now on the page is that of the current row.
    void MarkShown() { m_shown = currentItem(); }
    bool IsFragmentShown() const { return IsFragment(m_shown); }

Q_SIGNALS:
    /// Another row is the current one, and the user has made it so.
    void Moved();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    QTreeWidgetItem *NewRow(const RepositoryNode &node, const QColor &groups);
    void CloseOthers(QTreeWidgetItem *opened);
    void KeepCurrentInSight(QTreeWidgetItem *closed);

    QList<QTreeWidgetItem *> m_fragments;
    QTreeWidgetItem *m_shown = nullptr;
    bool m_single = false;
    bool m_quiet = false; ///< the program changes the tree
};

} // namespace zelvane
