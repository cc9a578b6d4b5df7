// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/ui/paneltree.h"
#include "shell/documentsteps.h"

namespace zelvane
{

/// `tvwRelated`: the files that belong to the document.
class RelatedPanel : public PanelTree, public RelatedFilesStep
{
    Q_OBJECT

public:
    explicit RelatedPanel(const WindowContext &context);

    bool RelatedFilesShown() const override { return IsBandShown(); }
    void ClearRelatedFiles() override { clear(); }

protected:
    void Fill() override { BuildRelatedFiles(); }
};

} // namespace zelvane
