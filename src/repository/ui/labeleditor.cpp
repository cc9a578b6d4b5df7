// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/labeleditor.h"

#include "shell/ui/focusreason.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

LabelEditor::LabelEditor(QAbstractItemView *view) : QStyledItemDelegate(view)
{
    view->setItemDelegate(this);
    connect(this, &QAbstractItemDelegate::closeEditor, this, [this] {
        m_closed = true;
        // The end may come in the middle of a click or of a change of the focus.
        QMetaObject::invokeMethod(this, &LabelEditor::Finish, Qt::QueuedConnection);
    });
}

void LabelEditor::Finish()
{
    if (!std::exchange(m_closed, false))
        return;
    const QPersistentModelIndex row = std::exchange(m_row, {});
    const QString typed = std::exchange(m_typed, {});
    if (row.isValid())
        Q_EMIT Ended(row, typed);
}

void LabelEditor::End()
{
    if (QLineEdit *field = Field(); field && !m_closed) {
        Q_EMIT commitData(field);
        Q_EMIT closeEditor(field);
    }
    Finish();
}

void LabelEditor::GiveUp()
{
    m_row = QPersistentModelIndex();
    m_typed = QString();
}

QWidget *LabelEditor::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                   const QModelIndex &index) const
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(u"label"_s);
    field->setAccessibleName(u"Name of the code fragment"_s);
    field->setFrame(true);
    m_row = index;
    m_field = field;
    m_typed = QString();
    return field;
}

void LabelEditor::setModelData(QWidget *editor, QAbstractItemModel * /*model*/,
                               const QModelIndex & /*index*/) const
{
    const QString text = static_cast<QLineEdit *>(editor)->text();
    m_typed = text.isNull() ? u""_s : text;
}

bool LabelEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && IsAway(*static_cast<QFocusEvent *>(event)))
        return false;
    // By itself the Tab key would go on to the next label.
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            auto *editor = static_cast<QWidget *>(watched);
            Q_EMIT commitData(editor);
            Q_EMIT closeEditor(editor);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}

} // namespace zelvane
