// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"

#include <array>
#include <optional>
#include <QString>
#include <span>

class QAction;
class QToolBar;

namespace zelvane
{

class Commands;
class SettingsStore;

/// Whether a separator stands before a button.
enum class ButtonGroup { Same, New };

/// A row of a toolbar's table: a button with its key (its icon, and its objectName behind the toolbar's and
/// "_"), its description (the caption when labels are on), its tooltip, behind which the key
/// of the command is told, and the command that it runs.
struct ToolButton {
    /// An entry of the drop-down.
    struct Choice {
        const char16_t *caption = u"";
        std::optional<Command> command = std::nullopt;
    };

    const char16_t *key;
    const char16_t *description;
    const char16_t *tooltip;
    Command command;
    ButtonGroup group = ButtonGroup::Same;
    std::array<Choice, 2> choices = {}; ///< both or none
    bool followsRow = true;             ///< enabled and pressed as the menu row of the command
    const char16_t *shortcut = u"";     ///< the key of a command without a menu row
    bool dropDown = false; ///< with a list whose entries come and go: who binds the command fills it
};

/// Puts the buttons at the toolbar's end. A command without a menu row takes its button as its action.
void AddToolButtons(QToolBar &toolbar, Commands &commands, std::span<const ToolButton> table);

/// A tooltip of a button that changes, with the key of the button behind it; an empty one shows nothing.
void SetButtonToolTip(QAction &button, const QString &tooltip);

/// The action of the button that runs this command; null when there is none.
QAction *FindToolButton(const QToolBar &toolbar, Command command);

/// Draws the button behind which a too narrow toolbar hides its rest in the colour of the window's text: the
/// style's own picture is black on every desktop.
void ShowExtensionInTextColour(QToolBar &toolbar);

/// Buttons with or without a frame of their own, as the settings say. Those that come later keep the style's.
void ShowFlatButtons(QToolBar &toolbar, const SettingsStore &settings);

/// Icons with or without their descriptions under them.
void ShowToolLabels(QToolBar &toolbar, bool shown);

} // namespace zelvane
