// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/contextmenukey.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWidget>

namespace zelvane
{

ContextMenuKey::ContextMenuKey(QObject *application) : QObject(application)
{
    application->installEventFilter(this);
}

bool ContextMenuKey::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    if (event->type() != QEvent::KeyPress || !widget || QApplication::activePopupWidget())
        return QObject::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_F10 || key->modifiers() != Qt::ShiftModifier)
        return QObject::eventFilter(watched, event);
    // Where the caret, or the current row, is.
    const QRect caret = widget->inputMethodQuery(Qt::ImCursorRectangle).toRect();
    const QPoint at = caret.isNull() ? widget->rect().center() : caret.center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, widget->mapToGlobal(at), Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &menu);
    return true;
}

} // namespace zelvane
