// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/blocks.h"

#include "core/oracle/blocksoracle.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "writing/foldlevels.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomTexts = 20000;

std::vector<Block> BlocksOf(const QString &text, FileKind kind = FileKind::Orchestra)
{
    return FindBlocks(text, CodeMap(text, kind), kind);
}

/// The blocks as "opening...closing" with what stands between left out, in the order of their starts.
QStringList Shown(const QString &text, FileKind kind = FileKind::Orchestra)
{
    std::vector<Block> blocks = BlocksOf(text, kind);
    std::sort(blocks.begin(), blocks.end(),
              [](const Block &one, const Block &other) { return one.start < other.start; });
    QStringList shown;
    for (const Block &block : blocks)
        shown.append(u"%1-%2"_s.arg(block.start).arg(block.end));
    return shown;
}

/// A row of signs, one for each line: its depth, and "+" behind that of a header.
QString Folds(const QString &text, FileKind kind = FileKind::Orchestra)
{
    QString shown;
    for (const FoldLine &line : FoldLevels(text, BlocksOf(text, kind)))
        shown += QString::number(line.level) + (line.isHeader ? u"+"_s : u" "_s);
    return shown.trimmed();
}

TEST(Blocks, WordsPairInCode)
{
    EXPECT_EQ(Shown(u"instr 1\nendin\n"_s), QStringList{u"0-13"_s});
    EXPECT_EQ(Shown(u"opcode a, i, i\nendop"_s), QStringList{u"0-20"_s});
    EXPECT_EQ(Shown(u"if a == 1 then\nendif"_s), QStringList{u"0-20"_s});
    EXPECT_EQ(Shown(u"if (a == 1) kthen\nfi"_s), QStringList{u"0-20"_s});
    EXPECT_EQ(Shown(u"while a < 1 do\nod"_s), QStringList{u"0-17"_s});
    EXPECT_EQ(Shown(u"until a < 1 do\nod"_s), QStringList{u"0-17"_s});
    EXPECT_EQ(Shown(u"#ifdef A\n#else\n#end"_s), QStringList{u"0-19"_s});
    EXPECT_EQ(Shown(u"a = {{\n}}"_s), QStringList{u"4-9"_s});
    EXPECT_EQ(Shown(u"a /* b\n*/"_s), QStringList{u"2-9"_s});
    EXPECT_EQ(Shown(u"{ 2 A\n}"_s, FileKind::Score), QStringList{u"0-7"_s});
}

TEST(Blocks, WordsInCommentsAndStringsDoNotCount)
{
    EXPECT_EQ(Shown(u"instr 1 ; endin\nprints \"endin\"\nendin"_s), QStringList{u"0-36"_s});
    EXPECT_EQ(Shown(u"; instr 1\nendin"_s), QStringList());
    EXPECT_EQ(Shown(u"minstr instrx xendin $instr\nendin instr1 Instr 1\n"_s), QStringList());
}

TEST(Blocks, AnIfOpensOnlyWithItsThen)
{
    EXPECT_EQ(Shown(u"if a == 1 goto b\nendif"_s), QStringList());
    EXPECT_EQ(Shown(u"if a == 1 goto b\nthen\nendif"_s), QStringList());
    EXPECT_EQ(Shown(u"if a == 1 && \\\nb == 2 then\nendif"_s), QStringList{u"0-32"_s});
    EXPECT_EQ(Shown(u"if a == 1 && \\ ; c\nb == 2 then\nendif"_s), QStringList{u"0-36"_s});
    EXPECT_EQ(Shown(u"if a then\nelseif b then\nelse\nendif"_s), QStringList{u"0-34"_s});
}

