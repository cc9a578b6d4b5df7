// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/opcodelist.h"
#include "language/opcodeset.h"
#include "language/scanner.h"
#include "oracle/scanoracle.h"
#include "platform/textfile.h"
#include "support/boxes.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomTexts = 40000;

const QStringList FilePieces = {
    u" "_s,  u" "_s,  u"\t"_s,     u"\r"_s,      u"\n"_s,     u"\r\n"_s,
    u"a"_s,  u"b"_s,  u"ab"_s,     u"oscil"_s,   u"Oscil"_s,  u"\f"_s,
    u"\v"_s, u";"_s,  u"\u00e9"_s, u"\u0416"_s,  u"\u00ff"_s, u"abcdefghijklmno"_s,
    u"p"_s,  u"\0"_s, u"\u0100"_s, u"zz\nzz\n"_s};

QStringList WordsOf(const QString &file)
{
    QStringList words;
    for (OpcodeWalk walk(file); walk.Next();)
        words += walk.Word().toString();
    return words;
}

} // namespace

TEST(OpcodeWalk, IsThatOfThePlainLoop)
{
    RandomText random(FilePieces);
    for (int i = 0; i < RandomTexts; ++i) {
        const QString file = random.Next();
        const oracle::OpcodeWalkResult expected = oracle::WalkOpcodes(file);
        ASSERT_EQ(WordsOf(file), expected.words) << ::testing::PrintToString(file);
        OpcodeList list;
        list.Add(file);
        ASSERT_EQ(list.OpcodeWords(), expected.opcodeWords) << ::testing::PrintToString(file);
        ASSERT_EQ(list.Opcodes(), QStringList(QString()) + expected.words);
    }
}

TEST(OpcodeWalk, AnUnfinishedLastWordTakesTheLengthOfTheOneBefore)
{
    EXPECT_EQ(WordsOf(u"abc oscili"_s), QStringList({u"abc"_s, u"osc"_s}));
    EXPECT_EQ(WordsOf(u"oscili abc"_s), QStringList({u"oscili"_s, u"abc"_s}));
    EXPECT_EQ(WordsOf(u"oscil"_s), QStringList({QString()})) << "a first and only word gets no length";
    EXPECT_EQ(WordsOf(u"oscil\n"_s), QStringList({u"oscil"_s}));
    EXPECT_EQ(WordsOf(u" \t\r\n"_s), QStringList());
    EXPECT_EQ(WordsOf(QString()), QStringList());
}

