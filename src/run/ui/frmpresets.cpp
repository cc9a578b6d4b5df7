// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmpresets.h"

#include "platform/executables.h"
#include "platform/fileinfo.h"
#include "platform/parameters.h"
#include "platform/ui/fileicon.h"
#include "run/macroexpansion.h"
#include "run/toolpaths.h"
#include "run/ui/flagpicker.h"
#include "run/ui/frmimages.h"
#include "run/ui/presetimages.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/layoutkeys.h"
#include "shell/ui/columnmenu.h"
#include "shell/ui/icons.h"
#include "shell/ui/plaintooltip.h"

#include <algorithm>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 52;  ///< of the text fields, in characters
constexpr int NormalWindow = 1; ///< row of the window lists
constexpr int WindowStates = 4; ///< the first rows of a window list

/// A button of the dialog's toolbar: its key, its words, its tooltip and the key that does the same.
struct Tool {
    const char16_t *key;
    const char16_t *caption;
    const char16_t *tooltip;
    int shortcut; ///< with Ctrl, but for F8
};

constexpr Tool Tools[] = {
    {u"new", u"New", u"Clear all fields for a new preset (Ctrl+N)", Qt::Key_N},
    {u"save", u"Save", u"Save the preset (Ctrl+S)", Qt::Key_S},
    {u"delete", u"Delete", u"Delete the preset (Ctrl+D)", Qt::Key_D},
    {u"up", u"Up", u"Move the preset towards the top of the list (Ctrl+U)", Qt::Key_U},
    {u"down", u"Down", u"Move the preset towards the end of the list (Ctrl+I)", Qt::Key_I},
    {u"preset", u"Macro", u"Insert a macro into the text field (F8)", Qt::Key_F8},
};

constexpr char16_t CommandHint[] = u"Executable or document. Macros allowed.";
constexpr char16_t ArgsHint[] = u"Parameters to be passed to the application. Macros allowed.";
constexpr char16_t WindowHint[] = u"State of the window";
constexpr char16_t FlagsHint[] = u"Pick Csound's flags from a list. Ctrl+click: pick one from a menu.";

template <typename Widget> Widget *Named(Widget *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

/// A label for a field: it carries the field's key and hint, and names it for screen readers.
QLabel *LabelFor(QWidget *field, const QString &caption, const QString &hint)
{
    auto *label = new QLabel(caption);
    label->setBuddy(field);
    label->setToolTip(hint);
    field->setToolTip(hint);
    QString name = caption;
    name.remove(u'&').remove(u':');
    field->setAccessibleName(name);
    field->setAccessibleDescription(hint);
    return label;
}

void AddRow(QGridLayout &grid, QLabel *label, QWidget *field, QPushButton *button = nullptr)
{
    const int row = grid.rowCount();
    grid.addWidget(label, row, 0);
    if (button)
        button->setAccessibleName(label->buddy()->accessibleName() + u": "_s + button->text().remove(u'&'));
    grid.addWidget(field, row, 1);
    if (button)
        grid.addWidget(button, row, 2);
}

/// The row of a saved name. The store knows no case, so the row may differ in that.
int RowOf(const QString &name, const QStringList &rows)
{
    const auto same = [&name](const QString &row) { return row.compare(name, Qt::CaseInsensitive) == 0; };
    const auto found = std::find_if(rows.begin(), rows.end(), same);
    return found == rows.end() ? -1 : int(found - rows.begin());
}

} // namespace

