// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "platform/textbuffer.h"
#include "shell/document.h"
#include "shell/settings.h"

namespace zelvane
{

/// `lblStatus`: the left text of the status bar.
class StatusLine
{
public:
    virtual ~StatusLine() = default;
    virtual QString Text() const = 0;
    /// Shows a text and repaints it at once, so that it stands before a long step begins.
    virtual void Show(const QString &text) = 0;
};

/// Where an opening came from: the history and the related files keep themselves out of the recent list.
enum class OpenOrigin { Command, RelatedFiles, History };

/// The document operations that subsystems call.
class DocumentOperations
{
public:
    virtual ~DocumentOperations() = default;
    virtual void OpenFile(const QString &name, OpenOrigin origin = OpenOrigin::Command) = 0;
    /// @return false when the text was not saved; the user has been told. An empty name saves nothing, as
    /// asked.
    virtual bool SaveFile(const QString &name) = 0;
    virtual void NewFile(FileKind kind, const QString &name) = 0;
    virtual void InsertFile(const QString &name) = 0;
    /// @return true when the caller may go on and discard the text
    virtual bool QuerySave() = 0;
    /// Called before the text is discarded in another way than by OpenFile, NewFile or the close of the
    /// window: where it is unsaved its copy stays for a week.
    virtual void KeepUnsaved() = 0;
};

/// The program's own windows, as far as the core asks for them. In the chooser and in the Run Csound program
/// there is no main window: it is then never active, and minimizing it does nothing.
class ProgramWindows
{
public:
    virtual ~ProgramWindows() = default;
    /// False only while another window of the program, such as a dialog, is the active one: true also while
    /// the main window is minimized or another program is in front.
    virtual bool MainWindowActive() const = 0;
    virtual void MinimizeMainWindow() = 0;
    virtual void RaiseMainWindow() = 0;
    virtual void ShowPreferences() = 0;
};

/// All that a subsystem sees of the program. The parts outlive every user of the context.
struct EditorContext {
    DocumentRecord &document;
    TextBuffer &text;
    SettingsStore &settings;
    Desktop &desktop;
    StatusLine &status;
    ProgramWindows &windows;
    DocumentOperations &operations;
};

} // namespace zelvane
