// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/relatedpanel.h"

#include "shell/bands.h"
#include "shell/command.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

RelatedPanel::RelatedPanel(const WindowContext &context)
    : m_place(
          context, *this, PanelBand::Related, Cmd::mnuRelated, [this] { BuildRelatedFiles(); },
          [this] { ClearRelatedFiles(); })
{
    setObjectName(u"tvwRelated"_s);
    setAccessibleName(u"Related Files"_s);
}

} // namespace zelvane