frmPresets::frmPresets(const RunContext &context, QWidget *parent)
    : QDialog(parent),
      m_context(context),
      tlbPreset(Named(new QToolBar(this), u"tlbPreset"_s)),
      cmbPreset(Named(new QComboBox(this), u"cmbPreset"_s)),
      TbsPreset(Named(new QTabWidget(this), u"TbsPreset"_s)),
      txtCommand(Named(new QLineEdit, u"txtCommand"_s)),
      bCommand(Named(new QPushButton(u"Browse..."_s), u"bCommand"_s)),
      txtArgs(Named(new QLineEdit, u"txtArgs"_s)),
      bPickFlag(Named(new QPushButton(u"Fla&gs..."_s), u"bPickFlag"_s)),
      txtFolder(Named(new QLineEdit, u"txtFolder"_s)),
      bFolder(Named(new QPushButton(u"Browse..."_s), u"bFolder"_s)),
      cmbWindow(Named(new QComboBox, u"cmbWindow"_s)),
      chkSaveFirst(Named(new QCheckBox(u"&Save document first"_s), u"chkSaveFirst"_s)),
      txt2ndCommand(Named(new QLineEdit, u"txt2ndCommand"_s)),
      b2ndCommand(Named(new QPushButton(u"Browse..."_s), u"b2ndCommand"_s)),
      txt2ndArgs(Named(new QLineEdit, u"txt2ndArgs"_s)),
      b2ndPickFlag(Named(new QPushButton(u"Fla&gs..."_s), u"b2ndPickFlag"_s)),
      txt2ndFolder(Named(new QLineEdit, u"txt2ndFolder"_s)),
      b2ndFolder(Named(new QPushButton(u"Browse..."_s), u"b2ndFolder"_s)),
      cmb2ndWindow(Named(new QComboBox, u"cmb2ndWindow"_s)),
      chkCreateButton(Named(new QCheckBox(u"Create &button"_s), u"chkCreateButton"_s)),
      chkNewGroup(Named(new QCheckBox(u"&Start new group"_s), u"chkNewGroup"_s)),
      txtName(Named(new QLineEdit, u"txtName"_s)),
      txtTooltip(Named(new QLineEdit, u"txtTooltip"_s)),
      TxtBitmap(Named(new QLineEdit, u"TxtBitmap"_s)),
      bBitmap(Named(new QPushButton(u"Browse..."_s), u"bBitmap"_s)),
      bImages(Named(new QPushButton(u"Pick a built-in image..."_s), u"bImages"_s)),
      imgBitmap(Named(new IconView, u"imgBitmap"_s)),
      bCancel(Named(new QPushButton(this), u"bCancel"_s))
{
    setObjectName(u"frmPresets"_s);
    setWindowTitle(ApplicationTitle() + u" - Add/Remove Presets"_s);
    BuildToolbar();
    BuildFields();
    LayOut();
    Connect();
    ShowFields({});
    m_secondAction->setEnabled(false);
    Guard([this] { LoadLists(); });
    cmbPreset->setFocus();
}

void frmPresets::BuildToolbar()
{
    tlbPreset->setIconSize(QSize(PresetImageSide, PresetImageSide));
    tlbPreset->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const bool flat = m_context.editor.settings.Flag(Keys::FlatButtons);
    for (const Tool &tool : Tools) {
        const QString key = QString::fromUtf16(tool.key);
        if (key == u"up"_s || key == u"preset"_s)
            tlbPreset->addSeparator();
        QAction *action = tlbPreset->addAction(Icons::Load(key), QString::fromUtf16(tool.caption));
        action->setObjectName(u"tlbPreset_"_s + key);
        action->setToolTip(QString::fromUtf16(tool.tooltip));
        connect(action, &QAction::triggered, this, [this, key] { RunTool(key); });
        auto *face = qobject_cast<QToolButton *>(tlbPreset->widgetForAction(action));
        face->setObjectName(action->objectName());
        face->setAutoRaise(flat);
        // The macro goes into the field that has the focus; every button has a key of its own.
        face->setFocusPolicy(Qt::NoFocus);
    }
}

