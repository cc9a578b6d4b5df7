// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/statementform.h"

#include "instruments/statementfields.h"
#include "shell/ui/focusreason.h"

#include <algorithm>
#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPoint>
#include <QScrollBar>
#include <QSize>
#include <QSlider>
#include <QVBoxLayout>
#include <QWidget>

namespace zelvane
{

namespace
{

bool IsEntry(const QEvent &event)
{
    return !IsAway(static_cast<const QFocusEvent &>(event));
}

/// Whether the mouse has brought the keyboard: what is under it must not move then.
bool IsByMouse(const QEvent &event)
{
    return static_cast<const QFocusEvent &>(event).reason() == Qt::MouseFocusReason;
}

} // namespace

StatementForm::StatementForm(Desktop &desktop, InstrClass &instrument, QWidget *parent)
    : QScrollArea(parent), m_desktop(desktop), m_instrument(instrument), m_grid(new QGridLayout)
{
    auto *page = new QWidget;
    m_grid->setColumnStretch(1, 2);
    m_grid->setColumnStretch(2, 1);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(m_grid);
    column->addStretch();
    setWidget(page);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus); // its rows have it
}

// The rows

void StatementForm::TakeTexts()
{
    for (std::size_t index = 0; index < m_shown; ++index)
        m_rows[index]->TakeText();
}

void StatementForm::ShowGroup(const std::optional<QString> &group)
{
    // Where they are seen, each control that comes would have all rows laid out again.
    widget()->hide();
    m_shown = 0;
    for (qsizetype position = 1; group && position <= m_instrument.pCol.Count(); ++position) {
        pClass &field = m_instrument.pCol.At(position - 1);
        if (GroupRow(field) != *group)
            continue;
        if (m_shown == m_rows.size())
            AddRow();
        m_rows[m_shown++]->ShowField(field, position, m_failures);
    }
    for (std::size_t index = 0; index < m_rows.size(); ++index)
        m_rows[index]->SetVisible(index < m_shown);
    widget()->show();
}

void StatementForm::AddRow()
{
    auto *row = new StatementRow(m_desktop, int(m_rows.size()), widget(), *m_grid);
    QSlider *slider = row->Slider();
    slider->installEventFilter(this);
    row->Text()->installEventFilter(this);
    connect(slider, &QSlider::customContextMenuRequested, this, [this, slider](const QPoint &place) {
        slider->setFocus(Qt::OtherFocusReason);
        Q_EMIT MenuAsked(slider->mapToGlobal(place));
    });
    m_rows.push_back(row);
}

void StatementForm::SetTicks()
{
    for (std::size_t index = 0; index < m_shown; ++index)
        m_failures.Try([this, index] { Sl_TickFrequency(int(index)); });
}

void StatementForm::Sl_TickFrequency(int index)
{
    if (index != -1)
        m_rows[std::size_t(index)]->SetTicks();
}

QSize StatementForm::Content() const
{
    return widget()->sizeHint() + QSize(verticalScrollBar()->sizeHint().width(), 0);
}

StatementRow *StatementForm::RowOf(const QObject *control)
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [control](const StatementRow *row) {
        return control && (row->Slider() == control || row->Text() == control);
    });
    return found == m_rows.end() ? nullptr : *found;
}

void StatementForm::Run(SliderCommand command)
{
    if (StatementRow *row = RowOf(qobject_cast<QSlider *>(window()->focusWidget())))
        row->Run(command);
}

// The keyboard

bool StatementForm::FocusField(qsizetype position)
{
    for (std::size_t index = 0; index < m_shown; ++index) {
        const StatementRow &row = *m_rows[index];
        if (row.Position() != position || !row.Text()->isEnabled())
            continue;
        row.Text()->setFocus(Qt::OtherFocusReason);
        return true;
    }
    return FocusFirstField();
}

bool StatementForm::FocusFirstField()
{
    for (std::size_t index = 0; index < m_shown; ++index) {
        const StatementRow &row = *m_rows[index];
        if (!row.Text()->isEnabled())
            continue;
        row.Text()->setFocus(Qt::OtherFocusReason);
        row.Text()->selectAll();
        m_entered = row.Position();
        return true;
    }
    return false;
}

void StatementForm::KeepFocus(QWidget *focused)
{
    const StatementRow *row = m_settled ? RowOf(focused) : nullptr;
    if (!row || !focused->isVisible())
        return;
    focused->setFocus(Qt::OtherFocusReason);
    if (!focused->hasFocus())
        return; // it is disabled now
    row->Text()->selectAll();
    Enter(*row);
}

void StatementForm::Enter(const StatementRow &row)
{
    m_entered = row.Position();
    Q_EMIT FieldEntered(row.Position());
}

bool StatementForm::FilterSlider(const StatementRow &row, QEvent &event)
{
    switch (event.type()) {
    case QEvent::FocusIn:
        if (IsEntry(event)) {
            Q_EMIT SliderEntered(true);
            row.Text()->selectAll();
            Enter(row);
            if (!IsByMouse(event))
                ensureWidgetVisible(row.Slider());
        }
        return false;
    case QEvent::FocusOut:
        if (IsEntry(event)) {
            Q_EMIT SliderEntered(false);
            row.Text()->deselect();
        }
        return false;
    case QEvent::Wheel:
        // Scrolling by moves the rows, not their sliders.
        if (row.Slider()->hasFocus())
            return false;
        event.ignore();
        return true;
    default:
        return false;
    }
}

bool StatementForm::FilterText(const StatementRow &row, QEvent &event)
{
    if (event.type() == QEvent::FocusIn && IsEntry(event)) {
        Enter(row);
        if (!IsByMouse(event))
            ensureWidgetVisible(row.Text());
    }
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(event);
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: {
        // The slider raises its value by Up and Page Up. One that is disabled would leave the key to the
        // rows, which scroll.
        QKeyEvent sent(QEvent::KeyPress, key.key(), key.modifiers(), key.text(), key.isAutoRepeat());
        if (row.Slider()->isEnabled())
            QCoreApplication::sendEvent(row.Slider(), &sent);
        return true;
    }
    default:
        return false;
    }
}

bool StatementForm::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        // The toolkit gives the first control the keyboard before the dialog is seen.
        if (!m_settled)
            break;
        [[fallthrough]];
    case QEvent::FocusOut:
    case QEvent::Wheel:
    case QEvent::KeyPress:
        if (const StatementRow *row = RowOf(watched)) {
            if (watched == row->Slider() ? FilterSlider(*row, *event) : FilterText(*row, *event))
                return true;
        }
        break;
    default:
        break;
    }
    return QScrollArea::eventFilter(watched, event);
}

} // namespace zelvane
