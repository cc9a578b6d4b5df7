// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"

#include <functional>
#include <utility>

namespace zelvane
{

/// What the program does about a wait in which it handles no event.
struct WaitHooks {
    std::function<void()> begins; ///< called once, when what is waited for runs
    std::function<void()> looks;  ///< called several times a second; may end the process
};

/// How programs without a window of their own are shown.
struct ConsoleUse {
    QString program = {}; ///< the console; empty for none: output goes where the editor's own goes
    std::function<bool()> wanted = {}; ///< whether the user wants it where a request does not say
};

/// The real desktop: Qt's dialogs over the active window, processes of the operating system, the default
/// handlers of the desktop.
class QtDesktop : public Desktop
{
public:
    void SetWaitHooks(WaitHooks hooks) { m_waitHooks = std::move(hooks); }

    /// Without it no program gets a console.
    void SetConsole(ConsoleUse console) { m_console = std::move(console); }

    /// How long the desktop's opener of documents is waited for, in milliseconds: one that still runs then
    /// has found a handler.
    void SetHandlerPatience(int patience) { m_handlerPatience = patience; }

    BoxAnswer MessageBox(const MessageBoxRequest &request) override;
    std::optional<QString> InputBox(const QString &title, const QString &prompt,
                                    const QString &initial) override;
    FileDialogAnswer OpenFileDialog(const FileDialogRequest &request) override;
    FileDialogAnswer SaveFileDialog(const FileDialogRequest &request) override;
    QString BrowseFolder(const QString &title, const QString &initial) override;

    bool IsKeyDown(KeyCode key) const override;

    bool ClipboardHasText() const override;
    QString ClipboardText() const override;
    void SetClipboardText(const QString &text) override;

    /// An executable is started on its own, in its folder; in a console where it has no window of its own, or
    /// else with its standard output going where the editor's goes. A folder goes to the file manager,
    /// anything else to its default handler. A started program outlives the editor. With the verb "openas"
    /// the user picks the program that opens the file.
    int ShellRun(const ShellRequest &request) override;
    bool RunAndWait(const ProcessRequest &request, const std::function<void()> &started = {}) override;
    QString EnvironmentVariable(const QString &name) const override;

    /// Empty, as the display name is, for a file that does not exist. A bare program name means the one in
    /// PATH.
    QString TypeName(const QString &path) const override;
    QString DisplayName(const QString &path) const override;
    QString ExecutableKind(const QString &path) const override;

    QDateTime Now() const override;

private:
    /// The console for a program; empty where it gets none.
    QString ConsoleFor(const QString &program, const ConsoleWish &wish) const;

    WaitHooks m_waitHooks;
    ConsoleUse m_console;
    int m_handlerPatience = 1500;
};

/// The rows of a file dialog in the toolkit's notation, "All Files" appended unless a row has that label.
/// Patterns of names that the notation cannot hold (blanks, brackets) match them by "?".
QStringList NameFilters(const std::vector<FileFilter> &filters);

} // namespace zelvane
