// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/editcommands.h"

#include "platform/ui/textcontrol.h"
#include "shell/ui/commands.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

EditCommands::EditCommands(EditorContext &editor, TextControl &text, Commands &commands, QObject *parent)
    : QObject(parent), m_editor(editor), m_text(text), m_commands(commands)
{
    commands.Bind(Cmd::mnuUndo, [this] { m_text.Undo(); });
    commands.Bind(Cmd::mnuRedo, [this] { m_text.Redo(); });
    commands.Bind(Cmd::mnuEditItem, [this](EditItem entry) {
        if (entry == EditItem::Cut)
            m_text.Cut();
        else if (entry == EditItem::Copy)
            m_text.Copy();
        else
            m_text.Paste();
    });
    commands.Bind(Cmd::mnuDelete, [this] { m_text.DeleteSelection(); });
    commands.Bind(Cmd::mnuSelectAll, [this] { m_text.SetSelection(0, -1); });
    commands.Bind(Cmd::mnuFontSize, [this](FontSizeChange change) {
        const bool modified = m_editor.document.Modified;
        m_text.ChangeFontSize(change == FontSizeChange::Increase ? 1 : -1);
        m_editor.document.Modified = modified;
    });
    commands.Bind(Cmd::mnuWordWrap, [this] {
        const bool wrap = !m_commands.IsChecked(Cmd::mnuWordWrap);
        m_commands.SetChecked(Cmd::mnuWordWrap, wrap);
        m_text.SetWordWrap(wrap);
    });
    commands.OnMenuOpening(Menu::mnuEdit, [this] { EnableRows(); });
}

void EditCommands::EnableRows()
{
    const bool selected = !m_text.Selection().IsEmpty();
    m_commands.SetEnabled(Cmd::mnuUndo, m_text.CanUndo());
    m_commands.SetEnabled(Cmd::mnuRedo, m_text.CanRedo());
    m_commands.SetEnabled(Cmd::mnuEditItem[EditItem::Cut], selected);
    m_commands.SetEnabled(Cmd::mnuEditItem[EditItem::Copy], selected);
    m_commands.SetEnabled(Cmd::mnuEditItem[EditItem::Paste], m_editor.desktop.ClipboardHasText());
    m_commands.SetEnabled(Cmd::mnuDelete, selected);
    m_commands.SetEnabled(Cmd::mnuUncomment, selected);
}

} // namespace zelvane
