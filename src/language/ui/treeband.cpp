// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/treeband.h"

#include "platform/ui/systemcolours.h"
#include "shell/ui/commands.h"
#include "shell/ui/hottracking.h"
#include "shell/ui/leftdoubleclick.h"

#include <QAbstractItemModel>
#include <QEvent>
#include <QFrame>
#include <QObject>
#include <QPainter>
#include <QPalette>
#include <QSize>
#include <utility>

namespace zelvane
{

namespace
{

/// Shows that a tree has the keyboard when it has no row to show it with.
class EmptyFocus : public QObject
{
public:
    explicit EmptyFocus(QTreeView &tree) : QObject(&tree), m_tree(tree)
    {
        tree.viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QAbstractItemModel *model = m_tree.model();
        const bool empty = !model || model->rowCount(m_tree.rootIndex()) == 0;
        if (event->type() == QEvent::Paint && empty && m_tree.hasFocus()) {
            // An empty tree paints nothing over it.
            const QPalette &colours = m_tree.palette();
            QPainter painter(m_tree.viewport());
            painter.setPen(VisibleLine(colours.color(QPalette::Highlight), {colours.color(QPalette::Base)}));
            painter.drawRect(m_tree.viewport()->rect().adjusted(0, 0, -1, -1));
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QTreeView &m_tree;
};

} // namespace

TreeBand::TreeBand(const WindowContext &context, QTreeView &tree, PanelBand band, Command row,
                   std::function<void()> fill, std::function<void()> clear)
    : m_panel(context.panel),
      m_commands(context.commands),
      m_band(band),
      m_row(row),
      m_fill(std::move(fill)),
      m_clear(std::move(clear)),
      m_tracking(new HotTracking(&tree))
{
    tree.setHeaderHidden(true);
    tree.setFrameShape(QFrame::NoFrame);
    tree.setIconSize(QSize(16, 16));
    tree.setContextMenuPolicy(Qt::CustomContextMenu);
    new EmptyFocus(tree);
    OnlyLeftDoubleClicks(tree);
    m_panel.AddBand(band, &tree);
    m_commands.Bind(row, [this] { Toggle(); });
}

void TreeBand::SetHotTracking(bool on)
{
    m_tracking->SetEnabled(on);
}

bool TreeBand::IsShown() const
{
    return m_commands.IsChecked(m_row);
}

void TreeBand::Toggle()
{
    const bool shown = !IsShown();
    m_commands.SetChecked(m_row, shown);
    if (!shown)
        m_clear();
    m_panel.SetBandVisible(m_band, shown);
    if (shown) {
        m_panel.repaint();
        m_fill();
    }
}

} // namespace zelvane