TEST(OpcodeList, HoldsTheWordsAsOneString)
{
    OpcodeList list;
    EXPECT_EQ(list.OpcodeWords(), u" "_s);
    EXPECT_FALSE(list.Contains(u"a"));
    list.Add(QString());
    EXPECT_EQ(list.OpcodeWords(), u" "_s);
    list.Add(u"a b\r\n\tc\n"_s);
    EXPECT_EQ(list.OpcodeWords(), u"  a b c"_s);
    EXPECT_EQ(list.Opcodes(), QStringList({QString(), u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_TRUE(list.Contains(u"a"));
    EXPECT_TRUE(list.Contains(u"b"));
    EXPECT_FALSE(list.Contains(u"c")) << "no blank stands behind the last word";
    list.Add(u"d\n"_s);
    EXPECT_TRUE(list.Contains(u"c"));
}

TEST(OpcodeList, LooksUpAsASearchInTheStringWould)
{
    RandomText random(FilePieces, 30, 2);
    RandomText asked(FilePieces, 3, 3);
    int found = 0;
    for (int i = 0; i < RandomTexts; ++i) {
        OpcodeList list;
        list.Add(random.Next());
        for (int k = 0; k < 3; ++k) {
            const QString word = asked.Next();
            const bool expected = oracle::IsOpcode(list.OpcodeWords(), word);
            ASSERT_EQ(list.Contains(word), expected)
                << ::testing::PrintToString(word) << " in " << ::testing::PrintToString(list.OpcodeWords());
            found += expected;
        }
        for (const QString &word : list.Opcodes())
            ASSERT_EQ(list.Contains(word), oracle::IsOpcode(list.OpcodeWords(), word));
    }
    EXPECT_GT(found, RandomTexts / 20);
}

TEST(OpcodeSet, TheKeysTellWhatTheSetHolds)
{
    RandomText random({u"a"_s, u"b"_s, u"c"_s, u"_"_s, u"9"_s, u"FL"_s, u"\u00e9"_s}, 12, 4);
    for (const int count : {0, 1, 2, 3, 7, 60, 1000, 20000}) {
        QStringList words;
        for (int i = 0; i < count; ++i)
            words += random.Next();
        std::vector<QStringView> views(words.begin(), words.end());
        OpcodeSet set;
        set.Assign(views);
        EXPECT_TRUE(set.AllKeyed()) << count;
        for (int i = 0; i < 2000; ++i) {
            const QString word = i % 2 && count ? words[random.Number(0, count - 1)] : random.Next();
            if (word.isEmpty() || word.size() > OpcodeSet::KeyLength)
                continue;
            ASSERT_EQ(set.ContainsKey(OpcodeSet::MakeKey(word)), words.contains(word))
                << ::testing::PrintToString(word);
            ASSERT_EQ(set.Contains(word), words.contains(word));
        }
    }
}

TEST(OpcodeSet, AKeyIsTheSameHoweverItIsRead)
{
    const QString text = u"oscil(a1, b) abcdefghijklmnopqrstuvwxyz"_s;
    for (qsizetype start = 0; start + OpcodeSet::KeySize <= text.size(); ++start)
        for (qsizetype length = 0; length <= OpcodeSet::KeyLength; ++length)
            ASSERT_EQ(OpcodeSet::LoadKey(QStringView(text).utf16() + start, length),
                      OpcodeSet::MakeKey(QStringView(text).sliced(start, length)));
}

TEST(LoadOpcodes, ReadsTheFileOfTheFolder)
{
    TestContext context;
    context.WriteFile(u"opcodes.txt"_s, "oscil\r\nout linen\nlinen\n");
    OpcodeList list;
    LoadOpcodes(list, context.folder.path(), context.desktop);
    EXPECT_EQ(list.OpcodeWords(), u"  oscil out linen linen"_s);
    EXPECT_TRUE(list.Contains(u"linen"));
}

TEST(LoadOpcodes, AMissingFileIsReportedAndTheListStays)
{
    TestContext context;
    OpcodeList list;
    list.Add(u"a b\n"_s);
    try {
        ReadTextFile(OpcodeFile(context.folder.path()));
        FAIL() << "the file is there";
    } catch (const RunTimeError &error) {
        context.desktop.ExpectMessage(ErrorBox(error), BoxAnswer::Cancel);
    }
    LoadOpcodes(list, context.folder.path(), context.desktop);
    EXPECT_EQ(list.OpcodeWords(), u"  a b"_s);
}

TEST(ShippedOpcodes, AreManyAndNoneIsLost)
{
    const QString file = ReadTextFile(QStringLiteral(ZELVANE_SOURCE_DIR "/data/opcodes.txt"));
    EXPECT_TRUE(file.endsWith(u'\n'));
    const QStringList words = WordsOf(file);
    EXPECT_GT(words.size(), 1500);
    ASSERT_GE(words.size(), 2);
    EXPECT_EQ(words[words.size() - 1], words[words.size() - 2]) << "the last word stands twice";
    OpcodeList list;
    list.Add(file);
    for (const QString &word : words)
        EXPECT_TRUE(list.Contains(word)) << qPrintable(word);
    for (const char16_t *word :
         {u"oscil", u"instr", u"endin", u"sr", u"kr", u"ksmps", u"nchnls", u"0dbfs", u"if"})
        EXPECT_TRUE(list.Contains(word));
    EXPECT_TRUE(list.Set().AllKeyed());

    // A digit starts no word: what is coloured of 0dbfs is dbfs.
    const std::vector<StyleRun> runs = ScanRange(u"0dbfs = 1\n"_s, 0, 10, ScanMode::Orchestra, list).runs;
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0], (StyleRun{1, 4, StyleClass::Opcode}));
}

} // namespace zelvane::test
