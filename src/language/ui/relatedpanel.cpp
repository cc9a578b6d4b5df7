// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/relatedpanel.h"

#include "language/relatedcommands.h"
#include "language/relatedfiles.h"
#include "language/ui/relatedmodel.h"
#include "shell/bands.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/statustexts.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"
#include "shell/ui/menutable.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr RelatedOperation Operations[] = {RelatedOperation::Open,          RelatedOperation::OpenWith,
                                           RelatedOperation::Move,          RelatedOperation::Copy,
                                           RelatedOperation::Rename,        RelatedOperation::Delete,
                                           RelatedOperation::OpenContainer, RelatedOperation::Properties};

QString PathOf(const QModelIndex &row)
{
    return row.data(RelatedModel::PathRole).toString();
}

} // namespace

RelatedPanel::RelatedPanel(const WindowContext &context)
    : m_context(context),
      m_model(new RelatedModel(context.editor.settings, this)),
      m_place(
          context, *this, PanelBand::Related, Cmd::mnuRelated, [this] { BuildRelatedFiles(); },
          [this] { ClearRelatedFiles(); })
{
    setObjectName(u"tvwRelated"_s);
    setAccessibleName(u"Related Files"_s);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(false);
    setContextMenuPolicy(Qt::DefaultContextMenu);
    setModel(m_model);
    connect(this, &QAbstractItemView::clicked, this, &RelatedPanel::ShowInfo);
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex &row) {
        m_context.commands.Guard([this, path = PathOf(row)] { OpenNode(path); });
    });
    context.commands.Bind(Cmd::mnuRelatedItem, [this](RelatedEntry) { OpenNode(m_menuPath); });
    context.commands.Bind(Cmd::mnuRelatedShell,
                          [this](RelatedOperation operation) { RunOperation(operation); });
}

void RelatedPanel::BuildRelatedFiles()
{
    m_context.view.SetBusy(true);
    const auto ready = qScopeGuard([this] { m_context.view.SetBusy(false); });
    const QScopedValueRollback building(m_building, true);
    const EditorContext &editor = m_context.editor;
    m_model->FillRelatedTree(SearchRelated(editor.document.CurrentFile, editor.settings, editor.desktop));
    if (m_model->Shown().Count() == 0)
        return;
    expandAll();
    setCurrentIndex(m_model->index(0, 0));
}

void RelatedPanel::ClearRelatedFiles()
{
    const QScopedValueRollback building(m_building, true);
    m_model->FillRelatedTree({});
}

void RelatedPanel::ShowInfo(const QModelIndex &row)
{
    m_context.editor.status.Show(FileInfoLine(PathOf(row), m_context.editor.desktop));
}

void RelatedPanel::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (!m_building && current.isValid())
        ShowInfo(current);
}

void RelatedPanel::OpenNode(const QString &path)
{
    OpenRelatedFile(m_context.editor, m_context.steps, path);
}

void RelatedPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_context.commands.Guard([this] { OpenNode(PathOf(currentIndex())); });
    else
        QTreeView::keyPressEvent(event);
}

void RelatedPanel::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex row = byKey ? currentIndex() : indexAt(event->pos());
    if (!row.isValid())
        return;
    if (byKey)
        scrollTo(row);
    m_menuPath = PathOf(row);
    Commands &commands = m_context.commands;
    commands.SetEnabled(Cmd::mnuRelatedItem[RelatedEntry::Open], !m_menuPath.isEmpty());
    for (const RelatedOperation operation : Operations)
        commands.SetEnabled(Cmd::mnuRelatedShell[operation],
                            CanRunOnRelatedFile(m_context.steps, operation, m_menuPath));
    const QPoint at = byKey ? viewport()->mapToGlobal(visualRect(row).center()) : event->globalPos();
    m_context.menus.Menu(Menu::mnuRelatedPopup)->popup(at);
}

void RelatedPanel::RunOperation(RelatedOperation operation)
{
    if (RunOnRelatedFile(m_context.editor, m_context.steps, operation, m_menuPath) && RelatedFilesShown())
        BuildRelatedFiles();
}

} // namespace zelvane
