// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"
#include "shell/settings.h"
#include "support/childprocess.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

using Pairs = std::vector<std::pair<QString, QString>>;

class Settings : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    SettingsStore store{folder.filePath(u"settings"_s)};

    void Save(const SettingKey &key, const QString &value)
    {
        store.SaveSetting(u"Options"_s, key.name, value);
    }
    QString Stored(const SettingKey &key) { return store.GetSetting(u"Options"_s, key.name, u"(absent)"_s); }

    template <typename Call> static ErrorNumber ErrorOf(Call call)
    {
        try {
            call();
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.Description(),
                      error.Number() == ErrorNumber::Overflow ? u"Overflow"_s : u"Type mismatch"_s);
            return error.Number();
        }
        ADD_FAILURE() << "no error was raised";
        return ErrorNumber::InvalidCall;
    }
};

struct Row {
    const char *name;
    const char *fallback; // nullptr: known to the reader only
    SettingKind kind;
    bool byPreferences;
};
constexpr bool P = true;
constexpr auto Flag = SettingKind::Flag, NumericFlag = SettingKind::NumericFlag, Number = SettingKind::Number,
               Colour = SettingKind::Colour, Text = SettingKind::Text;

/// The single-valued settings, written out once more by hand.
const Row Table[] = {
    {"X", nullptr, Number, false},
    {"Y", nullptr, Number, false},
    {"Width", nullptr, Number, false},
    {"Height", nullptr, Number, false},
    {"Window", "0", Number, false},
    {"Splash", "1", Flag, P},
    {"FlatButtons", "1", NumericFlag, P},
    {"HotTracking", "0", Flag, P},
    {"BandLabels", "0", Flag, P},
    {"Labels", "0", Flag, false},
    {"PresetsLabels", "0", Flag, false},
    {"PanelLabels", "0", Flag, false},
    {"PanelWidth", nullptr, Number, false},
    {"StatusBar", "1", Flag, false},
    {"CodeOutline", "1", NumericFlag, false},
    {"RelatedFiles", "1", NumericFlag, false},
    {"LoopMode", "0", Flag, false},
    {"Used", "1", Number, false},
    {"SystemColors", "1", Flag, P},
    {"FontColor", "-2147483640", Colour, false},
    {"BackColor", "-2147483643", Colour, false},
    {"Font", nullptr, Text, false},
    {"FontSize", nullptr, Number, false},
    {"FontItalic", nullptr, Flag, false},
    {"FontBold", nullptr, Flag, false},
    {"WordWrap", "0", Flag, false},
    {"DragAndDrop", "1", Flag, P},
    {"TabSize", "0", Number, P},
    {"TabSpaces", "8", Number, P},
    {"TabInsertSpaces", "0", Flag, P},
    {"RealTabs", nullptr, Flag, P},
    {"CppComments", "0", Flag, P},
    {"LineStyle1", "-", Text, P},
    {"LineStyle2", "*", Text, P},
    {"LineWidth", "64", Number, P},
    {"FixedPitchFonts", nullptr, Flag, P},
    {"SyntaxHighlight", "True", Flag, P},
    {"CommentsColor", "32768", Colour, false},
    {"OpcodeColor", "16711680", Colour, false},
    {"KeywordColor", "8388608", Colour, false},
    {"MacroColor", "8388736", Colour, false},
    {"LiteralColor", "8421376", Colour, false},
    {"TagColor", "128", Colour, false},
    {"ColorComments", "0", Flag, false},
    {"Startup", "0", Number, P},
    {"MultipleInstances", "0", Flag, P},
    {"Open", "", Text, false},
    {"OpenFolder", nullptr, Text, false},
    {"SaveFolder", nullptr, Text, false},
    {"FilterIndex", "0", Number, false},
    {"BakPath", "", Text, P},
    {"DeleteTempFiles", "0", Flag, P},
    {"SingleSelection", "True", Flag, P},
    {"ExpandBrowse", "False", Flag, P},
    {"SaveOnSwitch", "0", Flag, P},
    {"RememberCaret", "1", Flag, P},
    {"OrchestraExtensions", "orc", Text, P},
    {"ScoreExtensions", "sco", Text, P},
    {"UFFExtensions", "csd", Text, P},
    {"MIDIExtensions", "mid midi", Text, P},
    {"SoundExtensions", "wav aif aiff", Text, P},
    {"Csound", "", Text, P},
    {"Csound2", "", Text, P},
    {"Help", "", Text, P},
    {"Editor", "", Text, P},
    {"Player", "", Text, P},
    {"MinimizeOnPresets", "0", Flag, P},
    {"ConfirmPresets", "0", Flag, P},
    {"OverwritePrompt", "0", Flag, P},
    {"ManualCsound2", "0", Flag, false},
    {"ManualSaveFirst", "0", Flag, false},
    {"ManualInitialFolder", "1", Flag, false},
    {"SFCopyTo", "", Text, false},
    {"CopyTo", "", Text, false},
    {"SliderNegative", "0", Flag, P},
    {"CodeRepositorySingleSel", "0", Flag, false},
    {"CodeRepositorySort", "0", Number, false},
    {"RandomMin", "0", Number, false},
    {"RandomMax", "1", Number, false},
    {"RandomDigits", "3", Number, false},
    {"HeaderSR", "44100", Number, false},
    {"HeaderKR", "4410", Number, false},
    {"HeaderChannels", "1", Number, false},
    {"FindX", nullptr, Number, false},
    {"FindY", nullptr, Number, false},
    {"FindReplace", "", Text, false},
    {"FindWholeWords", "0", Flag, false},
    {"FindMatchCase", "0", Flag, false},
    {"FindWrapSearches", "0", Flag, false},
    {"FindScope", nullptr, Number, false},
};

} // namespace

