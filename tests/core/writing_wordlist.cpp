// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/wordlist.h"

#include "support/printers.h"
#include "support/randomtext.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <map>
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

/// All names are ranked and sorted.
std::vector<Completion> Expected(const Names &names, const QString &typed, NameKinds kinds, std::size_t most)
{
    std::map<QString, NameKind> first;
    for (const auto &[name, kind] : names) {
        if (name.isEmpty())
            continue;
        const auto [row, isNew] = first.emplace(name, kind);
        if (!isNew)
            row->second = std::min(row->second, kind);
    }
    std::vector<std::tuple<int, QString, QString, NameKind>> rows;
    for (const auto &[name, kind] : first) {
        const int rank = RankOf(name, typed);
        if (rank >= 0 && kinds.Has(kind))
            rows.emplace_back(rank, name.toLower(), name, kind);
    }
    std::sort(rows.begin(), rows.end());
    std::vector<Completion> best;
    for (const auto &[rank, folded, name, kind] : rows) {
        if (best.size() < most)
            best.push_back({name, kind});
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

TEST(WordList, SeveralListsAnswerLikeOne)
{
    RandomText random({u"a"_s, u"b"_s, u"A"_s, u"k"_s, u"_"_s, u"1"_s}, 5);
    for (int i = 0; i < 3000; ++i) {
        Names one, other, both;
        for (int n = random.Number(0, 20); n > 0; --n) {
            both.emplace_back(random.Next(), NameKind(random.Number(0, 5)));
            (random.Number(0, 1) ? one : other).push_back(both.back());
        }
        const WordList first = ListOf(one), second = ListOf(other);
        const std::array<const WordList *, 2> lists = {&first, &second};
        const QString typed = random.Next().left(3);
        const auto most = std::size_t(random.Number(1, 12));
        std::vector<Completion> expected = Expected(both, typed, All, most + 1);
        std::erase(expected, Completion{typed, NameKind::Word});
        expected.resize(std::min(expected.size(), most));
        ASSERT_EQ(Complete(typed, lists, All, most), expected) << ::testing::PrintToString(typed);
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
              QStringList({u"oscil"_s, u"osciliktp"_s, u"OSCsend"_s, u"giOsc"_s, u"kosc"_s, u"moscil"_s}));
}

TEST(WordList, WhatIsTypedIsNoAnswerUnlessItStandsElsewhere)
{
    const WordList list({{u"kfreq", NameKind::Word},
                         {u"kfreq2", NameKind::Word},
                         {u"kamp", NameKind::Word, true},
                         {u"kamp2", NameKind::Word, true}});
    const WordList opcodes = ListOf({{u"out"_s, NameKind::Opcode}, {u"outs"_s, NameKind::Opcode}});
    const std::array<const WordList *, 2> lists = {&list, &opcodes};
    EXPECT_EQ(Texts(Complete(u"kfreq", lists, All, 100)), QStringList({u"kfreq2"_s}));
    EXPECT_EQ(Texts(Complete(u"kamp", lists, All, 100)), QStringList({u"kamp"_s, u"kamp2"_s}));
    EXPECT_EQ(Texts(Complete(u"out", lists, All, 100)), QStringList({u"out"_s, u"outs"_s}));
}

} // namespace zelvane::test
