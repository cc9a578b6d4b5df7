// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "texttools/ui/insertdialog.h"

namespace zelvane
{

/// The dialog of a macro definition.
class frmNewMacro : public InsertDialog
{
    Q_OBJECT

public:
    frmNewMacro(EditorContext &editor, const DocumentSteps &steps, QWidget *parent);

private:
    void Insert() override;

    QLineEdit *txtName;
    QLineEdit *txtArgs;
    QLineEdit *txtReplacement;
};

} // namespace zelvane