void frmPresets::BuildFields()
{
    cmbPreset->setEditable(true);
    cmbPreset->setInsertPolicy(QComboBox::NoInsert);
    cmbPreset->setCompleter(nullptr);
    cmbPreset->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    // A typed name must not choose a row by itself: reading its record would overwrite the other fields.
    for (const char *signal : {SIGNAL(editingFinished()), SIGNAL(returnPressed())})
        disconnect(cmbPreset->lineEdit(), signal, cmbPreset, nullptr);

    for (QLineEdit *field : {txtCommand, txt2ndCommand, txtName})
        field->setMinimumWidth(fontMetrics().averageCharWidth() * FieldWidth);
    chkSaveFirst->setToolTip(u"Save current document before running the command"_s);
    chkCreateButton->setToolTip(u"Show a toolbar button for this preset"_s);
    chkNewGroup->setToolTip(u"Insert a separator before preset button"_s);
    for (QPushButton *button : {bPickFlag, b2ndPickFlag})
        button->setToolTip(QString::fromUtf16(FlagsHint));
    imgBitmap->setAccessibleName(u"Preview of the image"_s);
    imgBitmap->setToolTip(u"The image of the button"_s);
}

QWidget *frmPresets::FirstPage()
{
    auto *page = Named(new QWidget, u"Frame_0"_s);
    auto *grid = new QGridLayout(page);
    AddRow(*grid, LabelFor(txtCommand, u"&Command:"_s, QString::fromUtf16(CommandHint)), txtCommand,
           bCommand);
    AddRow(*grid, LabelFor(txtArgs, u"Pa&rameters:"_s, QString::fromUtf16(ArgsHint)), txtArgs, bPickFlag);
    AddRow(*grid,
           LabelFor(txtFolder, u"&Initial Folder:"_s,
                    u"Startup directory for the command. Defaults to Command directory. Macros allowed."_s),
           txtFolder, bFolder);
    AddRow(*grid, LabelFor(cmbWindow, u"&Window:"_s, QString::fromUtf16(WindowHint)), cmbWindow);
    grid->addWidget(chkSaveFirst, grid->rowCount(), 1);
    grid->setRowStretch(grid->rowCount(), 1);
    return page;
}

QWidget *frmPresets::SecondPage()
{
    m_secondAction = Named(new QWidget, u"Frame_1"_s);
    auto *grid = new QGridLayout(m_secondAction);
    grid->setContentsMargins(0, 0, 0, 0);
    AddRow(*grid, LabelFor(txt2ndCommand, u"&Command:"_s, QString::fromUtf16(CommandHint)), txt2ndCommand,
           b2ndCommand);
    AddRow(*grid, LabelFor(txt2ndArgs, u"Pa&rameters:"_s, QString::fromUtf16(ArgsHint)), txt2ndArgs,
           b2ndPickFlag);
    AddRow(*grid,
           LabelFor(txt2ndFolder, u"&Initial Folder:"_s,
                    u"Startup directory for the 2nd command. Defaults to 1st action Initaill Folder. "
                    "Macros allowed."_s),
           txt2ndFolder, b2ndFolder);
    AddRow(*grid, LabelFor(cmb2ndWindow, u"&Window:"_s, QString::fromUtf16(WindowHint)), cmb2ndWindow);
    for (QWidget *field : std::initializer_list<QWidget *>{
             txt2ndCommand, b2ndCommand, txt2ndArgs, b2ndPickFlag, txt2ndFolder, b2ndFolder, cmb2ndWindow})
        field->setAccessibleName(u"Second action: "_s + field->accessibleName());

    auto *note =
        Named(new QLabel(u"Runs when the first action has ended. The first action has to be a program."_s),
              u"lblSecondAction"_s);
    note->setWordWrap(true);
    auto *page = new QWidget;
    auto *all = new QVBoxLayout(page);
    all->addWidget(m_secondAction);
    all->addWidget(note);
    all->addStretch();
    return page;
}

