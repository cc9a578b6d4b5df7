// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/rundialog.h"

#include "platform/windowstate.h"
#include "run/runkeys.h"
#include "run/toolpaths.h"
#include "shell/documentkind.h"
#include "shell/recentlist.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class RunDialog : public ::testing::Test
{
protected:
    QString Open(const QString &name)
    {
        context.document.CurrentFile = context.WriteFile(name);
        ClassifyDocument(context.document, context.settings);
        return context.document.CurrentFile;
    }

    TestContext context;
    ToolPaths tools{.Csound = u"/opt/one/csound"_s, .Csound2 = u"/opt/two/csound"_s};
    RunContext run{context.editor, tools, context.windows};
};

} // namespace

TEST_F(RunDialog, WithoutDocumentTheFieldsAreEmpty)
{
    EXPECT_EQ(LoadRunDialog(run), RunDialogFields());
}

TEST_F(RunDialog, FieldsByTheKindOfTheDocument)
{
    const QString orchestra = Open(u"song.orc"_s);
    EXPECT_EQ(LoadRunDialog(run), (RunDialogFields{.orchestra = orchestra}));
    const QString score = context.WriteFile(u"song2.sco"_s);
    EXPECT_EQ(LoadRunDialog(run), (RunDialogFields{.orchestra = orchestra, .score = score}));
    context.document.CurrentFile = score;
    context.document.DocumentKind = FileKind::Score;
    EXPECT_EQ(LoadRunDialog(run), (RunDialogFields{.orchestra = orchestra, .score = score}));
    const QString unified = Open(u"u.csd"_s);
    EXPECT_EQ(LoadRunDialog(run), (RunDialogFields{.orchestra = unified}));
    const QString other = Open(u"u.txt"_s);
    EXPECT_EQ(LoadRunDialog(run), (RunDialogFields{.orchestra = other}));
}

TEST_F(RunDialog, HistoryIsKeptAndNotOffered)
{
    for (const QString &line : {u"-a"_s, u"-b"_s})
        AddRecentItem(context.settings, line, u"Recent Command Lines"_s, 12);
    EXPECT_EQ(LoadRunDialog(run), RunDialogFields());
    // Only a store that someone gave a key "0" offers rows, up to the first gap and to key "11".
    for (int i = 0; i <= 12; ++i)
        context.settings.SaveSetting(u"Recent Command Lines"_s, QString::number(i), u"-%1"_s.arg(i));
    RunDialogFields fields = LoadRunDialog(run);
    EXPECT_EQ(fields.history.size(), 12);
    EXPECT_EQ(fields.history.last(), u"-11"_s);
    EXPECT_EQ(fields.flags, u"-0"_s);
    context.settings.SaveSetting(u"Recent Command Lines"_s, u"2"_s, {});
    EXPECT_EQ(LoadRunDialog(run).history, (QStringList{u"-0"_s, u"-1"_s}));
}

TEST_F(RunDialog, StoredChoices)
{
    context.settings.SaveSetting(u"Options"_s, u"ManualCsound2"_s, u"1"_s);
    context.settings.SaveSetting(u"Options"_s, u"ManualSaveFirst"_s, u"-1"_s);
    context.settings.SaveSetting(u"Options"_s, u"ManualInitialFolder"_s, u"False"_s);
    EXPECT_EQ(LoadRunDialog(run),
              (RunDialogFields{.csound2 = true, .saveFirst = true, .documentFolder = false}));
}

TEST_F(RunDialog, RunsTheCompiler)
{
    const QString document = Open(u"x.orc"_s);
    RunDialogFields fields{.orchestra = document, .score = u"/s.sco"_s, .flags = u"-W -o $WAVE$"_s};
    context.desktop.ExpectShellRun(
        {.file = u"/opt/one/csound"_s,
         .parameters = u"-W -o %1 %2 /s.sco"_s.arg(context.folder.filePath(u"x.wav"_s), document),
         .folder = context.folder.path(),
         .showState = WindowState::Normal});
    EXPECT_TRUE(RunCsound(fields, run));
    EXPECT_TRUE(context.operations.calls.isEmpty());
    // The flags are remembered as they were typed.
    EXPECT_EQ(context.settings.GetSetting(u"Recent Command Lines"_s, u"1"_s), u"-W -o $WAVE$"_s);
    EXPECT_EQ(context.settings.GetSetting(u"Recent Command Lines"_s, u"0"_s, u"none"_s), u"none"_s);
    EXPECT_FALSE(context.settings.Flag(Keys::ManualCsound2));
    EXPECT_FALSE(context.settings.Flag(Keys::ManualSaveFirst));
    EXPECT_TRUE(context.settings.Flag(Keys::ManualInitialFolder));
}

