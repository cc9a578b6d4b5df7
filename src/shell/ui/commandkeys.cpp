// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/commandkeys.h"

#include "shell/ui/commands.h"

#include <algorithm>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QWidget>
#include <vector>

namespace zelvane
{

namespace
{

struct CommandKey {
    QKeyCombination key;
    Command command;
};

std::vector<CommandKey> KeysOf(KeyTaker taker)
{
    std::vector<CommandKey> keys;
    for (const MenuRow &row : MenuTable()) {
        if (!row.command || row.key.taker != taker)
            continue;
        for (const QKeySequence &key : KeySequences(row.key))
            keys.push_back({key[0], *row.command});
    }
    return keys;
}

Qt::KeyboardModifiers ChoosingModifiers(KeyTaker taker)
{
    if (taker == KeyTaker::Window)
        return Qt::ControlModifier | Qt::AltModifier | Qt::KeypadModifier;
    return Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
}

} // namespace

bool RunCommandOfKey(KeyTaker taker, const QKeyEvent &event, Commands &commands)
{
    static const std::vector<CommandKey> text = KeysOf(KeyTaker::Text);
    static const std::vector<CommandKey> window = KeysOf(KeyTaker::Window);
    const std::vector<CommandKey> &keys = taker == KeyTaker::Window ? window : text;
    const QKeyCombination pressed(event.modifiers() & ChoosingModifiers(taker), Qt::Key(event.key()));
    const auto found =
        std::find_if(keys.begin(), keys.end(), [&](const CommandKey &one) { return one.key == pressed; });
    if (found == keys.end() || !commands.IsBound(found->command))
        return false;
    commands.Run(found->command);
    return true;
}

WindowKeys::WindowKeys(QWidget *window, Commands &commands)
    : QObject(window), m_window(window), m_commands(commands)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool WindowKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && widget->window() == m_window &&
            RunCommandOfKey(KeyTaker::Window, *static_cast<QKeyEvent *>(event), m_commands))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zelvane
