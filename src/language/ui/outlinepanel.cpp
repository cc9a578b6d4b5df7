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

namespace
{

/// The context menu of a node, by the letters that its key begins with.
MenuName MenuOfKey(QStringView key)
{
    if (key.startsWith(u"ins"))
        return Menu::mnuBrowseEditable;
    return key.startsWith(u"inc") ? Menu::mnuBrowseInclude : Menu::mnuTreeView;
}

} // namespace

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
    const QString key = node ? node->data(0, Qt::UserRole).toString() : QString();
    m_menus.Menu(MenuOfKey(key))->popup(viewport()->mapToGlobal(at));
}

} // namespace zelvane
