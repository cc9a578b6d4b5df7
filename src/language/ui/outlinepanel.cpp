// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/outlinepanel.h"

#include "shell/bands.h"
#include "shell/command.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"
#include "shell/ui/menutable.h"

#include <QMenu>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

OutlinePanel::OutlinePanel(const WindowContext &context)
    : PanelTree(context, PanelBand::Browse, Cmd::mnuBrowse), m_menus(context.menus)
{
    setObjectName(u"tvwBrowse"_s);
    setAccessibleName(u"Code Outline"_s);
    // Two rows that are offered and have no action.
    context.commands.Bind(Cmd::mnuTV[TreeEntry::Expand], [] {});
    context.commands.Bind(Cmd::mnuTV[TreeEntry::Collapse], [] {});
    connect(this, &QWidget::customContextMenuRequested, this, &OutlinePanel::ShowMenu);
}

void OutlinePanel::ShowMenu(const QPoint &at)
{
    const QTreeWidgetItem *node = itemAt(at);
    if (!node)
        node = currentItem();
    const QString kind = node ? node->data(0, Qt::UserRole).toString().left(3) : QString();
    MenuName menu = Menu::mnuTreeView;
    if (kind == u"ins"_s)
        menu = Menu::mnuBrowseEditable;
    else if (kind == u"inc"_s)
        menu = Menu::mnuBrowseInclude;
    m_menus.Menu(menu)->popup(viewport()->mapToGlobal(at));
}

} // namespace zelvane
