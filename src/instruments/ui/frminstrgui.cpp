// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/frminstrgui.h"

#include "platform/desktop.h"
#include "platform/ui/onelinefield.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/commands.h"
#include "shell/ui/form.h"
#include "shell/ui/icons.h"
#include "shell/ui/plaintooltip.h"
#include "shell/ui/screenplace.h"
#include "shell/ui/statusbar.h"
#include "shell/ui/toolbutton.h"
#include "shell/ui/windowcontext.h"

#include <algorithm>
#include <limits>
#include <QAction>
#include <QBrush>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QList>
#include <QMargins>
#include <QMenu>
#include <QMetaObject>
#include <QPalette>
#include <QPoint>
#include <QRandomGenerator>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QSize>
#include <QSizePolicy>
#include <QSlider>
#include <QStackedWidget>
#include <QString>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVBoxLayout>
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
constexpr int GroupWidth = 12;
constexpr int PaneWidth = 8;
constexpr int WidestPane = 24; ///< of those behind the description

constexpr int Panes = 4;         ///< of the status
constexpr int BuiltInFields = 3; ///< the first p-fields, which every instrument has
constexpr int ListRows = 10;     ///< that a long list shows at least
constexpr int Pages = 10;        ///< of a slider whose ticks could not be told

constexpr int PositionRole = Qt::UserRole;

