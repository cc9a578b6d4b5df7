// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <initializer_list>
#include <QList>
#include <QString>

class QComboBox;
class QDialog;
class QDialogButtonBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;
class QWidget;

// The parts that dialogs are made of, so that a dialog reads as the list of its controls.

namespace zelvane
{

class Desktop;
struct FileDialogRequest;

/// Gives a control the name by which tests and scripts find it. @param spoken the name that a screen reader
/// says, where neither the control's own text nor a label tells it
template <typename Widget> Widget *Named(Widget *widget, const QString &name, const QString &spoken = {})
{
    widget->setObjectName(name);
    if (!spoken.isEmpty())
        widget->setAccessibleName(spoken);
    return widget;
}

/// The caption of a dialog that carries the program's name.
QString ProgramCaption(const QString &dialog);

// Fields

/// A label for a field: it carries the field's key, shows the same hint, and gives the field its spoken name
/// unless the field has one. The hint stays the field's description when its tooltip tells something else.
QLabel *LabelFor(QWidget *field, const QString &caption, const QString &hint = {});

/// A width in average characters.
int CharacterWidth(const QWidget &widget, int characters);

/// A list of earlier entries with free typing, which neither completes what is typed nor adds it to the rows,
/// and does not grow with its rows.
QComboBox *NewTypingList(QWidget *parent, const QString &name);

/// Shows a text from its beginning on, which tells most of a long one.
void ShowFromStart(QLineEdit &field, const QString &text);

/// A field that gets the focus selects its whole text: after the click that gives it the focus, which sets
/// the caret, and not when the window or a menu only gives it back.
void SelectOnFocus(QLineEdit *field);

/// Puts the file that the user picks into a field; after Cancel the field stays as it is.
void PickFile(Desktop &desktop, const FileDialogRequest &request, QLineEdit &field);
/// The same for a folder. @param start where the picker begins
void PickFolder(Desktop &desktop, const QString &title, const QString &start, QLineEdit &field);

// Rows

/// A row of a form.
struct FormRow {
    QString caption;
    QWidget *field;
    QString hint = {};             ///< of field and label
    QPushButton *button = nullptr; ///< behind the field; its spoken name begins with the field's
    QWidget *spinner = nullptr;    ///< at the field's right edge
    QString labelName = {};
};

/// The rows of a form, one under the other in the order of the calls: labels, fields, buttons.
class FormGrid
{
public:
    /// @param page gets the form as its layout; without one the form is put into another layout
    explicit FormGrid(QWidget *page = nullptr);

    /// @return the label
    QLabel *Add(const FormRow &row);
    /// What belongs to no label, from the column of the fields on.
    void AddUnder(QWidget *widget);
    void AddUnder(QLayout *layout);
    /// As wide as the form.
    void AddAcross(QWidget *widget);
    void AddAcross(QLayout *layout);
    /// Empty room that grows with the dialog.
    void AddStretch();

    QGridLayout *Layout() const { return m_grid; }

private:
    QGridLayout *m_grid;
    int m_row = 0;
};

/// Controls under one another from the top down, the rest of the room below them.
QVBoxLayout *Column(std::initializer_list<QWidget *> controls);
/// Controls beside one another from the left, the rest of the room behind them.
QHBoxLayout *Line(std::initializer_list<QWidget *> controls);
/// Fills a frame with controls under one another.
void Fill(QWidget &frame, std::initializer_list<QWidget *> controls);

/// Lets Tab go to the option that is chosen, as it does by itself once the keyboard has been among them.
void TabToTheChosen(std::initializer_list<QRadioButton *> options);

/// Lets the Tab key go from each control to the next.
void SetTabOrder(const QList<QWidget *> &controls);

// Small screens

/// A page that scrolls where it is given less room than its controls need. The control that the keyboard
/// comes to is brought into view.
QWidget *ScrollPage(QWidget *content);
/// Gives a dialog, before it is shown, the size that it asks for, as far as the screen has room.
void FitToScreen(QDialog &dialog);

// The end of a dialog

/// Enter presses `enter`, wherever the keyboard is but on `escape`, which rejects the dialog as Esc does. No
/// other button of the dialog takes Enter. What a key with Alt has just pressed comes before it. @param enter
/// may be null: Enter is for the fields then
void SetEnterAndEscape(QDialog &dialog, QPushButton *enter, QPushButton *escape);

/// The two buttons that end a dialog, in the order of the desktop. @param confirm what Enter and `ok` do; it
/// closes the dialog when all is well
QDialogButtonBox *ButtonBox(QDialog &dialog, QPushButton *ok, QPushButton *cancel,
                            const std::function<void()> &confirm);

} // namespace zelvane
