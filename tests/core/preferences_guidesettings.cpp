// SPDX-License-Identifier: GPL-3.0-or-later
// What the guide tells to write into the settings file.

#include "platform/numbers.h"
#include "preferences/allsettingkeys.h"
#include "run/presetkeys.h"
#include "run/presetstore.h"
#include "shell/settings.h"
#include "support/guidepages.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <map>
#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QTemporaryDir>
#include <QtGlobal>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// Whether there is such a key; it is read from the store as what it is.
bool ReadKey(const SettingsStore &store, const QString &name)
{
    bool known = false;
    ForEachSettingKey([&](const auto &key) {
        if constexpr (requires { key.Name(); }) {
            if (key.Name() != name)
                return;
            known = true;
            if constexpr (requires { store.Colour(key); })
                store.Colour(key);
            else if constexpr (requires { store.Flag(key); })
                store.Flag(key);
            else if constexpr (requires { store.Number(key); })
                store.Number(key);
        }
    });
    return known;
}

/// The sections of a block with their lines of a key and a value.
std::vector<std::pair<QString, QStringList>> SectionsOf(const QString &block)
{
    std::vector<std::pair<QString, QStringList>> sections;
    for (const QString &line : block.split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(u'['))
            sections.emplace_back(line.sliced(1).chopped(1), QStringList());
        else if (!sections.empty())
            sections.back().second.append(line);
    }
    return sections;
}

/// The first two columns of the table of keys: each key with its default. Several keys of a row have one
/// default, or as many.
std::vector<std::pair<QString, QString>> DefaultsOfTheTable()
{
    const QString table =
        GuidePage(u"settings"_s).section(u"| Key | Default | Meaning |"_s, 1).section(u"\n\n"_s, 0, 0);
    static const QRegularExpression row(u"^\\| (`[^|]*) \\|([^|]*)\\|"_s,
                                        QRegularExpression::MultilineOption);
    static const QRegularExpression name(u"`(\\w+)`"_s);
    static const QRegularExpression between(u", | and "_s);
    std::vector<std::pair<QString, QString>> keys;
    for (auto rows = row.globalMatch(table); rows.hasNext();) {
        const QRegularExpressionMatch found = rows.next();
        QStringList names;
        for (auto all = name.globalMatch(found.captured(1)); all.hasNext();)
            names.append(all.next().captured(1));
        const QStringList defaults = found.captured(2).trimmed().split(between);
        for (qsizetype i = 0; i < names.size(); ++i)
            keys.emplace_back(names[i], defaults[defaults.size() == names.size() ? i : 0]);
    }
    return keys;
}

QStringList KeysOfTheTable()
{
    QStringList keys;
    for (const auto &[key, value] : DefaultsOfTheTable())
        keys.append(key);
    return keys;
}

/// What the table says of a default.
QString Told(bool value)
{
    return value ? u"1"_s : u"0"_s;
}
QString Told(double value)
{
    return NumberText(value);
}
QString Told(std::u16string_view value)
{
    return QStringView(value).toString();
}
QString Told(quint32)
{
    return {}; // another one on another desktop
}

} // namespace

TEST(GuideSettings, AreReadAsTheyStand)
{
    static const QStringList presetKeys{u"Command"_s, u"Args"_s, u"Folder"_s, u"SaveFirst"_s, u"Console"_s};
    int keys = 0;
    for (const QString &block : GuideBlocks(u"settings"_s)) {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"settings"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(block.toUtf8());
        file.close();
        const SettingsStore store(file.fileName());
        for (const auto &[section, lines] : SectionsOf(block)) {
            for (const QString &line : lines) {
                const QString key = line.section(u'=', 0, 0);
                EXPECT_EQ(store.GetSetting(section, key, u"(none)"_s), line.section(u'=', 1));
                if (section == u"Options"_s)
                    EXPECT_TRUE(ReadKey(store, key)) << key.toStdString();
                else if (section == u"Presets"_s)
                    EXPECT_NE(store.GetSetting(key, u"Command"_s), QString()) << key.toStdString();
                else
                    EXPECT_TRUE(presetKeys.contains(key)) << key.toStdString();
                ++keys;
            }
        }
        EXPECT_EQ(store.TakeUnreadable().size(), 0u) << block.toStdString();
    }
    EXPECT_GE(keys, 10);
}

TEST(GuideSettings, ItsTableHoldsKeysThatAreThere)
{
    const QTemporaryDir folder;
    const SettingsStore store(folder.filePath(u"settings"_s));
    const QStringList keys = KeysOfTheTable();
    for (const QString &key : keys)
        EXPECT_TRUE(ReadKey(store, key)) << key.toStdString();
    EXPECT_GE(keys.size(), 35);
}

TEST(GuideSettings, ItsTableHoldsAllThatAUserMaySet)
{
    // What the program only remembers, such as a place, is no key to set by hand: it has no control of
    // Preferences. These have none either.
    static const QStringList others{u"ColorComments"_s, u"Console"_s, u"ConsoleKeepOpen"_s};
    const QStringList told = KeysOfTheTable();
    int keys = 0;
    ForEachSettingKey([&]<typename Key>(const Key &key) {
        if constexpr (std::is_base_of_v<OptionKey, Key>) {
            if (key.writer != KeyWriter::Preferences && key.kind != SettingKind::Colour &&
                !others.contains(key.Name()))
                return;
            EXPECT_EQ(told.count(key.Name()), 1) << key.Name().toStdString();
            ++keys;
        }
    });
    EXPECT_EQ(told.size(), keys);
}

TEST(GuideSettings, ItsDefaultsAreThose)
{
    const auto table = DefaultsOfTheTable();
    const std::map<QString, QString> told(table.begin(), table.end());
    int keys = 0;
    ForEachSettingKey([&](const auto &key) {
        if constexpr (requires { key.fallback; }) {
            const auto found = told.find(key.Name());
            if (found == told.end())
                return;
            EXPECT_EQ(found->second, Told(key.fallback)) << key.Name().toStdString();
            ++keys;
        }
    });
    EXPECT_GE(keys, 55);
}

} // namespace zelvane::test
