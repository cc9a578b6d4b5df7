// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandline.h"
#include "shell/documentlifecycle.h"
#include "shell/documentsteps.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/startup.h"

#include "run/runcontext.h"
#include "run/toolpaths.h"

#include <functional>
#include <memory>
#include <QMainWindow>
#include <QPointer>
#include <vector>

class QAction;
class QToolBar;
class QTreeWidget;

namespace zelvane
{

class Commands;
class EditCommands;
class HotTracking;
class LanguageCommands;
class Menus;
class OpcodeCombo;
class PresetBar;
class StatusBar;
class TextControl;
class WindowLayout;
class Workspace;

/// The one main window. It owns the document record, the text control, the context and one object for each
/// subsystem, lays them out and keeps the layout. It holds no parsing and no algorithm.
class frmEditor : public QMainWindow,
                  public DocumentView,
                  public ProgramWindows,
                  public PresetWindows,
                  public ColourStep,
                  public OutlineStep,
                  public RelatedFilesStep
{
    Q_OBJECT

public:
    /// Builds the window and restores its layout; it is not shown, and has no document, before Init.
    frmEditor(SettingsStore &settings, Desktop &desktop, const CommandLine &commandLine);
    ~frmEditor() override;

    /// Brings up the document; called once, after the window has been shown.
    /// @param closeSplash takes the splash away, near the end
    void Init(const std::function<void()> &closeSplash = {});

    /// A second process has put something into the mailbox. While a dialog is open it stays there, and the
    /// window only comes to the front.
    void HandOver();

    /// Whether something handed over still waits for the end of a dialog.
    bool HasMail() const { return m_mailWaits; }

    /// Asks about unsaved work, as the close of the window does. @return whether the program may end
    bool MayEnd();

    EditorContext &Context() { return m_context; }
    DocumentLifecycle &Documents() { return m_documents; }
    Commands &CommandTable() { return *m_commands; }
    PresetBar &Presets() { return *m_presets; }

    // DocumentView
    void ShowCaption(const QString &caption) override;
    void SetBusy(bool busy) override;
    void HideText() override;
    void ShowText() override;
    void FocusText() override;
    void ApplyTextColours() override;
    void EnableSaveButton(bool enabled) override;
    void EnableCommand(Command command, bool enabled) override;
    void ShowRecentFiles(const QStringList &files) override;
    FileKind ChooseNewKind() override;
    void SelectionChanged() override;

    // DocumentSteps
    void performSyntaxHighlight() override;
    bool OutlineShown() const override;
    bool RelatedFilesShown() const override;
    void ClearRelatedFiles() override;

    // ProgramWindows
    bool MainWindowActive() const override;
    void MinimizeMainWindow() override;
    void RaiseMainWindow() override;
    void ShowPreferences() override;

    // PresetWindows
    void EditPreset(const QString &name) override;
    void RebuildPresets() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The window has become the active one.
    void Activated();
    /// The window closes; its layout is not written yet.
    void Ending();

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void BuildToolbar();
    void BuildBands();
    void SetFlatButtons(bool flat);
    void ConnectText();
    /// Colours, tab stops, word wrap and font of the text control, as the settings have them.
    void SetUpText();
    void LoadOpcodeCombo();
    /// While the text has the focus no control is a tab stop, so that the text control gets the Tab key.
    void SetTabStops(bool stop);
    /// The keys that the window takes before the control that has the focus. @return whether the key was one
    bool KeyPressed(const QKeyEvent &event);
    void BrowseMenu(const QPoint &at);
    /// What is written at the close, in its order.
    void Unload();

    SettingsStore &m_settings;
    Desktop &m_desktop;
    CommandLine m_commandLine;
    ToolPaths m_tools;

    DocumentRecord m_document;
    DocumentSteps m_steps;
    TextControl *TxtEdit;
    StatusBar *picStatus;
    DocumentLifecycle m_documents;
    EditorContext m_context;
    Workspace *m_workspace;
    Commands *m_commands;
    std::unique_ptr<Menus> m_menus;

    QToolBar *Toolbar1;
    QAction *m_saveButton = nullptr;
    QTreeWidget *tvwBrowse;
    QTreeWidget *tvwRelated;
    HotTracking *m_browseTracking;
    HotTracking *m_relatedTracking;
    OpcodeCombo *cmbOpcodes;
    PresetBar *m_presets;
    LanguageCommands *m_language;
    EditCommands *m_edit;
    std::unique_ptr<WindowLayout> m_layout;
    zelvane::HandOver m_mailbox;

    std::vector<std::pair<QPointer<QWidget>, Qt::FocusPolicy>>
        m_tabStops; ///< what the controls had before the text took the focus
    int m_busy = 0;
    bool m_initializing = false;
    bool m_closeAfterInit = false;
    bool m_mailWaits = false;
    bool m_asking = false;
    bool m_unloaded = false;
};

} // namespace zelvane
