// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/frmeditor.h"

#include "language/ui/languagecommands.h"
#include "language/ui/opcodecombo.h"
#include "platform/executables.h"
#include "platform/parameters.h"
#include "platform/programfolder.h"
#include "platform/ui/digitkey.h"
#include "platform/ui/raisewindow.h"
#include "platform/ui/textcontrol.h"
#include "player/ui/playerpanel.h"
#include "run/presetbuttons.h"
#include "run/ui/frmpresets.h"
#include "run/ui/presetbar.h"
#include "run/ui/runcommands.h"
#include "shell/editorkeys.h"
#include "shell/errorreport.h"
#include "shell/layoutkeys.h"
#include "shell/statustexts.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commandkeys.h"
#include "shell/ui/commands.h"
#include "shell/ui/documentcommands.h"
#include "shell/ui/editcommands.h"
#include "shell/ui/foldercommands.h"
#include "shell/ui/frmnew.h"
#include "shell/ui/helpcommands.h"
#include "shell/ui/hottracking.h"
#include "shell/ui/icons.h"
#include "shell/ui/insertcommands.h"
#include "shell/ui/menutable.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/statusbar.h"
#include "shell/ui/textcommands.h"
#include "shell/ui/toolbutton.h"
#include "texttools/ui/texttoolscommands.h"
#include "window/ui/viewcommands.h"
#include "window/ui/windowlayout.h"
#include "window/ui/workspace.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScopeGuard>
#include <QThread>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr QSize DesignSize(960, 680);
constexpr QSize IconSize(16, 16);
constexpr int OpcodeComboCharacters = 48; ///< as wide as the combo grows
constexpr quint32 SystemWindow = 0x80000005;
constexpr quint32 SystemWindowText = 0x80000008;

/// The full path of a tool as it was set: a bare name means the program in PATH.
QString ProgramPath(const QString &tool)
{
    const QString plain = UnquoteFile(tool);
    const QString found = plain.isEmpty() ? QString() : FindExecutable(plain);
    return found.isEmpty() ? plain : found;
}

QTreeWidget *NewTree(const QString &name, const QString &accessibleName)
{
    auto *tree = new QTreeWidget;
    tree->setObjectName(name);
    tree->setAccessibleName(accessibleName);
    tree->setHeaderHidden(true);
    tree->setFrameShape(QFrame::NoFrame);
    tree->setIconSize(IconSize);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    return tree;
}

} // namespace

