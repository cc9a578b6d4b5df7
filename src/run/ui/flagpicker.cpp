// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/flagpicker.h"

#include "platform/desktop.h"
#include "run/flagtable.h"
#include "run/ui/frmflags.h"
#include "shell/editorcontext.h"
#include "shell/ui/columnmenu.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLineEdit>
#include <QMenu>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

FlagPicker::FlagPicker(EditorContext &editor, QAbstractButton *button, QWidget *target)
    : QObject(button), m_editor(editor), m_button(button), m_target(target)
{
    // A combo box has the focus for its line edit, and takes the focus' events before it.
    m_target->installEventFilter(this);
    connect(m_button, &QAbstractButton::clicked, this, &FlagPicker::Pick);
}

bool FlagPicker::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_target && event->type() == QEvent::FocusOut) {
        if (const QLineEdit *field = FieldOf(m_target))
            m_selection.Hold(*field);
    }
    return QObject::eventFilter(watched, event);
}

void FlagPicker::Pick()
{
    QLineEdit *field = FieldOf(m_target);
    if (field && m_target->hasFocus())
        m_selection.Hold(*field);
    else if (field)
        m_selection.Restore(*field);
    if (m_editor.desktop.IsKeyDown(KeyCode::Ctrl)) {
        PopUp();
        return;
    }
    frmFlags(m_editor, m_target, m_button->window()).exec();
}

void FlagPicker::PopUp()
{
    if (!m_menu) {
        m_menu = new QMenu(m_button);
        m_menu->setObjectName(u"mnuFlags"_s);
        for (const FlagRow &row : ShippedFlagTable()) {
            const QString description = QString(row.description).replace(u'&', u"&&"_s);
            QAction *action = m_menu->addAction(row.flag + u'\t' + description);
            connect(action, &QAction::triggered, this, [this, flag = row.flag] { Put(flag); });
        }
        SetColumns(*m_menu);
    }
    m_menu->popup(m_button->mapToGlobal(QPoint(0, m_button->height())));
}

void FlagPicker::Put(const QString &flag)
{
    QLineEdit *field = FieldOf(m_target);
    if (!field)
        return;
    m_selection.Restore(*field);
    PutFlags(*field, flag);
    m_target->setFocus(Qt::OtherFocusReason);
    field->setCursorPosition(int(flag.size()));
}

} // namespace zelvane
