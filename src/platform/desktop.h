// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/programinfo.h"
#include "platform/windowstate.h"

#include <functional>
#include <optional>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <vector>

namespace zelvane
{

enum class BoxIcon { None, Critical, Question, Warning, Information };
enum class BoxButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Cancel, Yes, No };

/// A message box. `defaultAnswer` absent means the first button.
struct MessageBoxRequest {
    QString text;
    BoxIcon icon = BoxIcon::None;
    BoxButtons buttons = BoxButtons::Ok;
    QString title = ApplicationTitle();
    std::optional<BoxAnswer> defaultAnswer = {};

    bool operator==(const MessageBoxRequest &) const = default;
};

/// One row of a file dialog's filter list; patterns are joined by ";" ("*.orc;*.sco"). "*.exe" means
/// programs: where they have no suffix, all files that may be run.
struct FileFilter {
    QString label;
    QString patterns;

    bool operator==(const FileFilter &) const = default;
};

/// A file picker. The desktop appends "All Files" with "*" unless a filter of that label is there already.
struct FileDialogRequest {
    QString title = {};
    std::vector<FileFilter> filters = {};
    int filterIndex = 0; ///< row of `filters` that is chosen first, from 0
    QString folder = {}; ///< a folder, or a file in it
    QString fileName = {};
    QString defaultExtension = {}; ///< without a dot; save dialogs only
    bool overwritePrompt = true;   ///< save dialogs only

    bool operator==(const FileDialogRequest &) const = default;
};

/// What was picked; `path` is empty after Cancel.
struct FileDialogAnswer {
    QString path = {};
    int filterIndex = 0;
};

/// What a request says about the console of a program without a window of its own.
struct ConsoleWish {
    QString title = {};              ///< empty for the program's name
    std::optional<bool> wanted = {}; ///< no value for what the user has set for all

    bool operator==(const ConsoleWish &) const = default;
};

/// A request to the desktop's shell: open `file` as a document or start it as a program. With an empty verb,
/// as presets have it, the shell tells the user of a failure itself; with a named verb it is silent and the
/// caller tells. `file` may stand in double quotes (UnquoteFile); `parameters` are one text, to be cut by
/// SplitParameters.
struct ShellRequest {
    QString verb = {}; ///< empty for the default verb; "open", "explore", "find", "properties"
    QString file = {};
    QString parameters = {};
    QString folder = {};
    WindowState showState = WindowState::Normal;
    ConsoleWish console = {};

    bool operator==(const ShellRequest &) const = default;
};

/// A process to wait for, as the command line `"command" parameters`; `command` may stand in double quotes
/// already.
struct ProcessRequest {
    QString command = {};
    QString parameters = {};
    QString folder = {};
    WindowState showState = WindowState::Normal;
    ConsoleWish console = {};

    bool operator==(const ProcessRequest &) const = default;
};

enum class KeyCode { Shift = 0x10, Ctrl = 0x11, Alt = 0x12 };

/// A shell result up to this number is a failure.
inline constexpr int ShellFailure = 32;

/// The services of the desktop that may stand in the middle of an algorithm: questions, pickers, keys,
/// clipboard, the shell, the clock. Tests give their own.
class Desktop
{
public:
    virtual ~Desktop() = default;

    virtual BoxAnswer MessageBox(const MessageBoxRequest &request) = 0;
    /// @return no value after Cancel
    virtual std::optional<QString> InputBox(const QString &title, const QString &prompt,
                                            const QString &initial) = 0;
    virtual FileDialogAnswer OpenFileDialog(const FileDialogRequest &request) = 0;
    virtual FileDialogAnswer SaveFileDialog(const FileDialogRequest &request) = 0;
    /// @return the chosen folder, empty after Cancel
    virtual QString BrowseFolder(const QString &title, const QString &initial) = 0;

    /// Whether the key is down at this moment.
    virtual bool IsKeyDown(KeyCode key) const = 0;

    virtual bool ClipboardHasText() const = 0;
    virtual QString ClipboardText() const = 0;
    /// Puts plain text on the clipboard in place of all that it held. @throws RunTimeError when it cannot be
    /// reached
    virtual void SetClipboardText(const QString &text) = 0;

    /// @return a number above ShellFailure when the shell took the request
    virtual int ShellRun(const ShellRequest &request) = 0;
    /// Starts a process and blocks until it has ended, handling no event meanwhile.
    /// @param started called once when the process runs, just before the wait; not called if it cannot start
    /// @return false if it cannot start
    virtual bool RunAndWait(const ProcessRequest &request, const std::function<void()> &started = {}) = 0;
    /// The value of an environment variable, empty when it is not set.
    virtual QString EnvironmentVariable(const QString &name) const = 0;

    /// The desktop's name for the type of a file ("Csound score", "PNG image").
    virtual QString TypeName(const QString &path) const = 0;
    /// The desktop's name for a file: its bare name.
    virtual QString DisplayName(const QString &path) const = 0;
    /// A word for the kind of executable that `path` is, empty when it is none.
    virtual QString ExecutableKind(const QString &path) const = 0;

    virtual QDateTime Now() const = 0;
};

} // namespace zelvane
