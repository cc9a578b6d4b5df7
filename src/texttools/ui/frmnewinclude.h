// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "texttools/ui/insertdialog.h"

#include <QString>

class QCheckBox;
class QPushButton;

namespace zelvane
{

/// The dialog of an #include statement. The field always shows the name that will be inserted.
class frmNewInclude : public InsertDialog
{
    Q_OBJECT

public:
    frmNewInclude(EditorContext &editor, const DocumentSteps &steps, QWidget *parent);

private:
    void Browse();
    void ShowName();
    void Insert() override;

    QString m_folder; ///< of the document
    QLineEdit *txtFile;
    QPushButton *bFile;
    QCheckBox *chkQualified;
};

} // namespace zelvane
