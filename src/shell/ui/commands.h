// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <QAction>
#include <QObject>
#include <QString>
#include <set>
#include <vector>

class QMenu;

namespace zelvane
{

class Desktop;

/// Every command of the menus by (name, index). A subsystem binds its handlers; rows without one stay
/// disabled. Toolbar buttons, keys and menu rows all go through Run, the one place where a command's failure
/// is reported.
class Commands : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(int index)>;

    Commands(Desktop &desktop, QObject *parent);

    /// One handler for all entries of a name, or for one entry only; binding enables the rows.
    void Bind(const QString &name, Handler handler);
    void Bind(const QString &name, int index, Handler handler);
    bool IsBound(const QString &name, int index = 0) const;

    /// Runs the handler; nothing happens when there is none. A RunTimeError ends in ReportError.
    void Run(const QString &name, int index = 0);
    /// Work done before and after each command, so that the text takes all edits of one as one undo step. The
    /// pairs nest where a command runs another.
    void Around(std::function<void()> before, std::function<void()> after);
    /// Runs work that belongs to no row (a step of the start, a drop, a wake-up), with the same report of a
    /// failure.
    void Guard(const std::function<void()> &work);

    /// The menu row's action; null when no menu has such a row.
    QAction *Action(const QString &name, int index = 0) const;
    /// Called by the menu builder for each row. A checkable action never toggles by itself: its handler does
    /// that.
    void AddAction(const QString &name, int index, QAction *action);
    void RemoveAction(const QString &name, int index);

    /// Enables a row; a row without a handler stays disabled whatever is asked. Toolbar buttons follow their
    /// row.
    void SetEnabled(const QString &name, int index, bool enabled);
    bool IsEnabled(const QString &name, int index = 0) const;
    void SetChecked(const QString &name, int index, bool checked);
    bool IsChecked(const QString &name, int index = 0) const;

    /// Work to do each time the menu (or submenu) of this name is about to open, in the order of
    /// registration.
    void OnMenuOpening(const QString &menu, std::function<void()> work);
    void MenuOpening(const QString &menu);

private:
    using Key = std::pair<QString, int>;

    const Handler *Find(const QString &name, int index) const;
    void Refresh(const Key &key);

    Desktop &m_desktop;
    std::function<void()> m_before;
    std::function<void()> m_after;
    std::map<Key, Handler> m_handlers;
    std::map<QString, Handler> m_arrayHandlers;
    std::map<Key, QAction *> m_actions;
    std::set<Key> m_disabled; ///< rows that were asked to be disabled, bound or not
    std::map<QString, std::vector<std::function<void()>>> m_openings;
};

} // namespace zelvane
