// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/relatedpanel.h"

#include "shell/bands.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

RelatedPanel::RelatedPanel(const WindowContext &context)
    : PanelTree(context, PanelBand::Related, Cmd::mnuRelated)
{
    setObjectName(u"tvwRelated"_s);
    setAccessibleName(u"Related Files"_s);
}

} // namespace zelvane
