// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/languagekeys.h"
#include "platform/runtimeerror.h"
#include "shell/documentkeys.h"
#include "shell/editorkeys.h"
#include "shell/findkeys.h"
#include "shell/layoutkeys.h"
#include "shell/settingreports.h"
#include "shell/settings.h"
#include "support/boxes.h"
#include "support/childprocess.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"
#include "support/settingsfixture.h"
#include "texttools/insertkeys.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QFile>
#include <QSet>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

using Pairs = std::vector<std::pair<QString, QString>>;

class Settings : public SettingsFixture
{
protected:
    void Save(const OptionKey &key, const QString &value) { store.SaveStoredText(key, value); }
    QString Stored(const OptionKey &key) { return store.GetSetting(u"Options"_s, key.Name(), u"(absent)"_s); }
};

} // namespace

TEST_F(Settings, TheControlRateIsReadInEitherSpelling)
{
    store.SaveNumber(Keys::HeaderkR, 2205);
    EXPECT_EQ(store.GetAllSettings(u"Options"_s).back(), std::pair(u"HeaderkR"_s, u"2205"_s));
    store.DeleteSetting(Keys::HeaderkR);
    store.SaveSetting(u"Options"_s, u"HeaderKR"_s, u"441"_s);
    EXPECT_EQ(store.Integer(Keys::HeaderkR), 441);
}

TEST_F(Settings, TheTextOfAKeyOfAnyKind)
{
    EXPECT_EQ(store.StoredText(Keys::Splash), std::nullopt);
    store.SaveStoredText(Keys::Splash, QString());
    EXPECT_EQ(store.StoredText(Keys::Splash), QString()) << "an empty value is a value";
    store.SaveStoredText(Keys::Splash, u"True"_s);
    EXPECT_EQ(store.StoredText(Keys::Splash), u"True"_s);
    EXPECT_TRUE(store.Flag(Keys::Splash));
    store.DeleteSetting(Keys::Splash);
    store.DeleteSetting(Keys::Splash);
    EXPECT_EQ(Stored(Keys::Splash), u"(absent)"_s);
}

TEST_F(Settings, TheFourOperations)
{
    EXPECT_EQ(store.GetSetting(u"Presets"_s, u"a"_s), QString());
    EXPECT_EQ(store.GetSetting(u"Presets"_s, u"a"_s, u"default"_s), u"default"_s);
    store.SaveSetting(u"Presets"_s, u"b"_s, {});
    store.SaveSetting(u"Presets"_s, u"a"_s, u"1"_s);
    EXPECT_EQ(store.GetSetting(u"Presets"_s, u"b"_s, u"default"_s), QString()) << "an empty value is a value";
    EXPECT_EQ(store.GetSetting(u"PRESETS"_s, u"A"_s), u"1"_s);
    EXPECT_EQ(store.GetAllSettings(u"presets"_s), (Pairs{{u"b"_s, {}}, {u"a"_s, u"1"_s}}));
    store.DeleteSetting(u"Presets"_s, u"B"_s);
    store.DeleteSetting(u"Presets"_s, u"B"_s);
    EXPECT_EQ(store.GetAllSettings(u"Presets"_s), (Pairs{{u"a"_s, u"1"_s}}));
    store.DeleteSetting(u"Presets"_s);
    store.DeleteSetting(u"Presets"_s);
    EXPECT_EQ(store.GetAllSettings(u"Presets"_s), Pairs());
    store.ReplaceSection(u"Presets"_s, {{u"z"_s, {}}, {u"y"_s, {}}});
    EXPECT_EQ(store.GetAllSettings(u"Presets"_s), (Pairs{{u"z"_s, {}}, {u"y"_s, {}}}));
}

TEST_F(Settings, APresetOfAnyNameIsAKeyAndASection)
{
    const QString name = u"a/b=[c];\""_s;
    store.SaveSetting(u"Presets"_s, name, {});
    store.SaveSetting(name, u"Command"_s, u"$CSOUND$"_s);
    store.SaveSetting(name, u"Args"_s, u" -d \"$DOCUMENT$\" \\ "_s);
    const SettingsStore other(folder.filePath(u"settings"_s));
    EXPECT_EQ(other.GetAllSettings(u"Presets"_s), (Pairs{{name, {}}}));
    EXPECT_EQ(other.GetSetting(name, u"Command"_s), u"$CSOUND$"_s);
    EXPECT_EQ(other.GetSetting(name, u"Args"_s), u" -d \"$DOCUMENT$\" \\ "_s);
    store.DeleteSetting(name);
    EXPECT_EQ(other.GetSetting(name, u"Command"_s, u"gone"_s), u"gone"_s);
    EXPECT_EQ(other.GetAllSettings(u"Presets"_s).size(), 1u);
}

