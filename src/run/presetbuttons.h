// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/presetstore.h"
#include "run/runcontext.h"

#include <optional>

namespace zelvane
{

/// What the `Image` of a preset names: a built-in image (they are numbered from 101), a picture file, or
/// nothing, which stands for the desktop's icon of the command.
struct PresetImage {
    enum class Form { CommandIcon, BuiltIn, File };
    Form form = Form::CommandIcon;
    int number = 0;
    QString file = {};

    bool operator==(const PresetImage &) const = default;
};

PresetImage ImageOf(const QString &stored);

/// A label as it fits under a button: of more than 10 characters the first 7 and "...".
QString PresetLabel(const QString &name);

/// A button of the Presets bar.
struct PresetButton {
    PresetKey key = {};
    bool newGroup = false; ///< a separator stands before it
    QString label = {};    ///< kept as the description, shown as caption when labels are on
    QString tooltip = {};
    PresetImage image = {};
    QString command = {}; ///< whose icon is shown when there is no image or it cannot be loaded

    bool operator==(const PresetButton &) const = default;
};

/// The button of a preset; none for one that has its button turned off.
std::optional<PresetButton> ButtonOf(const PresetKey &key, const RunContext &context);

/// The text behind the caption of a menu row, a tab in front: "Ctrl+1" for row 0 to "Ctrl+0", "Alt+1" to
/// "Alt+0" for row 19; empty for the rows behind them.
QString PresetShortcut(int row);

/// The caption of a row of the Presets menu.
QString PresetMenuCaption(const PresetKey &key, int row);

/// The row that a digit key runs, -1 when the keys held with it are not Ctrl alone or Alt alone. The row may
/// not exist.
int PresetRowOfDigit(int digit, bool ctrl, bool alt);

/// The captions of a button's popup menu: run, run with confirmation, edit.
QStringList PresetPopupCaptions(const PresetKey &key);

} // namespace zelvane
