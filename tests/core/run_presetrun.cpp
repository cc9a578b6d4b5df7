// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/presetrun.h"

#include "platform/runtimeerror.h"
#include "platform/windowstate.h"
#include "run/presetkeys.h"
#include "run/presetstore.h"
#include "run/runkeys.h"
#include "run/toolpaths.h"
#include "shell/documentkind.h"
#include "support/boxes.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QFile>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class Run : public ::testing::Test
{
protected:
    QString Open(const QString &name)
    {
        context.document.CurrentFile = context.WriteFile(name);
        ClassifyDocument(context.document, context.settings);
        return context.document.CurrentFile;
    }

    void Set(const RecordKey &key, const QString &value)
    {
        PresetStore(context.settings).SaveStoredText(u"P"_s, key, value);
    }

    void Go(bool confirm = false, bool edit = false) { RunPreset(u"P"_s, confirm, edit, run); }

    TestContext context;
    ToolPaths tools{.Csound = u"/opt/cs/csound"_s};
    RunContext run{context.editor, tools, context.windows};
};

} // namespace

TEST_F(Run, EmptyNameDoesNothing)
{
    context.settings.SaveFlag(Keys::MinimizeOnPresets, true);
    RunPreset({}, false, true, run);
    EXPECT_TRUE(context.windows.calls.isEmpty());
}

TEST_F(Run, PresetWithoutCommandDoesNothing)
{
    Go();
    Set(PresetKeys::Args, u"$SEL$"_s); // is not looked at
    Go();
    Set(PresetKeys::Command, u"$CLIP$"_s);
    Go();
    EXPECT_TRUE(context.status.shown.isEmpty());
}

TEST_F(Run, OneAction)
{
    const QString document = Open(u"a b.csd"_s);
    Set(PresetKeys::Command, u"$CSOUND$"_s);
    Set(PresetKeys::Args, u"-W -o $WAVE$ $DOCUMENT$"_s);
    Set(PresetKeys::Folder, u"$DIR$"_s);
    Set(PresetKeys::Window, u"2"_s);
    const QString wave = context.folder.filePath(u"a b.wav"_s);
    const QString parameters = u"-W -o \"%1\" \"%2\""_s.arg(wave, document);
    context.desktop.ExpectShellRun({.file = u"/opt/cs/csound"_s,
                                    .parameters = parameters,
                                    .folder = context.folder.path(),
                                    .showState = WindowState::Minimized,
                                    .console = {.title = u"P"_s}});
    Go();
    EXPECT_EQ(context.status.shown, QStringList{u"P: /opt/cs/csound "_s + parameters});
    EXPECT_TRUE(context.windows.calls.isEmpty());
    EXPECT_TRUE(context.operations.calls.isEmpty());
}

