// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"
#include "run/rundialog.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace zelvane
{

/// The Run Csound dialog: starts Csound once, beside the presets. It closes when it has started it.
class frmManual : public QDialog
{
    Q_OBJECT

public:
    /// Reads the document, the history and the settings; a failure is reported.
    explicit frmManual(const RunContext &context, QWidget *parent = nullptr);

    /// For a process without an editor: there is no text that could be saved first, and what the editor's
    /// dialog was told about it stays stored.
    void DropSaveFirst();

private:
    void LayOut();
    void Connect();
    void Load();
    RunDialogFields Fields() const;
    void Browse(FileKind kind, QLineEdit &field);
    void Run();

    RunContext m_context;

    QLineEdit *txtORC;
    QPushButton *bORC;
    QLineEdit *txtSCO;
    QPushButton *bSCO;
    QComboBox *cmbArgs;
    QPushButton *bFlags;
    QCheckBox *chkCsound2;
    QCheckBox *chkSaveFirst;
    QGroupBox *fraFolder;
    QRadioButton *chkFolderComp;
    QRadioButton *chkFolderDoc;
    QPushButton *bOK;
    QPushButton *bCancel;
};

} // namespace zelvane
