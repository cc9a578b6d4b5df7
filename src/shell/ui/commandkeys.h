// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/menutable.h"

#include <QObject>

class QEvent;
class QKeyEvent;
class QWidget;

namespace zelvane
{

class Commands;

/// Runs the command whose key this is, if the key belongs to the taker: Text or Window. Modifiers that do not
/// choose a command are ignored: the keypad for Text, Shift and Meta for Window.
/// @return whether the taker has a command on the key
bool RunCommandOfKey(KeyTaker taker, const QKeyEvent &event, Commands &commands);

/// Takes the keys of the Window rows before the control of the window that has the keyboard.
class WindowKeys : public QObject
{
    Q_OBJECT

public:
    WindowKeys(QWidget *window, Commands &commands);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    Commands &m_commands;
};

} // namespace zelvane
