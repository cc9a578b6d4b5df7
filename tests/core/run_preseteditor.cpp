// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/preseteditor.h"

#include "platform/programfolder.h"
#include "platform/windowstate.h"
#include "run/presetkeys.h"
#include "run/toolpaths.h"
#include "shell/settings.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class PresetEditor : public ::testing::Test
{
protected:
    bool Save(const QString &name, const PresetFields &fields)
    {
        return SavePreset(name, fields, rows, run, [this](const QString &file) {
            loaded.append(file);
            return pictureLoads;
        });
    }

    MessageBoxRequest ReplaceQuestion(const QString &name) const
    {
        return {.text = u"Replace saved parameters for '"_s + name + u"' with current settings?"_s,
                .icon = BoxIcon::Information,
                .buttons = BoxButtons::YesNo};
    }

    MessageBoxRequest DeleteQuestion(const QString &name) const
    {
        return {.text = u"Delete the '"_s + name + u"' preset?"_s,
                .icon = BoxIcon::Information,
                .buttons = BoxButtons::YesNo,
                .defaultAnswer = BoxAnswer::No};
    }

    TestContext context;
    ToolPaths tools{.Csound = u"/opt/csound"_s};
    RunContext run{context.editor, tools, context.windows};
    PresetStore store{context.settings};
    QStringList rows;
    QStringList loaded; ///< picture files that were to be shown
    bool pictureLoads = true;
};

} // namespace

TEST_F(PresetEditor, EmptyNameSavesNothing)
{
    EXPECT_FALSE(Save({}, {.record = {.Command = u"c"_s}}));
    EXPECT_TRUE(rows.isEmpty());
    EXPECT_TRUE(context.windows.calls.isEmpty());
}

TEST_F(PresetEditor, NewPresetGoesToTheEnd)
{
    rows = {u"first"_s, u"second"_s};
    RewritePresetOrder(rows, run);
    EXPECT_TRUE(Save(u"a new one"_s, {.record = {.Command = u"c"_s}}));
    EXPECT_EQ(rows, (QStringList{u"first"_s, u"second"_s, u"a new one"_s}));
    EXPECT_EQ(store.ReadPresetList(), rows);
    EXPECT_EQ(context.windows.calls, (QStringList{u"rebuild"_s, u"rebuild"_s}));
}

TEST_F(PresetEditor, AllKeysOfAFullRecord)
{
    context.desktop.executableKinds[u"/opt/csound"_s] = u"ELF"_s;
    const PresetRecord record{.Command = u"$csound$"_s,
                              .Args = u"-W"_s,
                              .Folder = u"/f"_s,
                              .Window = WindowState::Minimized,
                              .SaveFirst = true,
                              .Name = u"Label"_s,
                              .Tooltip = u"Tip"_s,
                              .CreateButton = false,
                              .NewGroup = true,
                              .SecondCommand = u"play"_s,
                              .SecondArgs = u"$WAVE$"_s,
                              .SecondFolder = u"/g"_s,
                              .SecondWindow = WindowState::Hidden};
    EXPECT_TRUE(Save(u"x"_s, {.record = record, .imageNumber = 105}));
    const std::vector<std::pair<QString, QString>> expected{
        {u"Command"_s, u"$csound$"_s}, {u"Args"_s, u"-W"_s},        {u"Folder"_s, u"/f"_s},
        {u"Window"_s, u"2"_s},         {u"SaveFirst"_s, u"1"_s},    {u"Name"_s, u"Label"_s},
        {u"Tooltip"_s, u"Tip"_s},      {u"CreateButton"_s, u"0"_s}, {u"NewGroup"_s, u"1"_s},
        {u"2ndCommand"_s, u"play"_s},  {u"2ndArgs"_s, u"$WAVE$"_s}, {u"2ndFolder"_s, u"/g"_s},
        {u"2ndWindow"_s, u"0"_s},      {u"Image"_s, u"105"_s}};
    EXPECT_EQ(context.settings.GetAllSettings(u"x"_s), expected);
    PresetFields fields = FieldsOf(store.ReadRecord(u"x"_s));
    EXPECT_EQ(fields.imageNumber, 105);
    EXPECT_EQ(fields.bitmap, QString());
    fields.record.Image.clear();
    EXPECT_EQ(fields.record, record);
}

