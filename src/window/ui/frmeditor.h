// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandline.h"
#include "shell/documentlifecycle.h"
#include "shell/documentsteps.h"
#include "shell/editorcontext.h"
#include "shell/mailbox.h"
#include "shell/settingreports.h"
#include "shell/ui/appearance.h"
#include "shell/ui/layoutparts.h"
#include "shell/ui/windowcontext.h"
#include "shell/windowsteps.h"

#include <functional>
#include <memory>
#include <QMainWindow>

class QToolBar;

namespace zelvane
{

class Commands;
class DocumentDisplay;
class Menus;
class StatusBar;
class TextControl;
class WindowLayout;
class Workspace;
struct RoomList;

/// The one main window. It owns the document record, the text control, the context and the rooms that plug
/// into it, lays them out and keeps the layout. It holds no parsing and no algorithm.
class frmEditor : public QMainWindow, public ProgramWindows
{
    Q_OBJECT

public:
    /// Builds the window and restores its layout; it is not shown, and has no document, before Init.
    frmEditor(SettingsStore &settings, Desktop &desktop, const CommandLine &commandLine);
    ~frmEditor() override;

    /// Brings up the document; called once, after the window has been shown.
    /// @param closeSplash takes the splash away, near the end
    void Init(const std::function<void()> &closeSplash = {});

    /// Moves the window out of the way of another editor's; before it is shown.
    void StepAside();

    /// What a second process hands over. While a dialog is open it waits, and when the window has closed.
    Mailbox &Mail() { return m_mailbox; }

    /// Asks about unsaved work, as the close of the window does. @return whether the program may end
    bool MayEnd();

    /// The system ends the program: whatever dialog is open is cancelled, then the window closes as the user
    /// closes it. While the question about unsaved work stands it only comes to the front.
    void EndBySystem();
    /// The session ends: an open dialog is cancelled and unsaved work asked about, where the session lets the
    /// program ask. When this returns the disk has what is to be kept. @return whether the session may end
    bool MayEndSession(bool mayAsk = true);

    EditorContext &Context() { return m_context; }
    DocumentLifecycle &Documents() { return m_documents; }
    Commands &CommandTable() { return *m_commands; }
    RoomList &Rooms() { return *m_rooms; }
    /// What of the window follows the settings.
    const Appearance &Looks() const { return m_appearance; }

    // ProgramWindows
    bool MainWindowActive() const override;
    void MinimizeMainWindow() override;
    void RaiseMainWindow() override;
    void ShowPreferences() override;

Q_SIGNALS:
    /// The window has become the active one.
    void Activated();
    /// The window closes; its layout is not written yet.
    void Ending();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void BuildToolbar();
    void BuildBands();
    /// What the settings decide of the window's own controls.
    void AddLooks();
    void ConnectText();
    /// Makes the text control look as the settings say.
    void SetUpText();
    /// The life of the window, and what stands between it and the end.
    enum class Life {
        Waiting,         ///< for the user
        Starting,        ///< Init runs
        CloseAfterStart, ///< Init runs, and the close that was asked for meanwhile comes after it
        Asking,          ///< about unsaved work
        Closed
    };
    bool IsStarting() const { return m_life == Life::Starting || m_life == Life::CloseAfterStart; }

    /// The document's file may have changed while another window was the active one.
    void LookAtDisk();
    /// What is written at the close, in its order.
    void Unload();

    SettingsStore &m_settings;
    Desktop &m_desktop;
    SettingReports m_settingReports;
    CommandLine m_commandLine;

    DocumentRecord m_document;
    DocumentSteps m_steps;
    TextControl *TxtEdit;
    StatusBar *picStatus;
    Commands *m_commands;
    std::unique_ptr<Menus> m_menus;
    Appearance m_appearance;
    WindowSteps m_windowSteps;
    LayoutParts m_layoutParts;
    std::unique_ptr<DocumentDisplay> m_display;
    DocumentLifecycle m_documents;
    EditorContext m_context;
    Workspace *m_workspace;
    QToolBar *Toolbar1;

    WindowContext m_window;
    std::unique_ptr<RoomList> m_rooms;
    std::unique_ptr<WindowLayout> m_layout;
    Mailbox m_mailbox;

    Life m_life = Life::Waiting;
    bool m_looksAtDisk = false;
    int m_disksAsked = 0; ///< questions of LookAtDisk since the window was left for anything else
};

} // namespace zelvane
