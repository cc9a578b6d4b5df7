// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/statementfields.h"
#include "instruments/statementslider.h"
#include "platform/ui/canceldialogs.h"

#include <functional>
#include <optional>
#include <QDialog>
#include <QString>
#include <QStringList>

class QAction;
class QComboBox;
class QEvent;
class QKeyEvent;
class QMenu;
class QShowEvent;
class QStackedWidget;
class QToolBar;

namespace zelvane
{

class StatementForm;
class StatementList;
class StatementPanes;
struct DocumentSteps;
struct EditorContext;
struct WindowContext;

/// The p-fields of a score statement, a group of them at a time, each with a slider and its text; or all of
/// them as a list. OK writes the texts into the statement.
class frmInstrGUI : public QDialog, public KeepsWork
{
    Q_OBJECT

public:
    /// @param properties shows the Instrument Properties dialog
    frmInstrGUI(EditorContext &editor, const DocumentSteps &steps, StatementFields statement,
                std::function<void()> properties, QWidget *parent);

    /// Gives each p-field a random value between its bounds. No command of the dialog does.
    void GetPValues();

    bool MayCancel() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void BuildToolbar();
    void BuildSliderMenu();
    void LayOut();
    void Connect();
    /// As high as what is shown, as far as the screen has room.
    void FitSize();

    InstrClass &Instrument() { return *m_statement.instrument; }
    pClass &FieldAt(qsizetype position) { return Instrument().pCol.At(position - 1); }

    /// Takes the texts of the rows and shows the p-fields of another group, none for no group.
    void ShowGroup(const std::optional<QString> &group);
    void ShowChosenGroup();
    /// Reports what could not be shown, once all rows are on the screen.
    void ReportFailure();
    /// Gives the keyboard to the text of a p-field, or to the first one where that has no text to change.
    void FocusField(qsizetype position);
    void RunSliderCommand(SliderCommand command);
    void ShowPanesOf(qsizetype position);

    void SortPressed();
    void ShowList();
    void LeaveList();
    void JumpTo(qsizetype position);

    void Confirm();
    void EditProperties();

    EditorContext &m_editor;
    const DocumentSteps &m_steps;
    StatementFields m_statement;
    std::function<void()> m_properties;
    QStringList m_before; ///< the values as the statement has them

    QToolBar *tlbInstrGUI;
    QComboBox *cmbGroup;
    StatementForm *m_form;
    StatementList *lvwP;
    QStackedWidget *m_views;
    QMenu *mnuSl;
    StatementPanes *picStatus;
    QAction *m_sort;
    QAction *m_slider;
};

/// Shows the dialog for the statement at the caret; tells the user when there is none.
void ShowStatementDialog(const WindowContext &context);

} // namespace zelvane
