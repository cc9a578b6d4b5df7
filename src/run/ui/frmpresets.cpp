// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmpresets.h"

#include "run/macroexpansion.h"
#include "run/ui/actionpage.h"
#include "run/ui/buttonpage.h"
#include "run/ui/fieldselection.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/columnmenu.h"
#include "shell/ui/dialogtoolbar.h"
#include "shell/ui/form.h"
#include "shell/ui/plaintooltip.h"
#include "shell/ui/toolbutton.h"

#include <algorithm>
#include <iterator>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

ActionPage::Words FirstWords()
{
    return {.command = u"txtCommand"_s,
            .browseCommand = u"bCommand"_s,
            .args = u"txtArgs"_s,
            .pickFlag = u"bPickFlag"_s,
            .folder = u"txtFolder"_s,
            .browseFolder = u"bFolder"_s,
            .window = u"cmbWindow"_s,
            .folderHint =
                u"Startup directory for the command. Defaults to Command directory. Macros allowed."_s,
            .folderTitle = u"Select initial directory for the preset."_s};
}

ActionPage::Words SecondWords()
{
    return {.command = u"txt2ndCommand"_s,
            .browseCommand = u"b2ndCommand"_s,
            .args = u"txt2ndArgs"_s,
            .pickFlag = u"b2ndPickFlag"_s,
            .folder = u"txt2ndFolder"_s,
            .browseFolder = u"b2ndFolder"_s,
            .window = u"cmb2ndWindow"_s,
            .spoken = u"Second action: "_s,
            .folderHint = u"Startup directory for the 2nd command. Defaults to 1st action Initaill Folder. "
                          "Macros allowed."_s,
            .folderTitle = u"Select initial directory for the 2nd action."_s};
}

} // namespace

const frmPresets::ToolRow frmPresets::Tools[] = {
    {Tool::New, u"new", u"New", u"Clear all fields for a new preset (Ctrl+N)", Qt::Key_N},
    {Tool::Save, u"save", u"Save", u"Save the preset (Ctrl+S)", Qt::Key_S},
    {Tool::Delete, u"delete", u"Delete", u"Delete the preset (Ctrl+D)", Qt::Key_D},
    {Tool::Up, u"up", u"Up", u"Move the preset towards the top of the list (Ctrl+U)", Qt::Key_U},
    {Tool::Down, u"down", u"Down", u"Move the preset towards the end of the list (Ctrl+I)", Qt::Key_I},
    {Tool::Macro, u"preset", u"Macro", u"Insert a macro into the text field (F8)", Qt::Key_F8},
};

const frmPresets::ToolRow &frmPresets::RowOf(Tool tool)
{
    return *std::find_if(std::begin(Tools), std::end(Tools),
                         [tool](const ToolRow &row) { return row.tool == tool; });
}

QAction *frmPresets::ActionOf(Tool tool) const
{
    return tlbPreset->findChild<QAction *>(u"tlbPreset_"_s + QString::fromUtf16(RowOf(tool).name));
}

frmPresets::frmPresets(const RunContext &context, QWidget *parent)
    : QDialog(parent),
      m_context(context),
      tlbPreset(NewDialogToolbar(this, u"tlbPreset"_s)),
      cmbPreset(NewTypingList(this, u"cmbPreset"_s)),
      TbsPreset(Named(new QTabWidget(this), u"TbsPreset"_s)),
      m_first(Named(new ActionPage(context, FirstWords()), u"Frame_0"_s)),
      chkSaveFirst(Named(new QCheckBox(u"&Save document first"_s), u"chkSaveFirst"_s)),
      m_second(Named(new ActionPage(context, SecondWords()), u"Frame_1"_s)),
      m_button(Named(new ButtonPage(context), u"Frame_2"_s)),
      bCancel(Named(new QPushButton(this), u"bCancel"_s))
{
    setObjectName(u"frmPresets"_s);
    setWindowTitle(ProgramCaption(u"Add/Remove Presets"_s));
    BuildToolbar();
    BuildPages();
    LayOut();
    Connect();
    ShowFields({});
    m_second->setEnabled(false);
    Guard([this] { LoadLists(); });
    MarkSaved(); // the lists have chosen their rows also where no preset is there to show
    cmbPreset->setFocus();
}

