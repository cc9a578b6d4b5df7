// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <variant>

namespace zelvane::test
{

/// The desktop of the tests: it is given the questions that must come, in their order, with their answers; it
/// fails the test on a question that differs in any word, on one that was not expected, and on a leftover
/// answer.
class ScriptedDesktop : public Desktop
{
public:
    ~ScriptedDesktop() override;

    /// `during` runs while the box stands.
    void ExpectMessage(const MessageBoxRequest &request, BoxAnswer answer = BoxAnswer::Ok,
                       std::function<void()> during = {});
    void ExpectInput(const QString &title, const QString &prompt, std::optional<QString> answer);
    void ExpectOpenDialog(const FileDialogRequest &request, const FileDialogAnswer &answer);
    void ExpectSaveDialog(const FileDialogRequest &request, const FileDialogAnswer &answer);
    void ExpectBrowseFolder(const QString &title, const QString &initial, const QString &answer);
    /// What it says of the console is looked at only where it says anything.
    void ExpectShellRun(const ShellRequest &request, int result = 42);
    /// `during` runs in place of the process, while the program waits.
    void ExpectProcess(const ProcessRequest &request, bool started = true, std::function<void()> during = {});
    /// Fails the test when an expected question has not come; called by the destructor too.
    void CheckAllCame();

    std::set<KeyCode> keysDown;
    std::map<QString, QString> environment;
    QString clipboard;
    bool clipboardFails = false;
    QDateTime now = QDateTime(QDate(2001, 3, 7), QTime(12, 30, 15));
    std::map<QString, QString> typeNames;
    std::map<QString, QString> executableKinds;

    BoxAnswer MessageBox(const MessageBoxRequest &request) override;
    std::optional<QString> InputBox(const QString &title, const QString &prompt,
                                    const QString &initial) override;
    FileDialogAnswer OpenFileDialog(const FileDialogRequest &request) override;
    FileDialogAnswer SaveFileDialog(const FileDialogRequest &request) override;
    QString BrowseFolder(const QString &title, const QString &initial) override;
    bool IsKeyDown(KeyCode key) const override { return keysDown.contains(key); }
    bool ClipboardHasText() const override { return !clipboard.isEmpty(); }
    QString ClipboardText() const override { return clipboard; }
    void SetClipboardText(const QString &text) override;
    int ShellRun(const ShellRequest &request) override;
    bool RunAndWait(const ProcessRequest &request, const std::function<void()> &started) override;
    QString EnvironmentVariable(const QString &name) const override;
    QString TypeName(const QString &path) const override;
    QString DisplayName(const QString &path) const override;
    QString ExecutableKind(const QString &path) const override;
    QDateTime Now() const override { return now; }

private:
    static void CheckWish(const ConsoleWish &wish, const ConsoleWish &expected);
    struct Message {
        MessageBoxRequest request;
        BoxAnswer answer;
        std::function<void()> during;
    };
    struct Input {
        QString title, prompt;
        std::optional<QString> answer;
    };
    struct OpenDialog {
        FileDialogRequest request;
        FileDialogAnswer answer;
    };
    struct SaveDialog {
        FileDialogRequest request;
        FileDialogAnswer answer;
    };
    struct Folder {
        QString title, initial, answer;
    };
    struct Shell {
        ShellRequest request;
        int result;
    };
    struct Process {
        ProcessRequest request;
        bool started;
        std::function<void()> during;
    };
    using Expectation = std::variant<Message, Input, OpenDialog, SaveDialog, Folder, Shell, Process>;

    /// The next expectation if it is of this kind; a test failure and no value otherwise.
    template <typename Kind> std::optional<Kind> Next(const QString &what);

    std::deque<Expectation> m_expected;
};

} // namespace zelvane::test
