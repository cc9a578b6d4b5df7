// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"
#include "shell/editorcontext.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"
#include "support/stringbuffer.h"

#include <QTemporaryDir>

namespace zelvane::test
{

struct TestStatus : StatusLine {
    QString text;
    QStringList shown; ///< every text that was shown, in order
    QString Text() const override { return text; }
    void Show(const QString &newText) override
    {
        text = newText;
        shown.append(newText);
    }
};

struct TestWindows : ProgramWindows, PresetWindows {
    bool mainWindowActive = true;
    QStringList calls; ///< "minimize", "raise", "preferences", "edit NAME", "rebuild"
    bool MainWindowActive() const override { return mainWindowActive; }
    void MinimizeMainWindow() override { calls.append(QStringLiteral("minimize")); }
    void RaiseMainWindow() override { calls.append(QStringLiteral("raise")); }
    void ShowPreferences() override { calls.append(QStringLiteral("preferences")); }
    void EditPreset(const QString &name) override { calls.append(QStringLiteral("edit ") + name); }
    void RebuildPresets() override { calls.append(QStringLiteral("rebuild")); }
};

struct TestOperations : DocumentOperations {
    QStringList calls; ///< "open NAME", "save NAME", "new KIND NAME", "insert NAME", "query", "keep"
    OpenOrigin lastOrigin = OpenOrigin::Command; ///< of the last open
    bool queryAnswer = true;
    bool saveAnswer = true;
    void OpenFile(const QString &name, OpenOrigin origin) override
    {
        calls.append(QStringLiteral("open ") + name);
        lastOrigin = origin;
    }
    bool SaveFile(const QString &name) override
    {
        calls.append(QStringLiteral("save ") + name);
        return saveAnswer;
    }
    void NewFile(FileKind kind, const QString &name) override
    {
        calls.append(QStringLiteral("new %1 %2").arg(int(kind)).arg(name));
    }
    void InsertFile(const QString &name) override { calls.append(QStringLiteral("insert ") + name); }
    bool QuerySave() override
    {
        calls.append(QStringLiteral("query"));
        return queryAnswer;
    }
    void KeepUnsaved() override { calls.append(QStringLiteral("keep")); }
};

/// An editor without a window, over a folder and a settings store of its own.
struct TestContext {
    QTemporaryDir folder;
    DocumentRecord document;
    StringBuffer text;
    SettingsStore settings{folder.filePath(QStringLiteral("settings"))};
    ScriptedDesktop desktop;
    TestStatus status;
    TestWindows windows;
    TestOperations operations;
    EditorContext editor{document, text, settings, desktop, status, windows, operations};

    /// Writes a file below the folder and gives its path.
    QString WriteFile(const QString &name, const QByteArray &bytes = {});
};

} // namespace zelvane::test