void frmPresets::BuildToolbar()
{
    for (const ToolRow &row : Tools) {
        const Tool tool = row.tool;
        if (tool == Tool::Up || tool == Tool::Macro)
            tlbPreset->addSeparator();
        // The macro goes into the field that has the focus; every button has a key of its own.
        const QAction *action =
            AddDialogTool(*tlbPreset, QString::fromUtf16(row.name), QString::fromUtf16(row.caption),
                          QString::fromUtf16(row.tooltip));
        connect(action, &QAction::triggered, this, [this, tool] { RunTool(tool); });
    }
    ShowFlatButtons(*tlbPreset, m_context.editor.settings);
}

void frmPresets::BuildPages()
{
    // A typed name must not choose a row by itself: reading its record would overwrite the other fields.
    for (const char *signal : {SIGNAL(editingFinished()), SIGNAL(returnPressed())})
        disconnect(cmbPreset->lineEdit(), signal, cmbPreset, nullptr);

    chkSaveFirst->setToolTip(u"Save current document before running the command"_s);
    m_first->Form().AddUnder(chkSaveFirst);
    m_first->Form().AddStretch();
    TbsPreset->addTab(m_first, u"&First action"_s);

    auto *second = new QWidget;
    auto *note =
        Named(new QLabel(u"Runs when the first action has ended. The first action has to be a program."_s),
              u"lblSecondAction"_s);
    note->setWordWrap(true);
    m_second->layout()->setContentsMargins(0, 0, 0, 0);
    second->setLayout(Column({m_second, note}));
    TbsPreset->addTab(second, u"S&econd action"_s);

    TbsPreset->addTab(m_button, u"B&utton"_s);
}

void frmPresets::LayOut()
{
    auto *preset = new QHBoxLayout;
    preset->addWidget(LabelFor(cmbPreset, u"&Preset:"_s,
                               u"Name of the Preset.\nPresets will appear on the toolbar in same order as "
                               "they do in this list"_s));
    preset->addWidget(cmbPreset, 1);

    bCancel->setText(u"&Close"_s); // only now: Alt+C goes to the command first, and on to this key from there
    auto *close = new QHBoxLayout;
    close->addStretch();
    close->addWidget(bCancel);

    auto *all = new QVBoxLayout(this);
    all->addWidget(tlbPreset);
    all->addLayout(preset);
    all->addWidget(TbsPreset, 1);
    all->addLayout(close);

    SetEnterAndEscape(*this, nullptr, bCancel);
    SetTabOrder(QList<QWidget *>{cmbPreset, TbsPreset} + m_first->Controls() +
                QList<QWidget *>{chkSaveFirst} + m_second->Controls() + m_button->Controls() +
                QList<QWidget *>{bCancel});
}

void frmPresets::Connect()
{
    connect(cmbPreset, &QComboBox::editTextChanged, this, &frmPresets::EnableTools);
    connect(cmbPreset, &QComboBox::activated, this, &frmPresets::ChooseRow);
    connect(m_first->Command(), &QLineEdit::textChanged, this, &frmPresets::CommandChanged);
    installEventFilter(this);
    for (QWidget *child : findChildren<QWidget *>())
        child->installEventFilter(this);
}

void frmPresets::LoadLists()
{
    TbsPreset->setCurrentIndex(0);
    m_first->AddWindowStates();
    m_second->AddWindowStates();
    const QStringList presets = PresetStore(m_context.editor.settings).ReadPresetList();
    ShowRows(presets, presets.isEmpty() ? -1 : 0);
    if (!presets.isEmpty())
        ChooseRow(0);
}

QStringList frmPresets::Rows() const
{
    QStringList rows;
    for (int row = 0; row < cmbPreset->count(); ++row)
        rows.append(cmbPreset->itemText(row));
    return rows;
}