/// Whether the keyboard has come by a key or the mouse, not back from a menu or another window.
bool IsEntry(const QEvent &event)
{
    const Qt::FocusReason reason = static_cast<const QFocusEvent &>(event).reason();
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

/// Whether the mouse has brought the keyboard: what is under it must not move then.
bool IsByMouse(const QEvent &event)
{
    return static_cast<const QFocusEvent &>(event).reason() == Qt::MouseFocusReason;
}

bool IsEnter(const QEvent &event)
{
    const int key = static_cast<const QKeyEvent &>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

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

frmInstrGUI::frmInstrGUI(EditorContext &editor, const DocumentSteps &steps, StatementFields statement,
                         std::function<void()> properties, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_steps(steps),
      m_statement(std::move(statement)),
      m_properties(std::move(properties)),
      tlbInstrGUI(Named(new QToolBar(this), u"tlbInstrGUI"_s)),
      cmbGroup(Named(new QComboBox(this), u"cmbGroup"_s, u"Parameters Groups"_s)),
      m_scroll(Named(new QScrollArea(this), u"picRows"_s)),
      lvwP(Named(new QTreeWidget(this), u"lvwP"_s, u"p-Fields"_s)),
      m_views(new QStackedWidget(this)),
      mnuSl(Named(new QMenu(this), u"mnuSl"_s))
{
    setObjectName(u"frmInstrGUI"_s);
    setWindowTitle(u"Instrument "_s + QString::number(Instrument().number) + u" - "_s + Instrument().nome);
    BuildSliderMenu();
    BuildToolbar();
    BuildForm();
    BuildList();
    LayOut();

    cmbGroup->setToolTip(u"Parameters Groups"_s);
    cmbGroup->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbGroup->setMinimumContentsLength(GroupWidth);
    cmbGroup->addItems(GroupsOf(Instrument()));
    cmbGroup->installEventFilter(this);
    connect(cmbGroup, &QComboBox::currentIndexChanged, this, &frmInstrGUI::ShowChosenGroup);
    ShowChosenGroup();
    FocusFirstField();
}

void frmInstrGUI::BuildSliderMenu()
{
    const auto add = [this](SliderCommand command, const QString &caption) {
        QAction *action = mnuSl->addAction(caption);
        action->setObjectName(u"mnuSl_"_s + QString::number(int(command)));
        connect(action, &QAction::triggered, this, [this, command] { RunSliderCommand(command); });
    };
    add(SliderCommand::Zero, u"Reset to 0"_s);
    add(SliderCommand::Centre, u"Reset to center"_s);
    mnuSl->addSeparator();
    add(SliderCommand::Random, u"Randomize"_s);
}

QAction *frmInstrGUI::AddTool(const QString &name, const QString &caption, const QString &hint)
{
    QAction *action = tlbInstrGUI->addAction(Icons::Load(name), caption);
    action->setObjectName(u"tlbInstrGUI_"_s + name);
    action->setToolTip(hint);
    return action;
}

void frmInstrGUI::BuildToolbar()
{
    tlbInstrGUI->setIconSize(QSize(16, 16));
    tlbInstrGUI->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QAction *properties = AddTool(u"instr"_s, u"Properties"_s, u"Instrument Properties (Ctrl+I)"_s);
    properties->setShortcut(Qt::CTRL | Qt::Key_I);
    connect(properties, &QAction::triggered, this, &frmInstrGUI::EditProperties);
    m_sort = AddTool(u"sort"_s, u"List"_s, u"All p-fields as a list (Ctrl+L)"_s);
    m_sort->setShortcut(Qt::CTRL | Qt::Key_L);
    m_sort->setCheckable(true);
    connect(m_sort, &QAction::triggered, this, &frmInstrGUI::SortPressed);
    m_slider = AddTool(u"slider"_s, u"Slider"_s, u"Reset the slider to 0"_s);
    m_slider->setMenu(mnuSl);
    m_slider->setEnabled(false);
    connect(m_slider, &QAction::triggered, this, [this] { RunSliderCommand(SliderCommand::Zero); });
    tlbInstrGUI->addSeparator();
    connect(AddTool(u"ok"_s, u"OK"_s, u"Write the values into the statement (Enter)"_s), &QAction::triggered,
            this, &frmInstrGUI::Confirm);
    connect(AddTool(u"delete"_s, u"Cancel"_s, u"Leave the statement as it is (Esc)"_s), &QAction::triggered,
            this, &frmInstrGUI::reject);

    for (QAction *action : tlbInstrGUI->actions()) {
        auto *face = qobject_cast<QToolButton *>(tlbInstrGUI->widgetForAction(action));
        if (!face)
            continue;
        face->setObjectName(action->objectName());
        if (action->menu())
            face->setPopupMode(QToolButton::MenuButtonPopup);
        face->setFocusPolicy(Qt::NoFocus); // what the buttons do is for the control that has the keyboard
    }
    ShowFlatButtons(*tlbInstrGUI, m_editor.settings);
    ShowExtensionInTextColour(*tlbInstrGUI);
}

void frmInstrGUI::BuildForm()
{
    auto *page = new QWidget;
    m_form = new QGridLayout;
    m_form->setColumnStretch(1, 2);
    m_form->setColumnStretch(2, 1);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(m_form);
    column->addStretch();
    m_scroll->setWidget(page);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus); // its rows have it
}

void frmInstrGUI::BuildList()
{
    lvwP->setHeaderLabels({u"Name"_s, u"p-Field"_s, u"Value"_s, u"Unit"_s, u"Group"_s});
    lvwP->setRootIsDecorated(false);
    lvwP->setUniformRowHeights(true);
    lvwP->setAllColumnsShowFocus(true);
    lvwP->installEventFilter(this);
    const auto show = [this](const QTreeWidgetItem *item) {
        if (item)
            ShowPanesOf(item->data(0, PositionRole).toLongLong());
    };
    connect(lvwP, &QTreeWidget::itemClicked, this, show);
    connect(lvwP, &QTreeWidget::currentItemChanged, this, show);
    connect(lvwP, &QTreeWidget::itemDoubleClicked, this,
            [this](const QTreeWidgetItem *item) { JumpTo(*item); });
    connect(lvwP, &QTreeWidget::itemSelectionChanged, this, &frmInstrGUI::MarkSelectedItem);
}

QWidget *frmInstrGUI::NewStatus()
{
    auto *picStatus = Named(new QWidget(this), u"picStatus"_s);
    auto *line = new QHBoxLayout(picStatus);
    line->setContentsMargins(0, 0, 0, 0);
    for (int index = 0; index < Panes; ++index) {
        auto *pane = Named(new ElidedLabel(picStatus), u"lblStatus_"_s + QString::number(index));
        pane->setTextFormat(Qt::PlainText);
        pane->setMinimumWidth(CharacterWidth(*this, PaneWidth));
        pane->setMaximumWidth(index == 0 ? QWIDGETSIZE_MAX : CharacterWidth(*this, WidestPane));
        if (index == 0) // takes what room there is, but asks for none
            pane->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        if (index > 0) {
            auto *edge = new QFrame(picStatus);
            edge->setFrameShape(QFrame::VLine);
            edge->setFrameShadow(QFrame::Sunken);
            line->addWidget(edge);
        }
        line->addWidget(pane, index == 0 ? 1 : 0);
        lblStatus.push_back(pane);
    }
    ShowPanes({}, u"p-Field"_s, u"Variable"_s, u"Format"_s);
    return picStatus;
}

void frmInstrGUI::LayOut()
{
    auto *top = new QHBoxLayout;
    top->addWidget(tlbInstrGUI);
    top->addWidget(cmbGroup, 1);
    m_views->addWidget(m_scroll);
    m_views->addWidget(lvwP);
    auto *edge = new QFrame(this);
    edge->setFrameShape(QFrame::HLine);
    edge->setFrameShadow(QFrame::Sunken);
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(m_views, 1);
    all->addWidget(edge);
    all->addWidget(NewStatus());
}

void frmInstrGUI::FocusFirstField()
{
    for (std::size_t index = 0; index < m_shown; ++index) {
        const Row &row = m_rows[index];
        if (!row.txtPValue->isEnabled())
            continue;
        row.txtPValue->setFocus(Qt::OtherFocusReason);
        row.txtPValue->selectAll();
        m_entered = row.position;
        return;
    }
    cmbGroup->setFocus(Qt::OtherFocusReason);
}

void frmInstrGUI::FocusField(qsizetype position)
{
    for (std::size_t index = 0; index < m_shown; ++index) {
        const Row &row = m_rows[index];
        if (row.position != position || !row.txtPValue->isEnabled())
            continue;
        row.txtPValue->setFocus(Qt::OtherFocusReason);
        return;
    }
    FocusFirstField();
}

void frmInstrGUI::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_settled = true;
            ReportFailure();
        },
        Qt::QueuedConnection);
}

