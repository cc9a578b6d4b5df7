// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/wordlist.h"

#include "support/printers.h"
#include "support/randomtext.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr NameKinds All{NameKind::Opcode,     NameKind::UserOpcode, NameKind::Macro,
                        NameKind::Instrument, NameKind::Table,      NameKind::Word};

/// The rank of a name, letter by letter; -1 when it does not answer.
int RankOf(const QString &name, const QString &typed)
{
    if (name.startsWith(typed))
        return 0;
    if (name.toLower().startsWith(typed.toLower()))
        return 1;
    if (typed.size() < 2)
        return -1;
    bool inside = false;
    for (qsizetype at = 1; at + typed.size() <= name.size(); ++at) {
        if (name.mid(at, typed.size()).toLower() != typed.toLower())
            continue;
        inside = true;
        const bool behindMark = name[at - 1] == u'_' || name[at - 1] == u'$';
        const bool capital = name[at].isUpper() && !name[at - 1].isUpper();
        const bool number = name[at].isDigit() != name[at - 1].isDigit();
        const bool behindRate = (at == 1 && u"akiSfwx"_s.contains(name[0])) ||
                                (at == 2 && name[0] == u'g' && u"akiSfwx"_s.contains(name[1]));
        if (behindMark || capital || number || behindRate)
            return 2;
    }
    return inside ? 3 : -1;
}

using Names = std::vector<std::pair<QString, NameKind>>;

/// All names are ranked and sorted. Those of the text, by kind, come before the others of their rank.
std::vector<Completion> Expected(const Names &names, const QString &typed, NameKinds kinds, std::size_t most,
                                 const std::set<QString> &used = {})
{
    std::map<QString, NameKind> first;
    for (const auto &[name, kind] : names) {
        if (name.isEmpty())
            continue;
        const auto [row, isNew] = first.emplace(name, kind);
        if (!isNew)
            row->second = std::min(row->second, kind);
    }
    std::vector<std::tuple<int, bool, bool, qsizetype, QString, QString, NameKind>> rows;
    for (const auto &[name, kind] : first) {
        const int rank = RankOf(name, typed);
        if (rank >= 0 && kinds.Has(kind))
            rows.emplace_back(rank, name != typed, !used.contains(name), typed.isEmpty() ? 0 : name.size(),
                              name.toLower(), name, kind);
    }
    std::sort(rows.begin(), rows.end());
    std::vector<Completion> best;
    for (const auto &row : rows) {
        if (best.size() < most)
            best.push_back({std::get<5>(row), std::get<6>(row)});
    }
    return best;
}

WordList ListOf(const Names &names)
{
    std::vector<WordList::Name> views;
    for (const auto &[name, kind] : names)
        views.push_back({name, kind});
    return WordList(views);
}

std::vector<Completion> Found(const WordList &list, const QString &typed, NameKinds kinds, std::size_t most)
{
    std::vector<Completion> found;
    for (const WordList::Hit &hit : list.Find(typed, kinds, most))
        found.push_back({list.Text(hit.name).toString(), list.Kind(hit.name)});
    return found;
}

QStringList Texts(const std::vector<Completion> &completions)
{
    QStringList texts;
    for (const Completion &completion : completions)
        texts.append(completion.text);
    return texts;
}

} // namespace

TEST(WordList, FindsWhatALookAtEachNameFinds)
{
    RandomText random({u"a"_s, u"b"_s, u"A"_s, u"g"_s, u"k"_s, u"_"_s, u"1"_s, u"$"_s, u"ä"_s, u"Ä"_s}, 7);
    for (int i = 0; i < 4000; ++i) {
        Names names;
        for (int n = random.Number(0, 30); n > 0; --n)
            names.emplace_back(random.Next(), NameKind(random.Number(0, 5)));
        const WordList list = ListOf(names);
        for (int asked = 0; asked < 8; ++asked) {
            const QString typed = random.Next().left(random.Number(0, 4));
            const std::size_t most = std::array<std::size_t, 4>{1, 3, 10, 1000}[std::size_t(asked % 4)];
            const NameKinds kinds =
                asked % 2 ? All : NameKinds{NameKind::Macro, NameKind::Word, NameKind::Opcode};
            ASSERT_EQ(Texts(Found(list, typed, kinds, most)), Texts(Expected(names, typed, kinds, most)))
                << ::testing::PrintToString(typed) << ' ' << most;
            ASSERT_EQ(Found(list, typed, kinds, most), Expected(names, typed, kinds, most));
        }
    }
}