frmEditor::frmEditor(SettingsStore &settings, Desktop &desktop, const CommandLine &commandLine)
    : m_settings(settings),
      m_desktop(desktop),
      m_commandLine(commandLine),
      TxtEdit(new TextControl(desktop)),
      picStatus(new StatusBar),
      m_documents(m_document, *TxtEdit, settings, desktop, *picStatus, *this, m_steps),
      m_context{m_document, *TxtEdit, settings, desktop, *picStatus, *this, m_documents},
      m_workspace(new Workspace(TxtEdit, picStatus, this)),
      m_commands(new Commands(desktop, this)),
      m_menus(std::make_unique<Menus>(menuBar(), this, *m_commands)),
      Toolbar1(new QToolBar),
      tvwBrowse(NewTree(u"tvwBrowse"_s, u"Code Outline"_s)),
      tvwRelated(NewTree(u"tvwRelated"_s, u"Related Files"_s)),
      m_browseTracking(new HotTracking(tvwBrowse)),
      m_relatedTracking(new HotTracking(tvwRelated)),
      cmbOpcodes(new OpcodeCombo(m_context, ProgramFolder(), [this] { FocusText(); })),
      m_presets(new PresetBar({m_context, m_tools, *this}, *m_commands, *m_menus->Menu(Menu::mnuPresets),
                              *m_menus->Menu(Menu::mnuPresetPopup))),
      m_language(new LanguageCommands(m_context, *this, *m_commands, ProgramFolder(), this)),
      m_edit(new EditCommands(m_context, *TxtEdit, *m_commands, this)),
      m_layout(std::make_unique<WindowLayout>(*this, *m_workspace, *m_commands, settings,
                                              WindowLayout::Hooks{[this](bool flat) { SetFlatButtons(flat); },
                                                                  [this](bool hot) {
                                                                      m_browseTracking->SetEnabled(hot);
                                                                      m_relatedTracking->SetEnabled(hot);
                                                                  }})),
      m_mailbox(m_context)
{
    setObjectName(u"frmEditor"_s);
    setWindowIcon(Icons::Load(u"zelvane"_s));
    setCentralWidget(m_workspace);
    TxtEdit->setObjectName(u"TxtEdit"_s);
    TxtEdit->setAccessibleName(u"Text"_s);

    m_steps.colour.Take(*this);
    m_steps.outline.Take(*this);
    m_steps.relatedFiles.Take(*this);
    BuildToolbar();
    BuildBands();
    new DocumentCommands(
        m_context, m_documents, *m_commands, [this] { close(); }, this);
    new TextCommands(m_context, *TxtEdit, m_documents, *this, *m_commands, this);
    new TextToolsCommands(m_context, *TxtEdit, *m_commands, this);
    new RunCommands({m_context, m_tools, *this}, *m_commands, this);
    new InsertCommands(m_context, *m_commands, this);
    new HelpCommands(m_context, *m_commands, ProgramFolder(), this);
    new FolderCommands(
        m_context, *m_commands,
        [this] {
            return ProgramFolders{ProgramFolder(), ProgramPath(m_tools.Csound), ProgramPath(m_tools.Csound2)};
        },
        this);
    new ViewCommands(*m_workspace, m_steps, *m_commands,
                     {.loadOpcodes = [this] { LoadOpcodeCombo(); },
                      .showToolbarLabels = [this](bool shown) { ShowToolLabels(*Toolbar1, shown); },
                      .showPresetLabels = [this](bool shown) { m_presets->ShowLabels(shown); },
                      .clearOutline = [this] { tvwBrowse->clear(); },
                      .clearRelatedFiles = [this] { tvwRelated->clear(); }},
                     this);
    ConnectText();

    m_commands->Guard([this] {
        m_layout->RestoreGeometry(DesignSize);
        setWindowTitle(ApplicationTitle());
        m_layout->RestoreBands();
    });
    qApp->installEventFilter(this);
}

frmEditor::~frmEditor()
{
    qApp->removeEventFilter(this);
    for (; m_busy > 0; --m_busy)
        QApplication::restoreOverrideCursor();
}

void frmEditor::BuildToolbar()
{
    Toolbar1->setObjectName(u"Toolbar1"_s);
    Toolbar1->setIconSize(IconSize);
    const auto add = [this](const ToolButton &button) {
        return AddToolButton(*Toolbar1, *m_commands, button);
    };

    add({u"new"_s, u"New"_s, u"New"_s, Cmd::mnuNew});
    add({u"open"_s, u"Open"_s, u"Open"_s, Cmd::mnuOpen});
    m_saveButton = add({.key = u"save"_s,
                        .description = u"Save"_s,
                        .tooltip = u"Save"_s,
                        .command = Cmd::mnuSave,
                        .followsRow = false});
    Toolbar1->addSeparator();
    add({u"cut"_s, u"Cut"_s, u"Cut"_s, Cmd::mnuEditItem[EditItem::Cut]});
    add({u"copy"_s, u"Copy"_s, u"Copy"_s, Cmd::mnuEditItem[EditItem::Copy]});
    add({u"paste"_s, u"Paste"_s, u"Paste"_s, Cmd::mnuEditItem[EditItem::Paste]});
    add({u"comment"_s,
         u"Comment"_s,
         u"Comment"_s,
         Cmd::mnuComment,
         {{u"Comment"_s, Cmd::mnuComment}, {u"Uncomment"_s, Cmd::mnuUncomment}}});
    add({u"find"_s,
         u"Find"_s,
         u"Find"_s,
         Cmd::mnuFind,
         {{u"Find..."_s, Cmd::mnuFind}, {u"Replace..."_s, Cmd::mnuReplace}}});
    add({u"undo"_s, u"Undo"_s, u"Undo"_s, Cmd::mnuUndo});
    add({u"redo"_s, u"Redo"_s, u"Redo"_s, Cmd::mnuRedo});
    Toolbar1->addSeparator();
    add({u"back"_s, u"Back"_s, u"Back"_s, Cmd::back});
    add({u"next"_s, u"Next"_s, u"Next"_s, Cmd::next});
    Toolbar1->addSeparator();
    add({u"fontsize"_s,
         u"Font size"_s,
         u"Increase font size"_s,
         Cmd::mnuFontSize[FontSizeChange::Increase],
         {{u"Increase font size"_s, Cmd::mnuFontSize[FontSizeChange::Increase]},
          {u"Decrease font size"_s, Cmd::mnuFontSize[FontSizeChange::Decrease]}}});
    Toolbar1->addSeparator();
    add({u"orchestra"_s, u"Orchestra"_s, u"Orchestra"_s, Cmd::mnuOrchestra});
    add({u"score"_s, u"Score"_s, u"Score"_s, Cmd::mnuScore});
    add({u"browse"_s, u"Outline"_s, u"Code Outline"_s, Cmd::mnuBrowse});
    add({u"related"_s, u"Related"_s, u"Related Files"_s, Cmd::mnuRelated});
    Toolbar1->addSeparator();
    add({u"runcsound"_s, u"Run"_s, u"Run Csound"_s, Cmd::mnuRunCsound});
    add({u"code"_s,
         u"Code"_s,
         u"Code Repository"_s,
         Cmd::mnuCodeRes,
         {{u"Code Repository..."_s, Cmd::mnuCodeRes}, {u"Add to Code Repository..."_s, Cmd::mnuCodeResAdd}}});
    add({u"slider"_s,
         u"Statement"_s,
         u"i statement gui"_s,
         Cmd::mnuInstrGUI,
         {{u"i statement gui..."_s, Cmd::mnuInstrGUI}, {u"Instrument Properties..."_s, Cmd::mnuInstrEdit}}});
    Toolbar1->addSeparator();
    add({u"cshelp"_s, u"Help"_s, u"Csound Help"_s, Cmd::mnuCsHelp});
}