QWidget *frmPresets::ButtonPage()
{
    auto *page = Named(new QWidget, u"Frame_2"_s);
    auto *grid = new QGridLayout(page);
    auto *checks = new QHBoxLayout;
    checks->addWidget(chkCreateButton);
    checks->addWidget(chkNewGroup);
    checks->addStretch();
    grid->addLayout(checks, 0, 1, 1, 2);
    AddRow(*grid,
           LabelFor(txtName, u"&Label:"_s,
                    u"Text appearing in the Presets Bar button labels. Should be reasonably short: max 10 "
                    "characters."_s),
           txtName);
    AddRow(*grid, LabelFor(txtTooltip, u"&Tooltip:"_s, u"Presets Bar button tooltip text."_s), txtTooltip);
    AddRow(
        *grid,
        LabelFor(TxtBitmap, u"&Bitmap:"_s,
                 u"Image should be 16x16 pixels otherwise will be resized. Mask color: Light gray R192 G192 "
                 "B192. Leave empty to use shell icon."_s),
        TxtBitmap, bBitmap);
    auto *image = new QHBoxLayout;
    image->addWidget(imgBitmap);
    image->addWidget(bImages);
    image->addStretch();
    grid->addLayout(image, grid->rowCount(), 1, 1, 2);
    grid->setRowStretch(grid->rowCount(), 1);
    return page;
}

void frmPresets::LayOut()
{
    auto *preset = new QHBoxLayout;
    preset->addWidget(LabelFor(cmbPreset, u"&Preset:"_s,
                               u"Name of the Preset.\nPresets will appear on the toolbar in same order as "
                               "they do in this list"_s));
    preset->addWidget(cmbPreset, 1);

    TbsPreset->addTab(FirstPage(), u"&First action"_s);
    TbsPreset->addTab(SecondPage(), u"S&econd action"_s);
    TbsPreset->addTab(ButtonPage(), u"B&utton"_s);

    bCancel->setText(u"&Close"_s); // only now: Alt+C goes to the command first, and on to this key from there
    auto *close = new QHBoxLayout;
    close->addStretch();
    close->addWidget(bCancel);

    auto *all = new QVBoxLayout(this);
    all->addWidget(tlbPreset);
    all->addLayout(preset);
    all->addWidget(TbsPreset, 1);
    all->addLayout(close);

    for (QPushButton *button : findChildren<QPushButton *>())
        button->setAutoDefault(false);
    QWidget *before = cmbPreset;
    for (QWidget *next : std::initializer_list<QWidget *>{
             TbsPreset,    txtCommand,   bCommand,     txtArgs,       bPickFlag,       txtFolder,
             bFolder,      cmbWindow,    chkSaveFirst, txt2ndCommand, b2ndCommand,     txt2ndArgs,
             b2ndPickFlag, txt2ndFolder, b2ndFolder,   cmb2ndWindow,  chkCreateButton, chkNewGroup,
             txtName,      txtTooltip,   TxtBitmap,    bBitmap,       bImages,         bCancel}) {
        setTabOrder(before, next);
        before = next;
    }
}

void frmPresets::Connect()
{
    connect(cmbPreset, &QComboBox::editTextChanged, this, &frmPresets::EnableTools);
    connect(cmbPreset, &QComboBox::activated, this, &frmPresets::ChooseRow);
    connect(txtCommand, &QLineEdit::textChanged, this, &frmPresets::CommandChanged);
    connect(TxtBitmap, &QLineEdit::textChanged, this, &frmPresets::BitmapChanged);
    connect(bCommand, &QPushButton::clicked, this, [this] { BrowseCommand(*txtCommand); });
    connect(b2ndCommand, &QPushButton::clicked, this, [this] { BrowseCommand(*txt2ndCommand); });
    connect(bFolder, &QPushButton::clicked, this,
            [this] { BrowseInitialFolder(*txtFolder, u"Select initial directory for the preset."_s); });
    connect(b2ndFolder, &QPushButton::clicked, this, [this] {
        BrowseInitialFolder(*txt2ndFolder, u"Select initial directory for the 2nd action."_s);
    });
    connect(bBitmap, &QPushButton::clicked, this, &frmPresets::BrowseBitmap);
    connect(bImages, &QPushButton::clicked, this, &frmPresets::PickImage);
    connect(bCancel, &QPushButton::clicked, this, &QDialog::reject);
    new FlagPicker(m_context.editor, bPickFlag, txtArgs);
    new FlagPicker(m_context.editor, b2ndPickFlag, txt2ndArgs);
    installEventFilter(this);
    for (QWidget *child : findChildren<QWidget *>())
        child->installEventFilter(this);
}