TEST(WordList, SeveralListsAnswerAsALookAtEachNameDoes)
{
    RandomText random({u"a"_s, u"b"_s, u"A"_s, u"k"_s, u"_"_s, u"1"_s}, 5);
    for (int i = 0; i < 3000; ++i) {
        Names language, one, other, all;
        std::set<QString> used;
        for (int n = random.Number(0, 25); n > 0; --n) {
            all.emplace_back(random.Next(), NameKind(random.Number(0, 5)));
            const int list = random.Number(0, 2);
            (list == 0 ? language : list == 1 ? one : other).push_back(all.back());
            if (list > 0)
                used.insert(all.back().first);
        }
        const WordList known = ListOf(language), first = ListOf(one), second = ListOf(other);
        const std::array<const WordList *, 2> lists = {&first, &second};
        const QString typed = random.Next().left(3);
        const auto most = std::size_t(random.Number(1, 12));
        std::vector<Completion> expected = Expected(all, typed, All, most + 1, used);
        std::erase(expected, Completion{typed, NameKind::Word});
        expected.resize(std::min(expected.size(), most));
        ASSERT_EQ(Complete(typed, known, lists, All, most), expected) << ::testing::PrintToString(typed);
    }
}

TEST(WordList, BeginningsComeBeforePartsOfWords)
{
    const WordList list = ListOf({{u"oscil"_s, NameKind::Opcode},
                                  {u"OSCsend"_s, NameKind::Opcode},
                                  {u"giOsc"_s, NameKind::Table},
                                  {u"kosc"_s, NameKind::Word},
                                  {u"moscil"_s, NameKind::Opcode},
                                  {u"osciliktp"_s, NameKind::Opcode}});
    EXPECT_EQ(Texts(Found(list, u"osc"_s, All, 100)),
              QStringList({u"oscil"_s, u"osciliktp"_s, u"OSCsend"_s, u"kosc"_s, u"giOsc"_s, u"moscil"_s}));
}

TEST(WordList, ShortNamesAndThoseOfTheTextComeFirst)
{
    Names opcodes;
    for (const QString &name :
         {u"oscbnk"_s, u"oscil"_s, u"oscil1"_s, u"oscili"_s, u"oscilikt"_s, u"OSCraw"_s})
        opcodes.emplace_back(name, NameKind::Opcode);
    const WordList language = ListOf(opcodes);
    const WordList text({{u"oscili", NameKind::Word}, {u"kosc", NameKind::Word}, {u"osc1", NameKind::Word}});
    const auto rows = [&](QStringView typed) {
        const std::array<const WordList *, 1> lists = {&text};
        return Complete(typed, language, lists, All, 100);
    };
    EXPECT_EQ(Texts(rows(u"osc")), QStringList({u"osc1"_s, u"oscili"_s, u"oscil"_s, u"oscbnk"_s, u"oscil1"_s,
                                                u"oscilikt"_s, u"OSCraw"_s, u"kosc"_s}));
    EXPECT_EQ(rows(u"osc")[1].kind, NameKind::Opcode) << "though it is a word of the text as well";
    EXPECT_EQ(Texts(rows(u"oscil")), QStringList({u"oscil"_s, u"oscili"_s, u"oscil1"_s, u"oscilikt"_s}))
        << "what is typed to its end is first";
    EXPECT_EQ(Texts(rows(u"")).first(4), QStringList({u"kosc"_s, u"osc1"_s, u"oscili"_s, u"oscbnk"_s}))
        << "by the alphabet, with nothing typed";
}

TEST(WordList, TheKindIsThatOfAllListsAlsoWhereOneHasMany)
{
    Names opcodes;
    for (int i = 0; i < 50; ++i)
        opcodes.emplace_back(u"o%1"_s.arg(i), NameKind::Opcode);
    opcodes.emplace_back(u"ostrange"_s, NameKind::Opcode);
    const WordList language = ListOf(opcodes);
    const WordList text({{u"ostrange", NameKind::Word}});
    const std::array<const WordList *, 1> lists = {&text};
    EXPECT_EQ(Complete(u"o", language, lists, All, 1),
              (std::vector<Completion>{{u"ostrange"_s, NameKind::Opcode}}));
    EXPECT_EQ(Complete(u"o", language, lists, {NameKind::Word}, 1),
              (std::vector<Completion>{{u"ostrange"_s, NameKind::Word}}));
}

TEST(WordList, WhatIsTypedIsNoAnswerUnlessItStandsElsewhere)
{
    const WordList list({{u"kfreq", NameKind::Word},
                         {u"kfreq2", NameKind::Word},
                         {u"kamp", NameKind::Word, true},
                         {u"kamp2", NameKind::Word, true}});
    const WordList opcodes = ListOf({{u"out"_s, NameKind::Opcode}, {u"outs"_s, NameKind::Opcode}});
    const std::array<const WordList *, 1> lists = {&list};
    EXPECT_EQ(Texts(Complete(u"kfreq", opcodes, lists, All, 100)), QStringList({u"kfreq2"_s}));
    EXPECT_EQ(Texts(Complete(u"kamp", opcodes, lists, All, 100)), QStringList({u"kamp"_s, u"kamp2"_s}));
    EXPECT_EQ(Texts(Complete(u"out", opcodes, lists, All, 100)), QStringList({u"out"_s, u"outs"_s}));
}

} // namespace zelvane::test
