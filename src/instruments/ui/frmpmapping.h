// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QWidget;

namespace zelvane
{

struct DocumentSteps;
struct EditorContext;

/// The dialog that writes the assignments of an instrument's p-fields into the orchestra.
class frmPMapping : public QDialog
{
    Q_OBJECT

public:
    frmPMapping(EditorContext &editor, const DocumentSteps &steps, QWidget *parent);

private:
    void Confirm();

    EditorContext &m_editor;
    const DocumentSteps &m_steps;
    QLineEdit *txtNumber;
    QCheckBox *chkComment;
    QCheckBox *chkAsk;
};

} // namespace zelvane
