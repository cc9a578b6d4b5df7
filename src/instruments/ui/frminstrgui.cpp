// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/frminstrgui.h"

#include "instruments/instrclass.h"
#include "instruments/ui/statementform.h"
#include "instruments/ui/statementlist.h"
#include "instruments/ui/statementpanes.h"
#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/commands.h"
#include "shell/ui/dialogtoolbar.h"
#include "shell/ui/focusreason.h"
#include "shell/ui/form.h"
#include "shell/ui/screenplace.h"
#include "shell/ui/toolbutton.h"
#include "shell/ui/windowcontext.h"

#include <algorithm>
#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLayout>
#include <QMargins>
#include <QMenu>
#include <QMetaObject>
#include <QPoint>
#include <QRandomGenerator>
#include <QScreen>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QSize>
#include <QStackedWidget>
#include <QString>
#include <QStringList>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int GroupWidth = 12; ///< characters

QStringList ValuesOf(const InstrClass &instrument)
{
    QStringList values;
    for (const pClass &field : instrument.pCol)
        values += field.value;
    return values;
}

} // namespace

frmInstrGUI::frmInstrGUI(EditorContext &editor, const DocumentSteps &steps, StatementFields statement,
                         std::function<void()> properties, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_steps(steps),
      m_statement(std::move(statement)),
      m_properties(std::move(properties)),
      m_before(ValuesOf(Instrument())),
      tlbInstrGUI(NewDialogToolbar(this, u"tlbInstrGUI"_s)),
      cmbGroup(Named(new QComboBox(this), u"cmbGroup"_s, u"Parameters Groups"_s)),
      m_form(Named(new StatementForm(editor.desktop, Instrument(), this), u"picRows"_s)),
      lvwP(Named(new StatementList(this), u"lvwP"_s, u"p-Fields"_s)),
      m_views(new QStackedWidget(this)),
      mnuSl(Named(new QMenu(this), u"mnuSl"_s))
{
    setObjectName(u"frmInstrGUI"_s);
    // "[*]" is a place for the toolkit's own mark; doubled it is text.
    setWindowTitle(u"Instrument "_s + QString::number(Instrument().number) + u" - "_s +
                   QString(Instrument().nome).replace(u"[*]"_s, u"[*][*]"_s));
    BuildSliderMenu();
    BuildToolbar();
    LayOut();

    cmbGroup->setToolTip(u"Parameters Groups"_s);
    cmbGroup->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbGroup->setMinimumContentsLength(GroupWidth);
    cmbGroup->addItems(GroupsOf(Instrument()));
    Connect();
    ShowChosenGroup();
    FocusField(1);
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

void frmInstrGUI::BuildToolbar()
{
    // What the buttons do is for the control that has the keyboard: they do not take it.
    const auto add = [this](const QString &key, const QString &caption, const QString &tooltip) {
        return AddDialogTool(*tlbInstrGUI, key, caption, tooltip);
    };
    QAction *properties = add(u"instr"_s, u"Properties"_s, u"Instrument Properties (Ctrl+I)"_s);
    properties->setShortcut(Qt::CTRL | Qt::Key_I);
    connect(properties, &QAction::triggered, this, &frmInstrGUI::EditProperties);
    m_sort = add(u"sort"_s, u"List"_s, u"All p-fields as a list (Ctrl+L)"_s);
    m_sort->setShortcut(Qt::CTRL | Qt::Key_L);
    m_sort->setCheckable(true);
    connect(m_sort, &QAction::triggered, this, &frmInstrGUI::SortPressed);
    m_slider = add(u"slider"_s, u"Slider"_s, u"Reset the slider to 0"_s);
    m_slider->setMenu(mnuSl);
    m_slider->setEnabled(false);
    connect(m_slider, &QAction::triggered, this, [this] { RunSliderCommand(SliderCommand::Zero); });
    tlbInstrGUI->addSeparator();
    connect(add(u"ok"_s, u"OK"_s, u"Write the values into the statement (Enter)"_s), &QAction::triggered,
            this, &frmInstrGUI::Confirm);
    connect(add(u"delete"_s, u"Cancel"_s, u"Leave the statement as it is (Esc)"_s), &QAction::triggered, this,
            &frmInstrGUI::reject);
    auto *sliderButton = static_cast<QToolButton *>(tlbInstrGUI->widgetForAction(m_slider));
    sliderButton->setPopupMode(QToolButton::MenuButtonPopup);
    ShowFlatButtons(*tlbInstrGUI, m_editor.settings);
    ShowExtensionInTextColour(*tlbInstrGUI);
}

void frmInstrGUI::LayOut()
{
    auto *top = new QHBoxLayout;
    top->addWidget(tlbInstrGUI);
    top->addWidget(cmbGroup, 1);
    m_views->addWidget(m_form);
    m_views->addWidget(lvwP);
    auto *edge = new QFrame(this);
    edge->setFrameShape(QFrame::HLine);
    edge->setFrameShadow(QFrame::Sunken);
    picStatus = Named(new StatementPanes(this), u"picStatus"_s);
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(m_views, 1);
    all->addWidget(edge);
    all->addWidget(picStatus);
}

void frmInstrGUI::Connect()
{
    cmbGroup->installEventFilter(this);
    connect(cmbGroup, &QComboBox::currentIndexChanged, this, &frmInstrGUI::ShowChosenGroup);
    connect(m_form, &StatementForm::FieldEntered, this, &frmInstrGUI::ShowPanesOf);
    connect(m_form, &StatementForm::SliderEntered, m_slider, &QAction::setEnabled);
    connect(m_form, &StatementForm::MenuAsked, this, [this](const QPoint &place) { mnuSl->popup(place); });
    connect(lvwP, &StatementList::Browsed, this, &frmInstrGUI::ShowPanesOf);
    connect(lvwP, &StatementList::Chosen, this, &frmInstrGUI::JumpTo);
}

void frmInstrGUI::FitSize()
{
    m_form->widget()->layout()->activate();
    layout()->activate();
    const QSize content =
        m_views->currentWidget() == lvwP ? lvwP->Content().expandedTo(m_views->size()) : m_form->Content();
    const QSize others = layout()->sizeHint() - m_views->sizeHint();
    const QMargins margins = layout()->contentsMargins();
    const QSize wanted(
        std::max({width(), layout()->sizeHint().width(), content.width() + margins.left() + margins.right()}),
        content.height() + others.height());
    resize(wanted.boundedTo(screen()->availableSize() - LeastFrame));
    KeepOnScreen(*this);
}

void frmInstrGUI::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_form->Settle();
            ReportFailure();
        },
        Qt::QueuedConnection);
}