void frmEditor::BuildBands()
{
    cmbOpcodes->setObjectName(u"cmbOpcodes"_s);
    cmbOpcodes->setMaximumWidth(fontMetrics().averageCharWidth() * OpcodeComboCharacters);
    BandBar &bands = m_workspace->Bands();
    bands.AddBand(u"toolbar"_s, Toolbar1);
    bands.AddBand(u"opcodes"_s, cmbOpcodes);
    bands.AddBand(u"player"_s, new PlayerPanel(*m_commands));
    bands.AddBand(u"presets"_s, m_presets);
    ShowExtensionInTextColour(*Toolbar1);
    ShowExtensionInTextColour(*m_presets);
    connect(m_presets, &PresetBar::Rebuilt, this, [&bands] {
        if (bands.IsBandVisible(int(WindowBand::Presets)))
            bands.SetBandWidth(int(WindowBand::Presets), bands.NaturalBandWidth(int(WindowBand::Presets)));
    });
    bands.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&bands, &QWidget::customContextMenuRequested, this, [this, &bands](const QPoint &at) {
        m_menus->Menu(Menu::mnuToolbar)->popup(bands.mapToGlobal(at));
    });

    SidePanel &panel = m_workspace->Panel();
    panel.AddBand(u"browse"_s, u"Code Outline"_s, tvwBrowse);
    panel.AddBand(u"related"_s, u"Related Files"_s, tvwRelated);
    connect(tvwBrowse, &QWidget::customContextMenuRequested, this, &frmEditor::BrowseMenu);
}

void frmEditor::SetFlatButtons(bool flat)
{
    for (QToolButton *face : Toolbar1->findChildren<QToolButton *>())
        face->setAutoRaise(flat);
    m_presets->SetFlat(flat);
}

