// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/presetstore.h"

#include "platform/runtimeerror.h"
#include "platform/windowstate.h"
#include "run/presetkeys.h"
#include "shell/settings.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const QDate Today(2001, 3, 7);

class Presets : public ::testing::Test
{
protected:
    TestContext context;
    PresetStore store{context.settings};
};

QString TodayText()
{
    return QLocale::system().toString(Today, QLocale::ShortFormat);
}

} // namespace

TEST_F(Presets, NoneAtFirst)
{
    EXPECT_TRUE(store.ReadPresetList().isEmpty());
    EXPECT_FALSE(store.PresetExists(u"x"_s, Today));
    EXPECT_EQ(store.ReadRecord(u"x"_s), PresetRecord());
}

TEST_F(Presets, IndexKeepsTheOrderOfCreation)
{
    for (const QString &name : {u"z"_s, u"a"_s, u"m"_s})
        store.AddToIndex(name);
    EXPECT_EQ(store.ReadPresetList(), (QStringList{u"z"_s, u"a"_s, u"m"_s}));
    store.AddToIndex(u"a"_s);
    EXPECT_EQ(store.ReadPresetList(), (QStringList{u"z"_s, u"a"_s, u"m"_s}));
    EXPECT_TRUE(store.PresetExists(u"a"_s, Today));
    EXPECT_EQ(context.settings.GetSetting(u"Presets"_s, u"a"_s, u"none"_s), QString());
}

TEST_F(Presets, ExistenceIsReadAgainstToday)
{
    // A value that is today's date is the mark of absence, and so is a name.
    context.settings.SaveSetting(u"Presets"_s, u"x"_s, TodayText());
    EXPECT_FALSE(store.PresetExists(u"x"_s, Today));
    EXPECT_TRUE(store.PresetExists(u"x"_s, Today.addDays(1)));
    store.AddToIndex(TodayText());
    EXPECT_FALSE(store.PresetExists(TodayText(), Today));
    EXPECT_TRUE(store.PresetExists(TodayText(), Today.addDays(1)));
}

TEST_F(Presets, RecordsStandBesideTheIndex)
{
    store.SaveText(u"x"_s, PresetKeys::Command, u"c"_s);
    store.SaveNumber(u"x"_s, PresetKeys::Window, 3);
    store.SaveFlag(u"x"_s, PresetKeys::SaveFirst, true);
    store.SaveFlag(u"x"_s, PresetKeys::CreateButton, false);
    EXPECT_EQ(context.settings.GetSetting(u"x"_s, u"Command"_s), u"c"_s);
    EXPECT_EQ(context.settings.GetSetting(u"x"_s, u"Window"_s), u"3"_s);
    EXPECT_EQ(context.settings.GetSetting(u"x"_s, u"SaveFirst"_s), u"1"_s);
    EXPECT_EQ(context.settings.GetSetting(u"x"_s, u"CreateButton"_s), u"0"_s);
    EXPECT_TRUE(store.ReadPresetList().isEmpty());
    const PresetRecord record = store.ReadRecord(u"x"_s);
    EXPECT_EQ(
        record,
        (PresetRecord{
            .Command = u"c"_s, .Window = WindowState::Maximized, .SaveFirst = true, .CreateButton = false}));
}

TEST_F(Presets, EmptyTextRemovesTheKey)
{
    store.SaveTextOrDelete(u"x"_s, PresetKeys::Args, u"a"_s);
    EXPECT_EQ(context.settings.GetSetting(u"x"_s, PresetKeys::Args.Name(), u"none"_s), u"a"_s);
    store.SaveTextOrDelete(u"x"_s, PresetKeys::Args, {});
    store.SaveTextOrDelete(u"x"_s, PresetKeys::Args, {});
    EXPECT_EQ(context.settings.GetSetting(u"x"_s, PresetKeys::Args.Name(), u"none"_s), u"none"_s);
}

TEST_F(Presets, DamagedNumbersAreTheDefaults)
{
    store.SaveStoredText(u"x"_s, PresetKeys::Window, u"big"_s);
    EXPECT_EQ(store.State(u"x"_s, PresetKeys::Window), WindowState::Normal);
    store.SaveStoredText(u"x"_s, PresetKeys::NewGroup, u"perhaps"_s);
    EXPECT_FALSE(store.Flag(u"x"_s, PresetKeys::NewGroup));
    EXPECT_EQ(store.ReadRecord(u"x"_s), PresetRecord());
    EXPECT_EQ(context.settings.TakeUnreadable().size(), 2u);
    // A state that no window has is shown as normal.
    store.SaveStoredText(u"y"_s, PresetKeys::Window, u"7"_s);
    EXPECT_EQ(store.State(u"y"_s, PresetKeys::Window), WindowState::Normal);
    EXPECT_EQ(store.ReadRecord(u"y"_s).Window, WindowState::Normal);
}

