// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/filefinder.h"

#include "shell/command.h"
#include "writing/ui/frmfindinfiles.h"

#include <QEvent>
#include <QWidget>

namespace zelvane
{

FileFinder::FileFinder(const WritingContext &context)
    : m_window(context.window), m_commands(context.window.commands)
{
    m_commands.Bind(Cmd::mnuFindInFiles, [this] { ShowDialog(); });
    m_window.window->installEventFilter(this);
}

FileFinder::~FileFinder()
{
    delete m_dialog;
}

bool FileFinder::eventFilter(QObject *watched, QEvent *event)
{
    // The window has been closed, and is not only minimized.
    if (watched == m_window.window && event->type() == QEvent::Hide && !event->spontaneous() && m_dialog)
        m_dialog->close();
    return QObject::eventFilter(watched, event);
}

void FileFinder::ShowDialog()
{
    if (m_dialog)
        m_dialog->StartAgain();
    else
        m_dialog = new frmFindInFiles(m_window);
    m_dialog->show();
    m_dialog->raise();
    m_dialog->activateWindow();
}

} // namespace zelvane
