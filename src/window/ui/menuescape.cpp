// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/menuescape.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

namespace zelvane
{

MenuEscape::MenuEscape(QMenuBar *bar) : QObject(bar), m_bar(bar)
{
    for (const QAction *action : bar->actions()) {
        if (action->menu())
            action->menu()->installEventFilter(this);
    }
}

bool MenuEscape::eventFilter(QObject *watched, QEvent *event)
{
    // Not at once: the menu closes first, and gives the keyboard to the bar.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape)
        QMetaObject::invokeMethod(this, &MenuEscape::LeaveBar, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void MenuEscape::LeaveBar()
{
    if (!m_bar->hasFocus())
        return;
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(m_bar, &escape);
}

} // namespace zelvane
