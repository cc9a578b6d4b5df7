// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/actionpage.h"

#include "platform/desktop.h"
#include "platform/windowstate.h"
#include "run/macroexpansion.h"
#include "run/ui/flagpicker.h"
#include "shell/editorcontext.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 52; ///< of the text fields, in characters

} // namespace

ActionPage::ActionPage(const RunContext &context, const Words &words)
    : m_context(context),
      m_words(words),
      m_form(this),
      m_command(Named(new QLineEdit, words.command)),
      m_browseCommand(Named(new QPushButton(u"Browse..."_s), words.browseCommand)),
      m_args(Named(new QLineEdit, words.args)),
      m_pickFlag(Named(new QPushButton(u"Fla&gs..."_s), words.pickFlag)),
      m_folder(Named(new QLineEdit, words.folder)),
      m_browseFolder(Named(new QPushButton(u"Browse..."_s), words.browseFolder)),
      m_window(Named(new QComboBox, words.window))
{
    m_form.Add({.caption = u"&Command:"_s,
                .field = m_command,
                .hint = u"Executable or document. Macros allowed."_s,
                .button = m_browseCommand});
    m_form.Add({.caption = u"Pa&rameters:"_s,
                .field = m_args,
                .hint = u"Parameters to be passed to the application. Macros allowed."_s,
                .button = m_pickFlag});
    m_form.Add({.caption = u"&Initial Folder:"_s,
                .field = m_folder,
                .hint = words.folderHint,
                .button = m_browseFolder});
    m_form.Add({.caption = u"&Window:"_s, .field = m_window, .hint = u"State of the window"_s});
    m_command->setMinimumWidth(CharacterWidth(*m_command, FieldWidth));
    m_pickFlag->setToolTip(u"Pick Csound's flags from a list. Ctrl+click: pick one from a menu."_s);
    for (QWidget *control : Controls())
        control->setAccessibleName(words.spoken + control->accessibleName());
    Connect();
}

void ActionPage::Connect()
{
    Desktop &desktop = m_context.editor.desktop;
    connect(m_browseCommand, &QPushButton::clicked, this, [this, &desktop] {
        PickFile(desktop, CommandRequest(m_command->text(), m_context), *m_command);
    });
    connect(m_browseFolder, &QPushButton::clicked, this, [this, &desktop] {
        PickFolder(desktop, m_words.folderTitle, ExpandStaticMacros(m_folder->text(), m_context), *m_folder);
    });
    new FlagPicker(m_context.editor, m_pickFlag, m_args);
}

PresetAction ActionPage::Action() const
{
    return {.command = m_command->text(),
            .args = m_args->text(),
            .folder = m_folder->text(),
            .window = WindowStateOfRow(m_window->currentIndex())};
}

void ActionPage::ShowAction(const PresetAction &action)
{
    ShowFromStart(*m_command, action.command);
    ShowFromStart(*m_args, action.args);
    ShowFromStart(*m_folder, action.folder);
    m_window->setCurrentIndex(int(action.window));
}

void ActionPage::AddWindowStates()
{
    m_window->addItems(WindowStateTexts());
    m_window->setCurrentIndex(int(WindowState::Normal));
}

void ActionPage::ClearWindowStates()
{
    m_window->clear();
}

QList<QWidget *> ActionPage::Controls() const
{
    return {m_command, m_browseCommand, m_args, m_pickFlag, m_folder, m_browseFolder, m_window};
}

} // namespace zelvane
