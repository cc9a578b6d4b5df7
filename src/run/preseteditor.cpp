// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/preseteditor.h"

#include "platform/executables.h"
#include "platform/fileinfo.h"
#include "platform/numbers.h"
#include "platform/parameters.h"
#include "platform/programfolder.h"
#include "platform/windowstate.h"
#include "run/macroexpansion.h"
#include "run/presetbuttons.h"
#include "run/presetkeys.h"
#include "run/toolpaths.h"
#include "shell/editorcontext.h"

#include <algorithm>
#include <initializer_list>
#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QStringList WindowStateTexts()
{
    return {u"Hidden"_s, u"Normal"_s, u"Minimized"_s, u"Maximized"_s};
}

WindowState WindowStateOfRow(int row)
{
    return WindowStateOf(row % int(WindowStateTexts().size()));
}

PresetAction FirstAction(const PresetRecord &record)
{
    return {.command = record.Command, .args = record.Args, .folder = record.Folder, .window = record.Window};
}

PresetAction SecondAction(const PresetRecord &record)
{
    return {.command = record.SecondCommand,
            .args = record.SecondArgs,
            .folder = record.SecondFolder,
            .window = record.SecondWindow};
}

void SetFirstAction(PresetRecord &record, const PresetAction &action)
{
    record.Command = action.command;
    record.Args = action.args;
    record.Folder = action.folder;
    record.Window = action.window;
}

void SetSecondAction(PresetRecord &record, const PresetAction &action)
{
    record.SecondCommand = action.command;
    record.SecondArgs = action.args;
    record.SecondFolder = action.folder;
    record.SecondWindow = action.window;
}

PresetFields FieldsOf(const PresetRecord &record)
{
    PresetFields fields{.record = record};
    const PresetImage image = ImageOf(record.Image);
    if (image.form == PresetImage::Form::BuiltIn)
        fields.imageNumber = image.number;
    else if (image.form == PresetImage::Form::File)
        fields.bitmap = image.file;
    return fields;
}

QString WhyNotSaved(const QString &name)
{
    if (name.isEmpty())
        return u"The preset has no name yet"_s;
    return IsNumeric(name) ? u"The name of a preset must not be a number"_s : QString();
}

PresetTools EnabledPresetTools(const QString &name, int row, int rowCount)
{
    return {.save = WhyNotSaved(name).isEmpty(),
            .remove = row >= 0,
            .up = row > 0,
            .down = row >= 0 && row < rowCount - 1};
}

bool AllowsSecondAction(const QString &command, const RunContext &context)
{
    return IsExecutableFile(ExpandStaticMacros(command, context), context.editor.desktop);
}

QString CommandInfo(const QString &command, const RunContext &context)
{
    return FileInfoText(ExpandStaticMacros(command, context), context.editor.desktop);
}

FileDialogRequest CommandRequest(const QString &command, const RunContext &context)
{
    QString program = FindExecutable(UnquoteFile(ExpandStaticMacros(command, context)));
    if (program.isEmpty())
        program = FindExecutable(context.tools.Csound);
    return {.title = u"Select a command"_s, .filters = {{u"Executables"_s, u"*.exe"_s}}, .folder = program};
}

FileDialogRequest BitmapRequest(const QString &bitmap)
{
    return {.title = u"Select an image"_s,
            .filters = {{u"Images"_s, u"*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.ico;*.cur"_s}},
            .folder = bitmap};
}

