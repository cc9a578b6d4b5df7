// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"
#include "texttools/reformatter.h"

#include <QDialog>

class QLabel;
class QListWidget;
class QPushButton;

namespace zelvane
{

class TextControl;

/// The dialog of the whitespace algorithms. OK runs the chosen one over the selection, or over the whole text
/// when nothing is selected; Cancel ends a run, too, and leaves the text as it was.
class frmTabSpace : public QDialog
{
    Q_OBJECT

public:
    frmTabSpace(EditorContext &editor, TextControl &text, QWidget *parent);

    void done(int result) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildControls();
    void LayOut();
    void ShowDescription();
    void Confirm();
    /// Runs the algorithm while the dialog goes on handling events. @return whether it came to its end
    bool Run(FormattingAlgorithm algorithm);
    void ShowRunning(bool running);

    EditorContext &m_editor;
    TextControl &m_text;
    bool m_running = false;
    bool m_stopped = false;

    QListWidget *lstMode;
    QLabel *lblDesc;
    QLabel *lblTip;
    QPushButton *bOK;
    QPushButton *bCancel;
};

} // namespace zelvane
