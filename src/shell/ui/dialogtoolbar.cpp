// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/dialogtoolbar.h"

#include "shell/ui/form.h"
#include "shell/ui/icons.h"

#include <QAction>
#include <QSize>
#include <QString>
#include <QToolBar>
#include <QWidget>

namespace zelvane
{

QToolBar *NewDialogToolbar(QWidget *dialog, const QString &name)
{
    auto *toolbar = Named(new QToolBar(dialog), name);
    toolbar->setIconSize(QSize(16, 16));
    toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    return toolbar;
}

QAction *AddDialogTool(QToolBar &toolbar, const QString &key, const QString &caption, const QString &tooltip,
                       Qt::FocusPolicy focus)
{
    QAction *action = toolbar.addAction(Icons::Load(key), caption);
    action->setObjectName(toolbar.objectName() + u'_' + key);
    action->setToolTip(tooltip);
    QWidget *face = Named(toolbar.widgetForAction(action), action->objectName());
    face->setFocusPolicy(focus);
    return action;
}

} // namespace zelvane
