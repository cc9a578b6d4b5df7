// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/allsettingkeys.h"

#include "platform/runtimeerror.h"
#include "run/presetstore.h"
#include "shell/bands.h"
#include "shell/settings.h"
#include "support/printers.h"
#include "support/settingsfixture.h"

#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <QFile>
#include <type_traits>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// A key of its own type; of a row of numbered keys one from its midst.
template <typename Key> Key Plain(const Key &key)
{
    return key;
}
template <typename Key, typename Band> Key Plain(const NumberedByBand<Key, Band> &keys)
{
    return keys(AllBands<Band>().back());
}

template <typename Key> constexpr bool IsFlag = std::is_base_of_v<OptionKeyOf<SettingKind::Flag>, Key>;
template <typename Key> constexpr bool IsNumber = std::is_base_of_v<OptionKeyOf<SettingKind::Number>, Key>;
template <typename Key> constexpr bool IsText = std::is_base_of_v<OptionKeyOf<SettingKind::Text>, Key>;
template <typename Key> constexpr bool IsColour = std::is_base_of_v<OptionKeyOf<SettingKind::Colour>, Key>;
template <typename Key> constexpr bool HasDefault = requires(Key key)
{
    key.fallback;
};

class AllKeys : public test::SettingsFixture
{
protected:
    /// Calls `test` with each key, of its own type.
    template <typename Test> void ForEach(Test test)
    {
        ForEachSettingKey([&](const auto &declared) {
            const auto key = Plain(declared);
            SCOPED_TRACE(key.Name().toStdString());
            test(key);
        });
    }
};

// What a reader or a writer may be asked for, the compiler decides.

template <typename Key>
concept ReadAsFlag = requires(SettingsStore store, Key key)
{
    store.Flag(key);
};
template <typename Key>
concept ReadAsNumber = requires(SettingsStore store, Key key)
{
    store.Number(key);
}
|| requires(SettingsStore store, Key key)
{
    store.Integer(key);
};
template <typename Key>
concept ReadAsText = requires(SettingsStore store, Key key)
{
    store.Text(key);
};
template <typename Key>
concept ReadAsColour = requires(SettingsStore store, Key key)
{
    store.Colour(key);
};
template <typename Key>
concept ReadAsFlagWithDefault = requires(SettingsStore store, Key key)
{
    store.Flag(key, true);
};
template <typename Key>
concept ReadAsNumberWithDefault = requires(SettingsStore store, Key key)
{
    store.Number(key, 1.0);
}
|| requires(SettingsStore store, Key key)
{
    store.Integer(key, 1);
};
template <typename Key>
concept ReadAsTextWithDefault = requires(SettingsStore store, Key key)
{
    store.Text(key, QString());
};
template <typename Key>
concept SavedAsFlag = requires(SettingsStore store, Key key)
{
    store.SaveFlag(key, true);
};
template <typename Key>
concept SavedAsNumber = requires(SettingsStore store, Key key)
{
    store.SaveNumber(key, 1.0);
};
template <typename Key>
concept SavedAsText = requires(SettingsStore store, Key key)
{
    store.SaveText(key, QString());
};
template <typename Key>
concept SavedAsColour = requires(SettingsStore store, Key key)
{
    store.SaveColour(key, 0u);
};

template <typename Key> constexpr void CheckType()
{
    static_assert(ReadAsFlag<Key> == (IsFlag<Key> && HasDefault<Key>));
    static_assert(ReadAsNumber<Key> == (IsNumber<Key> && HasDefault<Key>));
    static_assert(ReadAsText<Key> == (IsText<Key> && HasDefault<Key>));
    static_assert(ReadAsColour<Key> == IsColour<Key>);
    static_assert(ReadAsFlagWithDefault<Key> == (IsFlag<Key> && !HasDefault<Key>));
    static_assert(ReadAsNumberWithDefault<Key> == (IsNumber<Key> && !HasDefault<Key>));
    static_assert(ReadAsTextWithDefault<Key> == (IsText<Key> && !HasDefault<Key>));
    static_assert(SavedAsFlag<Key> == IsFlag<Key>);
    static_assert(SavedAsNumber<Key> == IsNumber<Key>);
    static_assert(SavedAsText<Key> == IsText<Key>);
    static_assert(SavedAsColour<Key> == IsColour<Key>);
}