int frmPresets::SelectedRow() const
{
    return cmbPreset->findText(cmbPreset->currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive);
}

void frmPresets::ShowRows(const QStringList &rows, int row)
{
    {
        const QSignalBlocker quiet(cmbPreset);
        cmbPreset->clear();
        cmbPreset->addItems(rows);
        cmbPreset->setCurrentIndex(row);
    }
    EnableTools();
}

void frmPresets::ChooseRow(int row)
{
    Guard([&] {
        ShowFields(FieldsOf(PresetStore(m_context.editor.settings).ReadRecord(cmbPreset->itemText(row))));
    });
    EnableTools();
    MarkSaved();
}

void frmPresets::SelectPreset(const QString &name)
{
    const int row = cmbPreset->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (row < 0)
        return;
    cmbPreset->setCurrentIndex(row);
    ChooseRow(row);
}

void frmPresets::EnableTools()
{
    const PresetTools tools = EnabledPresetTools(cmbPreset->currentText(), SelectedRow(), cmbPreset->count());
    ActionOf(Tool::Save)->setEnabled(tools.save);
    const QString why = WhyNotSaved(cmbPreset->currentText());
    ActionOf(Tool::Save)->setToolTip(why.isEmpty() ? QString::fromUtf16(RowOf(Tool::Save).tooltip) : why);
    ActionOf(Tool::Delete)->setEnabled(tools.remove);
    ActionOf(Tool::Up)->setEnabled(tools.up);
    ActionOf(Tool::Down)->setEnabled(tools.down);
}

PresetFields frmPresets::Fields() const
{
    PresetFields fields;
    SetFirstAction(fields.record, m_first->Action());
    fields.record.SaveFirst = chkSaveFirst->isChecked();
    SetSecondAction(fields.record, m_second->Action());
    m_button->Put(fields);
    return fields;
}

void frmPresets::ShowFields(const PresetFields &fields)
{
    m_first->ShowAction(FirstAction(fields.record));
    chkSaveFirst->setChecked(fields.record.SaveFirst);
    m_second->ShowAction(SecondAction(fields.record));
    // The same command as before is no change, but its file may be another one by now. Without a command the
    // hint stays that the field has had from the start.
    if (!fields.record.Command.isEmpty())
        ShowCommandFacts();
    m_button->ShowFields(fields);
}

void frmPresets::MarkSaved()
{
    m_savedName = cmbPreset->currentText();
    m_savedFields = Fields();
}

bool frmPresets::MayCancel()
{
    const QString name = cmbPreset->currentText();
    const bool named = !name.isEmpty() && name != m_savedName;
    return (!named && Fields() == m_savedFields) || MayDiscardPreset(name, m_context.editor.desktop);
}

void frmPresets::reject()
{
    if (MayCancel())
        QDialog::reject();
}

void frmPresets::ShowCommandFacts()
{
    QLineEdit *command = m_first->Command();
    command->setToolTip(PlainToolTip(CommandInfo(command->text(), m_context)));
    m_second->setEnabled(AllowsSecondAction(command->text(), m_context));
}

void frmPresets::CommandChanged()
{
    ShowCommandFacts();
    m_button->ShowIconOf(m_first->Command()->text());
}

void frmPresets::setImgnumber(int number)
{
    m_button->TakeImage(number);
}

// The commands

void frmPresets::RunTool(Tool tool)
{
    if (!ActionOf(tool)->isEnabled())
        return;
    Guard([&] {
        switch (tool) {
        case Tool::New:
            return NewPreset();
        case Tool::Save:
            return Save();
        case Tool::Delete:
            return Delete();
        case Tool::Up:
        case Tool::Down:
            return Move(tool == Tool::Up);
        case Tool::Macro:
            return PopUpMacros();
        }
    });
}

void frmPresets::NewPreset()
{
    if (!MayCancel())
        return;
    cmbPreset->setCurrentIndex(-1); // the arrow keys begin at the first preset again
    cmbPreset->clearEditText();
    ShowFields({});
    MarkSaved();
    cmbPreset->setFocus(); // a preset begins with its name
}