void frmPresets::LoadLists()
{
    TbsPreset->setCurrentIndex(0);
    for (QComboBox *list : {cmbWindow, cmb2ndWindow}) {
        list->addItems(WindowStateTexts());
        list->setCurrentIndex(NormalWindow);
    }
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
    const auto enable = [this](const QString &key, bool enabled) {
        tlbPreset->findChild<QAction *>(u"tlbPreset_"_s + key)->setEnabled(enabled);
    };
    enable(u"save"_s, tools.save);
    enable(u"delete"_s, tools.remove);
    enable(u"up"_s, tools.up);
    enable(u"down"_s, tools.down);
}

PresetFields frmPresets::Fields() const
{
    return {.record = {.Command = txtCommand->text(),
                       .Args = txtArgs->text(),
                       .Folder = txtFolder->text(),
                       .Window = cmbWindow->currentIndex(),
                       .SaveFirst = chkSaveFirst->isChecked(),
                       .Name = txtName->text(),
                       .Tooltip = txtTooltip->text(),
                       .CreateButton = chkCreateButton->isChecked(),
                       .NewGroup = chkNewGroup->isChecked(),
                       .SecondCommand = txt2ndCommand->text(),
                       .SecondArgs = txt2ndArgs->text(),
                       .SecondFolder = txt2ndFolder->text(),
                       .SecondWindow = cmb2ndWindow->currentIndex() % WindowStates},
            .imageNumber = m_imageNumber,
            .bitmap = TxtBitmap->text()};
}

void frmPresets::ShowFields(const PresetFields &fields)
{
    const PresetRecord &record = fields.record;
    txtCommand->setText(record.Command);
    txtArgs->setText(record.Args);
    txtFolder->setText(record.Folder);
    cmbWindow->setCurrentIndex(record.Window);
    chkSaveFirst->setChecked(record.SaveFirst);
    txt2ndCommand->setText(record.SecondCommand);
    txt2ndArgs->setText(record.SecondArgs);
    txt2ndFolder->setText(record.SecondFolder);
    cmb2ndWindow->setCurrentIndex(record.SecondWindow);
    chkCreateButton->setChecked(record.CreateButton);
    chkNewGroup->setChecked(record.NewGroup);
    txtName->setText(record.Name);
    txtTooltip->setText(record.Tooltip);
    TxtBitmap->setText(fields.bitmap);
    // The beginning of a long text tells most.
    for (QLineEdit *field : {txtCommand, txtArgs, txtFolder, txt2ndCommand, txt2ndArgs, txt2ndFolder, txtName,
                             txtTooltip, TxtBitmap})
        field->setCursorPosition(0);
    // The same command as before is no change, but its file may be another one by now. Without a command the
    // hint stays that the field has had from the start.
    if (!record.Command.isEmpty())
        ShowCommandFacts();
    // Last: on the way here the changed fields have shown their own idea of the image.
    m_imageNumber = fields.imageNumber;
    if (m_imageNumber != 0)
        imgBitmap->SetIcon(Icons::LoadImage(m_imageNumber));
    else
        LoadPicture(fields.bitmap);
}

void frmPresets::ShowCommandFacts()
{
    const Desktop &desktop = m_context.editor.desktop;
    const QString file = ExpandStaticMacros(txtCommand->text(), m_context);
    txtCommand->setToolTip(PlainToolTip(FileInfoText(file, desktop)));
    m_secondAction->setEnabled(IsExecutableFile(file, desktop));
}

