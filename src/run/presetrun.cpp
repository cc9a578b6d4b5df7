// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/presetrun.h"

#include "platform/desktop.h"
#include "platform/parameters.h"
#include "platform/windowstate.h"
#include "run/macroexpansion.h"
#include "run/presetkeys.h"
#include "run/presetstore.h"
#include "run/runkeys.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

void ShowStatus(EditorContext &editor, const QString &text)
{
    if (editor.windows.MainWindowActive())
        editor.status.Show(text);
}

/// What the preset says of consoles. That of its second action has a title of its own: the console of a first
/// one that has failed is not to be replaced by it.
ConsoleWish WishOf(const QString &name, const PresetStore &store, const QString &title)
{
    ConsoleWish wish{.title = title};
    if (!store.StoredText(name, PresetKeys::Console).isEmpty())
        wish.wanted = store.Flag(name, PresetKeys::Console);
    return wish;
}

} // namespace

void RunPreset(const QString &name, bool confirm, bool edit, RunContext &context)
{
    if (name.isEmpty())
        return;
    EditorContext &editor = context.editor;
    const PresetStore store(editor.settings);
    const bool minimize = editor.settings.Flag(Keys::MinimizeOnPresets);
    bool saved = true;
    if (editor.windows.MainWindowActive()) {
        if (minimize)
            editor.windows.MinimizeMainWindow();
        const DocumentRecord &document = editor.document;
        if (store.StoredText(name, PresetKeys::SaveFirst) == u"1" && !document.CurrentFile.isEmpty() &&
            document.Modified)
            saved = editor.operations.SaveFile(document.CurrentFile);
    }
    if (edit) {
        context.presets.EditPreset(name);
        return;
    }
    // The run would work on the old text.
    if (!saved) {
        if (minimize)
            editor.windows.RaiseMainWindow(); // the preset that it gave way to does not come
        return;
    }

    QString command = store.Text(name, PresetKeys::Command);
    QString parameters = store.Text(name, PresetKeys::Args);
    QString folder = store.Text(name, PresetKeys::Folder);
    const WindowState showState = store.State(name, PresetKeys::Window);
    if (!ExpandPresetMacros(command, confirm, context) || command.isEmpty())
        return;
    if (!ExpandPresetMacros(parameters, confirm, context))
        return;
    ShowStatus(editor, name + u": "_s + command + u' ' + parameters);
    if (!ExpandPresetMacros(folder, confirm, context))
        return;
    if (folder.isEmpty())
        folder = SplitPath(PathPart::Folder, UnquoteFile(command));

    if (editor.settings.Flag(Keys::ConfirmPresets)) {
        const BoxAnswer answer =
            editor.desktop.MessageBox({.text = u"Command: "_s + command + u"\n\nParameters: "_s + parameters +
                                               u"\n\nInitial Folder: "_s + folder,
                                       .buttons = BoxButtons::OkCancel,
                                       .title = name});
        if (answer == BoxAnswer::Cancel)
            return;
    }

    if (store.Text(name, PresetKeys::SecondCommand).isEmpty()) {
        editor.desktop.ShellRun({.file = command,
                                 .parameters = parameters,
                                 .folder = folder,
                                 .showState = showState,
                                 .console = WishOf(name, store, name)});
        return;
    }
    // Only a process of our own can be waited for; the shell would hand a document to some other program.
    const bool started = editor.desktop.RunAndWait({.command = command,
                                                    .parameters = parameters,
                                                    .folder = folder,
                                                    .showState = showState,
                                                    .console = WishOf(name, store, name)},
                                                   [&editor] { editor.windows.MinimizeMainWindow(); });
    if (!started) {
        editor.desktop.MessageBox(
            {.text = u"Cannot execute preset "_s + name + u'.', .icon = BoxIcon::Warning});
        return;
    }
    RunSecondAction(name, confirm, context);
}

void RunSecondAction(const QString &name, bool confirm, RunContext &context)
{
    EditorContext &editor = context.editor;
    const PresetStore store(editor.settings);
    QString command = store.Text(name, PresetKeys::SecondCommand);
    QString parameters = store.Text(name, PresetKeys::SecondArgs);
    QString folder = store.Text(name, PresetKeys::SecondFolder);
    const WindowState showState = store.State(name, PresetKeys::SecondWindow);
    if (!ExpandPresetMacros(command, confirm, context) || command.isEmpty())
        return;
    if (!ExpandPresetMacros(parameters, confirm, context))
        return;
    ShowStatus(editor, name + u" 2nd action: "_s + command + u' ' + parameters);
    if (!ExpandPresetMacros(folder, confirm, context))
        return;
    editor.desktop.ShellRun({.file = command,
                             .parameters = parameters,
                             .folder = folder,
                             .showState = showState,
                             .console = WishOf(name, store, name + u" 2nd action"_s)});
}

} // namespace zelvane
