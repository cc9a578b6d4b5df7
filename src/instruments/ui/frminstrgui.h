// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/statementfields.h"
#include "instruments/statementslider.h"
#include "platform/runtimeerror.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <QDialog>
#include <vector>

class QAction;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QScrollArea;
class QSlider;
class QStackedWidget;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace zelvane
{

class ElidedLabel;
struct DocumentSteps;
struct EditorContext;
struct WindowContext;

/// The p-fields of a score statement, a group of them at a time, each with a slider and its text; or all of
/// them as a list. OK writes the texts into the statement.
class frmInstrGUI : public QDialog
{
    Q_OBJECT

public:
    /// @param properties shows the Instrument Properties dialog
    frmInstrGUI(EditorContext &editor, const DocumentSteps &steps, StatementFields statement,
                std::function<void()> properties, QWidget *parent);

    /// Gives each p-field a random value between its bounds. No command of the dialog does.
    void GetPValues();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// A row of the form, for one p-field after the other.
    struct Row {
        QLabel *lblPName;
        QSlider *slP;
        QLineEdit *txtPValue;
        QLabel *lblPFormat;
        qsizetype position; ///< of the p-field in the instrument, from 1
        SliderRange range;
    };

    void BuildToolbar();
    QAction *AddTool(const QString &name, const QString &caption, const QString &hint);
    void BuildSliderMenu();
    void BuildForm();
    void BuildList();
    QWidget *NewStatus();
    void LayOut();
    void FocusFirstField();
    /// Gives the keyboard to the text of a p-field, or to the first one where that has no text to change.
    void FocusField(qsizetype position);

    InstrClass &Instrument() { return *m_statement.instrument; }
    pClass &FieldAt(qsizetype position) { return Instrument().pCol.At(position - 1); }
    pClass &FieldOf(const Row &row) { return FieldAt(row.position); }
    Row &RowAt(int index) { return m_rows[std::size_t(index)]; }

    /// Copies the texts of the rows that are shown into their p-fields.
    void TakeTexts();
    void AddRow();
    /// Takes the texts of the rows and shows the p-fields of another group, none for no group.
    void ShowGroup(const std::optional<QString> &group);
    void ShowChosenGroup();
    void ShowField(Row &row, qsizetype position);
    /// Reports what could not be shown, once all rows are on the screen.
    void ReportFailure();
    void Sl_TickFrequency(int index);
    /// Keeps the first failure for the report.
    void Try(const std::function<void()> &work);
    /// As high as what is shown, as far as the screen has room.
    void FitSize();

    void SliderMoved(Row &row);
    /// Takes the slider to where the text of its row is.
    void FollowText(Row &row);
    void RunSliderCommand(SliderCommand command);
    /// The row of a slider or text box; null for others.
    Row *RowOf(const QObject *control);
    void PopUpSliderMenu(QSlider &slider, const QPoint &place);
    bool FilterSlider(const Row &row, QEvent &event);
    bool FilterText(const Row &row, QEvent &event);
    /// The keyboard has come to a row's slider or text.
    void EnterRow(const Row &row);
    void ShowPanes(const QString &description, const QString &field, const QString &variable,
                   const QString &format);
    void ShowPanesOf(qsizetype position);

    void SortPressed();
    void ShowList();
    void LeaveList();
    /// The selected item is the one with a tooltip.
    void MarkSelectedItem();
    void JumpTo(const QTreeWidgetItem &item);

    void Confirm();
    void EditProperties();

    EditorContext &m_editor;
    const DocumentSteps &m_steps;
    StatementFields m_statement;
    std::function<void()> m_properties;
    std::vector<Row> m_rows;
    std::size_t m_shown = 0;               ///< of the rows, the first ones
    qsizetype m_entered = 1;               ///< position of the p-field that had the keyboard last
    bool m_settled = false;                ///< on the screen
    std::optional<RunTimeError> m_failure; ///< the first one since the last report

    QToolBar *tlbInstrGUI;
    QComboBox *cmbGroup;
    QScrollArea *m_scroll;
    QGridLayout *m_form;
    QTreeWidget *lvwP;
    QStackedWidget *m_views;
    QMenu *mnuSl;
    QAction *m_sort;
    QAction *m_slider;
    std::vector<ElidedLabel *> lblStatus;
};

/// Shows the dialog for the statement at the caret; tells the user when there is none.
void ShowStatementDialog(const WindowContext &context);

} // namespace zelvane