TEST_F(Settings, AllKeysAreDeclaredWithTheirDefaults)
{
    const std::span<const SettingKey> keys = AllSettingKeys();
    ASSERT_EQ(keys.size(), std::size(Table));
    for (size_t i = 0; i < keys.size(); ++i) {
        const Row &row = Table[i];
        EXPECT_EQ(keys[i].name, QString::fromLatin1(row.name));
        EXPECT_EQ(keys[i].fallback, QString::fromLatin1(row.fallback ? row.fallback : "")) << row.name;
        EXPECT_EQ(keys[i].kind, row.kind) << row.name;
        EXPECT_EQ(keys[i].byPreferences, row.byPreferences) << row.name;
    }
}

TEST_F(Settings, EveryDefaultCanBeRead)
{
    for (size_t i = 0; i < std::size(Table); ++i) {
        const SettingKey &key = AllSettingKeys()[i];
        EXPECT_EQ(store.Text(key), key.fallback);
        EXPECT_EQ(store.Text(key, u"given"_s), u"given"_s);
        if (!Table[i].fallback || key.kind == Text)
            continue;
        if (key.kind == Number)
            EXPECT_EQ(store.Number(key), key.fallback.toDouble());
        else if (key.kind == Colour)
            EXPECT_EQ(store.Colour(key), quint32(key.fallback.toLongLong()));
        else
            EXPECT_EQ(store.Flag(key), key.fallback == u"1" || key.fallback == u"True") << Table[i].name;
    }
    EXPECT_EQ(NamesIn(folder.path()), QStringList()) << "reading makes nothing";
}

TEST_F(Settings, ReadersThatDifferHaveKeysOfTheirOwn)
{
    EXPECT_EQ(store.Text(Keys::SoundExtensions), u"wav aif aiff"_s);
    EXPECT_EQ(store.Text(Keys::SoundExtensionsOfSearch), u"wav"_s);
    store.SaveText(Keys::SoundExtensions, u"flac"_s);
    EXPECT_EQ(store.Text(Keys::SoundExtensionsOfSearch), u"flac"_s);

    store.SaveText(Keys::HeaderKRWritten, u"2205"_s);
    EXPECT_EQ(store.Integer(Keys::HeaderKR), 2205);
    EXPECT_EQ(store.GetAllSettings(u"Options"_s).back(), std::pair(u"HeaderkR"_s, u"2205"_s));
}

TEST_F(Settings, NumberedKeys)
{
    EXPECT_EQ(Keys::Band(3).name, u"Band3"_s);
    EXPECT_TRUE(store.Flag(Keys::Band(3)));
    EXPECT_EQ(Keys::BandWidth(12).name, u"BandWidth12"_s);
    EXPECT_EQ(store.Number(Keys::BandWidth(1), 345.5), 345.5);
    EXPECT_EQ(Keys::BandRow(2).name, u"BandRow2"_s);
    EXPECT_EQ(store.Text(Keys::BandRow(2)), u"1"_s);
    EXPECT_EQ(Keys::PanelBandHeight(1).name, u"PanelBandHeight1"_s);
    EXPECT_EQ(Keys::PanelBandRow(2).name, u"PanelBandRow2"_s);
}

TEST_F(Settings, PresetKeys)
{
    QStringList names, fallbacks;
    for (const SettingKey &key : AllPresetKeys()) {
        names.append(key.name);
        fallbacks.append(key.fallback);
    }
    EXPECT_EQ(names.join(u' '),
              u"Command Args Folder Window SaveFirst Name Tooltip CreateButton NewGroup 2ndCommand "
              "2ndArgs 2ndFolder 2ndWindow Image"_s);
    EXPECT_EQ(fallbacks.join(u','), u",,,1,0,,,1,0,,,,1,"_s);
}