TEST_F(PresetEditor, EmptyFieldsAreDeleted)
{
    EXPECT_TRUE(Save(u"x"_s, {}));
    const std::vector<std::pair<QString, QString>> least{{u"Window"_s, u"1"_s},
                                                         {u"SaveFirst"_s, u"0"_s},
                                                         {u"CreateButton"_s, u"1"_s},
                                                         {u"NewGroup"_s, u"0"_s}};
    EXPECT_EQ(context.settings.GetAllSettings(u"x"_s), least);
    context.desktop.ExpectMessage(ReplaceQuestion(u"x"_s), BoxAnswer::Yes);
    EXPECT_TRUE(
        Save(u"x"_s, {.record = {.Command = u"c"_s, .Args = u"a"_s, .Name = u"n"_s}, .imageNumber = 101}));
    context.desktop.ExpectMessage(ReplaceQuestion(u"x"_s), BoxAnswer::Yes);
    EXPECT_TRUE(Save(u"x"_s, {}));
    EXPECT_EQ(context.settings.GetAllSettings(u"x"_s), least);
}

TEST_F(PresetEditor, ReplacingKeepsThePlace)
{
    rows = {u"x"_s, u"y"_s};
    RewritePresetOrder(rows, run);
    context.desktop.ExpectMessage(ReplaceQuestion(u"x"_s), BoxAnswer::Yes);
    EXPECT_TRUE(Save(u"x"_s, {.record = {.Command = u"c"_s}}));
    EXPECT_EQ(store.ReadPresetList(), (QStringList{u"x"_s, u"y"_s}));
    EXPECT_EQ(store.Text(u"x"_s, PresetKeys::Command), u"c"_s);
}

TEST_F(PresetEditor, NoToReplacingChangesNothing)
{
    rows = {u"x"_s};
    RewritePresetOrder(rows, run);
    context.windows.calls.clear();
    context.desktop.ExpectMessage(ReplaceQuestion(u"x"_s), BoxAnswer::No);
    EXPECT_FALSE(Save(u"x"_s, {.record = {.Command = u"c"_s}}));
    EXPECT_TRUE(context.settings.GetAllSettings(u"x"_s).empty());
    EXPECT_EQ(rows, QStringList{u"x"_s});
    EXPECT_TRUE(context.windows.calls.isEmpty());
}

TEST_F(PresetEditor, NameThatIsTodaysDateCountsAsNew)
{
    const QString today = QLocale::system().toString(context.desktop.now.date(), QLocale::ShortFormat);
    EXPECT_TRUE(Save(today, {.record = {.Command = u"c"_s}}));
    EXPECT_TRUE(Save(today, {.record = {.Command = u"d"_s}}));
    EXPECT_EQ(store.ReadPresetList(), QStringList{today});
    EXPECT_FALSE(DeletePreset(today, run));
    EXPECT_EQ(store.Text(today, PresetKeys::Command), u"d"_s);
}

TEST_F(PresetEditor, SecondActionOnlyBehindAProgram)
{
    context.desktop.executableKinds[u"/bin/x"_s] = u"ELF"_s;
    PresetFields fields{
        .record = {.Command = u"/bin/x"_s, .SecondCommand = u"second"_s, .SecondArgs = u"a"_s}};
    EXPECT_TRUE(Save(u"p"_s, fields));
    EXPECT_EQ(store.Text(u"p"_s, PresetKeys::SecondCommand), u"second"_s);
    EXPECT_EQ(store.StoredText(u"p"_s, PresetKeys::SecondWindow), u"1"_s);
    fields.record.Command = u"/a.html"_s;
    context.desktop.ExpectMessage(ReplaceQuestion(u"p"_s), BoxAnswer::Yes);
    EXPECT_TRUE(Save(u"p"_s, fields));
    const std::initializer_list<RecordKey> second{PresetKeys::SecondCommand, PresetKeys::SecondArgs,
                                                  PresetKeys::SecondFolder, PresetKeys::SecondWindow};
    for (const RecordKey &key : second)
        EXPECT_EQ(context.settings.GetSetting(u"p"_s, key.Name(), u"none"_s), u"none"_s);
    // Without a command of its own, its parameters go too.
    fields.record.Command = u"/bin/x"_s;
    fields.record.SecondCommand.clear();
    EXPECT_TRUE(Save(u"q"_s, fields));
    EXPECT_EQ(context.settings.GetSetting(u"q"_s, PresetKeys::SecondArgs.Name(), u"none"_s), u"none"_s);
}

