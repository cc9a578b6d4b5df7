// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "platform/windowstate.h"
#include "run/presetstore.h"
#include "run/runcontext.h"

#include <functional>

namespace zelvane
{

/// The window states in words, in the order of their numbers: the rows of the editor's window lists.
QStringList WindowStateTexts();

/// The window state of a row of such a list, which may hold the states several times; normal for no row.
WindowState WindowStateOfRow(int row);

/// One of the two actions of a preset.
struct PresetAction {
    QString command = {};
    QString args = {};
    QString folder = {};
    WindowState window = WindowState::Normal;

    bool operator==(const PresetAction &) const = default;
};

PresetAction FirstAction(const PresetRecord &record);
PresetAction SecondAction(const PresetRecord &record);
void SetFirstAction(PresetRecord &record, const PresetAction &action);
void SetSecondAction(PresetRecord &record, const PresetAction &action);

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

/// Why a preset cannot be saved under this name; empty when it can.
QString WhyNotSaved(const QString &name);

/// Whether a second action is possible behind this first command: only a program can be waited for.
bool AllowsSecondAction(const QString &command, const RunContext &context);

/// What a tooltip tells about the file that a command names; empty for a command that names none.
QString CommandInfo(const QString &command, const RunContext &context);

/// The picker of a command: it begins at the program that the field names, else at the compiler, since others
/// are likely to be beside it.
FileDialogRequest CommandRequest(const QString &command, const RunContext &context);

/// The picker of a picture for the button. @param bitmap the path in the field
FileDialogRequest BitmapRequest(const QString &bitmap);

/// Asks before what stands in the fields is given up. @param name of the preset, which may have none yet
bool MayDiscardPreset(const QString &name, Desktop &desktop);

/// Writes a preset, after a question when the name is there already, and the index in the order of `rows`; a
/// new name is added at the end of `rows`.
/// @param loadPicture shows a picture file in the preview; when it answers false the image is not written
/// @return false when nothing was written
bool SavePreset(const PresetKey &name, const PresetFields &fields, QStringList &rows, RunContext &context,
                const std::function<bool(const QString &file)> &loadPicture);

/// Deletes a preset after a question. The editor then loads its lists again and runs RewritePresetOrder.
/// @return false when nothing was deleted
bool DeletePreset(const PresetKey &name, RunContext &context);

/// The row of a preset's name, which may differ from it in case, as the store does not tell cases apart; -1
/// for none.
int RowOfPreset(const PresetKey &name, const QStringList &rows);

/// Moves the selected row one place and writes the order; nothing happens when the row cannot move.
void MovePresetUp(QStringList &rows, int &row, RunContext &context);
void MovePresetDown(QStringList &rows, int &row, RunContext &context);

/// Writes the index in the order of the rows and has the toolbar and the menu built again.
void RewritePresetOrder(const QStringList &rows, RunContext &context);

} // namespace zelvane
