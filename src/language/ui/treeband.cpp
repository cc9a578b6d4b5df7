// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/paneltree.h"

#include "shell/ui/commands.h"
#include "shell/ui/hottracking.h"

#include <QFrame>
#include <QSize>

namespace zelvane
{

PanelTree::PanelTree(const WindowContext &context, PanelBand band, Command row)
    : m_panel(context.panel),
      m_commands(context.commands),
      m_band(band),
      m_row(row),
      m_tracking(new HotTracking(this))
{
    setHeaderHidden(true);
    setFrameShape(QFrame::NoFrame);
    setIconSize(QSize(16, 16));
    setContextMenuPolicy(Qt::CustomContextMenu);
    m_panel.AddBand(band, this);
    m_commands.Bind(row, [this] { ToggleBand(); });
}

void PanelTree::SetHotTracking(bool on)
{
    m_tracking->SetEnabled(on);
}

bool PanelTree::IsBandShown() const
{
    return m_commands.IsChecked(m_row);
}

void PanelTree::ToggleBand()
{
    const bool shown = !m_commands.IsChecked(m_row);
    m_commands.SetChecked(m_row, shown);
    if (!shown)
        clear();
    m_panel.SetBandVisible(m_band, shown);
    if (shown) {
        m_panel.repaint();
        Fill();
    }
}

} // namespace zelvane
