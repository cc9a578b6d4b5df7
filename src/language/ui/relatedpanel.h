// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/ui/treeband.h"
#include "shell/documentsteps.h"
#include "shell/ui/windowcontext.h"

#include <QTreeWidget>

namespace zelvane
{

/// `tvwRelated`: the files that belong to the document.
class RelatedPanel : public QTreeWidget, public RelatedFilesStep
{
    Q_OBJECT

public:
    explicit RelatedPanel(const WindowContext &context);

    void SetHotTracking(bool on) { m_place.SetHotTracking(on); }
    bool RelatedFilesShown() const override { return m_place.IsShown(); }
    void ClearRelatedFiles() override { clear(); }

private:
    TreeBand m_place;
};

} // namespace zelvane