// The keys of a preset's section are none of section "Options", and the other way about.

template <typename Key>
concept OfOptions = ReadAsFlag<Key> || ReadAsNumber<Key> || ReadAsText<Key> || ReadAsColour<Key> ||
    ReadAsFlagWithDefault<Key> || ReadAsNumberWithDefault<Key> || ReadAsTextWithDefault<Key> ||
    SavedAsFlag<Key> || SavedAsNumber<Key> || SavedAsText<Key> || SavedAsColour<Key> ||
    requires(SettingsStore store, Key key)
{
    store.StoredText(key);
} || requires(SettingsStore store, Key key)
{
    store.SaveStoredText(key, QString());
} || requires(SettingsStore store, Key key)
{
    store.DeleteSetting(key);
};
template <typename Key>
concept OfPresets = requires(PresetStore store, QString name, Key key)
{
    store.Text(name, key);
}
|| requires(PresetStore store, QString name, Key key)
{
    store.Text(name, key, QString());
}
|| requires(PresetStore store, QString name, Key key)
{
    store.Flag(name, key);
}
|| requires(PresetStore store, QString name, Key key)
{
    store.State(name, key);
}
|| requires(PresetStore store, QString name, Key key)
{
    store.StoredText(name, key);
};

static_assert(OfOptions<TextKey> && OfOptions<BareNumberKey> && OfOptions<NumericFlagKey>);
static_assert(!OfPresets<TextKey> && !OfPresets<BareTextKey> && !OfPresets<NumberKey> && !OfPresets<FlagKey>);
static_assert(OfPresets<RecordTextKey> && OfPresets<RecordNumberKey> && OfPresets<RecordFlagKey>);
static_assert(!OfOptions<RecordTextKey> && !OfOptions<BareRecordTextKey> && !OfOptions<RecordNumberKey> &&
              !OfOptions<RecordFlagKey>);