TEST_F(PresetEditor, ProgramIsFoundThroughWholeFieldMacrosOnly)
{
    context.desktop.executableKinds[u"/opt/csound"_s] = u"ELF"_s;
    EXPECT_TRUE(AllowsSecondAction(u"$CSOUND$"_s, run));
    EXPECT_TRUE(AllowsSecondAction(u"/opt/csound"_s, run));
    EXPECT_FALSE(AllowsSecondAction(u"$CSOUND$ -h"_s, run));
    EXPECT_FALSE(AllowsSecondAction({}, run));
}

TEST_F(PresetEditor, Images)
{
    EXPECT_TRUE(Save(u"file"_s, {.bitmap = u"/a.png"_s}));
    EXPECT_EQ(loaded, QStringList{u"/a.png"_s});
    EXPECT_EQ(store.Text(u"file"_s, PresetKeys::Image), u"/a.png"_s);
    EXPECT_EQ(FieldsOf(store.ReadRecord(u"file"_s)).bitmap, u"/a.png"_s);
    // A picture that cannot be loaded leaves what was stored; the rest is written.
    pictureLoads = false;
    context.desktop.ExpectMessage(ReplaceQuestion(u"file"_s), BoxAnswer::Yes);
    EXPECT_TRUE(Save(u"file"_s, {.record = {.Command = u"c"_s}, .bitmap = u"/b.png"_s}));
    EXPECT_EQ(store.Text(u"file"_s, PresetKeys::Image), u"/a.png"_s);
    EXPECT_EQ(store.Text(u"file"_s, PresetKeys::Command), u"c"_s);
    EXPECT_EQ(store.ReadPresetList(), QStringList{u"file"_s});
    // The number goes before the file.
    loaded.clear();
    EXPECT_TRUE(Save(u"both"_s, {.imageNumber = 120, .bitmap = u"/a.png"_s}));
    EXPECT_TRUE(loaded.isEmpty());
    EXPECT_EQ(store.Text(u"both"_s, PresetKeys::Image), u"120"_s);
    context.desktop.ExpectMessage(ReplaceQuestion(u"both"_s), BoxAnswer::Yes);
    EXPECT_TRUE(Save(u"both"_s, {}));
    EXPECT_EQ(context.settings.GetSetting(u"both"_s, PresetKeys::Image.Name(), u"none"_s), u"none"_s);
}

TEST_F(PresetEditor, DefaultFieldsAreThoseOfANewPreset)
{
    const PresetFields fields;
    EXPECT_EQ(fields.record.Window, WindowState::Normal);
    EXPECT_EQ(fields.record.SecondWindow, WindowState::Normal);
    EXPECT_FALSE(fields.record.SaveFirst);
    EXPECT_FALSE(fields.record.NewGroup);
    EXPECT_TRUE(fields.record.CreateButton);
    EXPECT_EQ(fields.imageNumber, 0);
    EXPECT_EQ(FieldsOf(PresetRecord()), fields);
}

TEST_F(PresetEditor, DeleteAsksAndRemoves)
{
    EXPECT_FALSE(DeletePreset({}, run));
    EXPECT_FALSE(DeletePreset(u"x"_s, run));
    EXPECT_TRUE(Save(u"x"_s, {.record = {.Command = u"c"_s}}));
    context.desktop.ExpectMessage(DeleteQuestion(u"x"_s), BoxAnswer::No);
    EXPECT_FALSE(DeletePreset(u"x"_s, run));
    EXPECT_EQ(store.Text(u"x"_s, PresetKeys::Command), u"c"_s);
    context.desktop.ExpectMessage(DeleteQuestion(u"x"_s), BoxAnswer::Yes);
    EXPECT_TRUE(DeletePreset(u"x"_s, run));
    EXPECT_TRUE(store.ReadPresetList().isEmpty());
    EXPECT_TRUE(context.settings.GetAllSettings(u"x"_s).empty());
}

