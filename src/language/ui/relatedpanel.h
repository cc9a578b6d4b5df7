// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/ui/treeband.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/ui/windowcontext.h"

#include <QModelIndex>
#include <QString>
#include <QTreeView>

class QContextMenuEvent;
class QKeyEvent;

namespace zelvane
{

class RelatedModel;

/// `tvwRelated`: the files that belong to the document. It is as old as its last build.
class RelatedPanel : public QTreeView, public RelatedFilesStep
{
    Q_OBJECT

public:
    explicit RelatedPanel(const WindowContext &context);

    void SetHotTracking(bool on) { m_place.SetHotTracking(on); }

    bool RelatedFilesShown() const override { return m_place.IsShown(); }
    void BuildRelatedFiles() override;
    void ClearRelatedFiles() override;

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    /// Tells about a file in the status line.
    void ShowInfo(const QModelIndex &row);
    void OpenNode(const QString &path);
    void RunOperation(RelatedOperation operation);

    WindowContext m_context;
    RelatedModel *m_model;
    TreeBand m_place;
    QString m_menuPath; ///< the file that the context menu was opened for, however the tree changes meanwhile
    bool m_building = false;
};

} // namespace zelvane