/// What the stores of the program's users hold and leave out: these names and defaults keep their meaning.
struct Row {
    const char *name;
    SettingKind kind;
    const char *fallback; // stored form; nullptr: only the reader knows it
    KeyWriter writer;
};
constexpr auto Owner = KeyWriter::Owner, Preferences = KeyWriter::Preferences;
const Row Promised[] = {
    {"X", SettingKind::Number, nullptr, Owner},
    {"Y", SettingKind::Number, nullptr, Owner},
    {"Width", SettingKind::Number, nullptr, Owner},
    {"Height", SettingKind::Number, nullptr, Owner},
    {"Window", SettingKind::Number, "0", Owner},
    {"Splash", SettingKind::Flag, "1", Preferences},
    {"FlatButtons", SettingKind::NumericFlag, "1", Preferences},
    {"HotTracking", SettingKind::Flag, "0", Preferences},
    {"BandLabels", SettingKind::Flag, "0", Preferences},
    {"Labels", SettingKind::Flag, "0", Owner},
    {"PresetsLabels", SettingKind::Flag, "0", Owner},
    {"PanelLabels", SettingKind::Flag, "0", Owner},
    {"PanelWidth", SettingKind::Number, nullptr, Owner},
    {"StatusBar", SettingKind::Flag, "1", Owner},
    {"CodeOutline", SettingKind::NumericFlag, "1", Owner},
    {"RelatedFiles", SettingKind::NumericFlag, "1", Owner},
    {"LoopMode", SettingKind::Flag, "0", Owner},
    {"Used", SettingKind::Number, "1", Owner},
    {"SystemColors", SettingKind::Flag, "1", Preferences},
    {"FontColor", SettingKind::Colour, "-2147483640", Owner},
    {"BackColor", SettingKind::Colour, "-2147483643", Owner},
    {"Font", SettingKind::Text, nullptr, Owner},
    {"FontSize", SettingKind::Number, nullptr, Owner},
    {"FontItalic", SettingKind::Flag, nullptr, Owner},
    {"FontBold", SettingKind::Flag, nullptr, Owner},
    {"WordWrap", SettingKind::Flag, "0", Owner},
    {"DragAndDrop", SettingKind::Flag, "1", Preferences},
    {"TabSize", SettingKind::Number, "0", Preferences},
    {"TabSpaces", SettingKind::Number, "8", Preferences},
    {"TabInsertSpaces", SettingKind::Flag, "0", Preferences},
    {"RealTabs", SettingKind::Flag, nullptr, Preferences},
    {"CppComments", SettingKind::Flag, "0", Preferences},
    {"LiveColours", SettingKind::Flag, "0", Preferences},
    {"Completion", SettingKind::Flag, "0", Preferences},
    {"AutoComplete", SettingKind::Flag, "0", Preferences},
    {"ArgumentHint", SettingKind::Flag, "0", Preferences},
    {"LineNumbers", SettingKind::Flag, "0", Preferences},
    {"CurrentLine", SettingKind::Flag, "0", Preferences},
    {"BracketMatch", SettingKind::Flag, "0", Preferences},
    {"SameWord", SettingKind::Flag, "0", Preferences},
    {"AutoIndent", SettingKind::Flag, "0", Preferences},
    {"MoveLines", SettingKind::Flag, "0", Preferences},
    {"Folding", SettingKind::Flag, "0", Preferences},
    {"Bookmarks", SettingKind::Flag, "0", Preferences},
    {"FindInFiles", SettingKind::Flag, "0", Preferences},
    {"RegularExpressions", SettingKind::Flag, "0", Preferences},
    {"LineStyle1", SettingKind::Text, "-", Preferences},
    {"LineStyle2", SettingKind::Text, "*", Preferences},
    {"LineWidth", SettingKind::Number, "64", Preferences},
    {"FixedPitchFonts", SettingKind::Flag, nullptr, Preferences},
    {"SyntaxHighlight", SettingKind::Flag, "True", Preferences},
    {"CommentsColor", SettingKind::Colour, "32768", Owner},
    {"OpcodeColor", SettingKind::Colour, "16711680", Owner},
    {"KeywordColor", SettingKind::Colour, "8388608", Owner},
    {"MacroColor", SettingKind::Colour, "8388736", Owner},
    {"LiteralColor", SettingKind::Colour, "8421376", Owner},
    {"TagColor", SettingKind::Colour, "128", Owner},
    {"ColorComments", SettingKind::Flag, "0", Owner},
    {"Startup", SettingKind::Number, "0", Preferences},
    {"MultipleInstances", SettingKind::Flag, "0", Preferences},
    {"Open", SettingKind::Text, "", Owner},
    {"OpenFolder", SettingKind::Text, nullptr, Owner},
    {"SaveFolder", SettingKind::Text, nullptr, Owner},
    {"FilterIndex", SettingKind::Number, "0", Owner},
    {"BakPath", SettingKind::Text, "", Preferences},
    {"SafetyCopy", SettingKind::Flag, "1", Preferences},
    {"DeleteTempFiles", SettingKind::Flag, "0", Preferences},
    {"SingleSelection", SettingKind::Flag, "True", Preferences},
    {"ExpandBrowse", SettingKind::Flag, "False", Preferences},
    {"SaveOnSwitch", SettingKind::Flag, "0", Preferences},
    {"RememberCaret", SettingKind::Flag, "1", Preferences},
    {"OrchestraExtensions", SettingKind::Text, "orc", Preferences},
    {"ScoreExtensions", SettingKind::Text, "sco", Preferences},
    {"UFFExtensions", SettingKind::Text, "csd", Preferences},
    {"MIDIExtensions", SettingKind::Text, "mid midi", Preferences},
    {"SoundExtensions", SettingKind::Text, "wav aif aiff", Preferences},
    {"Csound", SettingKind::Text, "", Preferences},
    {"Csound2", SettingKind::Text, "", Preferences},
    {"Help", SettingKind::Text, "", Preferences},
    {"Editor", SettingKind::Text, "", Preferences},
    {"Player", SettingKind::Text, "", Preferences},
    {"MinimizeOnPresets", SettingKind::Flag, "0", Preferences},
    {"ConfirmPresets", SettingKind::Flag, "0", Preferences},
    {"OverwritePrompt", SettingKind::Flag, "0", Preferences},
    {"ManualCsound2", SettingKind::Flag, "0", Owner},
    {"ManualSaveFirst", SettingKind::Flag, "0", Owner},
    {"ManualInitialFolder", SettingKind::Flag, "1", Owner},
    {"SFCopyTo", SettingKind::Text, "", Owner},
    {"CopyTo", SettingKind::Text, "", Owner},
    {"SliderNegative", SettingKind::Flag, "0", Preferences},
    {"CodeRepositorySingleSel", SettingKind::Flag, "0", Owner},
    {"CodeRepositorySort", SettingKind::Number, "0", Owner},
    {"RandomMin", SettingKind::Number, "0", Owner},
    {"RandomMax", SettingKind::Number, "1", Owner},
    {"RandomDigits", SettingKind::Number, "3", Owner},
    {"HeaderSR", SettingKind::Number, "44100", Owner},
    {"HeaderkR", SettingKind::Number, "4410", Owner},
    {"HeaderChannels", SettingKind::Number, "1", Owner},
    {"FindX", SettingKind::Number, nullptr, Owner},
    {"FindY", SettingKind::Number, nullptr, Owner},
    {"FindReplace", SettingKind::Text, "", Owner},
    {"FindWholeWords", SettingKind::Flag, "0", Owner},
    {"FindMatchCase", SettingKind::Flag, "0", Owner},
    {"FindWrapSearches", SettingKind::Flag, "0", Owner},
    {"FindScope", SettingKind::Number, nullptr, Owner},
    {"Band", SettingKind::Flag, "1", Owner},
    {"BandWidth", SettingKind::Number, nullptr, Owner},
    {"BandRow", SettingKind::Flag, "1", Owner},
    {"PanelBandHeight", SettingKind::Number, nullptr, Owner},
    {"PanelBandRow", SettingKind::Flag, nullptr, Owner},
};

} // namespace