TEST(Blocks, MacroBodiesPairTheirHashes)
{
    EXPECT_EQ(Shown(u"#define A #\na\n#"_s), QStringList{u"0-15"_s});
    EXPECT_EQ(Shown(u"#define A(b'c) #x\\#y\n#"_s), QStringList{u"0-22"_s});
    EXPECT_EQ(Shown(u"#define A\n#\n#\n"_s), QStringList{u"0-13"_s});
    EXPECT_EQ(Shown(u"#define A\n#ifdef B\n#end\n"_s), QStringList{u"10-23"_s});
    EXPECT_EQ(Shown(u"#define A\ninstr 1\nendin # #\n"_s), QStringList{u"10-23"_s});
}

TEST(Blocks, AnUnclosedOneEndsWithItsInstrument)
{
    EXPECT_EQ(Shown(u"instr 1\nif a then\nendin\ninstr 2\nendif\nendin"_s),
              (QStringList{u"0-23"_s, u"24-43"_s}));
    EXPECT_EQ(Shown(u"instr 1\nif a then\ninstr 2\nendif\nendin"_s), QStringList{u"18-37"_s});
}

TEST(Blocks, DirectivesMayCrossTheOthers)
{
    EXPECT_EQ(Shown(u"#ifdef A\nif a then\n#else\nif b then\n#end\nendif"_s),
              (QStringList{u"0-39"_s, u"25-45"_s}));
}

TEST(Blocks, SectionsAndTagsOfAUnifiedDocument)
{
    const QString text = u"<CsoundSynthesizer>\n<CsInstruments>\ninstr 1\n</CsInstruments>\n"
                         "<CsScore>\nendin\n{ 2 A\n}\n</CsScore>\n</CsoundSynthesizer>\n"_s;
    EXPECT_EQ(Folds(text, FileKind::Unified), u"0+1+2 2 1+2 2+3 2 1 0"_s);
}

/// Pairs the words with a search through all of them for each that closes.
std::vector<Block> PairsByLoops(const std::vector<BlockWord> &words)
{
    std::vector<Block> blocks;
    QList<BlockWord> open, directives;
    for (const BlockWord &word : words) {
        QList<BlockWord> &list = word.kind == BlockKind::Directive ? directives : open;
        if (word.role == BlockWord::Role::Parts)
            continue;
        if (word.role == BlockWord::Role::Opens) {
            if (word.kind == BlockKind::Instrument || word.kind == BlockKind::Opcode) {
                while (!open.isEmpty() && open.last().kind != BlockKind::Macro &&
                       open.last().kind != BlockKind::Braces)
                    open.removeLast();
            }
            list.append(word);
            continue;
        }
        for (qsizetype i = list.size() - 1; i >= 0; --i) {
            if (list[i].kind == word.kind) {
                blocks.push_back({list[i].start, word.end, word.kind});
                list = list.mid(0, i);
                break;
            }
        }
    }
    return blocks;
}

RandomText Programs()
{
    return RandomText({u"\n"_s,      u"\n"_s,          u"\n"_s,      u" "_s,
                       u" "_s,       u" instr "_s,     u" endin "_s, u" opcode "_s,
                       u" endop "_s, u" if "_s,        u" then "_s,  u" if a then "_s,
                       u" else "_s,  u" endif "_s,     u" fi "_s,    u" while a do "_s,
                       u" od "_s,    u" do "_s,        u"\\"_s,      u";"_s,
                       u"/*"_s,      u"*/"_s,          u"\""_s,      u"{{"_s,
                       u"}}"_s,      u"#define A #"_s, u"#"_s,       u"#ifdef A\n"_s,
                       u"#end "_s,   u"x"_s,           u"$"_s});
}

TEST(Blocks, PairAsTheLoopsPair)
{
    RandomText texts = Programs();
    for (int i = 0; i < RandomTexts; ++i) {
        const QString text = texts.Next();
        const CodeMap map(text, FileKind::Orchestra);
        const std::vector<BlockWord> words = FindBlockWords(text, map, map.Sections().front());
        for (const BlockWord &word : words) {
            ASSERT_LT(word.start, word.end);
            ASSERT_LE(word.end, text.size());
        }
        std::vector<Block> blocks = FindBlocks(text, map, FileKind::Orchestra);
        blocks.erase(std::remove_if(blocks.begin(), blocks.end(),
                                    [](const Block &block) { return block.kind == BlockKind::Comment; }),
                     blocks.end());
        ASSERT_EQ(blocks, PairsByLoops(words)) << testing::PrintToString(text);
    }
}

