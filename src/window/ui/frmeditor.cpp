// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/frmeditor.h"

#include "platform/programinfo.h"
#include "platform/ui/canceldialogs.h"
#include "platform/ui/raisewindow.h"
#include "platform/ui/textcontrol.h"
#include "shell/bands.h"
#include "shell/editorkeys.h"
#include "shell/layoutkeys.h"
#include "shell/leftwork.h"
#include "shell/startup.h"
#include "shell/ui/backupcommands.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commandkeys.h"
#include "shell/ui/commands.h"
#include "shell/ui/documentcommands.h"
#include "shell/ui/editcommands.h"
#include "shell/ui/helpcommands.h"
#include "shell/ui/icons.h"
#include "shell/ui/menutable.h"
#include "shell/ui/statusbar.h"
#include "shell/ui/tabstops.h"
#include "shell/ui/textcommands.h"
#include "shell/ui/toolbutton.h"
#include "window/ui/documentdisplay.h"
#include "window/ui/filedrops.h"
#include "window/ui/focusround.h"
#include "window/ui/menuescape.h"
#include "window/ui/rooms.h"
#include "window/ui/toolbartable.h"
#include "window/ui/viewcommands.h"
#include "window/ui/windowlayout.h"
#include "window/ui/workspace.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QThread>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr QSize DesignSize(960, 680);
constexpr QSize IconSize(16, 16);

} // namespace

frmEditor::frmEditor(SettingsStore &settings, Desktop &desktop, const CommandLine &commandLine)
    : m_settings(settings),
      m_desktop(desktop),
      m_settingReports(settings, desktop),
      m_commandLine(commandLine),
      TxtEdit(new TextControl(desktop)),
      picStatus(new StatusBar),
      m_commands(new Commands(desktop, this)),
      m_menus(std::make_unique<Menus>(menuBar(), this, *m_commands)),
      m_appearance(settings),
      m_layoutParts(settings, *m_commands),
      m_display(std::make_unique<DocumentDisplay>(*this, *TxtEdit, *picStatus, desktop, m_appearance,
                                                  *m_commands, *m_menus)),
      m_documents(m_document, *TxtEdit, settings, desktop, *picStatus, *m_display, m_steps),
      m_context{m_document, *TxtEdit, settings, desktop, *picStatus, *this, m_documents},
      m_workspace(new Workspace(TxtEdit, picStatus, this)),
      Toolbar1(new QToolBar),
      m_window{m_context,    *TxtEdit,      m_documents,  *m_display,           m_steps,
               *m_commands,  *m_menus,      this,         m_workspace->Bands(), m_workspace->Panel(),
               m_appearance, m_windowSteps, m_layoutParts},
      m_rooms(new RoomList{m_window}),
      m_layout(std::make_unique<WindowLayout>(*this, *m_workspace, *m_commands, settings, m_appearance,
                                              m_layoutParts)),
      // A dialog that waits for an answer works on the text that stands: mail is opened when it has closed.
      // The messages of the first use stand over nothing of the kind.
      m_mailbox(m_context, [this] {
          return m_life != Life::Closed && (IsStarting() || !QApplication::activeModalWidget());
      })
{
    setObjectName(u"frmEditor"_s);
    setWindowIcon(Icons::Load(u"zelvane"_s));
    setCentralWidget(m_workspace);
    TxtEdit->setObjectName(u"TxtEdit"_s);
    TxtEdit->setAccessibleName(u"Text"_s);

    BuildToolbar();
    BuildBands();
    AddLooks();
    BindDocumentCommands(m_window, [this] { close(); });
    BindEditCommands(m_window);
    new TextCommands(m_window);
    new BackupCommands(m_window);
    BindHelpCommands(m_window);
    BindViewCommands(m_window, *m_workspace, *Toolbar1);
    m_workspace->OrderTabs();
    ConnectText();
    new TabStops(this, TxtEdit);
    new WindowKeys(this, *m_commands);
    m_mailbox.ServeAfterDialogsOf(*this);
    new FocusRound(this, *TxtEdit, m_workspace->Bands(), m_workspace->Panel());
    new MenuEscape(menuBar());

    m_commands->Guard([this] {
        m_layout->RestoreGeometry(DesignSize);
        setWindowTitle(ApplicationTitle());
        m_layout->RestoreBands();
        // The text is empty, and nothing is to be saved: so look the buttons from the first moment.
        m_display->EnableSaveButton(false);
        m_display->SelectionChanged();
    });
}