TEST_F(Presets, RemoveTakesRecordAndIndexKey)
{
    store.AddToIndex(u"x"_s);
    store.AddToIndex(u"y"_s);
    store.SaveText(u"x"_s, PresetKeys::Command, u"c"_s);
    store.SaveText(u"y"_s, PresetKeys::Command, u"d"_s);
    store.Remove(u"x"_s);
    store.Remove(u"never"_s);
    EXPECT_EQ(store.ReadPresetList(), QStringList{u"y"_s});
    EXPECT_TRUE(context.settings.GetAllSettings(u"x"_s).empty());
    EXPECT_EQ(store.Text(u"y"_s, PresetKeys::Command), u"d"_s);
}

TEST_F(Presets, RewritingTheOrderLeavesTheRecords)
{
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) {
        store.AddToIndex(name);
        store.SaveText(name, PresetKeys::Command, name);
    }
    store.RewritePresetOrder({u"c"_s, u"a"_s, u"b"_s});
    EXPECT_EQ(store.ReadPresetList(), (QStringList{u"c"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(store.Text(u"b"_s, PresetKeys::Command), u"b"_s);
    store.RewritePresetOrder({});
    EXPECT_TRUE(store.ReadPresetList().isEmpty());
    store.RewritePresetOrder({});
}

TEST_F(Presets, AnyTextIsAName)
{
    const QStringList names{u"a/b=[c];\""_s, u"[x]"_s,  u"a\nb"_s, u" x "_s, u"\u00E9\U0001F3B5"_s,
                            u"a\\b"_s,       u"#no;"_s, u"="_s,    u"x.y"_s, u"-"_s};
    for (const QString &name : names) {
        store.AddToIndex(name);
        store.SaveText(name, PresetKeys::Command, name);
    }
    // As another process reads it.
    SettingsStore again(context.folder.filePath(u"settings"_s));
    const PresetStore reader(again);
    EXPECT_EQ(reader.ReadPresetList(), names);
    for (const QString &name : names)
        EXPECT_EQ(reader.Text(name, PresetKeys::Command), name);
    for (const QString &name : names)
        store.Remove(name);
    EXPECT_TRUE(store.ReadPresetList().isEmpty());
}

TEST_F(Presets, NamesLikeTheProgramsSectionsHarmNothing)
{
    const QStringList sections{u"Options"_s, u"presets"_s, u"Recent File List"_s, u"RECENT FIND STRINGS"_s,
                               u"Recent Command Lines"_s};
    for (const QString &section : sections)
        context.settings.SaveSetting(section, u"Window"_s, u"kept"_s);
    QStringList names = sections;
    for (const QString &section : sections)
        names.append({section + u" (preset)"_s, section + u" (PRESET) (preset)"_s});
    for (const QString &name : names) {
        store.AddToIndex(name);
        store.SaveText(name, PresetKeys::Command, name);
        store.SaveNumber(name, PresetKeys::Window, 2);
    }
    for (const QString &name : names)
        EXPECT_EQ(store.Text(name, PresetKeys::Command), name);
    QStringList listed = store.ReadPresetList();
    EXPECT_EQ(listed.takeFirst(), u"Window"_s); // written by hand above
    EXPECT_EQ(listed, names);
    for (const QString &name : names)
        store.Remove(name);
    for (const QString &section : sections)
        EXPECT_EQ(context.settings.GetSetting(section, u"Window"_s), u"kept"_s);
    EXPECT_EQ(PresetStore::RecordSection(u"Option"_s), u"Option"_s);
    EXPECT_EQ(PresetStore::RecordSection(u"x (preset)"_s), u"x (preset)"_s);
}

TEST_F(Presets, NamesAndDefaultsOfTheKeys)
{
    const std::initializer_list<RecordKey> all{
        PresetKeys::Command,      PresetKeys::Args,          PresetKeys::Folder,     PresetKeys::Window,
        PresetKeys::SaveFirst,    PresetKeys::Name,          PresetKeys::Tooltip,    PresetKeys::CreateButton,
        PresetKeys::NewGroup,     PresetKeys::SecondCommand, PresetKeys::SecondArgs, PresetKeys::SecondFolder,
        PresetKeys::SecondWindow, PresetKeys::Image};
    QStringList names;
    for (const RecordKey &key : all)
        names.append(key.Name());
    EXPECT_EQ(names.join(u' '),
              u"Command Args Folder Window SaveFirst Name Tooltip CreateButton NewGroup 2ndCommand 2ndArgs "
              "2ndFolder 2ndWindow Image"_s);
    EXPECT_EQ(store.ReadRecord(u"none"_s), PresetRecord());
}

} // namespace zelvane::test
