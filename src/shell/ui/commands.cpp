// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/commands.h"

#include "shell/errorreport.h"

#include <QPointer>
#include <QScopeGuard>

namespace zelvane
{

Commands::Commands(Desktop &desktop, QObject *parent) : QObject(parent), m_desktop(desktop) {}

void Commands::Bind(const QString &name, Handler handler)
{
    m_arrayHandlers[name] = std::move(handler);
    for (const auto &[key, action] : m_actions) {
        if (key.first == name)
            Refresh(key);
    }
}

void Commands::Bind(const QString &name, int index, Handler handler)
{
    m_handlers[{name, index}] = std::move(handler);
    Refresh({name, index});
}

const Commands::Handler *Commands::Find(const QString &name, int index) const
{
    if (const auto one = m_handlers.find({name, index}); one != m_handlers.end())
        return &one->second;
    const auto all = m_arrayHandlers.find(name);
    return all == m_arrayHandlers.end() ? nullptr : &all->second;
}

bool Commands::IsBound(const QString &name, int index) const
{
    return Find(name, index) != nullptr;
}

void Commands::Run(const QString &name, int index)
{
    const Handler *found = Find(name, index);
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
    Guard([&] { handler(index); });
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

QAction *Commands::Action(const QString &name, int index) const
{
    const auto found = m_actions.find({name, index});
    return found == m_actions.end() ? nullptr : found->second;
}

void Commands::AddAction(const QString &name, int index, QAction *action)
{
    m_actions[{name, index}] = action;
    connect(action, &QAction::triggered, this, [this, action, name, index](bool checked) {
        if (action->isCheckable())
            action->setChecked(!checked);
        Run(name, index);
    });
    Refresh({name, index});
}

void Commands::RemoveAction(const QString &name, int index)
{
    m_actions.erase({name, index});
    m_disabled.erase({name, index});
}

void Commands::Refresh(const Key &key)
{
    if (QAction *action = Action(key.first, key.second))
        action->setEnabled(IsBound(key.first, key.second) && !m_disabled.contains(key));
}

void Commands::SetEnabled(const QString &name, int index, bool enabled)
{
    if (enabled)
        m_disabled.erase({name, index});
    else
        m_disabled.insert({name, index});
    Refresh({name, index});
}

bool Commands::IsEnabled(const QString &name, int index) const
{
    return IsBound(name, index) && !m_disabled.contains({name, index});
}

void Commands::SetChecked(const QString &name, int index, bool checked)
{
    if (QAction *action = Action(name, index))
        action->setChecked(checked);
}

bool Commands::IsChecked(const QString &name, int index) const
{
    const QAction *action = Action(name, index);
    return action && action->isChecked();
}

void Commands::OnMenuOpening(const QString &menu, std::function<void()> work)
{
    m_openings[menu].push_back(std::move(work));
}

void Commands::MenuOpening(const QString &menu)
{
    const auto found = m_openings.find(menu);
    if (found == m_openings.end())
        return;
    for (const auto &work : found->second)
        Guard(work);
}

} // namespace zelvane
