// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"

#include <functional>
#include <QDialog>

class QLabel;
class QListWidget;
class QPushButton;

namespace zelvane
{

class IconView;

/// The preset chooser, a program of its own: runs one preset on one document and is gone.
class frmQuickPreset : public QDialog
{
    Q_OBJECT

public:
    explicit frmQuickPreset(const RunContext &context, QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void BuildControls();
    void LayOut();
    void FillList();
    void ShowSelected();
    /// Runs the preset of a row, with what the held keys ask for, and closes.
    void RunRow(int row, bool confirm, bool edit);
    void RunSelected();
    void Edit();
    /// Reports what the work throws.
    void Guard(const std::function<void()> &work);

    RunContext m_context;
    QLabel *lblFileName;
    QListWidget *lstPreset;
    QLabel *lblTooltip;
    IconView *imgBitmap;
    QPushButton *cmdOK;
    QPushButton *cmdEdit;
    QPushButton *cmdCancel;
};

} // namespace zelvane