TEST(FoldLevels, LinesOfABlockStandBelowItsFirst)
{
    EXPECT_EQ(Folds(u"a\ninstr 1\na\nendin\nb"_s), u"0 0+1 1 0"_s);
    EXPECT_EQ(Folds(u"instr 1\nif a then\nb\nendif\nendin"_s), u"0+1+2 2 1"_s);
    EXPECT_EQ(Folds(u"if a then b endif\n"_s), u"0 0"_s);
    EXPECT_EQ(Folds(u"/* a\nb */ c\n"_s), u"0+1 0"_s);
    EXPECT_EQ(Folds(u""_s), u"0"_s);
}

TEST(FoldLevels, WhatEndsWhereTheNextBeginsEndsBefore)
{
    EXPECT_EQ(Folds(u"if a then\nb\nendif if c then\nd\nendif"_s), u"0+1 0+1 1"_s);
    EXPECT_EQ(Folds(u"if a then\nendif /* c\nd */"_s), u"0 0+1"_s);
}

TEST(FoldLevels, OfThoseOnOneLineTheLongestCounts)
{
    EXPECT_EQ(Folds(u"instr 1 if a then\nb\nendif\nendin\n"_s), u"0+1 1 1 0"_s);
}

/// The ranges that count, by comparing each with all.
QString FoldsByLoops(const QString &text)
{
    struct Range {
        qsizetype first, last;
    };
    const qsizetype lines = text.count(u'\n') + 1;
    QList<Range> ranges;
    for (const Block &block : BlocksOf(text))
        ranges.append({text.left(block.start).count(u'\n'), text.left(block.end - 1).count(u'\n')});
    QString shown;
    QList<Range> kept;
    for (qsizetype line = 0; line < lines; ++line) {
        qsizetype longest = line;
        for (const Range &range : ranges) {
            if (range.first == line)
                longest = std::max(longest, range.last);
        }
        if (longest == line)
            continue;
        for (Range &before : kept) {
            if (before.last >= line && before.last < longest)
                before.last = line - 1;
        }
        kept.append({line, longest});
    }
    for (qsizetype line = 0; line < lines; ++line) {
        int level = 0;
        bool begins = false;
        for (const Range &range : kept) {
            level += range.first < line && line <= range.last;
            begins = begins || (range.first == line && range.last > line);
        }
        shown += QString::number(level) + (begins ? u"+"_s : u" "_s);
    }
    return shown.trimmed();
}

TEST(FoldLevels, AreThoseOfTheLoops)
{
    RandomText texts = Programs();
    for (int i = 0; i < RandomTexts; ++i) {
        const QString text = texts.Next();
        ASSERT_EQ(Folds(text), FoldsByLoops(text)) << testing::PrintToString(text);
    }
}

TEST(FoldLevels, DeepTextsTakeNoLonger)
{
    QString text;
    for (int i = 0; i < 200000; ++i)
        text += u"if a then\nwhile b do\n"_s;
    for (int i = 0; i < 100000; ++i)
        text += u"endif\nendin\n"_s;
    QElapsedTimer timer;
    timer.start();
    const std::vector<FoldLine> lines = FoldLevels(text, BlocksOf(text));
    EXPECT_EQ(lines.size(), 600001u);
    for (size_t line = 1; line < lines.size(); ++line)
        ASSERT_LE(lines[line].level, lines[line - 1].level + (lines[line - 1].isHeader ? 1 : 0));
    EXPECT_LT(timer.elapsed(), 20000);
}

} // namespace

} // namespace zelvane::test
