// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/bands.h"
#include "shell/command.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/windowcontext.h"

#include <functional>
#include <QTreeView>

namespace zelvane
{

class HotTracking;

/// The place of a tree in a band of the side panel, and the row of the View menu that shows and hides the
/// band.
class TreeBand
{
public:
    /// Puts the tree into its band and binds the row.
    /// @param fill is called when the band has come into sight, `clear` when it has gone
    TreeBand(const WindowContext &context, QTreeView &tree, PanelBand band, Command row,
             std::function<void()> fill, std::function<void()> clear);

    /// Whether the item under the pointer is highlighted.
    void SetHotTracking(bool on);
    bool IsShown() const;

private:
    void Toggle();

    SidePanel &m_panel;
    Commands &m_commands;
    PanelBand m_band;
    Command m_row;
    std::function<void()> m_fill;
    std::function<void()> m_clear;
    HotTracking *m_tracking;
};

} // namespace zelvane