frmEditor::~frmEditor() = default;

void frmEditor::StepAside()
{
    m_layout->StepAside();
}

void frmEditor::BuildToolbar()
{
    Toolbar1->setObjectName(u"Toolbar1"_s);
    Toolbar1->setIconSize(IconSize);
    AddToolButtons(*Toolbar1, *m_commands, ToolbarTable());
    for (QAction *button : Toolbar1->actions()) {
        // The keys work while the toolbar is out of sight.
        if (!button->shortcut().isEmpty())
            addAction(button);
    }
    m_display->SetSaveButton(FindToolButton(*Toolbar1, Cmd::mnuSave));
}

void frmEditor::BuildBands()
{
    BandBar &bands = m_workspace->Bands();
    bands.AddBand(WindowBand::Toolbar, Toolbar1);
    ShowExtensionInTextColour(*Toolbar1);
    bands.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&bands, &QWidget::customContextMenuRequested, this, [this, &bands](const QPoint &at) {
        m_menus->Menu(Menu::mnuToolbar)->popup(bands.mapToGlobal(at));
    });
}

void frmEditor::AddLooks()
{
    AddTextLooks(m_appearance, *TxtEdit);
    m_appearance.Add(Look::BandLabels, [this](const SettingsStore &settings) {
        m_workspace->Bands().ShowCaptions(settings.Flag(Keys::BandLabels));
    });
    m_appearance.Add(Look::FlatButtons,
                     [this](const SettingsStore &settings) { ShowFlatButtons(*Toolbar1, settings); });
}

void frmEditor::ConnectText()
{
    const auto enableRows = [this] { EnableEditRows(*TxtEdit, m_desktop, *m_commands); };
    connect(TxtEdit, &TextControl::textChanged, this, [this, enableRows] {
        m_documents.TextChanged();
        enableRows();
    });
    connect(TxtEdit, &TextControl::selectionChanged, this, [this] {
        if (!m_document.Loading)
            m_display->SelectionChanged();
    });
    connect(TxtEdit, &TextControl::clipboardFilled, this, enableRows);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            enableRows); // by other programs too
    connect(TxtEdit, &TextControl::undoBufferEmptied, this, enableRows);
    connect(TxtEdit, &TextControl::contextMenuRequested, this, [this](const QPoint &at, bool ctrl) {
        m_menus->Menu(ctrl ? Menu::mnuInsert : Menu::mnuEdit)->popup(at);
    });
}