void frmPresets::Save()
{
    const QString name = cmbPreset->currentText();
    QStringList rows = Rows();
    if (SavePreset(name, Fields(), rows, m_context,
                   [this](const QString &file) { return m_button->LoadPicture(file); })) {
        ShowRows(rows, RowOfPreset(name, rows));
        MarkSaved();
    }
}

void frmPresets::Delete()
{
    if (!DeletePreset(cmbPreset->currentText(), m_context))
        return;
    m_first->ClearWindowStates();
    LoadLists();
    MarkSaved(); // also where no preset is left: the fields still show the deleted one
    RewritePresetOrder(Rows(), m_context);
}

void frmPresets::Move(bool up)
{
    QStringList rows = Rows();
    int row = SelectedRow();
    (up ? MovePresetUp : MovePresetDown)(rows, row, m_context);
    ShowRows(rows, row);
}

void frmPresets::PopUpMacros()
{
    if (!mnuMacros) {
        mnuMacros = Named(new QMenu(this), u"mnuMacros"_s);
        for (const MacroRow &row : MacroPickerRows()) {
            QAction *action = mnuMacros->addAction(row.macro + u'\t' + row.description);
            connect(action, &QAction::triggered, this, [this, macro = row.macro] { InsertMacro(macro); });
        }
        SetColumns(*mnuMacros);
    }
    const QWidget *face = tlbPreset->widgetForAction(ActionOf(Tool::Macro));
    mnuMacros->popup(face->mapToGlobal(QPoint(0, face->height())));
}

void frmPresets::InsertMacro(const QString &macro)
{
    auto *field = qobject_cast<QLineEdit *>(focusWidget());
    if (!field) {
        m_context.editor.desktop.MessageBox(
            {.text = u"You should first select a text field."_s, .icon = BoxIcon::Warning});
        return;
    }
    PutSelected(*field, macro);
    field->setFocus();
}

// Keys

void frmPresets::StepPage(int step)
{
    const int pages = TbsPreset->count();
    TbsPreset->setCurrentIndex((TbsPreset->currentIndex() + step + pages) % pages);
}

bool frmPresets::TakeKey(const QKeyEvent &event, bool onlyAsk)
{
    if (event.modifiers() & Qt::AltModifier)
        return false;
    const bool ctrl = event.modifiers() & Qt::ControlModifier;
    if (ctrl && (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab)) {
        if (!onlyAsk)
            StepPage(event.key() == Qt::Key_Tab ? 1 : -1);
        return true;
    }
    for (const ToolRow &row : Tools) {
        if (event.key() != row.shortcut || ctrl == (row.shortcut == Qt::Key_F8))
            continue;
        const bool moves = row.tool == Tool::Up || row.tool == Tool::Down;
        if (!onlyAsk && (moves || !event.isAutoRepeat()))
            RunTool(row.tool);
        return true;
    }
    return false;
}

bool frmPresets::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // Some of the keys edit in a text field; here they are the dialog's.
        if (TakeKey(*static_cast<QKeyEvent *>(event), true)) {
            event->accept();
            return true;
        }
        break;
    case QEvent::KeyPress:
        if (TakeKey(*static_cast<QKeyEvent *>(event), false))
            return true;
        break;
    case QEvent::Wheel: {
        // Scrolling by must not choose another preset, which would overwrite the fields.
        auto *list = qobject_cast<QComboBox *>(watched);
        if (list && !list->hasFocus()) {
            event->ignore();
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

void frmPresets::Guard(const std::function<void()> &work)
{
    Guarded(m_context.editor.desktop, work);
}

void ShowPresetEditor(const RunContext &context, const QString &name)
{
    // A minimized window would hide its dialog with it.
    QWidget *owner = QApplication::activeWindow();
    frmPresets dialog(context, owner && owner->isVisible() && !owner->isMinimized() ? owner : nullptr);
    if (!name.isEmpty())
        dialog.SelectPreset(name);
    dialog.exec();
}

} // namespace zelvane