// The rows

void frmInstrGUI::TakeTexts()
{
    for (std::size_t index = 0; index < m_shown; ++index)
        FieldOf(m_rows[index]).value = m_rows[index].txtPValue->text();
}

void frmInstrGUI::AddRow()
{
    const int index = int(m_rows.size());
    const QString suffix = u'_' + QString::number(index);
    QWidget *page = m_scroll->widget();
    Row row{};
    row.lblPName = Named(new QLabel(page), u"lblPName"_s + suffix);
    row.slP = Named(new QSlider(Qt::Horizontal, page), u"slP"_s + suffix);
    row.txtPValue = Named(new QLineEdit(page), u"txtPValue"_s + suffix);
    row.lblPFormat = Named(new ElidedLabel(page), u"lblPFormat"_s + suffix);

    row.lblPName->setTextFormat(Qt::PlainText);
    row.lblPName->setBuddy(row.txtPValue);
    row.slP->setFocusPolicy(Qt::StrongFocus);
    row.slP->setMinimumWidth(CharacterWidth(*this, SliderWidth));
    row.slP->setTickPosition(QSlider::TicksBelow);
    row.slP->setContextMenuPolicy(Qt::CustomContextMenu);
    row.txtPValue->setMinimumWidth(CharacterWidth(*this, TextWidth));
    row.txtPValue->setMaxLength(std::numeric_limits<int>::max());
    SelectOnFocus(row.txtPValue);
    row.lblPFormat->setTextFormat(Qt::PlainText);
    row.lblPFormat->setMaximumWidth(CharacterWidth(*this, UnitWidth));

    m_form->addWidget(row.lblPName, index, 0);
    m_form->addWidget(row.slP, index, 1);
    m_form->addWidget(row.txtPValue, index, 2);
    m_form->addWidget(row.lblPFormat, index, 3);
    row.slP->installEventFilter(this);
    row.txtPValue->installEventFilter(this);
    connect(row.slP, &QSlider::valueChanged, this, [this, index] { SliderMoved(RowAt(index)); });
    connect(row.slP, &QSlider::customContextMenuRequested, this,
            [this, slider = row.slP](const QPoint &place) { PopUpSliderMenu(*slider, place); });
    connect(row.txtPValue, &QLineEdit::textChanged, this,
            [this, index] { Guarded(m_editor.desktop, [this, index] { FollowText(RowAt(index)); }); });
    m_rows.push_back(row);
}

void frmInstrGUI::ShowChosenGroup()
{
    ShowGroup(cmbGroup->currentText());
}