bool MayDiscardPreset(const QString &name, Desktop &desktop)
{
    const QString preset = name.isEmpty() ? u"the new preset"_s : u'\'' + name + u'\'';
    return desktop.MessageBox({.text = u"The changes to "_s + preset + u" are not saved. Discard them?"_s,
                               .icon = BoxIcon::Warning,
                               .buttons = BoxButtons::YesNo,
                               .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes;
}

namespace
{

void WritePreset(const PresetKey &name, const PresetFields &fields, RunContext &context,
                 const std::function<bool(const QString &file)> &loadPicture)
{
    PresetStore store(context.editor.settings);
    store.AddToIndex(name);

    const PresetRecord &record = fields.record;
    store.SaveTextOrDelete(name, PresetKeys::Command, record.Command);
    store.SaveTextOrDelete(name, PresetKeys::Args, record.Args);
    store.SaveTextOrDelete(name, PresetKeys::Folder, record.Folder);
    store.SaveNumber(name, PresetKeys::Window, int(record.Window));
    store.SaveFlag(name, PresetKeys::SaveFirst, record.SaveFirst);
    store.SaveTextOrDelete(name, PresetKeys::Name, record.Name);
    store.SaveTextOrDelete(name, PresetKeys::Tooltip, record.Tooltip);
    store.SaveFlag(name, PresetKeys::CreateButton, record.CreateButton);
    store.SaveFlag(name, PresetKeys::NewGroup, record.NewGroup);

    if (!record.SecondCommand.isEmpty() && AllowsSecondAction(record.Command, context)) {
        store.SaveText(name, PresetKeys::SecondCommand, record.SecondCommand);
        store.SaveTextOrDelete(name, PresetKeys::SecondArgs, record.SecondArgs);
        store.SaveTextOrDelete(name, PresetKeys::SecondFolder, record.SecondFolder);
        store.SaveNumber(name, PresetKeys::SecondWindow, int(record.SecondWindow));
    } else {
        const std::initializer_list<RecordKey> second{PresetKeys::SecondCommand, PresetKeys::SecondArgs,
                                                      PresetKeys::SecondFolder, PresetKeys::SecondWindow};
        for (const RecordKey &key : second)
            store.DeleteKey(name, key);
    }

    if (fields.imageNumber != 0) {
        store.SaveText(name, PresetKeys::Image, QString::number(fields.imageNumber));
    } else if (!fields.bitmap.isEmpty()) {
        if (loadPicture(fields.bitmap))
            store.SaveText(name, PresetKeys::Image, fields.bitmap);
    } else {
        store.DeleteKey(name, PresetKeys::Image);
    }
}

} // namespace

bool SavePreset(const PresetKey &name, const PresetFields &fields, QStringList &rows, RunContext &context,
                const std::function<bool(const QString &file)> &loadPicture)
{
    if (name.isEmpty())
        return false;
    EditorContext &editor = context.editor;
    if (!PresetStore(editor.settings).PresetExists(name, editor.desktop.Now().date())) {
        rows.append(name);
    } else {
        const BoxAnswer answer = editor.desktop.MessageBox(
            {.text = u"Replace saved parameters for '"_s + name + u"' with current settings?"_s,
             .icon = BoxIcon::Information,
             .buttons = BoxButtons::YesNo});
        if (answer == BoxAnswer::No)
            return false;
    }
    editor.settings.InOneStep([&] { WritePreset(name, fields, context, loadPicture); });
    RewritePresetOrder(rows, context);
    return true;
}

bool DeletePreset(const PresetKey &name, RunContext &context)
{
    EditorContext &editor = context.editor;
    PresetStore store(editor.settings);
    if (name.isEmpty() || !store.PresetExists(name, editor.desktop.Now().date()))
        return false;
    const BoxAnswer answer = editor.desktop.MessageBox({.text = u"Delete the '"_s + name + u"' preset?"_s,
                                                        .icon = BoxIcon::Information,
                                                        .buttons = BoxButtons::YesNo,
                                                        .defaultAnswer = BoxAnswer::No});
    if (answer == BoxAnswer::No)
        return false;
    store.Remove(name);
    // Earlier versions kept a picture there. A name with a separator in it must not lead out of the folder.
    if (!name.contains(u'/') && !name.contains(u'\\'))
        QFile::remove(ProgramFolder() + u"/Images/"_s + name);
    return true;
}

int RowOfPreset(const PresetKey &name, const QStringList &rows)
{
    const auto same = [&name](const QString &row) { return row.compare(name, Qt::CaseInsensitive) == 0; };
    const auto found = std::find_if(rows.begin(), rows.end(), same);
    return found == rows.end() ? -1 : int(found - rows.begin());
}

void MovePresetUp(QStringList &rows, int &row, RunContext &context)
{
    if (row <= 0 || row >= rows.size())
        return;
    rows.swapItemsAt(row, row - 1);
    --row;
    RewritePresetOrder(rows, context);
}

void MovePresetDown(QStringList &rows, int &row, RunContext &context)
{
    if (row < 0 || row >= rows.size() - 1)
        return;
    rows.swapItemsAt(row, row + 1);
    ++row;
    RewritePresetOrder(rows, context);
}

void RewritePresetOrder(const QStringList &rows, RunContext &context)
{
    PresetStore(context.editor.settings).RewritePresetOrder(rows);
    context.presets.RebuildPresets();
}

} // namespace zelvane