void frmEditor::ConnectText()
{
    TextControlHooks hooks;
    hooks.tabInsertsSpaces = [this] { return m_settings.Flag(Keys::TabInsertSpaces); };
    hooks.tabSpaces = [this] { return m_settings.Integer(Keys::TabSpaces); };
    hooks.indentSelection = [this](bool decrease) {
        m_commands->Run(Cmd::mnuIndent[decrease ? IndentChange::Decrease : IndentChange::Increase]);
    };
    hooks.commandKey = [this](const QKeyEvent &event) {
        return RunCommandOfKey(KeyTaker::Text, event, *m_commands);
    };
    hooks.changeFontSize = [this](bool larger) {
        m_commands->Run(Cmd::mnuFontSize[larger ? FontSizeChange::Increase : FontSizeChange::Decrease]);
    };
    hooks.reportError = [this](const RunTimeError &error) { ReportError(m_desktop, error); };
    TxtEdit->SetHooks(std::move(hooks));
    m_commands->Around([this] { TxtEdit->BeginCommand(); }, [this] { TxtEdit->EndCommand(); });

    connect(TxtEdit, &TextControl::textChanged, this, [this] {
        m_documents.TextChanged();
        m_edit->EnableRows();
    });
    connect(TxtEdit, &TextControl::selectionChanged, this, [this] {
        if (!m_document.Loading)
            SelectionChanged();
    });
    connect(TxtEdit, &TextControl::clipboardFilled, this, [this] { m_edit->EnableRows(); });
    connect(TxtEdit, &TextControl::undoBufferEmptied, this, [this] { m_edit->EnableRows(); });
    connect(TxtEdit, &TextControl::contextMenuRequested, this, [this](const QPoint &at, bool ctrl) {
        m_menus->Menu(ctrl ? Menu::mnuInsert : Menu::mnuEdit)->popup(at);
    });
}

