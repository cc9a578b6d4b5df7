// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/flagline.h"

#include "oracle/flagtable.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

FlagChoice &Row(std::vector<FlagChoice> &choices, const QString &flag)
{
    for (FlagChoice &choice : choices) {
        if (choice.row.flag == flag)
            return choice;
    }
    ADD_FAILURE() << flag.toStdString();
    return choices.front();
}

} // namespace

TEST(FlagLine, FlagsAndValuesFromTheTop)
{
    ScriptedDesktop desktop;
    std::vector<FlagChoice> choices = FlagChoices(ShippedFlagTable());
    EXPECT_EQ(FlagLine(choices), QString());
    SetFlagChecked(Row(choices, u"-W"_s), true, desktop);
    EXPECT_EQ(FlagLine(choices), u"-W"_s);
    desktop.ExpectInput(u"Flag value"_s, u"Flag:\t-o\n\nType:\tfnam\n\nType flag value."_s, u"x.wav"_s);
    SetFlagChecked(Row(choices, u"-o"_s), true, desktop);
    EXPECT_EQ(Row(choices, u"-o"_s).value, u"x.wav"_s);
    EXPECT_EQ(FlagLine(choices), u"-o x.wav -W"_s);
    SetFlagChecked(Row(choices, u"-o"_s), false, desktop);
    EXPECT_EQ(Row(choices, u"-o"_s).value, u"fnam"_s);
    EXPECT_EQ(FlagLine(choices), u"-W"_s);
}

TEST(FlagLine, NoAnswerUnchecksTheRow)
{
    for (const std::optional<QString> &answer :
         {std::optional<QString>(), std::optional<QString>(QString())}) {
        ScriptedDesktop desktop;
        std::vector<FlagChoice> choices = FlagChoices(ShippedFlagTable());
        desktop.ExpectInput(u"Flag value"_s, u"Flag:\t-b\n\nType:\tN\n\nType flag value."_s, answer);
        SetFlagChecked(Row(choices, u"-b"_s), true, desktop);
        EXPECT_FALSE(Row(choices, u"-b"_s).checked);
        EXPECT_EQ(Row(choices, u"-b"_s).value, u"N"_s);
        EXPECT_EQ(FlagLine(choices), QString());
    }
}

TEST(FlagLine, CheckedAgainAsksForTheTypeWordAgain)
{
    ScriptedDesktop desktop;
    FlagChoice choice{.row = {u"-t"_s, u"0"_s, {}}, .value = u"0"_s};
    for (const QString &value : {u"60"_s, u"90"_s}) {
        desktop.ExpectInput(u"Flag value"_s, u"Flag:\t-t\n\nType:\t0\n\nType flag value."_s, value);
        SetFlagChecked(choice, true, desktop);
        EXPECT_EQ(FlagLine({choice}), u"-t "_s + value);
        SetFlagChecked(choice, false, desktop);
    }
}

TEST(FlagLine, EmptyLineIsNotAccepted)
{
    ScriptedDesktop desktop;
    EXPECT_TRUE(AcceptFlagLine(u"-W"_s, desktop));
    desktop.ExpectMessage({.text = u"Pick a flag or press Cancel."_s, .icon = BoxIcon::Warning});
    EXPECT_FALSE(AcceptFlagLine({}, desktop));
}

TEST(FlagLine, FlagsDoNotTouchWhatStandsBesideThem)
{
    EXPECT_EQ(FlagsBetween({}, u"-W"_s, {}), u"-W"_s);
    EXPECT_EQ(FlagsBetween(u"-d"_s, u"-W"_s, {}), u" -W"_s);
    EXPECT_EQ(FlagsBetween(u"-d "_s, u"-W"_s, {}), u"-W"_s);
    EXPECT_EQ(FlagsBetween(u"-d\t"_s, u"-W"_s, u" -o x"_s), u" -W"_s) << "a tab is part of an argument";
    EXPECT_EQ(FlagsBetween(u"-d "_s, u"-W"_s, u"\t-o"_s), u"-W "_s);
    EXPECT_EQ(FlagsBetween({}, u"-W"_s, u"-o x"_s), u"-W "_s);
    EXPECT_EQ(FlagsBetween(u"-d"_s, u"-W -A"_s, u"$DOCUMENT$"_s), u" -W -A "_s);
    EXPECT_EQ(FlagsBetween(u"-d"_s, u" -W "_s, u"-o"_s), u" -W "_s);
    EXPECT_EQ(FlagsBetween(u"-d"_s, {}, u"-o"_s), QString());
}

TEST(FlagLine, EqualsThePlainLoopOnRandomChoices)
{
    std::mt19937 random(20012);
    const std::vector<FlagRow> &table = ShippedFlagTable();
    const QStringList values{u"x"_s, u"a b"_s, u" 2 "_s, u"$WAVE$"_s, u"\t"_s, u"-"_s};
    for (int round = 0; round < 20000; ++round) {
        std::vector<FlagChoice> choices;
        for (int left = std::uniform_int_distribution(0, 6)(random); left > 0; --left) {
            const FlagRow &row = table[std::uniform_int_distribution<size_t>(0, table.size() - 1)(random)];
            FlagChoice choice{.row = row, .value = row.type, .checked = random() % 2 == 0};
            if (choice.checked && !row.type.isEmpty())
                choice.value = values[qsizetype(random() % size_t(values.size()))];
            choices.push_back(choice);
        }
        ASSERT_EQ(FlagLine(choices), oracle::FlagLine(choices));
    }
}

} // namespace zelvane::test