TEST_F(AllKeys, AWrongReaderOrWriterDoesNotCompile)
{
    ForEach([]<typename Key>(const Key &) { CheckType<Key>(); });
    CheckType<ColourKey>();
}

TEST_F(AllKeys, NoTwoDifferOnlyByCase)
{
    std::map<QString, int> seen;
    ForEach([&](const SettingKey &key) { EXPECT_EQ(++seen[key.Name().toLower()], 1); });
    EXPECT_GT(seen.size(), 80u);
}

TEST_F(AllKeys, AnAbsentKeyHasItsDefault)
{
    ForEach([&]<typename Key>(const Key &key) {
        if constexpr (IsColour<Key>) {
            EXPECT_EQ(store.Colour(key), key.fallback);
        }
        if constexpr (IsFlag<Key>) {
            if constexpr (HasDefault<Key>) {
                EXPECT_EQ(store.Flag(key), key.fallback);
            } else {
                EXPECT_TRUE(store.Flag(key, true));
                EXPECT_FALSE(store.Flag(key, false));
            }
        }
        if constexpr (IsNumber<Key>) {
            if constexpr (HasDefault<Key>) {
                EXPECT_EQ(store.Number(key), key.fallback);
                EXPECT_EQ(store.Integer(key), int(key.fallback));
            } else {
                EXPECT_EQ(store.Number(key, 345.5), 345.5);
                EXPECT_EQ(store.Integer(key, -4), -4);
            }
        }
        if constexpr (IsText<Key>) {
            if constexpr (HasDefault<Key>) {
                EXPECT_EQ(store.Text(key), QStringView(key.fallback));
            } else {
                EXPECT_EQ(store.Text(key, u"given"_s), u"given"_s);
            }
        }
        EXPECT_EQ(store.StoredText(key), std::nullopt);
    });
    EXPECT_FALSE(QFile::exists(folder.filePath(u"settings"_s))) << "reading makes nothing";
}

TEST_F(AllKeys, WhatIsSavedIsRead)
{
    ForEach([&]<typename Key>(const Key &key) {
        if constexpr (IsColour<Key>) {
            store.SaveColour(key, 0x80000012);
            EXPECT_EQ(store.Colour(key), 0x80000012);
        }
        if constexpr (IsFlag<Key>) {
            for (const bool value : {true, false}) {
                store.SaveFlag(key, value);
                if constexpr (HasDefault<Key>) {
                    EXPECT_EQ(store.Flag(key), value);
                } else {
                    EXPECT_EQ(store.Flag(key, !value), value);
                }
            }
        }
        if constexpr (IsNumber<Key>) {
            store.SaveNumber(key, 12.5);
            if constexpr (HasDefault<Key>) {
                EXPECT_EQ(store.Number(key), 12.5);
            } else {
                EXPECT_EQ(store.Number(key, 0), 12.5);
            }
        }
        if constexpr (IsText<Key>) {
            store.SaveText(key, u" a=b "_s);
            if constexpr (HasDefault<Key>) {
                EXPECT_EQ(store.Text(key), u" a=b "_s);
            } else {
                EXPECT_EQ(store.Text(key, {}), u" a=b "_s);
            }
        }
        EXPECT_EQ(store.GetAllSettings(Sections::Options).back().first, key.Name());
        store.DeleteSetting(key);
        EXPECT_EQ(store.StoredText(key), std::nullopt);
    });
}