TEST_F(PresetEditor, DeleteTakesALeftoverPictureAndNothingElse)
{
    const QDir folder(ProgramFolder());
    ASSERT_TRUE(folder.mkpath(u"Images"_s));
    const auto make = [&folder](const QString &name) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    };
    make(u"Images/x"_s);
    make(u"precious"_s);
    for (const QString &name : {u"x"_s, u"../precious"_s, u"..\\precious"_s, u".."_s}) {
        EXPECT_TRUE(Save(name, {}));
        context.desktop.ExpectMessage(DeleteQuestion(name), BoxAnswer::Yes);
        EXPECT_TRUE(DeletePreset(name, run));
    }
    EXPECT_FALSE(folder.exists(u"Images/x"_s));
    EXPECT_TRUE(folder.exists(u"precious"_s));
    EXPECT_TRUE(folder.exists(u"Images"_s));
}

TEST_F(PresetEditor, MovesActAtOnce)
{
    rows = {u"a"_s, u"b"_s, u"c"_s};
    RewritePresetOrder(rows, run);
    context.windows.calls.clear();
    int row = 1;
    MovePresetDown(rows, row, run);
    EXPECT_EQ(row, 2);
    EXPECT_EQ(store.ReadPresetList(), (QStringList{u"a"_s, u"c"_s, u"b"_s}));
    EXPECT_FALSE(EnabledPresetTools(u"b"_s, row, 3).down);
    MovePresetDown(rows, row, run);
    EXPECT_EQ(row, 2);
    MovePresetUp(rows, row, run);
    MovePresetUp(rows, row, run);
    EXPECT_EQ(row, 0);
    EXPECT_EQ(store.ReadPresetList(), (QStringList{u"b"_s, u"a"_s, u"c"_s}));
    EXPECT_FALSE(EnabledPresetTools(u"b"_s, row, 3).up);
    MovePresetUp(rows, row, run);
    EXPECT_EQ(row, 0);
    EXPECT_EQ(context.windows.calls, (QStringList{u"rebuild"_s, u"rebuild"_s, u"rebuild"_s}));
    row = -1;
    MovePresetUp(rows, row, run);
    MovePresetDown(rows, row, run);
    EXPECT_EQ(rows, (QStringList{u"b"_s, u"a"_s, u"c"_s}));
}

TEST_F(PresetEditor, WindowStatesStandInTheOrderOfTheirNumbers)
{
    EXPECT_EQ(WindowStateTexts(), (QStringList{u"Hidden"_s, u"Normal"_s, u"Minimized"_s, u"Maximized"_s}));
}

TEST_F(PresetEditor, EnabledTools)
{
    EXPECT_EQ(EnabledPresetTools({}, -1, 0), PresetTools());
    EXPECT_EQ(EnabledPresetTools(u"x"_s, -1, 2), (PresetTools{.save = true}));
    EXPECT_EQ(EnabledPresetTools(u"x"_s, 0, 1), (PresetTools{.save = true, .remove = true}));
    EXPECT_EQ(EnabledPresetTools(u"x"_s, 0, 2), (PresetTools{.save = true, .remove = true, .down = true}));
    EXPECT_EQ(EnabledPresetTools(u"x"_s, 1, 2), (PresetTools{.save = true, .remove = true, .up = true}));
    for (const QString &name : {u"123"_s, u"1e3"_s, u"-.5"_s, u" 7 "_s})
        EXPECT_FALSE(EnabledPresetTools(name, 0, 1).save) << name.toStdString();
    for (const QString &name : {u"1st"_s, u"a1"_s, u"e3"_s, u"."_s})
        EXPECT_TRUE(EnabledPresetTools(name, 0, 1).save) << name.toStdString();
}