void frmEditor::Init(const std::function<void()> &closeSplash)
{
    m_life = Life::Starting;
    const auto ended = qScopeGuard([this] {
        const bool close = m_life == Life::CloseAfterStart;
        m_life = Life::Waiting;
        if (close)
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
    m_commands->Guard([&] {
        SetUpText();
        m_appearance.ApplyAtStart(LookTime::Tools);
        m_windowSteps.Run(WindowMoment::Bars);
        RaiseMainWindow();
        m_windowSteps.Run(WindowMoment::Tables);
        m_appearance.ApplyAtStart(LookTime::Tables);
        RigaDiComando(m_commandLine, m_documents, m_settings);
        m_documents.MRUAggiornaMenu();
        new FileDrops(this, [this](const QStringList &files) {
            m_commands->Guard([&] { FilesDropped(files, m_context); });
        });
        m_windowSteps.Run(WindowMoment::CleanUp);
        m_windowSteps.Run(WindowMoment::Lists);
        if (closeSplash)
            closeSplash();
        ShowFirstUseMessages(m_context);
    });
    // Whoever ends the program has answered nothing.
    m_commands->Guard(
        [this] { OfferLeftWork(m_documents, m_context, [this] { return m_life == Life::Starting; }); });
    m_settingReports.Tell();
}

void frmEditor::SetUpText()
{
    m_document.Loading = true;
    m_document.Modified = true;
    TxtEdit->setUpdatesEnabled(false);
    // Also when a step fails: the text must not stay out of sight, nor edits unseen.
    const auto ready = qScopeGuard([this] {
        TxtEdit->setUpdatesEnabled(true);
        m_document.Modified = m_document.Loading = false;
    });
    m_appearance.ApplyAtStart(LookTime::Text);
}

void frmEditor::LookAtDisk()
{
    constexpr int mostInARow = 2;
    if (m_life != Life::Waiting || m_looksAtDisk || QApplication::activeModalWidget())
        return;
    // The end of a question makes this window the active one again. Where the file is written without a
    // pause, as a log is, the user gets on with his text all the same; a save asks in any case.
    if (m_disksAsked >= mostInARow)
        return;
    const auto done = qScopeGuard([this] { m_looksAtDisk = false; });
    m_looksAtDisk = true;
    m_commands->Guard([this] { m_documents.WindowActivated(); });
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
    if (m_life != Life::Closed)
        RaiseWindow(*this);
}

void frmEditor::ShowPreferences()
{
    m_commands->Run(Cmd::mnuPreferences);
}

// Events

void frmEditor::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        m_disksAsked = m_looksAtDisk ? m_disksAsked + 1 : 0;
    } else if (event->type() == QEvent::ActivationChange) {
        Q_EMIT Activated();
        // Not at once: whoever gave the window back may have more to do, such as the next dialog.
        QMetaObject::invokeMethod(this, &frmEditor::LookAtDisk, Qt::QueuedConnection);
    }
    QMainWindow::changeEvent(event);
}

void frmEditor::closeEvent(QCloseEvent *event)
{
    if (m_life == Life::Closed)
        return event->accept();
    event->ignore();
    if (IsStarting()) {
        m_life = Life::CloseAfterStart;
        return;
    }
    if (!MayEnd())
        return;
    m_life = Life::Closed;
    m_commands->Guard([this] { m_documents.KeepUnsaved(); });
    Q_EMIT Ending();
    m_commands->Guard([this] { m_settings.InOneStep([this] { Unload(); }); });
    event->accept();
    // Nothing else is waited for. Where no event loop runs there is no process to end.
    if (QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit(0);
}

bool frmEditor::MayEnd()
{
    // The end is asked for once more while the question stands: by the session, by a signal.
    if (m_life == Life::Asking) {
        RaiseMainWindow();
        return false;
    }
    const auto answered = qScopeGuard([this, before = m_life] { m_life = before; });
    m_life = Life::Asking;
    bool goOn = false;
    m_commands->Guard([&] { goOn = m_documents.QuerySave(); });
    return goOn;
}

void frmEditor::EndBySystem()
{
    if (m_life == Life::Asking)
        RaiseMainWindow();
    else
        CancelDialogs(*this, [this] { close(); });
}

bool frmEditor::MayEndSession(bool mayAsk)
{
    if (!mayAsk) {
        m_commands->Guard([this] { m_documents.SecureText(); });
        return true;
    }
    if ((m_life != Life::Asking && !CancelDialogs()) || !MayEnd())
        return false;
    // The process may get no chance to close its window.
    m_commands->Guard([this] {
        m_documents.KeepUnsaved();
        m_documents.SecureText();
    });
    return true;
}

void frmEditor::Unload()
{
    m_windowSteps.Run(WindowMoment::Closing);
    m_layout->SaveGeometry();
    SaveTextFont(*TxtEdit, m_settings);
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
