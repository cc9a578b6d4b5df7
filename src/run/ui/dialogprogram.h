// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"
#include "run/toolpaths.h"
#include "shell/editorcontext.h"
#include "shell/settingreports.h"

#include <functional>
#include <memory>
#include <QPointer>
#include <QWidget>
#include <utility>

namespace zelvane
{

/// What the preset chooser and the Run Csound dialog work on when each is a program of its own: a document by
/// its path, the settings and the tool paths. There is no main window, no text and no status line; the main
/// window is never active, and what is asked of it does nothing; only for the wait of a two-step preset the
/// dialog itself goes out of sight, as it cannot answer meanwhile.
class DialogProgram : public ProgramWindows, public PresetWindows
{
public:
    /// Classifies the document and reads the tool paths.
    DialogProgram(const QString &document, SettingsStore &settings, Desktop &desktop);
    ~DialogProgram() override;

    /// Tells which window is hidden for the wait.
    void SetWindow(QWidget *window) { m_window = window; }
    /// Tells how the Preferences dialog is shown, modal.
    void SetPreferences(std::function<void()> show) { m_showPreferences = std::move(show); }

    /// Lives as long as this object.
    RunContext &Context() { return m_context; }

    bool MainWindowActive() const override { return false; }
    void MinimizeMainWindow() override;
    void RaiseMainWindow() override {}
    void ShowPreferences() override;

    void EditPreset(const QString &name) override;
    /// The editors that run see the change when they next start.
    void RebuildPresets() override {}

private:
    struct Void;

    QPointer<QWidget> m_window;
    std::function<void()> m_showPreferences;
    SettingReports m_settingReports;
    DocumentRecord m_document;
    ToolPaths m_tools;
    std::unique_ptr<Void> m_void;
    EditorContext m_editor;
    RunContext m_context;
};

} // namespace zelvane