void frmInstrGUI::ShowGroup(const std::optional<QString> &group)
{
    TakeTexts();
    // Where they are seen, each control that comes would have all rows laid out again.
    QWidget *const rows = m_scroll->widget();
    QWidget *const focused = focusWidget();
    rows->hide();
    m_shown = 0;
    for (qsizetype position = 1; group && position <= Instrument().pCol.Count(); ++position) {
        if (GroupRow(FieldAt(position)) != *group)
            continue;
        if (m_shown == m_rows.size())
            AddRow();
        ShowField(m_rows[m_shown++], position);
    }
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
        const Row &row = m_rows[index];
        for (QWidget *control :
             {static_cast<QWidget *>(row.lblPName), static_cast<QWidget *>(row.slP),
              static_cast<QWidget *>(row.txtPValue), static_cast<QWidget *>(row.lblPFormat)})
            control->setVisible(index < m_shown);
    }
    rows->show();
    FitSize();
    // The control that had the keyboard may be another p-field's now.
    if (const Row *row = m_settled ? RowOf(focused) : nullptr; row && focused->isVisible()) {
        focused->setFocus(Qt::OtherFocusReason);
        if (focused->hasFocus()) { // not where it is disabled now
            row->txtPValue->selectAll();
            EnterRow(*row);
        }
    }
    for (std::size_t index = 0; index < m_shown; ++index)
        Try([this, index] { Sl_TickFrequency(int(index)); });
    ReportFailure();
}

void frmInstrGUI::ShowField(Row &row, qsizetype position)
{
    const pClass &field = FieldAt(position);
    row.position = position;
    row.range = {};
    Try([&] { row.range = RangeOf(field); });
    {
        const QSignalBlocker quiet(row.slP);
        row.slP->setRange(row.range.minimum, row.range.maximum);
        row.slP->setValue(row.range.minimum);
    }
    row.slP->setEnabled(position != 1 && field.formato != PFormat::String);
    row.txtPValue->setEnabled(position != 1);
    row.slP->setToolTip(SliderHint(field));

    const QString caption = FieldCaption(field, position);
    row.lblPName->setText(row.lblPName->fontMetrics().elidedText(
        caption, Qt::ElideRight, CharacterWidth(*this, NameWidth), Qt::TextShowMnemonic));
    row.lblPName->setToolTip(PlainToolTip(FieldHint(field, position)));
    const QString spoken = field.nome.isEmpty() ? FieldName(position) : field.nome;
    for (QWidget *control : {static_cast<QWidget *>(row.slP), static_cast<QWidget *>(row.txtPValue)}) {
        control->setAccessibleName(spoken);
        control->setAccessibleDescription(FieldHint(field, position));
    }

    PutText(*row.txtPValue, field.value);
    row.lblPFormat->setText(field.unit);
    Try([&] { FollowText(row); });
}

void frmInstrGUI::Sl_TickFrequency(int index)
{
    if (index == -1)
        return;
    const Row &row = RowAt(index);
    // A slider whose ticks cannot be told is still moved by pages.
    const auto page = [&row](int step) {
        row.slP->setTickInterval(step);
        row.slP->setPageStep(step);
    };
    page(std::max(1, int((double(row.range.maximum) - row.range.minimum) / Pages)));
    const qint32 frequency = TickFrequency(row.range);
    if (frequency != 0)
        page(frequency);
}

void frmInstrGUI::Try(const std::function<void()> &work)
{
    try {
        work();
    } catch (const RunTimeError &error) {
        if (!m_failure)
            m_failure = error;
    }
}

void frmInstrGUI::ReportFailure()
{
    if (m_settled && m_failure)
        ReportError(m_editor.desktop, *std::exchange(m_failure, std::nullopt));
}

void frmInstrGUI::FitSize()
{
    QWidget *page = m_scroll->widget();
    page->layout()->activate();
    layout()->activate();
    QSize content = page->sizeHint() + QSize(m_scroll->verticalScrollBar()->sizeHint().width(), 0);
    if (m_views->currentWidget() == lvwP) {
        const int rows = std::min(std::max(lvwP->topLevelItemCount(), 1), ListRows);
        content = {lvwP->header()->length() + 2 * lvwP->frameWidth(), lvwP->header()->sizeHint().height() +
                                                                          rows * lvwP->sizeHintForRow(0) +
                                                                          2 * lvwP->frameWidth()};
        content = content.expandedTo(m_views->size());
    }
    const QSize others = layout()->sizeHint() - m_views->sizeHint();
    const QMargins margins = layout()->contentsMargins();
    const QSize wanted(
        std::max({width(), layout()->sizeHint().width(), content.width() + margins.left() + margins.right()}),
        content.height() + others.height());
    resize(wanted.boundedTo(screen()->availableSize() - LeastFrame));
    KeepOnScreen(*this);
}

