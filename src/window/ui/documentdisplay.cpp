// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/documentdisplay.h"

#include "platform/ui/plaincaption.h"
#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/documentlifecycle.h"
#include "shell/statustexts.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commands.h"
#include "shell/ui/editcommands.h"
#include "shell/ui/frmnew.h"
#include "shell/ui/menuname.h"
#include "shell/ui/menutable.h"
#include "shell/ui/statusbar.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QWidget>

namespace zelvane
{

DocumentDisplay::~DocumentDisplay()
{
    for (; m_busy > 0; --m_busy)
        QApplication::restoreOverrideCursor();
}

void DocumentDisplay::ShowCaption(const QString &caption)
{
    m_window.setWindowTitle(PlainCaption(caption));
}

void DocumentDisplay::SetBusy(bool busy)
{
    if (busy) {
        ++m_busy;
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (m_busy > 0) {
        --m_busy;
        QApplication::restoreOverrideCursor();
    }
}

void DocumentDisplay::HideText()
{
    m_text.hide();
    m_text.setEnabled(false);
}

void DocumentDisplay::ShowText()
{
    m_text.setEnabled(true);
    m_text.show();
    m_text.repaint();
}

void DocumentDisplay::FocusText()
{
    m_text.setFocus();
}

void DocumentDisplay::ApplyTextColours()
{
    m_appearance.Apply(Look::TextColours);
}

void DocumentDisplay::EnableSaveButton(bool enabled)
{
    m_saveButton->setEnabled(enabled);
}

void DocumentDisplay::EnableCommand(Command command, bool enabled)
{
    m_commands.SetEnabled(command, enabled);
}

void DocumentDisplay::ShowRecentFiles(const QStringList &files)
{
    QMenu *menu = m_menus.Menu(Menu::mnuFile);
    QAction *line = FindSeparator(*menu, Separators::mnulinea);
    int row = 1;
    for (; row <= int(files.size()); ++row) {
        QAction *action = m_commands.Action(Cmd::MRUfolder[row]);
        if (!action) {
            action = new QAction(menu);
            action->setObjectName(Cmd::MRUfolder[row].RowName());
            menu->insertAction(line, action);
            m_commands.AddAction(Cmd::MRUfolder[row], action);
        }
        action->setText(RecentFileCaption(row, files[row - 1]));
    }
    for (; QAction *action = m_commands.Action(Cmd::MRUfolder[row]); ++row) {
        m_commands.RemoveAction(Cmd::MRUfolder[row]);
        action->deleteLater();
    }
    line->setVisible(!files.isEmpty());
}

FileKind DocumentDisplay::ChooseNewKind()
{
    frmNew chooser(&m_window);
    chooser.exec();
    return chooser.Kind();
}

void DocumentDisplay::SelectionChanged()
{
    m_status.ShowPosition(LineColumnText(m_text));
    EnableEditRows(m_text, m_desktop, m_commands);
    const QString selected = SelectionText(m_text);
    if (selected != m_status.Text())
        m_status.Show(selected);
}

} // namespace zelvane
