// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

#include <QDialog>
#include <QString>

class QLayout;
class QLineEdit;
class QPushButton;
class QWidget;

namespace zelvane
{

struct DocumentSteps;
struct EditorContext;

/// What the dialogs of the Insert menu share: their button Insert puts a text in place of the selection and
/// closes the dialog, or tells what is wrong and leaves it open.
class InsertDialog : public QDialog
{
    Q_OBJECT

protected:
    InsertDialog(EditorContext &editor, const DocumentSteps &steps, QWidget *parent, const QString &name,
                 const QString &caption);

    /// Puts the fields into the dialog, and the two buttons below them.
    void LayOut(QLayout *fields);
    /// What the button Insert does. What it throws is reported, and the dialog stays.
    virtual void Insert() = 0;
    /// Warns, and leaves the dialog with the keyboard in the field.
    void Refuse(const QString &warning, QLineEdit *field);
    void InsertAndClose(const QString &text);
    /// The text of a field whose value is kept as it was typed.
    QString Kept(const NumberKey &key) const;

    EditorContext &m_editor;
    const DocumentSteps &m_steps;

private:
    QPushButton *bOK = nullptr;
    QPushButton *bCancel = nullptr;
};

} // namespace zelvane