// Sliders and texts

void frmInstrGUI::SliderMoved(Row &row)
{
    Guarded(m_editor.desktop, [&] {
        const std::optional<QString> text = TextOfSlider(FieldOf(row).formato, row.range, row.slP->value(),
                                                         m_editor.desktop.IsKeyDown(KeyCode::Ctrl));
        QLineEdit &field = *row.txtPValue;
        if (!text || *text == field.text())
            return;
        const bool selected = field.selectedText() == field.text();
        PutText(field, *text);
        if (selected)
            field.selectAll(); // what is typed next takes its place, as before
        FollowText(row);
    });
}

void frmInstrGUI::FollowText(Row &row)
{
    if (const std::optional<qint32> value =
            SliderOfText(FieldOf(row).formato, row.range, row.slP->value(), row.txtPValue->text()))
        Place(*row.slP, *value);
}

void frmInstrGUI::RunSliderCommand(SliderCommand command)
{
    // The box says nothing of use; it is kept since it has always been there.
    m_editor.desktop.MessageBox({.text = u"ciao"_s});
    auto *slider = qobject_cast<QSlider *>(focusWidget());
    Row *row = RowOf(slider);
    if (!row)
        return;
    Guarded(m_editor.desktop, [&] {
        if (const std::optional<qint32> value =
                SliderTarget(command, row->range, QRandomGenerator::global()->generateDouble()))
            Place(*slider, *value);
    });
    SliderMoved(*row);
}

frmInstrGUI::Row *frmInstrGUI::RowOf(const QObject *control)
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [control](const Row &row) {
        return control && (row.slP == control || row.txtPValue == control);
    });
    return found == m_rows.end() ? nullptr : &*found;
}

void frmInstrGUI::PopUpSliderMenu(QSlider &slider, const QPoint &place)
{
    slider.setFocus(Qt::OtherFocusReason);
    mnuSl->popup(slider.mapToGlobal(place));
}

void frmInstrGUI::EnterRow(const Row &row)
{
    m_entered = row.position;
    ShowPanesOf(row.position);
}

void frmInstrGUI::ShowPanes(const QString &description, const QString &field, const QString &variable,
                            const QString &format)
{
    lblStatus[0]->setText(description);
    lblStatus[1]->setText(field);
    lblStatus[2]->setText(variable);
    lblStatus[3]->setText(format);
}

void frmInstrGUI::ShowPanesOf(qsizetype position)
{
    const pClass &field = FieldAt(position);
    ShowPanes(field.description, FieldName(position), field.variable, FormatWord(field.formato));
}

// Keys

bool frmInstrGUI::FilterSlider(const Row &row, QEvent &event)
{
    switch (event.type()) {
    case QEvent::FocusIn:
        if (IsEntry(event)) {
            m_slider->setEnabled(true);
            row.txtPValue->selectAll();
            EnterRow(row);
            if (!IsByMouse(event))
                m_scroll->ensureWidgetVisible(row.slP);
        }
        return false;
    case QEvent::FocusOut:
        if (IsEntry(event)) {
            m_slider->setEnabled(false);
            row.txtPValue->deselect();
        }
        return false;
    case QEvent::Wheel:
        // Scrolling by moves the rows, not their sliders.
        if (row.slP->hasFocus())
            return false;
        event.ignore();
        return true;
    default:
        return false;
    }
}

bool frmInstrGUI::FilterText(const Row &row, QEvent &event)
{
    if (event.type() == QEvent::FocusIn && IsEntry(event)) {
        EnterRow(row);
        if (!IsByMouse(event))
            m_scroll->ensureWidgetVisible(row.txtPValue);
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
        if (row.slP->isEnabled())
            QCoreApplication::sendEvent(row.slP, &sent);
        return true;
    }
    default:
        return false;
    }
}

