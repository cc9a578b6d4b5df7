// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/documentlifecycle.h"
#include "support/recordingview.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

namespace zelvane::test
{

/// A text control that raises the change event.
struct WatchedBuffer : StringBuffer {
    std::function<void()> changed;
    std::function<void()> beforeLoad; ///< runs when a fresh text arrives
    bool onlyLength = false;          ///< a fresh text is measured and dropped, for very large ones
    qsizetype loadedLength = 0;

    void LoadText(QString newText) override
    {
        loadedLength = newText.size();
        if (!onlyLength)
            StringBuffer::LoadText(std::move(newText));
    }
    void SetText(const QString &newText) override
    {
        if (beforeLoad)
            beforeLoad();
        StringBuffer::SetText(newText);
        if (changed)
            changed();
    }
    void ReplaceRange(qsizetype start, qsizetype end, const QString &newText) override
    {
        StringBuffer::ReplaceRange(start, end, newText);
        if (changed)
            changed();
    }
};

/// The status line of the window, writing into the window's own record of events.
struct RecordedStatus : StatusLine {
    explicit RecordedStatus(RecordingView &window) : view(window) {}
    RecordingView &view;
    QString text;
    QString Text() const override { return text; }
    void Show(const QString &newText) override
    {
        text = newText;
        view.calls.append(QStringLiteral("status ") + newText);
    }
};

/// The real document operations over a text, a scripted desktop and a window that writes everything down.
struct LifecycleFixture : ::testing::Test {
    TestContext context;
    RecordingView view;
    RecordedStatus status{view};
    WatchedBuffer text;
    DocumentRecord &document = context.document;
    ScriptedDesktop &desktop = context.desktop;
    SettingsStore &settings = context.settings;
    DocumentLifecycle documents{document, text, settings, desktop, status, view, view.steps};
    EditorContext editor{document, text, settings, desktop, status, context.windows, documents};

    LifecycleFixture()
    {
        text.changed = [this] { documents.TextChanged(); };
    }

    /// Types at the caret, as the user would.
    void Type(const QString &typed) { text.ReplaceSelection(typed); }

    /// The bytes of a file; a test failure when it cannot be read.
    static QByteArray FileBytes(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
};

} // namespace zelvane::test
