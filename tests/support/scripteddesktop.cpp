// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/scripteddesktop.h"

#include "platform/runtimeerror.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

void ExpectSame(const FileDialogRequest &came, const FileDialogRequest &expected)
{
    EXPECT_EQ(came.title, expected.title);
    EXPECT_EQ(came.filters.size(), expected.filters.size());
    for (size_t i = 0; i < std::min(came.filters.size(), expected.filters.size()); ++i) {
        EXPECT_EQ(came.filters[i].label, expected.filters[i].label);
        EXPECT_EQ(came.filters[i].patterns, expected.filters[i].patterns);
    }
    EXPECT_EQ(came.filterIndex, expected.filterIndex);
    EXPECT_EQ(came.folder, expected.folder);
    EXPECT_EQ(came.fileName, expected.fileName);
    EXPECT_EQ(came.defaultExtension, expected.defaultExtension);
    EXPECT_EQ(came.overwritePrompt, expected.overwritePrompt);
}

} // namespace

ScriptedDesktop::~ScriptedDesktop()
{
    CheckAllCame();
}

void ScriptedDesktop::CheckAllCame()
{
    EXPECT_TRUE(m_expected.empty()) << m_expected.size() << " expected question(s) did not come";
    m_expected.clear();
}

void ScriptedDesktop::ExpectMessage(const MessageBoxRequest &request, BoxAnswer answer,
                                    std::function<void()> during)
{
    m_expected.push_back(Message{request, answer, std::move(during)});
}

void ScriptedDesktop::ExpectInput(const QString &title, const QString &prompt, std::optional<QString> answer)
{
    m_expected.push_back(Input{title, prompt, answer});
}

void ScriptedDesktop::ExpectOpenDialog(const FileDialogRequest &request, const FileDialogAnswer &answer)
{
    m_expected.push_back(OpenDialog{request, answer});
}

void ScriptedDesktop::ExpectSaveDialog(const FileDialogRequest &request, const FileDialogAnswer &answer)
{
    m_expected.push_back(SaveDialog{request, answer});
}

void ScriptedDesktop::ExpectBrowseFolder(const QString &title, const QString &initial, const QString &answer)
{
    m_expected.push_back(Folder{title, initial, answer});
}

void ScriptedDesktop::ExpectShellRun(const ShellRequest &request, int result)
{
    m_expected.push_back(Shell{request, result});
}

void ScriptedDesktop::ExpectProcess(const ProcessRequest &request, bool started, std::function<void()> during)
{
    m_expected.push_back(Process{request, started, std::move(during)});
}

template <typename Kind> std::optional<Kind> ScriptedDesktop::Next(const QString &what)
{
    if (m_expected.empty() || !std::holds_alternative<Kind>(m_expected.front())) {
        ADD_FAILURE() << "unexpected: " << what.toStdString();
        return std::nullopt;
    }
    Kind kind = std::get<Kind>(std::move(m_expected.front()));
    m_expected.pop_front();
    return kind;
}

BoxAnswer ScriptedDesktop::MessageBox(const MessageBoxRequest &request)
{
    const auto expected = Next<Message>(u"message box: "_s + request.text);
    if (!expected) {
        // The answer that ends most roads soonest.
        return request.buttons == BoxButtons::YesNo ? BoxAnswer::No : BoxAnswer::Cancel;
    }
    EXPECT_EQ(request.text, expected->request.text);
    EXPECT_EQ(request.title, expected->request.title);
    EXPECT_EQ(int(request.icon), int(expected->request.icon));
    EXPECT_EQ(int(request.buttons), int(expected->request.buttons));
    EXPECT_EQ(request.defaultAnswer, expected->request.defaultAnswer);
    if (expected->during)
        expected->during();
    return expected->answer;
}

std::optional<QString> ScriptedDesktop::InputBox(const QString &title, const QString &prompt, const QString &)
{
    const auto expected = Next<Input>(u"input box: "_s + prompt);
    if (!expected)
        return std::nullopt;
    EXPECT_EQ(title, expected->title);
    EXPECT_EQ(prompt, expected->prompt);
    return expected->answer;
}

FileDialogAnswer ScriptedDesktop::OpenFileDialog(const FileDialogRequest &request)
{
    const auto expected = Next<OpenDialog>(u"open dialog: "_s + request.title);
    if (!expected)
        return {};
    ExpectSame(request, expected->request);
    return expected->answer;
}

FileDialogAnswer ScriptedDesktop::SaveFileDialog(const FileDialogRequest &request)
{
    const auto expected = Next<SaveDialog>(u"save dialog: "_s + request.title);
    if (!expected)
        return {};
    ExpectSame(request, expected->request);
    return expected->answer;
}

QString ScriptedDesktop::BrowseFolder(const QString &title, const QString &initial)
{
    const auto expected = Next<Folder>(u"folder picker: "_s + title);
    if (!expected)
        return {};
    EXPECT_EQ(title, expected->title);
    EXPECT_EQ(initial, expected->initial);
    return expected->answer;
}

void ScriptedDesktop::SetClipboardText(const QString &text)
{
    if (clipboardFails)
        throw RunTimeError(ErrorNumber::DeviceError, u"Can't open Clipboard"_s, u"Clipboard"_s);
    clipboard = text;
}

void ScriptedDesktop::CheckWish(const ConsoleWish &wish, const ConsoleWish &expected)
{
    if (expected == ConsoleWish{})
        return;
    EXPECT_EQ(wish.title, expected.title);
    EXPECT_EQ(wish.wanted, expected.wanted);
}

int ScriptedDesktop::ShellRun(const ShellRequest &request)
{
    const auto expected = Next<Shell>(u"shell: "_s + request.file + u" "_s + request.parameters);
    if (!expected)
        return ShellFailure;
    EXPECT_EQ(request.verb, expected->request.verb);
    EXPECT_EQ(request.file, expected->request.file);
    EXPECT_EQ(request.parameters, expected->request.parameters);
    EXPECT_EQ(request.folder, expected->request.folder);
    EXPECT_EQ(request.showState, expected->request.showState);
    CheckWish(request.console, expected->request.console);
    return expected->result;
}

bool ScriptedDesktop::RunAndWait(const ProcessRequest &request, const std::function<void()> &started)
{
    const auto expected = Next<Process>(u"process: "_s + request.command + u" "_s + request.parameters);
    if (!expected)
        return false;
    EXPECT_EQ(request.command, expected->request.command);
    EXPECT_EQ(request.parameters, expected->request.parameters);
    EXPECT_EQ(request.folder, expected->request.folder);
    EXPECT_EQ(request.showState, expected->request.showState);
    CheckWish(request.console, expected->request.console);
    if (expected->started && started)
        started();
    if (expected->during)
        expected->during();
    return expected->started;
}

QString ScriptedDesktop::EnvironmentVariable(const QString &name) const
{
    const auto found = environment.find(name);
    return found == environment.end() ? QString() : found->second;
}

QString ScriptedDesktop::TypeName(const QString &path) const
{
    const auto found = typeNames.find(path);
    return found == typeNames.end() ? QString() : found->second;
}

QString ScriptedDesktop::DisplayName(const QString &path) const
{
    return QFileInfo(path).fileName();
}

QString ScriptedDesktop::ExecutableKind(const QString &path) const
{
    const auto found = executableKinds.find(path);
    return found == executableKinds.end() ? QString() : found->second;
}

} // namespace zelvane::test
