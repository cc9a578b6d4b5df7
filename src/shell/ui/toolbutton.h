// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"

#include <QString>
#include <vector>

class QAction;
class QToolBar;

namespace zelvane
{

class Commands;

/// A button of a toolbar: its key (icon, and objectName behind the toolbar's and "_"), its description (the
/// caption when labels are on), its tooltip and the command that it runs.
struct ToolButton {
    QString key;
    QString description;
    QString tooltip;
    Command command;
    struct Choice {
        QString caption;
        Command command;
    };
    std::vector<Choice> choices = {}; ///< the entries of the drop-down
    bool followsRow = true;           ///< enabled and pressed as the menu row of the command
};

/// Adds a button at the toolbar's end. A command without a menu row takes the button as its action.
QAction *AddToolButton(QToolBar &toolbar, Commands &commands, const ToolButton &button);

/// Draws the button behind which a too narrow toolbar hides its rest in the colour of the window's text: the
/// style's own picture is black on every desktop.
void ShowExtensionInTextColour(QToolBar &toolbar);

/// Icons with or without their descriptions under them.
void ShowToolLabels(QToolBar &toolbar, bool shown);

} // namespace zelvane
