// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/rundialog.h"

#include "platform/parameters.h"
#include "platform/windowstate.h"
#include "run/macroexpansion.h"
#include "run/runkeys.h"
#include "run/toolpaths.h"
#include "shell/documentkind.h"
#include "shell/editorcontext.h"
#include "shell/kindsearch.h"
#include "shell/recentlist.h"
#include "shell/splitpath.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Puts quotes around a field that holds a blank. Only a file whose own name holds a quote has that doubled:
/// quotes that were typed stay as they are.
void QuoteField(QString &field)
{
    if (field.contains(u'"') && QFileInfo::exists(field))
        field = QuoteFile(field);
    else if (field.contains(u' '))
        field = u'"' + field + u'"';
}

} // namespace

RunDialogFields LoadRunDialog(RunContext &context)
{
    EditorContext &editor = context.editor;
    const QString &document = editor.document.CurrentFile;
    RunDialogFields fields;
    if (!document.isEmpty()) {
        switch (editor.document.DocumentKind) {
        case FileKind::Orchestra:
            fields.orchestra = document;
            fields.score = SearchKindFile(FileKind::Score, true, true, editor);
            break;
        case FileKind::Score:
            fields.orchestra = SearchKindFile(FileKind::Orchestra, true, true, editor);
            fields.score = document;
            break;
        case FileKind::Unified:
        case FileKind::Other:
            fields.orchestra = document;
            break;
        default:
            break;
        }
    }
    for (int i = 0; i < RecentCommandLineCount; ++i) {
        const QString line = editor.settings.GetSetting(Sections::RecentCommandLines, QString::number(i));
        if (line.isEmpty())
            break;
        fields.history.append(line);
    }
    fields.flags = fields.history.value(0);
    fields.csound2 = editor.settings.Flag(Keys::ManualCsound2);
    fields.saveFirst = editor.settings.Flag(Keys::ManualSaveFirst);
    fields.documentFolder = editor.settings.Flag(Keys::ManualInitialFolder);
    return fields;
}

FileDialogRequest BrowseRequest(FileKind kind, const QString &field, const QString &title,
                                const EditorContext &editor)
{
    const QString file = UnquoteFile(field.trimmed());
    return {.title = title,
            .filters = {{kind == FileKind::Score ? u"Score Files"_s : u"Orchestra Files"_s,
                         KindPatterns(kind, {}, editor.document, editor.settings)}},
            .folder = file.isEmpty() ? editor.document.CurrentFile : file,
            .fileName = BareFileName(file)};
}

bool RunCsound(RunDialogFields &fields, RunContext &context)
{
    EditorContext &editor = context.editor;
    QString flags = fields.flags;
    if (!ExpandPresetMacros(flags, false, context))
        return false;
    const QString compiler = fields.csound2 ? context.tools.Csound2 : context.tools.Csound;
    if (compiler.isEmpty()) {
        const BoxAnswer answer = editor.desktop.MessageBox(
            {.text = u"You should first set a Csound compiler. Do you want to open the "
                     "Preferences dialog box now?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo});
        if (answer == BoxAnswer::Yes)
            editor.windows.ShowPreferences();
        return true;
    }
    // A run would work on the old text.
    if (fields.saveFirst && !editor.operations.SaveFile(editor.document.CurrentFile))
        return false;
    const QString folder = fields.documentFolder ? SplitPath(PathPart::Folder, editor.document.CurrentFile)
                                                 : SplitPath(PathPart::Folder, UnquoteFile(compiler));
    QuoteField(fields.orchestra);
    QuoteField(fields.score);
    editor.desktop.ShellRun({.file = compiler,
                             .parameters = flags + u' ' + fields.orchestra + u' ' + fields.score,
                             .folder = folder,
                             .showState = WindowState::Normal});
    editor.settings.InOneStep([&] {
        editor.settings.SaveFlag(Keys::ManualCsound2, fields.csound2);
        if (fields.asksSaveFirst)
            editor.settings.SaveFlag(Keys::ManualSaveFirst, fields.saveFirst);
        editor.settings.SaveFlag(Keys::ManualInitialFolder, fields.documentFolder);
        AddRecentItem(editor.settings, fields.flags, Sections::RecentCommandLines, RecentCommandLineCount);
    });
    return true;
}

} // namespace zelvane
