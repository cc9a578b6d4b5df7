// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"
#include "instruments/statementslider.h"
#include "instruments/ui/statementrow.h"
#include "platform/runtimeerror.h"

#include <cstddef>
#include <optional>
#include <QScrollArea>
#include <QString>
#include <vector>

class QEvent;
class QGridLayout;
class QPoint;
class QSize;

namespace zelvane
{

class Desktop;

/// The rows of one group of an instrument's p-fields, and the keyboard among them.
class StatementForm : public QScrollArea
{
    Q_OBJECT

public:
    /// @param instrument outlives the form
    StatementForm(Desktop &desktop, InstrClass &instrument, QWidget *parent);

    /// Copies the texts of the rows that are shown into their p-fields.
    void TakeTexts();
    /// Shows the p-fields of a group, none for no group. The texts that stood there are not taken.
    void ShowGroup(const std::optional<QString> &group);
    /// To be called when the rows have their places.
    void SetTicks();
    /// What could not be shown: the first failure since the last call.
    std::optional<RunTimeError> TakeFailure() { return m_failures.Take(); }
    /// The room that the rows ask for.
    QSize Content() const;

    /// From now on the keyboard comes to a row because the user wants it there: the form is on the screen.
    void Settle() { m_settled = true; }
    bool IsSettled() const { return m_settled; }
    /// Gives the keyboard to the text of a p-field, or to the first one where that has no text to change.
    /// @param position from 1
    /// @return false where no text can be changed
    bool FocusField(qsizetype position);
    /// The same control may be another p-field's now. @param focused had the keyboard
    void KeepFocus(QWidget *focused);
    /// The position from 1 of the p-field that had the keyboard last.
    qsizetype Entered() const { return m_entered; }
    void SetEntered(qsizetype position) { m_entered = position; }

    /// Does it to the slider that has the keyboard, if one has.
    void Run(SliderCommand command);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The keyboard has come to a row's slider or text.
    void FieldEntered(qsizetype position);
    /// The keyboard has come to a slider, or left it.
    void SliderEntered(bool entered);
    /// The menu of a slider, which has the keyboard now, is asked for. @param place on the screen
    void MenuAsked(const QPoint &place);

private:
    void AddRow();
    bool FocusFirstField();
    void Enter(const StatementRow &row);
    void Sl_TickFrequency(int index);
    /// The row of a slider or text box; null for others.
    StatementRow *RowOf(const QObject *control);
    bool FilterSlider(const StatementRow &row, QEvent &event);
    bool FilterText(const StatementRow &row, QEvent &event);

    Desktop &m_desktop;
    InstrClass &m_instrument;
    QGridLayout *m_grid;
    std::vector<StatementRow *> m_rows;
    std::size_t m_shown = 0; ///< of the rows, the first ones
    qsizetype m_entered = 1;
    bool m_settled = false;
    FirstFailure m_failures;
};

} // namespace zelvane
