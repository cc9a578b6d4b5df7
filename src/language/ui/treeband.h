// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/bands.h"
#include "shell/command.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/windowcontext.h"

#include <QTreeWidget>

namespace zelvane
{

class HotTracking;

/// A tree in a band of the side panel, and the row of the View menu that shows and hides the band.
class PanelTree : public QTreeWidget
{
    Q_OBJECT

public:
    /// Puts the tree into its band and binds the row.
    PanelTree(const WindowContext &context, PanelBand band, Command row);

    /// Whether the item under the pointer is highlighted.
    void SetHotTracking(bool on);

protected:
    bool IsBandShown() const;
    /// The band has come into sight.
    virtual void Fill() = 0;

private:
    void ToggleBand();

    SidePanel &m_panel;
    Commands &m_commands;
    PanelBand m_band;
    Command m_row;
    HotTracking *m_tracking;
};

} // namespace zelvane