// The rows

void frmInstrGUI::ShowChosenGroup()
{
    ShowGroup(cmbGroup->currentText());
}

void frmInstrGUI::ShowGroup(const std::optional<QString> &group)
{
    QWidget *const focused = focusWidget();
    m_form->TakeTexts();
    m_form->ShowGroup(group);
    FitSize();
    m_form->KeepFocus(focused);
    m_form->SetTicks();
    ReportFailure();
}

void frmInstrGUI::ReportFailure()
{
    if (!m_form->IsSettled())
        return;
    if (const std::optional<RunTimeError> failure = m_form->TakeFailure())
        ReportError(m_editor.desktop, *failure);
}

void frmInstrGUI::FocusField(qsizetype position)
{
    if (!m_form->FocusField(position))
        cmbGroup->setFocus(Qt::OtherFocusReason);
}

void frmInstrGUI::RunSliderCommand(SliderCommand command)
{
    // The box says nothing of use; it is kept since it has always been there.
    m_editor.desktop.MessageBox({.text = u"ciao"_s});
    m_form->Run(command);
}

void frmInstrGUI::ShowPanesOf(qsizetype position)
{
    picStatus->ShowField(FieldAt(position), position);
}

// Keys

bool frmInstrGUI::MayCancel()
{
    m_form->TakeTexts();
    return ValuesOf(Instrument()) == m_before ||
           m_editor.desktop.MessageBox(
               {.text = u"The changes to the statement are not written. Discard them?"_s,
                .icon = BoxIcon::Warning,
                .buttons = BoxButtons::YesNo,
                .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes;
}

bool frmInstrGUI::eventFilter(QObject *watched, QEvent *event)
{
    // The toolkit gives the first control the keyboard before the dialog is seen.
    if (watched == cmbGroup && event->type() == QEvent::FocusIn && m_form->IsSettled() &&
        !IsAway(*static_cast<QFocusEvent *>(event)))
        picStatus->ShowTexts(QString::number(cmbGroup->count()) + u" Parameters groups"_s,
                             FieldName(Instrument().pCol.Count()), {}, {});
    return QDialog::eventFilter(watched, event);
}

void frmInstrGUI::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QDialog::keyPressEvent(event);
    else if (!event->isAutoRepeat()) // the key that has chosen the menu row may still be down
        Confirm();
}

// The list

void frmInstrGUI::SortPressed()
{
    if (m_sort->isChecked()) {
        ShowList();
        return;
    }
    const qsizetype entered = m_form->Entered();
    LeaveList();
    FocusField(entered); // the list had the keyboard
}

void frmInstrGUI::ShowList()
{
    const qsizetype entered = m_form->Entered(); // the keyboard goes elsewhere when its row does
    m_views->setCurrentWidget(lvwP);
    ShowGroup(std::nullopt);
    lvwP->Fill(Instrument());
    FitSize();
    cmbGroup->setEnabled(false);
    m_form->SetEntered(entered);
    lvwP->Enter(entered);
}

void frmInstrGUI::LeaveList()
{
    m_views->setCurrentWidget(m_form);
    lvwP->clear();
    cmbGroup->setEnabled(true);
    ShowChosenGroup();
}

void frmInstrGUI::JumpTo(qsizetype position)
{
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
        m_form->TakeTexts();
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