TEST_F(RunDialog, AFailedSaveKeepsTheDialogOpen)
{
    const QString document = Open(u"x.csd"_s);
    context.operations.saveAnswer = false;
    RunDialogFields fields{.orchestra = document, .flags = u"-d"_s, .csound2 = true, .saveFirst = true};
    const RunDialogFields before = fields;
    EXPECT_FALSE(RunCsound(fields, run));
    EXPECT_EQ(context.operations.calls, QStringList{u"save "_s + document});
    EXPECT_EQ(fields, before);
    EXPECT_FALSE(context.settings.Flag(Keys::ManualCsound2)) << "nothing of it is kept";
    EXPECT_EQ(context.settings.GetSetting(u"Recent Command Lines"_s, u"1"_s, u"none"_s), u"none"_s);
}

TEST_F(RunDialog, SecondCompilerInItsFolderWithSaving)
{
    const QString document = Open(u"x.csd"_s);
    RunDialogFields fields{
        .orchestra = document, .flags = u"-d"_s, .csound2 = true, .saveFirst = true, .documentFolder = false};
    context.desktop.ExpectShellRun({.file = u"/opt/two/csound"_s,
                                    .parameters = u"-d "_s + document + u' ',
                                    .folder = u"/opt/two"_s,
                                    .showState = WindowState::Normal});
    EXPECT_TRUE(RunCsound(fields, run));
    EXPECT_EQ(context.operations.calls, QStringList{u"save "_s + document});
    EXPECT_EQ(LoadRunDialog(run).csound2, true);
    EXPECT_EQ(LoadRunDialog(run).saveFirst, true);
    EXPECT_EQ(LoadRunDialog(run).documentFolder, false);
}

TEST_F(RunDialog, AChoiceThatIsNotShownIsNotStored)
{
    context.settings.SaveFlag(Keys::ManualSaveFirst, true);
    for (const bool asks : {false, true}) {
        RunDialogFields fields{.flags = u"-d"_s, .asksSaveFirst = asks};
        context.desktop.ExpectShellRun(
            {.file = u"/opt/one/csound"_s, .parameters = u"-d  "_s, .showState = WindowState::Normal});
        EXPECT_TRUE(RunCsound(fields, run));
        EXPECT_EQ(context.settings.Flag(Keys::ManualSaveFirst), !asks);
    }
}

TEST_F(RunDialog, ShiftSwapsMacrosButNotTheCompiler)
{
    context.desktop.keysDown = {KeyCode::Shift};
    RunDialogFields fields{.flags = u"$CSOUND$"_s};
    context.desktop.ExpectShellRun({.file = u"/opt/one/csound"_s,
                                    .parameters = u"/opt/two/csound  "_s,
                                    .folder = {},
                                    .showState = WindowState::Normal});
    EXPECT_TRUE(RunCsound(fields, run));
}

TEST_F(RunDialog, BlanksAreQuotedInTheFields)
{
    RunDialogFields fields{.orchestra = u"/a b.orc"_s, .score = u"/s c.sco"_s, .documentFolder = false};
    context.desktop.ExpectShellRun({.file = u"/opt/one/csound"_s,
                                    .parameters = u" \"/a b.orc\" \"/s c.sco\""_s,
                                    .folder = u"/opt/one"_s,
                                    .showState = WindowState::Normal});
    EXPECT_TRUE(RunCsound(fields, run));
    EXPECT_EQ(fields.orchestra, u"\"/a b.orc\""_s);
    EXPECT_EQ(fields.score, u"\"/s c.sco\""_s);
}

