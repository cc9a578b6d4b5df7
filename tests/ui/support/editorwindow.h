// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/textcontrol.h"
#include "shell/documentkeys.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "shell/ui/commands.h"
#include "support/scripteddesktop.h"
#include "window/ui/frmeditor.h"

#include <memory>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

namespace zelvane::test
{

/// A main window over a store, a program folder, a state folder and a scripted desktop of its own. Without
/// further settings it starts with an untitled text document and no message.
class EditorWindow
{
public:
    EditorWindow()
    {
        qputenv("ZELVANE_HOME", QFile::encodeName(folder.path()));
        qputenv("XDG_STATE_HOME", QFile::encodeName(stateFolder.path()));
        WriteFile(QStringLiteral("opcodes.txt"), "oscil outs linen oscil\n");
        settings.SaveNumber(Keys::Used, 2);
        settings.SaveNumber(Keys::Startup, 2);
    }

    frmEditor &Open(const QStringList &arguments = {})
    {
        window.reset();
        window = std::make_unique<frmEditor>(settings, desktop, CommandLine(arguments));
        window->show();
        window->Init();
        QCoreApplication::processEvents();
        return *window;
    }

    QString WriteFile(const QString &name, const QByteArray &bytes)
    {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            QTest::qFail("cannot write a test's file", __FILE__, __LINE__);
        return file.fileName();
    }

    template <typename Widget> Widget &Find(const QString &name)
    {
        auto *found = window->findChild<Widget *>(name);
        if (!found)
            qFatal("no child named %s", qPrintable(name));
        return *found;
    }
    QAction &Row(const QString &name) { return Find<QAction>(name); }
    TextControl &Text() { return Find<TextControl>(QStringLiteral("TxtEdit")); }

    QTemporaryDir folder;
    QTemporaryDir storeFolder;
    QTemporaryDir stateFolder;
    SettingsStore settings{storeFolder.filePath(QStringLiteral("settings"))};
    ScriptedDesktop desktop;
    std::unique_ptr<frmEditor> window;
};

/// The button of this key on the main toolbar.
inline QAction *ToolbarButton(EditorWindow &editor, const QString &key)
{
    return &editor.Find<QAction>(QStringLiteral("Toolbar1_") + key);
}

} // namespace zelvane::test
