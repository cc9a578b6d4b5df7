// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/statementslider.h"
#include "platform/runtimeerror.h"

#include <functional>
#include <optional>
#include <QObject>

class QGridLayout;
class QLabel;
class QLineEdit;
class QSlider;
class QWidget;

namespace zelvane
{

class Desktop;

/// The first failure of several pieces of work, all of which are done.
class FirstFailure
{
public:
    void Try(const std::function<void()> &work);
    /// What is kept, which is forgotten then.
    std::optional<RunTimeError> Take();

private:
    std::optional<RunTimeError> m_failure;
};

/// A row of the form, for one p-field after the other: name, slider, text and unit. Slider and text follow
/// each other.
class StatementRow : public QObject
{
    Q_OBJECT

public:
    /// @param index of the row in the grid, from 0; part of its controls' names
    StatementRow(Desktop &desktop, int index, QWidget *page, QGridLayout &grid);

    /// @param field outlives what is shown of it
    /// @param position of the p-field in the instrument, from 1
    void ShowField(pClass &field, qsizetype position, FirstFailure &failures);
    void SetVisible(bool visible);
    /// The distance of the slider's ticks, and of its pages. @throws RunTimeError for ticks that cannot be
    /// told
    void SetTicks();
    /// Copies the text into the p-field.
    void TakeText();
    void Run(SliderCommand command);

    qsizetype Position() const { return m_position; }
    QSlider *Slider() const { return slP; }
    QLineEdit *Text() const { return txtPValue; }

private:
    void SliderMoved();
    /// Takes the slider to where the text is.
    void FollowText();

    Desktop &m_desktop;
    QLabel *lblPName;
    QSlider *slP;
    QLineEdit *txtPValue;
    QLabel *lblPFormat;
    pClass *m_field = nullptr;
    qsizetype m_position = 0;
    SliderRange m_range;
};

} // namespace zelvane
