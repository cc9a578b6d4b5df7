// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTreeWidget>

class QKeyEvent;
class QSize;
class QTreeWidgetItem;
class QWidget;

namespace zelvane
{

class InstrClass;

/// All p-fields of an instrument as a list. Positions count from 1.
class StatementList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit StatementList(QWidget *parent);

    /// Shows the p-fields in place of what stood there.
    void Fill(const InstrClass &instrument);
    /// Makes a p-field the current one, and gives the list the keyboard.
    void Enter(qsizetype position);
    /// The room that the list asks for.
    QSize Content() const;

Q_SIGNALS:
    /// The user has come to a p-field.
    void Browsed(qsizetype position);
    /// The user wants to go to a p-field's row.
    void Chosen(qsizetype position);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// The selected item is the one with a tooltip.
    void MarkSelectedItem();
};

} // namespace zelvane
