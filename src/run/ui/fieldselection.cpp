// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/fieldselection.h"

#include "run/flagline.h"

#include <QComboBox>
#include <QLineEdit>

namespace zelvane
{

QLineEdit *FieldOf(QWidget *control)
{
    if (auto *combo = qobject_cast<QComboBox *>(control))
        return combo->lineEdit();
    return qobject_cast<QLineEdit *>(control);
}

void PutSelected(QLineEdit &field, const QString &text)
{
    const int start = field.hasSelectedText() ? field.selectionStart() : field.cursorPosition();
    field.insert(text);
    field.setSelection(start, int(text.size()));
}

int PutFlags(QLineEdit &field, const QString &flags)
{
    const QString line = field.text();
    const int start = field.hasSelectedText() ? field.selectionStart() : field.cursorPosition();
    const QString put =
        FlagsBetween(line.first(start), flags, line.sliced(start + field.selectedText().size()));
    field.insert(put);
    return start + int(put.indexOf(flags));
}

void FieldSelection::Hold(const QLineEdit &field)
{
    m_text = field.text();
    m_start = field.selectionStart();
    m_length = int(field.selectedText().size());
}

void FieldSelection::Restore(QLineEdit &field) const
{
    if (m_start >= 0 && !field.hasSelectedText() && field.text() == m_text)
        field.setSelection(m_start, m_length);
}

} // namespace zelvane
