// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/commands.h"

#include "shell/errorreport.h"

#include <QPointer>
#include <QScopeGuard>

namespace zelvane
{

Commands::Commands(Desktop &desktop, QObject *parent) : QObject(parent), m_desktop(desktop) {}

void Commands::Bind(Command command, std::function<void()> handler)
{
    m_handlers[command] = [handler = std::move(handler)](int) { handler(); };
    Refresh(command);
}

void Commands::BindAll(std::u16string_view name, Handler handler)
{
    m_arrayHandlers[name] = std::move(handler);
    RefreshAll(name);
}

void Commands::Unbind(Command command)
{
    m_handlers.erase(command);
    Refresh(command);
}

void Commands::UnbindAll(std::u16string_view name)
{
    m_arrayHandlers.erase(name);
    RefreshAll(name);
}

void Commands::RefreshAll(std::u16string_view name)
{
    for (const auto &[command, action] : m_actions) {
        if (command.Name() == name)
            Refresh(command);
    }
}

const Commands::Handler *Commands::Find(Command command) const
{
    if (const auto one = m_handlers.find(command); one != m_handlers.end())
        return &one->second;
    const auto all = m_arrayHandlers.find(command.Name());
    return all == m_arrayHandlers.end() ? nullptr : &all->second;
}

bool Commands::IsBound(Command command) const
{
    return Find(command) != nullptr;
}

void Commands::Run(Command command)
{
    const Handler *found = Find(command);
    if (!found)
        return;
    // A copy: a command may bind anew what is running.
    const Handler handler = *found;
    if (m_before)
        m_before();
    // The command may have closed the window.
    const auto after = qScopeGuard([self = QPointer<Commands>(this)] {
        if (self && self->m_after)
            self->m_after();
    });
    Guard([&] { handler(command.Entry()); });
}

void Commands::Around(std::function<void()> before, std::function<void()> after)
{
    m_before = std::move(before);
    m_after = std::move(after);
}

void Commands::Guard(const std::function<void()> &work)
{
    try {
        work();
    } catch (const RunTimeError &error) {
        ReportError(m_desktop, error);
    }
}

QAction *Commands::Action(Command command) const
{
    const auto found = m_actions.find(command);
    return found == m_actions.end() ? nullptr : found->second;
}

void Commands::AddAction(Command command, QAction *action)
{
    m_actions.insert_or_assign(command, action);
    connect(action, &QAction::triggered, this, [this, action, command](bool checked) {
        if (action->isCheckable())
            action->setChecked(!checked);
        Run(command);
    });
    Refresh(command);
}

void Commands::RemoveAction(Command command)
{
    m_actions.erase(command);
    m_disabled.erase(command);
}

void Commands::Refresh(Command command)
{
    if (QAction *action = Action(command))
        action->setEnabled(IsEnabled(command));
}

void Commands::SetEnabled(Command command, bool enabled)
{
    if (enabled)
        m_disabled.erase(command);
    else
        m_disabled.insert(command);
    Refresh(command);
}

bool Commands::IsEnabled(Command command) const
{
    return IsBound(command) && !m_disabled.contains(command);
}

void Commands::SetChecked(Command command, bool checked)
{
    if (QAction *action = Action(command))
        action->setChecked(checked);
}

bool Commands::IsChecked(Command command) const
{
    const QAction *action = Action(command);
    return action && action->isChecked();
}

void Commands::OnMenuOpening(MenuName menu, std::function<void()> work)
{
    m_openings[menu].push_back(std::move(work));
}

void Commands::MenuOpening(MenuName menu)
{
    const auto found = m_openings.find(menu);
    if (found == m_openings.end())
        return;
    for (const auto &work : found->second)
        Guard(work);
}

} // namespace zelvane