TEST_F(AllKeys, AMistypedValueIsNotedAndTheDefaultRead)
{
    ForEach([&]<typename Key>(const Key &key) {
        store.SaveStoredText(key, u"q"_s);
        if constexpr (IsColour<Key>) {
            EXPECT_EQ(store.Colour(key), key.fallback);
            EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
        }
        if constexpr (IsFlag<Key>) {
            if constexpr (HasDefault<Key>) {
                EXPECT_EQ(store.Flag(key), key.fallback);
                EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
            } else {
                EXPECT_TRUE(store.Flag(key, true));
                EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
                EXPECT_FALSE(store.Flag(key, false));
            }
        }
        if constexpr (IsNumber<Key>) {
            if constexpr (HasDefault<Key>) {
                EXPECT_EQ(store.Number(key), key.fallback);
                EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
                EXPECT_EQ(store.Integer(key), int(key.fallback));
            } else {
                EXPECT_EQ(store.Number(key, 1), 1);
                EXPECT_EQ(Noted(), ErrorNumber::TypeMismatch);
                EXPECT_EQ(store.Integer(key, 2), 2);
            }
        }
        EXPECT_TRUE(store.TakeUnreadable().empty()) << "each value is noted once";
    });
}

TEST_F(AllKeys, NamesKindsAndDefaultsThatStoresRelyOn)
{
    struct Found {
        SettingKind kind;
        KeyWriter writer;
        std::optional<QString> fallback;
    };
    std::map<QString, Found> declared;
    ForEachSettingKey([&](const auto &key) {
        const auto plain = Plain(key);
        using Key = std::remove_const_t<decltype(plain)>;
        Found found{plain.kind, plain.writer, {}};
        if constexpr (IsColour<Key>)
            found.fallback = QString::number(qint32(plain.fallback));
        else if constexpr (IsText<Key> && HasDefault<Key>)
            found.fallback = QStringView(plain.fallback).toString();
        else if constexpr (HasDefault<Key>)
            found.fallback = QString::number(plain.fallback);
        declared.emplace(QStringView(plain.stem).toString(), found);
    });
    for (const Row &row : Promised) {
        SCOPED_TRACE(row.name);
        const auto place = declared.find(QString::fromLatin1(row.name));
        ASSERT_NE(place, declared.end());
        EXPECT_EQ(place->second.kind, row.kind);
        EXPECT_EQ(place->second.writer, row.writer);
        QString promised = QString::fromLatin1(row.fallback ? row.fallback : "(none)");
        if (row.kind == SettingKind::Flag)
            promised.replace(u"True"_s, u"1"_s).replace(u"False"_s, u"0"_s);
        EXPECT_EQ(place->second.fallback.value_or(u"(none)"_s), promised);
    }
}

TEST_F(AllKeys, KeysOfBandsCountFromOne)
{
    EXPECT_EQ(Keys::Band(WindowBand::Toolbar).Name(), u"Band1"_s);
    EXPECT_EQ(Keys::Band(WindowBand::Player).Name(), u"Band3"_s);
    EXPECT_TRUE(store.Flag(Keys::Band(WindowBand::Player)));
    EXPECT_EQ(Keys::BandWidth(WindowBand::Presets).Name(), u"BandWidth4"_s);
    EXPECT_EQ(Keys::BandRow(WindowBand::Opcodes).Name(), u"BandRow2"_s);
    EXPECT_EQ(Keys::PanelBandHeight(PanelBand::Browse).Name(), u"PanelBandHeight1"_s);
    EXPECT_EQ(Keys::PanelBandRow(PanelBand::Related).Name(), u"PanelBandRow2"_s);
    store.SaveFlag(Keys::Band(WindowBand::Opcodes), false);
    EXPECT_FALSE(store.Flag(Keys::Band(WindowBand::Opcodes)));
    EXPECT_TRUE(store.Flag(Keys::Band(WindowBand::Toolbar)));
}
