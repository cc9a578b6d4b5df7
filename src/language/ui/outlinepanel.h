// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/ui/paneltree.h"
#include "shell/documentsteps.h"

namespace zelvane
{

class Menus;

/// `tvwBrowse`: the code outline.
class OutlinePanel : public PanelTree, public OutlineStep
{
    Q_OBJECT

public:
    explicit OutlinePanel(const WindowContext &context);

    bool OutlineShown() const override { return IsBandShown(); }

protected:
    void Fill() override { BuildOutline(); }

private:
    /// The context menu, by the kind of the node under the pointer or else of the current one.
    void ShowMenu(const QPoint &at);

    Menus &m_menus;
};

} // namespace zelvane
