// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "texttools/ui/insertdialog.h"

class QCheckBox;

namespace zelvane
{

/// The dialog of a new instrument.
class frmNewInstr : public InsertDialog
{
    Q_OBJECT

public:
    frmNewInstr(EditorContext &editor, const DocumentSteps &steps, QWidget *parent);

private:
    void Insert() override;

    QLineEdit *txtNumber;
    QLineEdit *txtName;
    QCheckBox *chkEndofFile;
};

} // namespace zelvane