void frmPresets::CommandChanged()
{
    ShowCommandFacts();
    if (TxtBitmap->text().isEmpty() && m_imageNumber == 0)
        imgBitmap->SetIcon(SmallFileIcon(ExpandStaticMacros(txtCommand->text(), m_context)));
}

void frmPresets::BitmapChanged()
{
    m_imageNumber = 0;
    LoadPicture(TxtBitmap->text());
}

bool frmPresets::LoadPicture(const QString &file)
{
    const QIcon picture = FileImage(file);
    imgBitmap->SetIcon(picture);
    return !picture.isNull();
}

void frmPresets::setImgnumber(int number)
{
    TxtBitmap->clear();
    m_imageNumber = number;
    imgBitmap->SetIcon(Icons::LoadImage(number));
}

// The commands

void frmPresets::RunTool(const QString &key)
{
    if (!tlbPreset->findChild<QAction *>(u"tlbPreset_"_s + key)->isEnabled())
        return;
    Guard([&] {
        if (key == u"new"_s)
            NewPreset();
        else if (key == u"save"_s)
            Save();
        else if (key == u"delete"_s)
            Delete();
        else if (key == u"preset"_s)
            PopUpMacros();
        else
            Move(key == u"up"_s);
    });
}

void frmPresets::NewPreset()
{
    cmbPreset->setCurrentIndex(-1); // the arrow keys begin at the first preset again
    cmbPreset->clearEditText();
    ShowFields({});
}

void frmPresets::Save()
{
    const QString name = cmbPreset->currentText();
    QStringList rows = Rows();
    if (SavePreset(name, Fields(), rows, m_context,
                   [this](const QString &file) { return LoadPicture(file); }))
        ShowRows(rows, RowOf(name, rows));
}

void frmPresets::Delete()
{
    if (!DeletePreset(cmbPreset->currentText(), m_context))
        return;
    cmbWindow->clear();
    LoadLists();
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
    const auto *face = tlbPreset->findChild<QToolButton *>(u"tlbPreset_preset"_s);
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
    const int start = field->hasSelectedText() ? field->selectionStart() : field->cursorPosition();
    field->insert(macro);
    field->setFocus();
    field->setSelection(start, int(macro.size()));
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
    for (const Tool &tool : Tools) {
        if (event.key() != tool.shortcut || ctrl == (tool.shortcut == Qt::Key_F8))
            continue;
        const bool moves = tool.shortcut == Qt::Key_U || tool.shortcut == Qt::Key_I;
        if (!onlyAsk && (moves || !event.isAutoRepeat()))
            RunTool(QString::fromUtf16(tool.key));
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

// Pickers

void frmPresets::BrowseCommand(QLineEdit &field)
{
    QString program = FindExecutable(UnquoteFile(ExpandStaticMacros(field.text(), m_context)));
    if (program.isEmpty())
        program = FindExecutable(m_context.tools.Csound); // others are likely to be beside it
    const FileDialogAnswer answer = m_context.editor.desktop.OpenFileDialog(
        {.title = u"Select a command"_s, .filters = {{u"Executables"_s, u"*.exe"_s}}, .folder = program});
    if (!answer.path.isEmpty())
        field.setText(answer.path);
}

void frmPresets::BrowseInitialFolder(QLineEdit &field, const QString &title)
{
    const QString folder =
        m_context.editor.desktop.BrowseFolder(title, ExpandStaticMacros(field.text(), m_context));
    if (!folder.isEmpty())
        field.setText(folder);
}

void frmPresets::BrowseBitmap()
{
    const FileDialogAnswer answer = m_context.editor.desktop.OpenFileDialog(
        {.title = u"Select an image"_s,
         .filters = {{u"Images"_s, u"*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.ico;*.cur"_s}},
         .folder = TxtBitmap->text()});
    if (!answer.path.isEmpty())
        TxtBitmap->setText(answer.path);
}

void frmPresets::PickImage()
{
    frmImages picker(m_imageNumber, this);
    if (picker.exec() == QDialog::Accepted)
        setImgnumber(picker.Picked());
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
