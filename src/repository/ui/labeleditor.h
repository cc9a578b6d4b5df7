// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QString>
#include <QStyledItemDelegate>

class QAbstractItemView;

namespace zelvane
{

/// Edits the labels of a view in place. What was typed does not go into the label: it is told once when the
/// edit has ended and the editor is gone, so that whoever hears it may ask a question or take the row away.
/// The edit goes on while another window is the active one.
class LabelEditor : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit LabelEditor(QAbstractItemView *view);

    bool IsEditing() const { return m_row.isValid(); }
    /// Tells at once of an edit that ends just now.
    void Finish();
    /// Takes what has been typed so far and tells of it at once, whoever has the keyboard.
    void End();
    /// Forgets what has been typed: nobody is told.
    void GiveUp();
    /// The field that is open; null when there is none.
    QLineEdit *Field() const { return IsEditing() ? m_field.data() : nullptr; }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

Q_SIGNALS:
    /// @param text what was typed; null when the edit was given up
    void Ended(const QModelIndex &index, const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    mutable QPersistentModelIndex m_row; ///< of the edit that has not been told of
    mutable QString m_typed;
    mutable QPointer<QLineEdit> m_field;
    bool m_closed = false;
};

} // namespace zelvane
