// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/numericslider.h"

#include <QDialog>

class QPaintEvent;
class QPoint;
class QString;
class QWidget;

namespace zelvane
{

class NumberSlider;
class TextControl;
struct DocumentSteps;
struct EditorContext;

/// The slider of the number that is selected in the text: a window that holds nothing else, and closes on
/// Escape, on a click elsewhere and when another program comes to the front. What the slider is moved to goes
/// into the text when it is let go, as one undo step.
class frmNumCtrl : public QDialog
{
    Q_OBJECT

public:
    /// @param at the mouse, on the screen; the window opens there
    /// @throws RunTimeError 6 "Overflow" for a number beyond the slider's range
    frmNumCtrl(EditorContext &editor, const DocumentSteps &steps, TextControl &text, const QPoint &at,
               QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void Move();
    void ShowStatus(const QString &status);
    /// The user has let the slider go: by the mouse, a key or the wheel.
    void Release();

    EditorContext &m_editor;
    const DocumentSteps &m_steps;
    TextControl &m_text;
    NumericSlider m_setup;
    bool m_moved = false; ///< since the slider was last let go
    NumberSlider *slNum;
};

} // namespace zelvane