TEST_F(Settings, NoTwoKeysDifferOnlyByCase)
{
    QSet<QString> seen;
    for (const SettingKey &key : AllSettingKeys())
        seen.insert(key.name.toLower());
    EXPECT_EQ(size_t(seen.size()), AllSettingKeys().size());
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
        Save(Keys::Splash, text);
        EXPECT_TRUE(store.Flag(Keys::Splash)) << text.toStdString();
        EXPECT_TRUE(store.Flag(Keys::Splash, false)) << text.toStdString();
        EXPECT_TRUE(ToBoolean(text));
    }
    for (const QString &text : {u"0"_s, u"False"_s, u"FALSE"_s, u"-0"_s, u" 0 "_s, u"0.0"_s}) {
        Save(Keys::Splash, text);
        EXPECT_FALSE(store.Flag(Keys::Splash)) << text.toStdString();
        EXPECT_FALSE(store.Flag(Keys::Splash, true)) << text.toStdString();
    }
    for (const QString &text : {u""_s, u"yes"_s, u"on"_s, u"Tru"_s, u"1 2"_s}) {
        Save(Keys::Splash, text);
        EXPECT_EQ(ErrorOf([&] { store.Flag(Keys::Splash); }), ErrorNumber::TypeMismatch)
            << text.toStdString();
        EXPECT_EQ(ErrorOf([&] { store.Flag(Keys::Splash, true); }), ErrorNumber::TypeMismatch)
            << text.toStdString();
    }
}

TEST_F(Settings, ThreeFlagsAreNumbers)
{
    for (const SettingKey &key : {Keys::FlatButtons, Keys::RelatedFiles, Keys::CodeOutline}) {
        EXPECT_TRUE(store.Flag(key));
        for (const auto &[text, value] :
             {std::pair(u"-1"_s, true), {u"0"_s, false}, {u"1"_s, true}, {u"0.25"_s, true}}) {
            Save(key, text);
            EXPECT_EQ(store.Flag(key), value);
        }
        Save(key, u"True"_s);
        EXPECT_EQ(ErrorOf([&] { store.Flag(key); }), ErrorNumber::TypeMismatch);
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
    EXPECT_EQ(ErrorOf([&] { store.Colour(Keys::FontColor); }), ErrorNumber::Overflow);
    Save(Keys::FontColor, u"-2147483649"_s);
    EXPECT_EQ(ErrorOf([&] { store.Colour(Keys::FontColor); }), ErrorNumber::Overflow);
    Save(Keys::FontColor, u"#FF0000"_s);
    EXPECT_EQ(ErrorOf([&] { store.Colour(Keys::FontColor); }), ErrorNumber::TypeMismatch);
}

TEST_F(Settings, NumbersThatAreNoneAreErrors)
{
    Save(Keys::TabSpaces, u"2.5"_s);
    EXPECT_EQ(store.Integer(Keys::TabSpaces), 2);
    EXPECT_EQ(store.Integer(Keys::TabSpaces, 7), 2);
    Save(Keys::TabSpaces, u"3.5"_s);
    EXPECT_EQ(store.Integer(Keys::TabSpaces), 4);
    Save(Keys::TabSpaces, u"eight"_s);
    EXPECT_EQ(ErrorOf([&] { store.Integer(Keys::TabSpaces); }), ErrorNumber::TypeMismatch);
    EXPECT_EQ(ErrorOf([&] { store.Number(Keys::TabSpaces, 8.0); }), ErrorNumber::TypeMismatch);
    Save(Keys::TabSpaces, u"3000000000"_s);
    EXPECT_EQ(store.Number(Keys::TabSpaces), 3e9);
    EXPECT_EQ(ErrorOf([&] { store.Integer(Keys::TabSpaces); }), ErrorNumber::Overflow);
    EXPECT_EQ(store.Integer(Keys::FindX, -4), -4);
    EXPECT_EQ(ErrorOf([&] { store.Number(Keys::X); }), ErrorNumber::TypeMismatch)
        << "only its reader knows a default";
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
    EXPECT_EQ(SettingsStore().Text(Keys::Font), u"Mono"_s);
    ASSERT_TRUE(QFile::remove(file));
}

TEST_F(Settings, ADamagedStoreGivesDefaults)
{
    QFile file(folder.filePath(u"settings"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\0\xFF\xFE[Opt\nions]]]=\x80\n[\n=\n[Options\nSplash=0"_ba);
    file.write(QByteArray(100000, '\0'));
    file.close();
    for (const SettingKey &key : AllSettingKeys())
        EXPECT_EQ(store.Text(key), key.fallback);
    store.SaveFlag(Keys::Splash, false);
    EXPECT_FALSE(store.Flag(Keys::Splash));
}
