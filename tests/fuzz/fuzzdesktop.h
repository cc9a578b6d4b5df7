// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fuzz/fuzzstart.h"
#include "platform/desktop.h"
#include "run/runcontext.h"
#include "shell/editorcontext.h"
#include "support/stringbuffer.h"

#include <map>

namespace zelvane::fuzz
{

/// Answers every question in the same way for the whole of a run.
struct AnsweringDesktop : Desktop {
    BoxAnswer answer = BoxAnswer::No;
    std::optional<QString> input;
    QString picked; ///< by every file dialog; empty for Cancel
    bool shift = false;
    std::map<QString, QString> environment;
    QString clipboard;
    int messages = 0;

    BoxAnswer MessageBox(const MessageBoxRequest &) override
    {
        ++messages;
        return answer;
    }
    std::optional<QString> InputBox(const QString &, const QString &, const QString &) override
    {
        return input;
    }
    FileDialogAnswer OpenFileDialog(const FileDialogRequest &) override { return {picked}; }
    FileDialogAnswer SaveFileDialog(const FileDialogRequest &) override { return {picked}; }
    QString BrowseFolder(const QString &, const QString &) override { return picked; }
    bool IsKeyDown(KeyCode) const override { return shift; }
    bool ClipboardHasText() const override { return !clipboard.isEmpty(); }
    QString ClipboardText() const override { return clipboard; }
    void SetClipboardText(const QString &text) override { clipboard = text; }
    int ShellRun(const ShellRequest &) override { return ShellFailure + 1; }
    bool RunAndWait(const ProcessRequest &, const std::function<void()> &) override { return true; }
    QString EnvironmentVariable(const QString &name) const override
    {
        const auto found = environment.find(name);
        return found == environment.end() ? QString() : found->second;
    }
    QString TypeName(const QString &) const override { return {}; }
    QString DisplayName(const QString &path) const override { return path; }
    QString ExecutableKind(const QString &) const override { return {}; }
    QDateTime Now() const override { return QDateTime(QDate(2001, 3, 7), QTime(12, 30, 15)); }
};

/// What the commands ask of the window, and nothing happens.
struct QuietWindow : StatusLine, ProgramWindows, PresetWindows, DocumentOperations {
    bool active = true;

    QString Text() const override { return {}; }
    void Show(const QString &) override {}
    bool MainWindowActive() const override { return active; }
    void MinimizeMainWindow() override {}
    void RaiseMainWindow() override {}
    void ShowPreferences() override {}
    void EditPreset(const QString &) override {}
    void RebuildPresets() override {}
    void OpenFile(const QString &, OpenOrigin) override {}
    bool SaveFile(const QString &) override { return true; }
    void NewFile(FileKind, const QString &) override {}
    void InsertFile(const QString &) override {}
    bool QuerySave() override { return true; }
    void KeepUnsaved() override {}
};

/// An editor over a string. The settings are those of the caller, since a store is a file.
struct Editor {
    explicit Editor(SettingsStore &store) : settings(store) {}

    SettingsStore &settings;
    DocumentRecord document;
    test::StringBuffer text;
    AnsweringDesktop desktop;
    QuietWindow window;
    EditorContext context{document, text, settings, desktop, window, window, window};
};

} // namespace zelvane::fuzz