bool frmInstrGUI::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        // The toolkit gives the first control the keyboard before the dialog is seen.
        if (!m_settled)
            break;
        if (watched == cmbGroup && IsEntry(*event))
            ShowPanes(QString::number(cmbGroup->count()) + u" Parameters groups"_s,
                      FieldName(Instrument().pCol.Count()), {}, {});
        [[fallthrough]];
    case QEvent::FocusOut:
    case QEvent::Wheel:
    case QEvent::KeyPress:
        if (watched == lvwP && event->type() == QEvent::KeyPress && IsEnter(*event)) {
            if (const QTreeWidgetItem *item = lvwP->currentItem())
                JumpTo(*item);
            return true;
        }
        if (const Row *row = RowOf(watched)) {
            if (watched == row->slP ? FilterSlider(*row, *event) : FilterText(*row, *event))
                return true;
        }
        break;
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

void frmInstrGUI::keyPressEvent(QKeyEvent *event)
{
    if (IsEnter(*event))
        Confirm();
    else
        QDialog::keyPressEvent(event);
}

// The list

void frmInstrGUI::SortPressed()
{
    if (m_sort->isChecked()) {
        ShowList();
        return;
    }
    const qsizetype entered = m_entered;
    LeaveList();
    FocusField(entered); // the list had the keyboard
}

void frmInstrGUI::ShowList()
{
    const qsizetype entered = m_entered; // the keyboard goes elsewhere when its row does
    m_views->setCurrentWidget(lvwP);
    ShowGroup(std::nullopt);
    lvwP->clear();
    QList<QTreeWidgetItem *> items;
    const QBrush grey = palette().brush(QPalette::Disabled, QPalette::Text);
    for (qsizetype position = 1; position <= Instrument().pCol.Count(); ++position) {
        const pClass &field = FieldAt(position);
        auto *item =
            new QTreeWidgetItem({field.nome, FieldName(position), field.value, field.unit, field.group});
        item->setData(0, PositionRole, position);
        for (int column = 0; position <= BuiltInFields && column < item->columnCount(); ++column)
            item->setForeground(column, grey);
        items.append(item);
    }
    lvwP->addTopLevelItems(items);
    for (int column = 0; column < lvwP->columnCount(); ++column)
        lvwP->resizeColumnToContents(column);
    FitSize();
    cmbGroup->setEnabled(false);
    m_entered = entered;
    QTreeWidgetItem *item = items[entered - 1];
    lvwP->setCurrentItem(item);
    lvwP->scrollToItem(item);
    lvwP->setFocus(Qt::OtherFocusReason);
}

void frmInstrGUI::LeaveList()
{
    m_views->setCurrentWidget(m_scroll);
    lvwP->clear();
    cmbGroup->setEnabled(true);
    ShowChosenGroup();
}

void frmInstrGUI::MarkSelectedItem()
{
    for (int row = 0; row < lvwP->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = lvwP->topLevelItem(row);
        for (int column = 0; column < lvwP->columnCount(); ++column)
            item->setToolTip(column,
                             item->isSelected() ? u"Double-click to jump to selected item."_s : QString());
    }
}

void frmInstrGUI::JumpTo(const QTreeWidgetItem &item)
{
    const qsizetype position = item.data(0, PositionRole).toLongLong();
    {
        const QSignalBlocker quiet(cmbGroup);
        cmbGroup->setCurrentIndex(
            cmbGroup->findText(GroupRow(FieldAt(position)), Qt::MatchExactly | Qt::MatchCaseSensitive));
    }
    m_sort->setChecked(false);
    LeaveList();
    FocusField(position);
}

// The end

void frmInstrGUI::GetPValues()
{
    for (pClass &field : Instrument().pCol)
        field.value = RandomValue(field, QRandomGenerator::global()->generateDouble());
}

void frmInstrGUI::Confirm()
{
    Guarded(m_editor.desktop, [this] {
        TakeTexts();
        RewriteStatement(m_editor, m_steps, m_statement);
        accept();
    });
}

void frmInstrGUI::EditProperties()
{
    hide();
    m_properties();
    reject();
}

void ShowStatementDialog(const WindowContext &context)
{
    std::optional<StatementFields> statement = ReadStatement(context.editor);
    if (!statement)
        return;
    frmInstrGUI(
        context.editor, context.steps, std::move(*statement),
        [&commands = context.commands] { commands.Run(Cmd::mnuInstrEdit); }, context.window)
        .exec();
}

} // namespace zelvane
