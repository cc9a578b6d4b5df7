// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/presetstore.h"
#include "run/runcontext.h"

#include <functional>

namespace zelvane
{

/// The window states in words, in the order of their numbers: the rows of the editor's window lists.
QStringList WindowStateTexts();

/// The fields of the preset editor: the record, whose `Image` is split into a built-in number (0 for none)
/// and the text of the bitmap field.
struct PresetFields {
    PresetRecord record = {};
    int imageNumber = 0;
    QString bitmap = {};

    bool operator==(const PresetFields &) const = default;
};

/// The fields for a stored record. A default PresetFields is what the "new" command shows.
PresetFields FieldsOf(const PresetRecord &record);

/// Which tool buttons of the editor are enabled; a preset's name must not be numeric, since it is at once the
/// key of its toolbar button.
struct PresetTools {
    bool save = false;
    bool remove = false;
    bool up = false;
    bool down = false;

    bool operator==(const PresetTools &) const = default;
};

/// @param row the selected row from 0, -1 for none
PresetTools EnabledPresetTools(const QString &name, int row, int rowCount);

/// Whether a second action is possible behind this first command: only a program can be waited for.
bool AllowsSecondAction(const QString &command, const RunContext &context);

/// Writes a preset, after a question when the name is there already, and the index in the order of `rows`; a
/// new name is added at the end of `rows`.
/// @param loadPicture shows a picture file in the preview; when it answers false the image is not written
/// @return false when nothing was written
bool SavePreset(const PresetKey &name, const PresetFields &fields, QStringList &rows, RunContext &context,
                const std::function<bool(const QString &file)> &loadPicture);

/// Deletes a preset after a question. The editor then loads its lists again and runs RewritePresetOrder.
/// @return false when nothing was deleted
bool DeletePreset(const PresetKey &name, RunContext &context);

/// Moves the selected row one place and writes the order; nothing happens when the row cannot move.
void MovePresetUp(QStringList &rows, int &row, RunContext &context);
void MovePresetDown(QStringList &rows, int &row, RunContext &context);

/// Writes the index in the order of the rows and has the toolbar and the menu built again.
void RewritePresetOrder(const QStringList &rows, RunContext &context);

} // namespace zelvane