void frmEditor::Init(const std::function<void()> &closeSplash)
{
    m_initializing = true;
    const auto ended = qScopeGuard([this] {
        m_initializing = false;
        if (m_closeAfterInit)
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
    m_commands->Guard([&] {
        SetUpText();
        m_tools = ReadToolPaths(m_settings);
        m_presets->PresetsButtons();
        if (m_settings.Flag(Keys::PresetsLabels))
            m_commands->Run(Cmd::mnuLabels[LabelPlace::Presets]);
        RaiseMainWindow();
        m_language->LoadOpcodes();
        TxtEdit->SetStyleFormats(SyntaxHighlightSettings(m_settings));
        RigaDiComando(m_commandLine, m_documents, m_settings);
        m_documents.MRUAggiornaMenu();
        setAcceptDrops(true);
        if (m_workspace->Bands().IsBandVisible(int(WindowBand::Opcodes)))
            LoadOpcodeCombo();
        if (closeSplash)
            closeSplash();
        ShowFirstUseMessages(m_context);
    });
}

void frmEditor::SetUpText()
{
    m_document.Loading = true;
    m_document.Modified = true;
    TxtEdit->setUpdatesEnabled(false);
    // Also where a setting cannot be read: the text must not stay out of sight, nor edits unseen.
    const auto ready = qScopeGuard([this] {
        TxtEdit->setUpdatesEnabled(true);
        m_document.Modified = m_document.Loading = false;
    });
    ApplyTextColours();
    TxtEdit->SetTabWidth(m_settings.Integer(Keys::TabSize));
    if (m_settings.Flag(Keys::WordWrap))
        m_commands->Run(Cmd::mnuWordWrap);
    m_document.Modified = false;
    TextFont font = TxtEdit->CurrentFont();
    font.family = m_settings.Text(Keys::Font, font.family);
    font.points = m_settings.Number(Keys::FontSize, font.points);
    font.italic = m_settings.Flag(Keys::FontItalic, font.italic);
    font.bold = m_settings.Flag(Keys::FontBold, font.bold);
    TxtEdit->ApplyFont(font);
    TxtEdit->SetDragMode(m_settings.Flag(Keys::DragAndDrop));
}

void frmEditor::LoadOpcodeCombo()
{
    if (cmbOpcodes->count() == 0)
        cmbOpcodes->LoadOpcodeCombo();
}

void frmEditor::HandOver()
{
    if (m_unloaded)
        return;
    // A dialog that waits for an answer works on the text that stands: the mail is opened when it has closed.
    // The messages of the first use stand over nothing of the kind.
    m_mailWaits = QApplication::activeModalWidget() && !m_initializing;
    if (m_mailWaits)
        RaiseMainWindow();
    else
        m_mailbox.Wake();
}

// The document's view

void frmEditor::ShowCaption(const QString &caption)
{
    // The toolkit takes "[*]" for its own mark of a modified document, and the doubled one for the text.
    setWindowTitle(QString(caption).replace(u"[*]"_s, u"[*][*]"_s));
}

void frmEditor::SetBusy(bool busy)
{
    if (busy) {
        ++m_busy;
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (m_busy > 0) {
        --m_busy;
        QApplication::restoreOverrideCursor();
    }
}

void frmEditor::HideText()
{
    TxtEdit->hide();
    TxtEdit->setEnabled(false);
}

void frmEditor::ShowText()
{
    TxtEdit->setEnabled(true);
    TxtEdit->show();
    TxtEdit->repaint();
}

void frmEditor::FocusText()
{
    TxtEdit->setFocus();
}

void frmEditor::ApplyTextColours()
{
    if (m_settings.Flag(Keys::SystemColors))
        TxtEdit->SetTextColours(SystemWindowText, SystemWindow);
    else
        TxtEdit->SetTextColours(m_settings.Colour(Keys::FontColor), m_settings.Colour(Keys::BackColor));
}

void frmEditor::EnableSaveButton(bool enabled)
{
    m_saveButton->setEnabled(enabled);
}

void frmEditor::EnableCommand(Command command, bool enabled)
{
    m_commands->SetEnabled(command, enabled);
}

void frmEditor::ShowRecentFiles(const QStringList &files)
{
    QMenu *menu = m_menus->Menu(Menu::mnuFile);
    QAction *line = menu->findChild<QAction *>(u"mnulinea"_s, Qt::FindDirectChildrenOnly);
    int row = 1;
    for (; row <= int(files.size()); ++row) {
        QAction *action = m_commands->Action(Cmd::MRUfolder[row]);
        if (!action) {
            action = new QAction(menu);
            action->setObjectName(Cmd::MRUfolder[row].RowName());
            menu->insertAction(line, action);
            m_commands->AddAction(Cmd::MRUfolder[row], action);
        }
        action->setText(RecentFileCaption(row, files[row - 1]));
    }
    for (; QAction *action = m_commands->Action(Cmd::MRUfolder[row]); ++row) {
        m_commands->RemoveAction(Cmd::MRUfolder[row]);
        action->deleteLater();
    }
    line->setVisible(!files.isEmpty());
}

FileKind frmEditor::ChooseNewKind()
{
    frmNew chooser(this);
    chooser.exec();
    return chooser.Kind();
}

void frmEditor::SelectionChanged()
{
    picStatus->ShowPosition(LineColumnText(*TxtEdit));
    m_edit->EnableRows();
    const QString selected = SelectionText(*TxtEdit);
    if (selected != picStatus->Text())
        picStatus->Show(selected);
}

void frmEditor::performSyntaxHighlight()
{
    m_language->Colours().performSyntaxHighlight();
}

bool frmEditor::OutlineShown() const
{
    return m_commands->IsChecked(Cmd::mnuBrowse);
}

bool frmEditor::RelatedFilesShown() const
{
    return m_commands->IsChecked(Cmd::mnuRelated);
}

void frmEditor::ClearRelatedFiles()
{
    tvwRelated->clear();
}

// The program's windows

bool frmEditor::MainWindowActive() const
{
    // Among the program's own windows: it stays so when it is minimized, as presets do, and right after a
    // dialog has closed, when the desktop has not given it the keyboard yet.
    const QWidget *active = QApplication::activeWindow();
    if (!active)
        active = QApplication::activeModalWidget();
    return !active || active == this || !active->isVisible();
}

void frmEditor::MinimizeMainWindow()
{
    showMinimized();
    FlushWindowSystem();
}

void frmEditor::RaiseMainWindow()
{
    RaiseWindow(*this);
}

void frmEditor::ShowPreferences()
{
    m_commands->Run(Cmd::mnuPreferences);
}

void frmEditor::EditPreset(const QString &name)
{
    ShowPresetEditor({m_context, m_tools, *this}, name);
}

void frmEditor::RebuildPresets()
{
    m_presets->PresetsButtons();
}

// Events

bool frmEditor::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && widget->window() == this && KeyPressed(*static_cast<QKeyEvent *>(event)))
            return true;
        break;
    }
    case QEvent::FocusIn:
        if (watched == TxtEdit)
            SetTabStops(false);
        break;
    case QEvent::FocusOut:
        if (watched == TxtEdit)
            SetTabStops(true);
        break;
    default:
        break;
    }
    return QMainWindow::eventFilter(watched, event);
}