TEST_F(Settings, FlagsOfEveryWriterAreRead)
{
    for (const QString &text :
         {u"-1"_s, u"1"_s, u"True"_s, u"true"_s, u"TRUE"_s, u" True "_s, u"2"_s, u".5"_s, u"1e3"_s}) {
        Save(Keys::WordWrap, text);
        EXPECT_TRUE(store.Flag(Keys::WordWrap)) << text.toStdString();
        Save(Keys::RealTabs, text);
        EXPECT_TRUE(store.Flag(Keys::RealTabs, false)) << text.toStdString();
        EXPECT_TRUE(ToBoolean(text));
    }
    for (const QString &text : {u"0"_s, u"False"_s, u"FALSE"_s, u"-0"_s, u" 0 "_s, u"0.0"_s}) {
        Save(Keys::Splash, text);
        EXPECT_FALSE(store.Flag(Keys::Splash)) << text.toStdString();
        Save(Keys::RealTabs, text);
        EXPECT_FALSE(store.Flag(Keys::RealTabs, true)) << text.toStdString();
    }
    for (const QString &text : {u""_s, u"yes"_s, u"on"_s, u"Tru"_s, u"1 2"_s}) {
        Save(Keys::Splash, text);
        EXPECT_TRUE(store.Flag(Keys::Splash)) << text.toStdString();
        EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch) << text.toStdString();
        Save(Keys::RealTabs, text);
        EXPECT_FALSE(store.Flag(Keys::RealTabs, false)) << text.toStdString();
        EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch) << text.toStdString();
    }
}

TEST_F(Settings, ThreeFlagsAreNumbers)
{
    for (const NumericFlagKey &key : {Keys::FlatButtons, Keys::RelatedFiles, Keys::CodeOutline}) {
        EXPECT_TRUE(store.Flag(key));
        for (const auto &[text, value] :
             {std::pair(u"-1"_s, true), {u"0"_s, false}, {u"1"_s, true}, {u"0.25"_s, true}}) {
            Save(key, text);
            EXPECT_EQ(store.Flag(key), value);
        }
        Save(key, u"False"_s);
        EXPECT_TRUE(store.Flag(key)) << "the default: a word is no number";
        EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
    }
}

TEST_F(Settings, WritersStoreTheToldForms)
{
    store.SaveFlag(Keys::WordWrap, true);
    EXPECT_EQ(Stored(Keys::WordWrap), u"-1"_s);
    store.SaveFlag(Keys::WordWrap, false);
    EXPECT_EQ(Stored(Keys::WordWrap), u"0"_s);
    store.SaveNumber(Keys::FontSize, 10);
    EXPECT_EQ(Stored(Keys::FontSize), u"10"_s);
    store.SaveNumber(Keys::X, -1234.5);
    EXPECT_EQ(Stored(Keys::X), u"-1234.5"_s);
    store.SaveColour(Keys::BackColor, 0x80000005);
    EXPECT_EQ(Stored(Keys::BackColor), u"-2147483643"_s);
    store.SaveColour(Keys::FontColor, 0x80000008);
    EXPECT_EQ(Stored(Keys::FontColor), u"-2147483640"_s);
    store.SaveColour(Keys::FontColor, 0xFF0000);
    EXPECT_EQ(Stored(Keys::FontColor), u"16711680"_s);
    EXPECT_EQ(store.Colour(Keys::FontColor), 0xFF0000u);
    store.SaveText(Keys::Font, u"Courier New"_s);
    EXPECT_EQ(store.Text(Keys::Font, u"Sans"_s), u"Courier New"_s);
}

TEST_F(Settings, ColoursWithTheTopBit)
{
    EXPECT_EQ(store.Colour(Keys::FontColor), 0x80000008u);
    EXPECT_EQ(store.Colour(Keys::BackColor), 0x80000005u);
    EXPECT_EQ(store.Colour(Keys::CommentsColor), 0x008000u);
    EXPECT_EQ(store.Colour(Keys::OpcodeColor), 0xFF0000u);
    EXPECT_EQ(store.Colour(Keys::KeywordColor), 0x800000u);
    EXPECT_EQ(store.Colour(Keys::MacroColor), 0x800080u);
    EXPECT_EQ(store.Colour(Keys::LiteralColor), 0x808000u);
    EXPECT_EQ(store.Colour(Keys::TagColor), 0x000080u);
    Save(Keys::FontColor, u"2147483653"_s);
    EXPECT_EQ(store.Colour(Keys::FontColor), 0x80000005u);
    Save(Keys::FontColor, u"4294967296"_s);
    EXPECT_EQ(store.Colour(Keys::FontColor), 0x80000008u);
    EXPECT_EQ(Noted(), ErrorNumber::Overflow);
    EXPECT_EQ(store.StoredColour(Keys::FontColor), std::nullopt);
    Save(Keys::FontColor, u"-2147483649"_s);
    EXPECT_EQ(store.Colour(Keys::FontColor), 0x80000008u);
    EXPECT_EQ(Noted(), ErrorNumber::Overflow);
    Save(Keys::FontColor, u"#FF0000"_s);
    EXPECT_EQ(store.Colour(Keys::FontColor), 0x80000008u);
    EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
}

