// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/ui/treeband.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/ui/windowcontext.h"

#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QPoint>
#include <QtGlobal>
#include <QTreeView>
#include <vector>

class QKeyEvent;

namespace zelvane
{

class OutlineModel;

/// `tvwBrowse`: the code outline. It is as old as its last build: an edit makes it stale, and it is built
/// anew when a node is used.
class OutlinePanel : public QTreeView, public OutlineStep
{
    Q_OBJECT

public:
    explicit OutlinePanel(const WindowContext &context);

    void SetHotTracking(bool on) { m_place.SetHotTracking(on); }

    void ApplySingleSelection() override;
    bool OutlineShown() const override { return m_place.IsShown(); }
    void BuildOutline() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void BindCommands(const WindowContext &context);
    void Clear();
    /// Builds a stale outline anew. @return the row that has the key of `row` then; no row if none has
    QModelIndex Refreshed(const QModelIndex &row);
    /// The node of a row in an outline that is up to date; -1 if there is none.
    qsizetype UseNode(const QModelIndex &row);
    /// The node that a context menu was opened for, likewise.
    qsizetype UseMenuNode() { return UseNode(m_menuRow.isValid() ? QModelIndex(m_menuRow) : currentIndex()); }
    void ClickNode(const QModelIndex &row);

    /// The context menu, by the key of the node under the pointer or else of the current one.
    void ShowMenu(const QPoint &at);
    void EditInstrument(InstrumentEntry entry);
    void UseInclude(IncludeEntry entry);
    void ChangeTree(TreeEntry entry);

    /// Opens nodes and all below them, but no deeper and no more than a person would look at: the tree's own
    /// layout calls itself for each level, and keeps each row.
    void OpenBelow(std::vector<qsizetype> places);
    /// The places of the roots.
    std::vector<qsizetype> Roots() const;
    void OpenRootsAndTags();
    /// In single selection mode the opening of a branch closes the others.
    void CloseOthers(const QModelIndex &opened);
    /// A branch that closes over the current node takes its place: the menus work on what is seen.
    void KeepCurrentInSight(const QModelIndex &closed);

    WindowContext m_context;
    OutlineModel *m_model;
    TreeBand m_place;
    QPersistentModelIndex m_menuRow;
    bool OutlineCurrent = false; ///< whether the outline is that of the text
    bool m_single = false;
    bool m_opensMany = false;
};

} // namespace zelvane
