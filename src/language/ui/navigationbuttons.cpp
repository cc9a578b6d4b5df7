// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/navigationbuttons.h"

#include "shell/ui/commands.h"
#include "shell/ui/toolbutton.h"
#include "shell/windowsteps.h"

#include <QAction>
#include <QMenu>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

NavigationButtons::NavigationButtons(const WindowContext &context)
    : QObject(context.window), m_navigation(context.editor), m_commands(context.commands)
{
    context.steps.history.Take(*this);
    m_commands.Bind(Cmd::back, [this] { m_navigation.go(-1); });
    m_commands.Bind(Cmd::next, [this] { m_navigation.go(1); });
    m_commands.SetEnabled(Cmd::back, false);
    m_commands.SetEnabled(Cmd::next, false);
    context.windowSteps.Add(WindowMoment::Bars, [this] { ShowButtons(); });
}

void NavigationButtons::navAfterOpen()
{
    m_navigation.navAfterOpen();
    ShowButtons();
}

void NavigationButtons::ShowButtons()
{
    ShowButton(Cmd::back, BackButton(m_navigation), -1);
    ShowButton(Cmd::next, NextButton(m_navigation), 1);
}

void NavigationButtons::ShowButton(Command command, const NavigationButton &button, int direction)
{
    m_commands.SetEnabled(command, button.enabled);
    QAction *action = m_commands.Action(command);
    if (!action) // no toolbar
        return;
    QMenu *menu = action->menu();
    menu->clear();
    for (int entry = 1; entry <= int(button.captions.size()); ++entry) {
        QAction *row = menu->addAction(button.captions[entry - 1]);
        row->setObjectName(menu->objectName() + u'_' + QString::number(entry));
        // Not while the menu is still at it: opening a file fills the menu anew.
        connect(
            row, &QAction::triggered, this,
            [this, delta = direction * entry] {
                m_commands.Guard([this, delta] { m_navigation.go(delta); });
            },
            Qt::QueuedConnection);
    }
    SetButtonToolTip(*action, button.tooltip);
}

} // namespace zelvane
