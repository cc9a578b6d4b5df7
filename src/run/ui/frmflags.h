// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/flagline.h"
#include "run/ui/fieldselection.h"

#include <QDialog>
#include <QPointer>

class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace zelvane
{

struct EditorContext;

/// The picker of Csound's command-line flags: a list to check them in, and the line that they make. OK puts
/// the line in place of the selection of a field, apart from what stands beside it.
class frmFlags : public QDialog
{
    Q_OBJECT

public:
    /// @param target the control that was active: a text box or an editable combo box
    frmFlags(EditorContext &editor, QWidget *target, QWidget *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildList();
    void LayOut();
    void LoadRows();
    /// Wide enough for all columns where the screen has room.
    void SetSize();
    /// A row was checked or unchecked.
    void RowChanged(QTreeWidgetItem *item);
    void Confirm();

    EditorContext &m_editor;
    QPointer<QWidget> m_target;
    FieldSelection m_selection;
    std::vector<FlagChoice> m_choices; ///< one for each row of the list
    bool m_changing = false;           ///< the dialog itself changes a row

    QTreeWidget *lvwFlags;
    QLineEdit *txtFlags;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
};

} // namespace zelvane
