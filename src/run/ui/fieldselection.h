// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLineEdit;
class QWidget;

namespace zelvane
{

/// The line edit of a text box or of an editable combo box; null for any other control.
QLineEdit *FieldOf(QWidget *control);

/// Puts a text in place of the selection of a field, and leaves it selected.
void PutSelected(QLineEdit &field, const QString &text);

/// Puts flags in place of the selection of a field, with blanks between them and what they would touch. The
/// caret stands behind them. @return where the flags begin, from 0
int PutFlags(QLineEdit &field, const QString &flags);

/// What is selected in a field. It is held because a field that loses the focus unselects, while what is
/// picked elsewhere has to go where the selection was.
class FieldSelection
{
public:
    void Hold(const QLineEdit &field);
    /// Selects it again; nothing happens when the text is another one by now, or when something is selected.
    void Restore(QLineEdit &field) const;

private:
    QString m_text;
    int m_start = -1;
    int m_length = 0;
};

} // namespace zelvane
