// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/treeband.h"

#include "shell/ui/commands.h"
#include "shell/ui/hottracking.h"

#include <QFrame>
#include <QSize>
#include <utility>

namespace zelvane
{

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
