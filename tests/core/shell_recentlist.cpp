// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/recentlist.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QRandomGenerator>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

const QString FindStrings = u"Recent Find Strings"_s;
const QString Files = u"Recent File List"_s;

class RecentList : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    SettingsStore store{folder.filePath(u"settings"_s)};

    void Put(const QString &section, const QStringList &items)
    {
        std::vector<std::pair<QString, QString>> entries;
        for (qsizetype i = 0; i < items.size(); ++i)
            entries.emplace_back(QString::number(i + 1), items[i]);
        store.SaveSettings(section, entries);
    }
    /// Keys "1" to `count`, with "-" where a key is absent.
    QStringList Keys(const QString &section, int count)
    {
        QStringList values;
        for (int key = 1; key <= count; ++key)
            values.append(store.GetSetting(section, QString::number(key), u"-"_s));
        return values;
    }
};

/// The rule as a plain loop over keys "1" to `count`; items[0] is key "1".
void AddByTheRule(QStringList &items, const QString &text, int count, bool exactly)
{
    QStringList read;
    for (int i = 0; i < count; ++i)
        read.append(items[i]);
    for (int i = 0; i < count; ++i) {
        if (exactly ? read[i] == text : read[i].toLower() == text.toLower())
            read[i] = QString();
    }
    items[0] = text;
    int key = 2;
    for (int i = 0; i < count; ++i) {
        if (read[i].isEmpty())
            continue;
        if (key > count)
            break;
        items[key - 1] = read[i];
        ++key;
    }
}

} // namespace

TEST_F(RecentList, TheFirstItemMakesOneKey)
{
    AddRecentItem(store, u"a"_s, FindStrings, 8);
    EXPECT_EQ(store.GetAllSettings(FindStrings), (std::vector{std::pair(u"1"_s, u"a"_s)}));
    EXPECT_EQ(RecentItems(store, FindStrings, 8), QStringList{u"a"_s});
}

TEST_F(RecentList, TheNewestIsFirstAndTheListIsCut)
{
    for (int i = 1; i <= 10; ++i)
        AddRecentItem(store, QString::number(i), FindStrings, 8);
    EXPECT_EQ(Keys(FindStrings, 9).join(u' '), u"10 9 8 7 6 5 4 3 -"_s);
}

TEST_F(RecentList, AnOldItemComesToTheFront)
{
    Put(FindStrings, {u"a"_s, u"b"_s, u"c"_s});
    AddRecentItem(store, u"c"_s, FindStrings, 8);
    EXPECT_EQ(Keys(FindStrings, 4).join(u' '), u"c a b -"_s);
    AddRecentItem(store, u"c"_s, FindStrings, 8);
    EXPECT_EQ(Keys(FindStrings, 4).join(u' '), u"c a b -"_s);
}

TEST_F(RecentList, FindStringsThatDifferByCaseHaveEntriesOfTheirOwn)
{
    AddRecentItem(store, u"Osc"_s, FindStrings, 8);
    AddRecentItem(store, u"osc"_s, FindStrings, 8);
    EXPECT_EQ(Keys(FindStrings, 3).join(u' '), u"osc Osc -"_s);
}

TEST_F(RecentList, FilesThatDifferOnlyByCaseAreOneEntry)
{
    AddRecentFile(store, u"/a/One.orc"_s);
    AddRecentFile(store, u"/a/two.orc"_s);
    AddRecentFile(store, u"/A/ONE.ORC"_s);
    EXPECT_EQ(Keys(Files, 3).join(u' '), u"/A/ONE.ORC /a/two.orc -"_s);
    for (int i = 0; i < 12; ++i)
        AddRecentFile(store, QString::number(i));
    EXPECT_EQ(Keys(Files, 10).join(u' '), u"11 10 9 8 7 6 5 4 3 -"_s);
}

TEST_F(RecentList, GapsAreClosedAndWhatStandsBeyondStays)
{
    Put(FindStrings, {u"a"_s, {}, u"b"_s, {}, u"c"_s});
    AddRecentItem(store, u"x"_s, FindStrings, 8);
    EXPECT_EQ(Keys(FindStrings, 6).join(u' '), u"x a b c c -"_s);
    store.DeleteSetting(FindStrings);
    Put(FindStrings, {u"a"_s, u"a"_s, u"a"_s});
    AddRecentItem(store, u"a"_s, FindStrings, 8);
    EXPECT_EQ(Keys(FindStrings, 4).join(u' '), u"a a a -"_s);
    store.DeleteSetting(FindStrings);
    Put(FindStrings, {u"1"_s, u"2"_s, u"3"_s, u"4"_s});
    AddRecentItem(store, u"0"_s, FindStrings, 2);
    EXPECT_EQ(Keys(FindStrings, 4).join(u' '), u"0 1 3 4"_s);
}

TEST_F(RecentList, ReadingStopsAtTheFirstEmptyKey)
{
    Put(FindStrings, {u"a"_s, u"b"_s, {}, u"c"_s});
    EXPECT_EQ(RecentItems(store, FindStrings, 8).join(u' '), u"a b"_s);
    EXPECT_EQ(RecentItems(store, FindStrings, 1).join(u' '), u"a"_s);
    EXPECT_EQ(RecentItems(store, u"None"_s, 8), QStringList());
}

TEST_F(RecentList, FollowsTheRuleOnRandomLists)
{
    QRandomGenerator random(3);
    const QString items[] = {u"a"_s, u"A"_s, u"b"_s, u"B"_s, u"\u00E9"_s, u"\u00C9"_s, u"c d"_s, u" c"_s, {}};
    for (int round = 0; round < 400; ++round) {
        const bool exactly = round % 2;
        const QString section = exactly ? FindStrings : Files;
        const int count = exactly ? 1 + random.bounded(8) : 9;
        QStringList model;
        for (int i = 0; i < 9; ++i)
            model.append(items[random.bounded(int(std::size(items)))]);
        Put(section, model);
        for (int step = 0; step < 3; ++step) {
            const QString text = items[random.bounded(int(std::size(items)) - 1)];
            if (exactly)
                AddRecentItem(store, text, section, count);
            else
                AddRecentFile(store, text);
            AddByTheRule(model, text, count, exactly);
            ASSERT_EQ(Keys(section, 9), model) << round;
        }
    }
}