bool frmEditor::KeyPressed(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers held = event.modifiers();
    const bool ctrl = held & Qt::ControlModifier;
    const bool alt = held & Qt::AltModifier;
    if (RunCommandOfKey(KeyTaker::Window, event, *m_commands))
        return true;
    const int digit = DigitKey(event);
    const int row = digit < 0 ? -1 : PresetRowOfDigit(digit, ctrl, alt);
    if (row < 0)
        return false;
    // A key that is held down repeats; the preset runs once.
    if (!event.isAutoRepeat())
        m_presets->RunRow(row);
    return true;
}

void frmEditor::SetTabStops(bool stop)
{
    if (stop) {
        for (const auto &[control, policy] : m_tabStops) {
            if (control)
                control->setFocusPolicy(policy);
        }
        m_tabStops.clear();
        return;
    }
    for (QWidget *control : findChildren<QWidget *>()) {
        const Qt::FocusPolicy policy = control->focusPolicy();
        if (!(policy & Qt::TabFocus) || control->window() != this)
            continue;
        m_tabStops.emplace_back(control, policy);
        control->setFocusPolicy(Qt::FocusPolicy(policy & ~Qt::TabFocus));
    }
}

void frmEditor::BrowseMenu(const QPoint &at)
{
    const QTreeWidgetItem *node = tvwBrowse->itemAt(at);
    if (!node)
        node = tvwBrowse->currentItem();
    const QString kind = node ? node->data(0, Qt::UserRole).toString().left(3) : QString();
    MenuName menu = Menu::mnuTreeView;
    if (kind == u"ins"_s)
        menu = Menu::mnuBrowseEditable;
    else if (kind == u"inc"_s)
        menu = Menu::mnuBrowseInclude;
    m_menus->Menu(menu)->popup(tvwBrowse->viewport()->mapToGlobal(at));
}

bool frmEditor::event(QEvent *event)
{
    // Not at once: the command that showed the dialog has not come to its end.
    if (event->type() == QEvent::WindowUnblocked && m_mailWaits)
        QMetaObject::invokeMethod(this, &frmEditor::HandOver, Qt::QueuedConnection);
    return QMainWindow::event(event);
}

void frmEditor::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Q_EMIT Activated();
    QMainWindow::changeEvent(event);
}

void frmEditor::dragEnterEvent(QDragEnterEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!urls.isEmpty() && urls.first().isLocalFile())
        event->acceptProposedAction();
}

void frmEditor::dropEvent(QDropEvent *event)
{
    QStringList files;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    event->acceptProposedAction();
    // The program that the files come from is not to wait for the user's answers.
    QMetaObject::invokeMethod(
        this, [this, files] { m_commands->Guard([&] { FilesDropped(files, m_context); }); },
        Qt::QueuedConnection);
}

void frmEditor::closeEvent(QCloseEvent *event)
{
    if (m_unloaded)
        return event->accept();
    event->ignore();
    if (m_initializing) {
        m_closeAfterInit = true;
        return;
    }
    if (!MayEnd())
        return;
    m_unloaded = true;
    Q_EMIT Ending();
    m_commands->Guard([this] { Unload(); });
    event->accept();
    // Nothing else is waited for. Where no event loop runs there is no process to end.
    if (QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit(0);
}

bool frmEditor::MayEnd()
{
    // The end is asked for once more while the question stands: by the session, by a signal.
    if (m_asking) {
        RaiseMainWindow();
        return false;
    }
    m_asking = true;
    const auto answered = qScopeGuard([this] { m_asking = false; });
    bool goOn = false;
    m_commands->Guard([&] { goOn = m_documents.QuerySave(); });
    return goOn;
}

void frmEditor::Unload()
{
    m_layout->SaveGeometry();
    const TextFont font = TxtEdit->CurrentFont();
    m_settings.SaveText(Keys::Font, font.family);
    m_settings.SaveFlag(Keys::FontItalic, font.italic);
    m_settings.SaveFlag(Keys::FontBold, font.bold);
    m_settings.SaveNumber(Keys::FontSize, font.points);
    m_settings.SaveFlag(Keys::WordWrap, m_commands->IsChecked(Cmd::mnuWordWrap));
    m_layout->SaveBands();
    m_settings.SaveNumber(Keys::Used, m_settings.Number(Keys::Used) + 1);
    m_layout->SavePanel();
    // The find dialog is the one window that may still be open; it writes its place.
    for (QDialog *dialog : findChildren<QDialog *>()) {
        if (dialog->isVisible())
            dialog->close();
    }
}

} // namespace zelvane
