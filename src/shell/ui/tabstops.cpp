// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/tabstops.h"

#include <QEvent>

namespace zelvane
{

TabStops::TabStops(QWidget *window, QWidget *text) : QObject(window), m_window(window)
{
    text->installEventFilter(this);
}

bool TabStops::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        TakeAway();
    else if (event->type() == QEvent::FocusOut)
        GiveBack();
    return QObject::eventFilter(watched, event);
}

void TabStops::TakeAway()
{
    for (QWidget *control : m_window->findChildren<QWidget *>()) {
        const Qt::FocusPolicy policy = control->focusPolicy();
        if (!(policy & Qt::TabFocus) || control->window() != m_window)
            continue;
        m_taken.emplace_back(control, policy);
        control->setFocusPolicy(Qt::FocusPolicy(policy & ~Qt::TabFocus));
    }
}

void TabStops::GiveBack()
{
    for (const auto &[control, policy] : m_taken) {
        if (control)
            control->setFocusPolicy(policy);
    }
    m_taken.clear();
}

} // namespace zelvane
