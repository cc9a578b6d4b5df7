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
    commands.Bind(u"mnuUndo"_s, [this](int) { m_text.Undo(); });
    commands.Bind(u"mnuRedo"_s, [this](int) { m_text.Redo(); });
    commands.Bind(u"mnuEditItem"_s, [this](int entry) {
        if (entry == 0)
            m_text.Cut();
        else if (entry == 1)
            m_text.Copy();
        else
            m_text.Paste();
    });
    commands.Bind(u"mnuDelete"_s, [this](int) { m_text.DeleteSelection(); });
    commands.Bind(u"mnuSelectAll"_s, [this](int) { m_text.SetSelection(0, -1); });
    commands.Bind(u"mnuFontSize"_s, [this](int entry) {
        const bool modified = m_editor.document.Modified;
        m_text.ChangeFontSize(entry == 0 ? 1 : -1);
        m_editor.document.Modified = modified;
    });
    commands.Bind(u"mnuWordWrap"_s, [this](int) {
        const bool wrap = !m_commands.IsChecked(u"mnuWordWrap"_s);
        m_commands.SetChecked(u"mnuWordWrap"_s, 0, wrap);
        m_text.SetWordWrap(wrap);
    });
    commands.OnMenuOpening(u"mnuEdit"_s, [this] { EnableRows(); });
}

void EditCommands::EnableRows()
{
    const bool selected = !m_text.Selection().IsEmpty();
    m_commands.SetEnabled(u"mnuUndo"_s, 0, m_text.CanUndo());
    m_commands.SetEnabled(u"mnuRedo"_s, 0, m_text.CanRedo());
    m_commands.SetEnabled(u"mnuEditItem"_s, 0, selected);
    m_commands.SetEnabled(u"mnuEditItem"_s, 1, selected);
    m_commands.SetEnabled(u"mnuEditItem"_s, 2, m_editor.desktop.ClipboardHasText());
    m_commands.SetEnabled(u"mnuDelete"_s, 0, selected);
    m_commands.SetEnabled(u"mnuUncomment"_s, 0, selected);
}

} // namespace zelvane
