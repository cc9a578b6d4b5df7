// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/statementrow.h"

#include "instruments/instrclass.h"
#include "instruments/statementfields.h"
#include "platform/desktop.h"
#include "platform/ui/onelinefield.h"
#include "shell/errorreport.h"
#include "shell/ui/form.h"
#include "shell/ui/plaintooltip.h"
#include "shell/ui/statusbar.h"

#include <algorithm>
#include <limits>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QSignalBlocker>
#include <QSlider>
#include <QString>
#include <QWidget>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

// Widths in characters.
constexpr int NameWidth = 32; ///< the most of a name that is shown
constexpr int SliderWidth = 28;
constexpr int TextWidth = 14;
constexpr int UnitWidth = 12; ///< the most of a unit that is shown

constexpr int Pages = 10; ///< of a slider whose ticks could not be told

/// Puts a slider to a value that is the program's own doing.
void Place(QSlider &slider, int value)
{
    const QSignalBlocker quiet(slider);
    slider.setValue(value);
}

void PutText(QLineEdit &field, const QString &text)
{
    const QSignalBlocker quiet(field);
    PutKeptText(field, text); // a quoted value may go over several lines
}

} // namespace

void FirstFailure::Try(const std::function<void()> &work)
{
    try {
        work();
    } catch (const RunTimeError &error) {
        if (!m_failure)
            m_failure = error;
    }
}

std::optional<RunTimeError> FirstFailure::Take()
{
    return std::exchange(m_failure, std::nullopt);
}

StatementRow::StatementRow(Desktop &desktop, int index, QWidget *page, QGridLayout &grid)
    : QObject(page), m_desktop(desktop)
{
    const QString suffix = u'_' + QString::number(index);
    lblPName = Named(new QLabel(page), u"lblPName"_s + suffix);
    slP = Named(new QSlider(Qt::Horizontal, page), u"slP"_s + suffix);
    txtPValue = Named(new QLineEdit(page), u"txtPValue"_s + suffix);
    lblPFormat = Named(new ElidedLabel(page), u"lblPFormat"_s + suffix);

    lblPName->setTextFormat(Qt::PlainText);
    lblPName->setBuddy(txtPValue);
    slP->setFocusPolicy(Qt::StrongFocus);
    slP->setMinimumWidth(CharacterWidth(*page, SliderWidth));
    slP->setTickPosition(QSlider::TicksBelow);
    slP->setContextMenuPolicy(Qt::CustomContextMenu);
    txtPValue->setMinimumWidth(CharacterWidth(*page, TextWidth));
    txtPValue->setMaxLength(std::numeric_limits<int>::max());
    SelectOnFocus(txtPValue);
    lblPFormat->setTextFormat(Qt::PlainText);
    lblPFormat->setMaximumWidth(CharacterWidth(*page, UnitWidth));

    grid.addWidget(lblPName, index, 0);
    grid.addWidget(slP, index, 1);
    grid.addWidget(txtPValue, index, 2);
    grid.addWidget(lblPFormat, index, 3);
    connect(slP, &QSlider::valueChanged, this, &StatementRow::SliderMoved);
    connect(txtPValue, &QLineEdit::textChanged, this,
            [this] { Guarded(m_desktop, [this] { FollowText(); }); });
}

void StatementRow::ShowField(pClass &field, qsizetype position, FirstFailure &failures)
{
    m_field = &field;
    m_position = position;
    m_range = {};
    failures.Try([&] { m_range = RangeOf(field); });
    {
        const QSignalBlocker quiet(slP);
        slP->setRange(m_range.minimum, m_range.maximum);
        slP->setValue(m_range.minimum);
    }
    slP->setEnabled(position != 1 && field.formato != PFormat::String);
    txtPValue->setEnabled(position != 1);
    slP->setToolTip(SliderHint(field));

    lblPName->setText(lblPName->fontMetrics().elidedText(FieldCaption(field, position), Qt::ElideRight,
                                                         CharacterWidth(*lblPName->parentWidget(), NameWidth),
                                                         Qt::TextShowMnemonic));
    lblPName->setToolTip(PlainToolTip(FieldHint(field, position)));
    const QString spoken = field.nome.isEmpty() ? FieldName(position) : field.nome;
    for (QWidget *control : {static_cast<QWidget *>(slP), static_cast<QWidget *>(txtPValue)}) {
        control->setAccessibleName(spoken);
        control->setAccessibleDescription(FieldHint(field, position));
    }

    PutText(*txtPValue, field.value);
    lblPFormat->setText(field.unit);
    failures.Try([&] { FollowText(); });
}

void StatementRow::SetVisible(bool visible)
{
    for (QWidget *control : {static_cast<QWidget *>(lblPName), static_cast<QWidget *>(slP),
                             static_cast<QWidget *>(txtPValue), static_cast<QWidget *>(lblPFormat)})
        control->setVisible(visible);
}

void StatementRow::SetTicks()
{
    // A slider whose ticks cannot be told is still moved by pages.
    const auto page = [this](int step) {
        slP->setTickInterval(step);
        slP->setPageStep(step);
    };
    page(std::max(1, int((double(m_range.maximum) - m_range.minimum) / Pages)));
    const qint32 frequency = TickFrequency(m_range);
    if (frequency != 0)
        page(frequency);
}

void StatementRow::TakeText()
{
    m_field->value = txtPValue->text();
}

void StatementRow::SliderMoved()
{
    Guarded(m_desktop, [this] {
        const std::optional<QString> text =
            TextOfSlider(m_field->formato, m_range, slP->value(), m_desktop.IsKeyDown(KeyCode::Ctrl));
        if (!text || *text == txtPValue->text())
            return;
        const bool selected = txtPValue->selectedText() == txtPValue->text();
        PutText(*txtPValue, *text);
        if (selected)
            txtPValue->selectAll(); // what is typed next takes its place, as before
        FollowText();
    });
}

void StatementRow::FollowText()
{
    if (const std::optional<qint32> value =
            SliderOfText(m_field->formato, m_range, slP->value(), txtPValue->text()))
        Place(*slP, *value);
}

void StatementRow::Run(SliderCommand command)
{
    Guarded(m_desktop, [&] {
        if (const std::optional<qint32> value =
                SliderTarget(command, m_range, QRandomGenerator::global()->generateDouble()))
            Place(*slP, *value);
    });
    SliderMoved();
}

} // namespace zelvane
