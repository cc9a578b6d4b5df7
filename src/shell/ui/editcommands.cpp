// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/editcommands.h"

#include "platform/desktop.h"
#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/editorkeys.h"
#include "shell/settings.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"

namespace zelvane
{

void BindEditCommands(const WindowContext &context)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    TextControl &text = context.text;
    commands.Bind(Cmd::mnuUndo, [&text] { text.Undo(); });
    commands.Bind(Cmd::mnuRedo, [&text] { text.Redo(); });
    commands.Bind(Cmd::mnuEditItem, [&text](EditItem entry) {
        if (entry == EditItem::Cut)
            text.Cut();
        else if (entry == EditItem::Copy)
            text.Copy();
        else
            text.Paste();
    });
    commands.Bind(Cmd::mnuDelete, [&text] { text.DeleteSelection(); });
    commands.Bind(Cmd::mnuSelectAll, [&text] { text.SetSelection(0, -1); });
    commands.Bind(Cmd::mnuFontSize, [&text, &editor](FontSizeChange change) {
        const bool modified = editor.document.Modified;
        text.ChangeFontSize(change == FontSizeChange::Increase ? 1 : -1);
        editor.document.Modified = modified;
    });
    commands.Bind(Cmd::mnuWordWrap, [&text, &commands] {
        const bool wrap = !commands.IsChecked(Cmd::mnuWordWrap);
        commands.SetChecked(Cmd::mnuWordWrap, wrap);
        text.SetWordWrap(wrap);
    });
    context.appearance.Add(Look::WordWrap, [&commands](const SettingsStore &settings) {
        if (settings.Flag(Keys::WordWrap) != commands.IsChecked(Cmd::mnuWordWrap))
            commands.Run(Cmd::mnuWordWrap);
    });
    commands.OnMenuOpening(Menu::mnuEdit,
                           [&text, &editor, &commands] { EnableEditRows(text, editor.desktop, commands); });
}

void EnableEditRows(const TextControl &text, const Desktop &desktop, Commands &commands)
{
    const bool selected = !text.Selection().IsEmpty();
    commands.SetEnabled(Cmd::mnuUndo, text.CanUndo());
    commands.SetEnabled(Cmd::mnuRedo, text.CanRedo());
    commands.SetEnabled(Cmd::mnuEditItem[EditItem::Cut], selected);
    commands.SetEnabled(Cmd::mnuEditItem[EditItem::Copy], selected);
    commands.SetEnabled(Cmd::mnuEditItem[EditItem::Paste], desktop.ClipboardHasText());
    commands.SetEnabled(Cmd::mnuDelete, selected);
    commands.SetEnabled(Cmd::mnuUncomment, selected);
}

} // namespace zelvane