TEST_F(Run, FolderDefaultsToTheCommands)
{
    Set(PresetKeys::Command, u"$CSOUND$"_s);
    context.desktop.ExpectShellRun({.file = u"/opt/cs/csound"_s,
                                    .folder = u"/opt/cs"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P"_s}});
    Go();
    Set(PresetKeys::Command, u"csound"_s);
    context.desktop.ExpectShellRun(
        {.file = u"csound"_s, .folder = {}, .showState = WindowState::Normal, .console = {.title = u"P"_s}});
    Go();
    context.document.CurrentFile = u"/a b/x.html"_s;
    Set(PresetKeys::Command, u"$DOCUMENT$"_s);
    context.desktop.ExpectShellRun({.file = u"\"/a b/x.html\""_s,
                                    .folder = u"/a b"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P"_s}});
    Go();
}

TEST_F(Run, APresetMaySayWhetherItWantsAConsole)
{
    Set(PresetKeys::Command, u"/bin/x"_s);
    for (const auto &[stored, wanted] : {std::pair{u"0"_s, false}, std::pair{u"1"_s, true}}) {
        Set(PresetKeys::Console, stored);
        context.desktop.ExpectShellRun({.file = u"/bin/x"_s,
                                        .folder = u"/bin"_s,
                                        .showState = WindowState::Normal,
                                        .console = {.title = u"P"_s, .wanted = wanted}});
        Go();
    }
}

TEST_F(Run, FailingShellIsNotTold)
{
    Set(PresetKeys::Command, u"/no/such"_s);
    context.desktop.ExpectShellRun({.file = u"/no/such"_s,
                                    .folder = u"/no"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P"_s}},
                                   2);
    Go();
}

TEST_F(Run, SaveFirst)
{
    const QString document = Open(u"x.csd"_s);
    Set(PresetKeys::SaveFirst, u"1"_s);
    context.document.Modified = false;
    Go();
    EXPECT_TRUE(context.operations.calls.isEmpty());
    context.document.Modified = true;
    Go();
    EXPECT_EQ(context.operations.calls, QStringList{u"save "_s + document});
    context.operations.calls.clear();
    context.document.CurrentFile.clear();
    Go(); // untitled
    context.document.CurrentFile = document;
    Set(PresetKeys::SaveFirst, u"0"_s);
    Go();
    Set(PresetKeys::SaveFirst, u"1"_s);
    context.windows.mainWindowActive = false;
    Go();
    EXPECT_TRUE(context.operations.calls.isEmpty());
}

TEST_F(Run, AFailedSaveKeepsThePresetFromRunning)
{
    const QString document = Open(u"x.csd"_s);
    context.document.Modified = true;
    context.operations.saveAnswer = false;
    Set(PresetKeys::SaveFirst, u"1"_s);
    Set(PresetKeys::Command, u"/bin/x"_s);
    Set(PresetKeys::SecondCommand, u"/bin/y"_s);
    Go();
    EXPECT_EQ(context.operations.calls, QStringList{u"save "_s + document});
    EXPECT_TRUE(context.status.shown.isEmpty());
    EXPECT_TRUE(context.windows.calls.isEmpty());
    // Its editor needs no saved text.
    Go(false, true);
    EXPECT_EQ(context.windows.calls, QStringList{u"edit P"_s});
    context.windows.calls.clear();
    context.settings.SaveFlag(Keys::MinimizeOnPresets, true);
    Go();
    EXPECT_EQ(context.windows.calls, (QStringList{u"minimize"_s, u"raise"_s}));
}

TEST_F(Run, MinimizeOnPresets)
{
    context.settings.SaveFlag(Keys::MinimizeOnPresets, true);
    Go();
    EXPECT_EQ(context.windows.calls, QStringList{u"minimize"_s});
    context.windows.calls.clear();
    context.windows.mainWindowActive = false;
    Go();
    EXPECT_TRUE(context.windows.calls.isEmpty());
}

TEST_F(Run, EditSavesAndMinimizesFirst)
{
    const QString document = Open(u"x.csd"_s);
    context.document.Modified = true;
    context.settings.SaveFlag(Keys::MinimizeOnPresets, true);
    Set(PresetKeys::SaveFirst, u"1"_s);
    Set(PresetKeys::Command, u"/bin/true"_s);
    Go(false, true);
    EXPECT_EQ(context.windows.calls, (QStringList{u"minimize"_s, u"edit P"_s}));
    EXPECT_EQ(context.operations.calls, QStringList{u"save "_s + document});
    EXPECT_TRUE(context.status.shown.isEmpty());
}

TEST_F(Run, FieldsAreExpandedInOrder)
{
    Open(u"x.orc"_s);
    context.WriteFile(u"x.sco"_s);
    Set(PresetKeys::Command, u"$WAVE$"_s);
    Set(PresetKeys::Args, u"$AIFF$ $LOG$"_s);
    Set(PresetKeys::Folder, u"$WAVE$"_s);
    const auto dialog = [this](const QString &macro, const QString &name) {
        return FileDialogRequest{.title = macro + u" - Confirm macro expansion"_s,
                                 .filters = {{u"All Files"_s, u"*"_s}},
                                 .folder = context.folder.path(),
                                 .fileName = context.folder.filePath(name)};
    };
    context.desktop.ExpectSaveDialog(dialog(u"WAVE"_s, u"x.wav"_s), {u"/1"_s});
    context.desktop.ExpectSaveDialog(dialog(u"AIFF"_s, u"x.aif"_s), {u"/2"_s});
    context.desktop.ExpectSaveDialog(dialog(u"LOG"_s, u"x.log"_s), {u"/3"_s});
    context.desktop.ExpectSaveDialog(dialog(u"WAVE"_s, u"x.wav"_s), {u"/4"_s});
    context.desktop.ExpectShellRun({.file = u"/1"_s,
                                    .parameters = u"/2 /3"_s,
                                    .folder = u"/4"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P"_s}});
    Go(true);
}

TEST_F(Run, FailureInEachFieldStops)
{
    Set(PresetKeys::Command, u"$DOCUMENT$"_s);
    Go();
    EXPECT_EQ(context.status.shown, QStringList{u"DOCUMENT macro returned empty string."_s});
    context.status.shown.clear();
    Set(PresetKeys::Command, u"/bin/x"_s);
    Set(PresetKeys::Args, u"$EXT$"_s);
    Go();
    EXPECT_EQ(context.status.shown, QStringList{u"EXT macro returned empty string."_s});
    context.status.shown.clear();
    Set(PresetKeys::Args, u"-a"_s);
    Set(PresetKeys::Folder, u"$DIR$"_s);
    Go();
    EXPECT_EQ(context.status.shown, (QStringList{u"P: /bin/x -a"_s, u"DIR macro returned empty string."_s}));
}

TEST_F(Run, CancelledSearchStopsBeforeAnythingStarts)
{
    Open(u"x.sco"_s);
    Set(PresetKeys::Command, u"$CSOUND$"_s);
    Set(PresetKeys::Args, u"$ORCHESTRA$ $SCORE$"_s);
    context.desktop.ExpectOpenDialog(SelectHalf(u"Orchestra"_s, u"orc"_s, u"x*"_s, context.folder.path()),
                                     {});
    Go();
    EXPECT_EQ(context.status.shown, QStringList{u"ORCHESTRA macro returned empty string."_s});
}

TEST_F(Run, ConfirmPresets)
{
    context.settings.SaveFlag(Keys::ConfirmPresets, true);
    Set(PresetKeys::Command, u"/bin/x"_s);
    Set(PresetKeys::Args, u"-a b"_s);
    const MessageBoxRequest question{.text = u"Command: /bin/x\n\nParameters: -a b\n\nInitial Folder: /bin"_s,
                                     .buttons = BoxButtons::OkCancel,
                                     .title = u"P"_s};
    context.desktop.ExpectMessage(question, BoxAnswer::Cancel);
    Go();
    context.desktop.ExpectMessage(question, BoxAnswer::Ok);
    context.desktop.ExpectShellRun({.file = u"/bin/x"_s,
                                    .parameters = u"-a b"_s,
                                    .folder = u"/bin"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P"_s}});
    Go();
}

TEST_F(Run, TwoActions)
{
    const QString document = Open(u"x.csd"_s);
    const QString wave = context.folder.filePath(u"x.wav"_s);
    Set(PresetKeys::Command, u"$CSOUND$"_s);
    Set(PresetKeys::Args, u"$DOCUMENT$"_s);
    Set(PresetKeys::Folder, u"$DIR$"_s);
    Set(PresetKeys::Window, u"0"_s);
    Set(PresetKeys::SecondCommand, u"/bin/play"_s);
    Set(PresetKeys::SecondArgs, u"$SOUNDINPUT$"_s);
    Set(PresetKeys::SecondWindow, u"3"_s);
    // The second action's macros see what the first action wrote.
    context.desktop.ExpectProcess({.command = u"/opt/cs/csound"_s,
                                   .parameters = document,
                                   .folder = context.folder.path(),
                                   .showState = WindowState::Hidden,
                                   .console = {.title = u"P"_s}},
                                  true, [this] {
                                      EXPECT_EQ(context.windows.calls, QStringList{u"minimize"_s});
                                      EXPECT_EQ(context.status.shown.size(), 1);
                                      context.WriteFile(u"x.wav"_s);
                                  });
    context.desktop.ExpectShellRun({.file = u"/bin/play"_s,
                                    .parameters = wave,
                                    .folder = {},
                                    .showState = WindowState::Maximized,
                                    .console = {.title = u"P 2nd action"_s}});
    Go();
    EXPECT_EQ(context.status.shown,
              (QStringList{u"P: /opt/cs/csound "_s + document, u"P 2nd action: /bin/play "_s + wave}));
    EXPECT_EQ(context.windows.calls, QStringList{u"minimize"_s}); // nothing restores it
}

TEST_F(Run, FirstActionThatCannotStart)
{
    Set(PresetKeys::Command, u"/d/x.html"_s);
    Set(PresetKeys::SecondCommand, u"/bin/play"_s);
    context.desktop.ExpectProcess(
        {.command = u"/d/x.html"_s, .folder = u"/d"_s, .console = {.title = u"P"_s}}, false);
    context.desktop.ExpectMessage({.text = u"Cannot execute preset P."_s, .icon = BoxIcon::Warning});
    Go();
    EXPECT_TRUE(context.windows.calls.isEmpty());
}

TEST_F(Run, ConfirmationIsNotAskedForTheSecondAction)
{
    context.settings.SaveFlag(Keys::ConfirmPresets, true);
    Set(PresetKeys::Command, u"/bin/x"_s);
    Set(PresetKeys::SecondCommand, u"/bin/y"_s);
    context.desktop.ExpectMessage({.text = u"Command: /bin/x\n\nParameters: \n\nInitial Folder: /bin"_s,
                                   .buttons = BoxButtons::OkCancel,
                                   .title = u"P"_s},
                                  BoxAnswer::Ok);
    context.desktop.ExpectProcess(
        {.command = u"/bin/x"_s, .folder = u"/bin"_s, .console = {.title = u"P"_s}});
    context.desktop.ExpectShellRun(
        {.file = u"/bin/y"_s, .showState = WindowState::Normal, .console = {.title = u"P 2nd action"_s}});
    Go();
}

TEST_F(Run, SecondActionThatIsOnlyAMacroWithoutTextEndsQuietly)
{
    Set(PresetKeys::Command, u"/bin/x"_s);
    Set(PresetKeys::SecondCommand, u"$CLIP$"_s); // not empty before it is expanded
    context.desktop.ExpectProcess(
        {.command = u"/bin/x"_s, .folder = u"/bin"_s, .console = {.title = u"P"_s}});
    Go();
    EXPECT_EQ(context.status.shown, QStringList{u"P: /bin/x "_s});
}

TEST_F(Run, FailureInEachFieldOfTheSecondActionStops)
{
    const RecordTextKey keys[] = {PresetKeys::SecondCommand, PresetKeys::SecondArgs,
                                  PresetKeys::SecondFolder};
    for (const RecordTextKey &key : keys) {
        Set(PresetKeys::Command, u"/bin/x"_s);
        for (const RecordTextKey &other : keys)
            Set(other, other.Name() == key.Name() ? u"$DOCUMENT$"_s : u"/bin/y"_s);
        context.desktop.ExpectProcess(
            {.command = u"/bin/x"_s, .folder = u"/bin"_s, .console = {.title = u"P"_s}});
        Go();
        EXPECT_EQ(context.status.text, u"DOCUMENT macro returned empty string."_s);
    }
}

TEST_F(Run, SecondActionConfirmsItsFiles)
{
    Open(u"x.csd"_s);
    Set(PresetKeys::Command, u"/bin/x"_s);
    Set(PresetKeys::SecondCommand, u"/bin/y"_s);
    Set(PresetKeys::SecondArgs, u"$LOG$"_s);
    Set(PresetKeys::SecondFolder, u"/f"_s);
    context.desktop.ExpectProcess(
        {.command = u"/bin/x"_s, .folder = u"/bin"_s, .console = {.title = u"P"_s}});
    context.desktop.ExpectSaveDialog({.title = u"LOG - Confirm macro expansion"_s,
                                      .filters = {{u"All Files"_s, u"*"_s}},
                                      .folder = context.folder.path(),
                                      .fileName = context.folder.filePath(u"x.log"_s)},
                                     {u"/l.log"_s});
    context.desktop.ExpectShellRun({.file = u"/bin/y"_s,
                                    .parameters = u"/l.log"_s,
                                    .folder = u"/f"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P 2nd action"_s}});
    Go(true);
}

TEST_F(Run, FromTheChooserThereIsNoStatusLineAndNoSelection)
{
    context.windows.mainWindowActive = false;
    Set(PresetKeys::Command, u"/bin/x"_s);
    context.desktop.ExpectShellRun({.file = u"/bin/x"_s,
                                    .folder = u"/bin"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P"_s}});
    Go();
    Set(PresetKeys::Args, u"$SEL$"_s);
    context.desktop.ExpectMessage({.text = u"SEL macro returned empty string."_s, .icon = BoxIcon::Warning});
    Go();
    EXPECT_TRUE(context.status.shown.isEmpty());
}

TEST_F(Run, WindowStateThatIsNoNumberIsTheDefault)
{
    Set(PresetKeys::Command, u"/bin/x"_s);
    Set(PresetKeys::Window, u"wide"_s);
    context.desktop.ExpectShellRun({.file = u"/bin/x"_s,
                                    .folder = u"/bin"_s,
                                    .showState = WindowState::Normal,
                                    .console = {.title = u"P"_s}});
    Go();
    EXPECT_EQ(context.settings.TakeUnreadable().size(), 1u);
}

TEST_F(Run, RunTimeErrorEndsThePreset)
{
    Set(PresetKeys::Command, QString(40000, u'x'));
    EXPECT_THROW(Go(), RunTimeError);
    EXPECT_TRUE(context.status.shown.isEmpty());
}

} // namespace zelvane::test