TEST_F(Settings, NumbersThatAreNoneGiveTheDefault)
{
    Save(Keys::TabSpaces, u"2.5"_s);
    EXPECT_EQ(store.Integer(Keys::TabSpaces), 2);
    Save(Keys::TabSpaces, u"3.5"_s);
    EXPECT_EQ(store.Integer(Keys::TabSpaces), 4);
    Save(Keys::TabSpaces, u"eight"_s);
    EXPECT_EQ(store.Integer(Keys::TabSpaces), 8);
    EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
    EXPECT_EQ(store.Number(Keys::TabSpaces), 8);
    Save(Keys::TabSpaces, u"3000000000"_s);
    EXPECT_EQ(store.Number(Keys::TabSpaces), 3e9);
    EXPECT_EQ(store.Integer(Keys::TabSpaces), 8);
    EXPECT_EQ(Noted(), ErrorNumber::Overflow);
    EXPECT_EQ(store.Integer(Keys::FindX, -4), -4);
}

TEST_F(Settings, WhatCannotBeReadIsNotedOnceAsItStands)
{
    int noted = 0;
    store.OnUnreadable([&] { ++noted; });
    Save(Keys::FontSize, u"q"_s);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(store.Number(Keys::FontSize, 10), 10);
    EXPECT_EQ(noted, 1);
    Save(Keys::FontSize, u"r"_s);
    EXPECT_EQ(store.Number(Keys::FontSize, 10), 10);
    store.SaveSetting(u"My preset"_s, u"SaveFirst"_s, u"perhaps"_s);
    EXPECT_TRUE(store.Flag(u"My preset"_s, RecordFlagKey(u"SaveFirst", true)));
    store.SaveSetting(u"My preset"_s, u"Window"_s, QString(500, u'w'));
    EXPECT_EQ(store.Integer(u"My preset"_s, RecordNumberKey(u"Window", 1)), 1);
    EXPECT_EQ(noted, 4);
    QStringList entries;
    for (const UnreadableSetting &setting : store.TakeUnreadable())
        entries.append(setting.entry);
    EXPECT_EQ(entries, (QStringList{u"FontSize=q"_s, u"FontSize=r"_s, u"[My preset] SaveFirst=perhaps"_s,
                                    u"[My preset] Window="_s + QString(81, u'w') + u"..."_s}));
    EXPECT_TRUE(store.TakeUnreadable().empty());
}

TEST_F(Settings, ReportsComeWhenTheReadersHaveDoneTheirWork)
{
    ScriptedDesktop desktop;
    SettingReports reports(store, desktop);
    Save(Keys::FontSize, u"q"_s);
    Save(Keys::WordWrap, u"perhaps"_s);
    Save(Keys::TabSpaces, u"many"_s);
    store.Number(Keys::FontSize, 10);
    store.Flag(Keys::WordWrap);
    QCoreApplication::processEvents();
    // All that was noted before the first report comes in that one.
    desktop.ExpectMessage(MismatchBox(u"FontSize=q\nWordWrap=perhaps"_s), BoxAnswer::Cancel);
    reports.Tell();
    desktop.CheckAllCame();
    reports.Tell();
    // Later ones come by themselves, not before the reader has come back.
    store.Integer(Keys::TabSpaces);
    store.Integer(Keys::TabSpaces);
    desktop.ExpectMessage(MismatchBox(u"TabSpaces=many"_s), BoxAnswer::Cancel);
    QCoreApplication::processEvents();
    desktop.CheckAllCame();
    QCoreApplication::processEvents();
}

TEST_F(Settings, AStepIsWrittenAtItsEnd)
{
    store.SaveFlag(Keys::Splash, true);
    const SettingsStore other(folder.filePath(u"settings"_s));
    store.InOneStep([&] {
        store.SaveFlag(Keys::Splash, false);
        store.DeleteSetting(Keys::Font);
        EXPECT_FALSE(store.Flag(Keys::Splash));
        EXPECT_TRUE(other.Flag(Keys::Splash));
    });
    EXPECT_FALSE(other.Flag(Keys::Splash));
}

TEST_F(Settings, TheUsersStoreLiesInTheConfigurationFolder)
{
    const QString file = qEnvironmentVariable("XDG_CONFIG_HOME") + u"/zelvane/settings"_s;
    ASSERT_FALSE(QFile::exists(file));
    {
        SettingsStore users;
        users.SaveText(Keys::Font, u"Mono"_s);
    }
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "[Options]\nFont=Mono\n"_ba);
    EXPECT_EQ(SettingsStore().StoredText(Keys::Font), u"Mono"_s);
    ASSERT_TRUE(QFile::remove(file));
}

TEST_F(Settings, ADamagedStoreGivesDefaults)
{
    QFile file(folder.filePath(u"settings"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\0\xFF\xFE[Opt\nions]]]=\x80\n[\n=\n[Options\nSplash=0"_ba);
    file.write(QByteArray(100000, '\0'));
    file.close();
    EXPECT_TRUE(store.Flag(Keys::Splash));
    EXPECT_EQ(store.Text(Keys::LineStyle2), u"*"_s);
    EXPECT_EQ(store.GetAllSettings(u"Options"_s), Pairs());
    store.SaveFlag(Keys::Splash, false);
    EXPECT_FALSE(store.Flag(Keys::Splash));
}