TEST_F(PresetEditor, ARowOfALongerWindowListIsAStateToo)
{
    for (int row = 0; row < 12; ++row)
        EXPECT_EQ(int(WindowStateOfRow(row)), row % 4);
    EXPECT_EQ(WindowStateOfRow(-1), WindowState::Normal);
}

TEST_F(PresetEditor, ActionsAreCutOutOfARecordAndPutBack)
{
    const PresetAction one{
        .command = u"a"_s, .args = u"b"_s, .folder = u"c"_s, .window = WindowState::Minimized};
    const PresetAction two{
        .command = u"d"_s, .args = u"e"_s, .folder = u"f"_s, .window = WindowState::Maximized};
    PresetRecord record{.SaveFirst = true, .Name = u"n"_s, .Image = u"101"_s};
    SetFirstAction(record, one);
    SetSecondAction(record, two);
    EXPECT_EQ(record, (PresetRecord{.Command = u"a"_s,
                                    .Args = u"b"_s,
                                    .Folder = u"c"_s,
                                    .Window = WindowState::Minimized,
                                    .SaveFirst = true,
                                    .Name = u"n"_s,
                                    .Image = u"101"_s,
                                    .SecondCommand = u"d"_s,
                                    .SecondArgs = u"e"_s,
                                    .SecondFolder = u"f"_s,
                                    .SecondWindow = WindowState::Maximized}));
    EXPECT_EQ(FirstAction(record), one);
    EXPECT_EQ(SecondAction(record), two);
}

TEST_F(PresetEditor, ACommandsTooltipTellsOfTheFileItNames)
{
    context.desktop.executableKinds[u"/opt/csound"_s] = u"ELF 64-bit"_s;
    context.desktop.typeNames[u"/opt/csound"_s] = u"Application"_s;
    EXPECT_EQ(CommandInfo(u"$CSOUND$"_s, run), u"csound: Application ELF 64-bit"_s);
    EXPECT_EQ(CommandInfo(u"/opt/csound"_s, run), u"csound: Application ELF 64-bit"_s);
    EXPECT_EQ(CommandInfo(u"/no/such"_s, run), QString());
    EXPECT_EQ(CommandInfo({}, run), QString());
}

TEST_F(PresetEditor, ThePickerOfACommandBeginsAtTheProgramInTheField)
{
    const QString program = context.WriteFile(u"a tool"_s, "#!/bin/sh\n");
    const QString compiler = context.WriteFile(u"csound"_s, "#!/bin/sh\n");
    for (const QString &file : {program, compiler})
        ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner));
    tools.Csound = compiler;
    const auto at = [](const QString &folder) {
        return FileDialogRequest{
            .title = u"Select a command"_s, .filters = {{u"Executables"_s, u"*.exe"_s}}, .folder = folder};
    };
    EXPECT_EQ(CommandRequest(program, run), at(program));
    EXPECT_EQ(CommandRequest(u'"' + program + u'"', run), at(program));
    EXPECT_EQ(CommandRequest(u"$CSOUND$"_s, run), at(compiler));
    EXPECT_EQ(CommandRequest({}, run), at(compiler));
    EXPECT_EQ(CommandRequest(u"/no/such/tool"_s, run), at(compiler));
}

TEST_F(PresetEditor, ThePickerOfAPictureBeginsAtTheOneInTheField)
{
    EXPECT_EQ(BitmapRequest(u"/pictures/a.bmp"_s),
              (FileDialogRequest{.title = u"Select an image"_s,
                                 .filters = {{u"Images"_s, u"*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.ico;*.cur"_s}},
                                 .folder = u"/pictures/a.bmp"_s}));
}

TEST_F(PresetEditor, ARowIsFoundWithoutRegardToCase)
{
    const QStringList names = {u"Render"_s, u"play"_s};
    EXPECT_EQ(RowOfPreset(u"play"_s, names), 1);
    EXPECT_EQ(RowOfPreset(u"RENDER"_s, names), 0);
    EXPECT_EQ(RowOfPreset(u"rend"_s, names), -1);
    EXPECT_EQ(RowOfPreset({}, names), -1);
}

} // namespace zelvane::test