#ifdef Q_OS_LINUX
TEST_F(RunDialog, QuotesInTheNameOfAFileAreDoubled)
{
    const QString document = Open(u"a\"b.csd"_s);
    RunDialogFields fields{.orchestra = document};
    const QString quoted = u'"' + context.folder.path() + u"/a\"\"b.csd\""_s;
    context.desktop.ExpectShellRun({.file = u"/opt/one/csound"_s,
                                    .parameters = u' ' + quoted + u' ',
                                    .folder = context.folder.path(),
                                    .showState = WindowState::Normal});
    EXPECT_TRUE(RunCsound(fields, run));
}
#endif

TEST_F(RunDialog, FailedMacroKeepsTheDialogOpen)
{
    RunDialogFields fields{.orchestra = u"/a b.orc"_s, .flags = u"$DOCUMENT$"_s, .saveFirst = true};
    EXPECT_FALSE(RunCsound(fields, run));
    EXPECT_EQ(context.status.text, u"DOCUMENT macro returned empty string."_s);
    EXPECT_EQ(fields.orchestra, u"/a b.orc"_s);
    EXPECT_TRUE(context.operations.calls.isEmpty());
    EXPECT_TRUE(context.settings.GetAllSettings(u"Recent Command Lines"_s).empty());
}

TEST_F(RunDialog, WithoutCompilerPreferencesAreOffered)
{
    tools = {};
    const MessageBoxRequest question{
        .text =
            u"You should first set a Csound compiler. Do you want to open the Preferences dialog box now?"_s,
        .icon = BoxIcon::Warning,
        .buttons = BoxButtons::YesNo};
    RunDialogFields fields{.flags = u"-d"_s, .saveFirst = true};
    context.desktop.ExpectMessage(question, BoxAnswer::No);
    EXPECT_TRUE(RunCsound(fields, run));
    EXPECT_TRUE(context.windows.calls.isEmpty());
    context.desktop.ExpectMessage(question, BoxAnswer::Yes);
    EXPECT_TRUE(RunCsound(fields, run));
    EXPECT_EQ(context.windows.calls, QStringList{u"preferences"_s});
    EXPECT_TRUE(context.operations.calls.isEmpty());
    EXPECT_TRUE(context.settings.GetAllSettings(u"Recent Command Lines"_s).empty());
}

TEST_F(RunDialog, HistoryHoldsTwelve)
{
    for (int i = 0; i < 14; ++i) {
        RunDialogFields fields{.flags = u"-%1"_s.arg(i)};
        context.desktop.ExpectShellRun({.file = u"/opt/one/csound"_s,
                                        .parameters = fields.flags + u"  "_s,
                                        .showState = WindowState::Normal});
        EXPECT_TRUE(RunCsound(fields, run));
    }
    EXPECT_EQ(context.settings.GetAllSettings(u"Recent Command Lines"_s).size(), 12u);
    EXPECT_EQ(context.settings.GetSetting(u"Recent Command Lines"_s, u"1"_s), u"-13"_s);
    EXPECT_EQ(context.settings.GetSetting(u"Recent Command Lines"_s, u"12"_s), u"-2"_s);
}

TEST_F(RunDialog, HistoryTakesAnEmptyLineInFrontOnly)
{
    const auto history = [this] {
        QStringList lines;
        for (int i = 1; i <= 4; ++i)
            lines.append(
                context.settings.GetSetting(u"Recent Command Lines"_s, QString::number(i), u"(absent)"_s));
        return lines;
    };
    const auto runWith = [this](const QString &flags) {
        RunDialogFields fields{.flags = flags};
        context.desktop.ExpectShellRun(
            {.file = u"/opt/one/csound"_s, .parameters = flags + u"  "_s, .showState = WindowState::Normal});
        EXPECT_TRUE(RunCsound(fields, run));
    };
    runWith(u"-d"_s);
    runWith({});
    EXPECT_EQ(history(), (QStringList{{}, u"-d"_s, u"(absent)"_s, u"(absent)"_s}));
    runWith(u"-D"_s); // another flag than "-d"
    EXPECT_EQ(history(), (QStringList{u"-D"_s, u"-d"_s, u"(absent)"_s, u"(absent)"_s}));
}

} // namespace zelvane::test
