// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "texttools/ui/insertdialog.h"

namespace zelvane
{

/// The dialog of the random number.
class frmRndNum : public InsertDialog
{
    Q_OBJECT

public:
    frmRndNum(EditorContext &editor, const DocumentSteps &steps, QWidget *parent);

private:
    void Insert() override;
    void KeepFields();

    QLineEdit *txtMin;
    QLineEdit *txtMax;
    QLineEdit *txtDigits;
};

} // namespace zelvane
