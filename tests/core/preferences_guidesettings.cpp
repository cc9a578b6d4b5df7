// SPDX-License-Identifier: GPL-3.0-or-later
// What the guide tells to write into the settings file.

#include "preferences/allsettingkeys.h"
#include "run/presetkeys.h"
#include "run/presetstore.h"
#include "shell/settings.h"
#include "support/guidepages.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <type_traits>

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

/// The first column of the table of keys.
QStringList KeysOfTheTable()
{
    const QString table =
        GuidePage(u"settings"_s).section(u"| Key | Default | Meaning |"_s, 1).section(u"\n\n"_s, 0, 0);
    static const QRegularExpression row(u"^\\|([^|]*)\\|"_s, QRegularExpression::MultilineOption);
    static const QRegularExpression name(u"`(\\w+)`"_s);
    QStringList keys;
    for (auto rows = row.globalMatch(table); rows.hasNext();)
        for (auto names = name.globalMatch(rows.next().captured(1)); names.hasNext();)
            keys.append(names.next().captured(1));
    return keys;
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

} // namespace zelvane::test
