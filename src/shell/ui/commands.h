// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/ui/menuname.h"

#include <functional>
#include <map>
#include <QAction>
#include <QObject>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace zelvane
{

class Desktop;

/// The handlers and rows of the commands. A subsystem binds its handlers; rows without one stay
/// disabled. Toolbar buttons, keys and menu rows all go through Run, the one place where a command's failure
/// is reported.
class Commands : public QObject
{
    Q_OBJECT

public:
    Commands(Desktop &desktop, QObject *parent);

    /// One handler for a command, or for all entries of an item array; the handler of a single entry goes
    /// before the array's. Binding enables the rows.
    void Bind(Command command, std::function<void()> handler);
    template <typename Entry>
    void Bind(CommandArray<Entry> array, std::type_identity_t<std::function<void(Entry)>> handler)
    {
        BindAll(array.Name(), [handler = std::move(handler)](int entry) { handler(Entry(entry)); });
    }
    /// Takes the handler away again, and so disables the rows.
    void Unbind(Command command);
    template <typename Entry> void Unbind(CommandArray<Entry> array) { UnbindAll(array.Name()); }
    bool IsBound(Command command) const;

    /// Runs the handler; nothing happens when there is none. A RunTimeError ends in ReportError.
    void Run(Command command);
    /// Work done before and after each command, so that the text takes all edits of one as one undo step. The
    /// pairs nest where a command runs another.
    void Around(std::function<void()> before, std::function<void()> after);
    /// Runs work that belongs to no row (a step of the start, a drop, a wake-up), with the same report of a
    /// failure.
    void Guard(const std::function<void()> &work);

    /// The menu row's action; null when no menu has such a row.
    QAction *Action(Command command) const;
    /// Called by the menu builder for each row. A checkable action never toggles by itself: its handler does
    /// that.
    void AddAction(Command command, QAction *action);
    void RemoveAction(Command command);

    /// Enables a row; a row without a handler stays disabled whatever is asked. Toolbar buttons follow their
    /// row.
    void SetEnabled(Command command, bool enabled);
    bool IsEnabled(Command command) const;
    void SetChecked(Command command, bool checked);
    bool IsChecked(Command command) const;

    /// Work to do each time a menu is about to open, in the order of registration.
    void OnMenuOpening(MenuName menu, std::function<void()> work);
    void MenuOpening(MenuName menu);

private:
    using Handler = std::function<void(int entry)>;

    void BindAll(std::u16string_view name, Handler handler);
    void UnbindAll(std::u16string_view name);
    void RefreshAll(std::u16string_view name);
    const Handler *Find(Command command) const;
    void Refresh(Command command);

    Desktop &m_desktop;
    std::function<void()> m_before;
    std::function<void()> m_after;
    std::map<Command, Handler> m_handlers;
    std::map<std::u16string_view, Handler> m_arrayHandlers;
    std::map<Command, QAction *> m_actions;
    std::set<Command> m_disabled; ///< rows that were asked to be disabled, bound or not
    std::map<MenuName, std::vector<std::function<void()>>> m_openings;
};

} // namespace zelvane
