// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"

#include <QDialog>

class QListWidget;
class QPushButton;

namespace zelvane
{

/// The new-file chooser: which kind of document a new file is. Kind() stays Cancelled until the user confirms
/// one.
class frmNew : public QDialog
{
    Q_OBJECT

public:
    explicit frmNew(QWidget *parent = nullptr);

    FileKind Kind() const { return m_kind; }

private:
    void Confirm();

    QListWidget *lvwNew;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    FileKind m_kind = FileKind::Cancelled;
};

} // namespace zelvane
