// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/charblocks.h"
#include "language/scanner.h"
#include "oracle/scanoracle.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomTexts = 40000;

const QString Words = u"oscil out a ab abc instr define zz zz\n"_s;

const QStringList CodePieces = {u" "_s,       u"\n"_s,
                                u"\t"_s,      u"\r"_s,
                                u";"_s,       u"/*"_s,
                                u"*/"_s,      u"/"_s,
                                u"*"_s,       u"\""_s,
                                u"$"_s,       u"#"_s,
                                u"#define"_s, u"define"_s,
                                u"include"_s, u"#include"_s,
                                u"oscil"_s,   u"a"_s,
                                u"ab"_s,      u"abc"_s,
                                u"1"_s,       u"_"_s,
                                u"zz"_s,      u"out"_s,
                                u"\u00e9"_s,  u"\u0160"_s,
                                u"\u0416"_s,  u"\u00b2"_s,
                                u"("_s,       u"<"_s,
                                u"\u0001"_s,  u"$a;"_s,
                                u"oscil "_s,  u"abcdefghijklmnop"_s,
                                u"\u00d7"_s,  u"\U0001F600"_s};

const QStringList TagPieces = {u"<"_s,    u">"_s,   u"</"_s,   u"/"_s, u"a"_s,  u"b"_s,   u"<a>"_s,
                               u"</a>"_s, u"<b>"_s, u"</b>"_s, u" "_s, u"<>"_s, u"</>"_s, u"\n"_s};

const QStringList UnifiedPieces =
    CodePieces + TagPieces + QStringList{u"<CsInstruments>"_s, u"</CsInstruments>"_s, u"<CsScore>"_s,
                                         u"</CsScore>"_s,      u"<CsInstruments>"_s,  u"</CsInstruments>"_s,
                                         u"<CsScore>"_s,       u"</CsScore>"_s};

/// The next text, now and then far from the start, so that tokens cross the blocks that a scan goes by.
QString Shifted(RandomText &random)
{
    const QString text = random.Next();
    return random.Number(0, 3) ? text : QString(40 + random.Number(0, 40), u' ') + text;
}

QByteArray Paint(qsizetype length, const StyleRuns &runs)
{
    QByteArray styles(length, char(StyleClass::Text));
    for (const StyleRun &run : runs) {
        EXPECT_LE(run.start + run.length, length);
        std::fill_n(styles.begin() + run.start, run.length, char(run.style));
    }
    return styles;
}

void ExpectRisingRuns(const StyleRuns &runs)
{
    qint32 before = 0;
    for (const StyleRun &run : runs) {
        EXPECT_GE(run.start, before);
        EXPECT_GT(run.length, 0);
        before = run.start + run.length;
    }
}

class Scanner : public ::testing::Test
{
protected:
    Scanner() { opcodes.Add(Words); }

    /// The style of each character as a digit, for the whole text.
    QByteArray Styles(const QString &text, ScanMode mode)
    {
        const ScanResult found = ScanRange(text, 0, 0, mode, opcodes);
        EXPECT_FALSE(found.ranOffText);
        return Digits(Paint(text.size(), found.runs));
    }
    QByteArray Orchestra(const QString &text) { return Styles(text, ScanMode::Orchestra); }
    QByteArray Score(const QString &text) { return Styles(text, ScanMode::Score); }
    QByteArray TagStyles(const QString &text) { return Styles(text, ScanMode::Tags); }
    QByteArray Unified(const QString &text) { return Digits(Paint(text.size(), ScanUnified(text, opcodes))); }
    static QByteArray Digits(QByteArray styles)
    {
        for (char &style : styles)
            style = char(style + '0');
        return styles;
    }

    void CompareWithOracle(const QStringList &pieces, ScanMode mode, unsigned seed)
    {
        RandomText random(pieces, 24, seed);
        int failures = 0, coloured = 0;
        for (int i = 0; i < RandomTexts; ++i) {
            const QString text = Shifted(random);
            const auto length = int(text.size());
            qsizetype start = 0, end = 0;
            if (random.Number(0, 1)) {
                start = random.Number(0, length);
                end = random.Number(int(start), length);
            }
            oracle::Painting painting{QByteArray(length, char(StyleClass::Text))};
            oracle::HighlightRange(text, start, end, int(mode), opcodes.OpcodeWords(), painting);
            const ScanResult found = ScanRange(text, start, end, mode, opcodes);
            ExpectRisingRuns(found.runs);
            ASSERT_EQ(Digits(Paint(length, found.runs)), Digits(painting.styles))
                << '[' << start << ", " << end << ") of " << ::testing::PrintToString(text);
            ASSERT_EQ(found.ranOffText, painting.failed) << ::testing::PrintToString(text);
            failures += painting.failed;
            coloured += !found.runs.empty();
        }
        EXPECT_GT(coloured, RandomTexts / 10);
        if (mode != ScanMode::Tags) {
            EXPECT_GT(failures, RandomTexts / 1000);
        }
    }

    OpcodeList opcodes;
};

} // namespace

TEST_F(Scanner, OrchestraIsThatOfThePlainLoop)
{
    CompareWithOracle(CodePieces, ScanMode::Orchestra, 1);
}
TEST_F(Scanner, ScoreIsThatOfThePlainLoop)
{
    CompareWithOracle(CodePieces, ScanMode::Score, 2);
}
TEST_F(Scanner, TagsAreThoseOfThePlainLoop)
{
    CompareWithOracle(TagPieces, ScanMode::Tags, 3);
}

TEST_F(Scanner, UnifiedIsThatOfThePassesOneAfterTheOther)
{
    RandomText random(UnifiedPieces, 40, 4);
    int both = 0;
    for (int i = 0; i < RandomTexts; ++i) {
        const QString text = Shifted(random);
        oracle::Painting painting{QByteArray(text.size(), char(StyleClass::Text))};
        oracle::HighlightUnified(text, opcodes.OpcodeWords(), painting);
        EXPECT_FALSE(painting.failed);
        const StyleRuns runs = ScanUnified(text, opcodes);
        ExpectRisingRuns(runs);
        ASSERT_EQ(Digits(Paint(text.size(), runs)), Digits(painting.styles))
            << ::testing::PrintToString(text);
        both += text.contains(u"</CsInstruments>"_s) && text.contains(u"</CsScore>"_s);
    }
    EXPECT_GT(both, RandomTexts / 100);
}

TEST_F(Scanner, AllModesAreThoseOfThePlainLoopWhenKeysDoNotTellAll)
{
    // A word beyond ASCII is kept beside the keyed ones, and so are those with control characters and long
    // ones.
    opcodes.Add(u"\u0416\u0416 osc\u00ffil abcdefghijklmnopq \u0001ab zz\n"_s);
    const QStringList pieces =
        CodePieces + QStringList{u" \u0416\u0416 "_s,     u"a\u0416"_s, u" osc\u00ffil\n"_s,
                                 u"abcdefghijklmnopq "_s, u"osc"_s,     u"\u00ff"_s};
    CompareWithOracle(pieces, ScanMode::Orchestra, 5);
    CompareWithOracle(pieces, ScanMode::Score, 6);
}

TEST_F(Scanner, TheVectorUnitSeesWhatThePlainLoopsSee)
{
    RandomText random(CodePieces + QStringList{u"\u0020"_s, u"\u0021"_s, u"\u001f"_s, u"\u0080"_s,
                                               u"\u00ff"_s, u"\u0100"_s, u"\u8000"_s, u"\uffff"_s, u"@[`{"_s,
                                               u"!%&:.0"_s},
                      80, 7);
    for (int i = 0; i < 5000; ++i) {
        const QString text = random.Next().leftJustified(CharBlockSize, QChar(random.Number(0, 0xffff)));
        const char16_t *chars = QStringView(text).utf16();
#ifdef ZELVANE_SSE2
        ASSERT_EQ(ClassifyVector<true>(chars), ClassifyPlain<true>(chars)) << ::testing::PrintToString(text);
        ASSERT_EQ(ClassifyVector<false>(chars), ClassifyPlain<false>(chars))
            << ::testing::PrintToString(text);
#endif
        const char16_t *end = chars + text.size();
        const char16_t wanted = text[random.Number(0, int(text.size()) - 1)].unicode();
        ASSERT_EQ(Find(chars, end, wanted), FindPlain(chars, end, wanted));
        const auto length = random.Number(0, CharBlockSize - 1);
        QString padded = text.first(length) + QString(CharBlockSize - length, QChar(0));
        ASSERT_EQ(Classify<true>(chars, chars + length), ClassifyPlain<true>(QStringView(padded).utf16()));
    }
}

// Classes as digits: 0 text, 1 comment, 2 opcode, 4 macro, 5 literal, 6 tag.

TEST_F(Scanner, LineComment)
{
    EXPECT_EQ(Orchestra(u";abc"_s), "0000");
    EXPECT_EQ(Orchestra(u";abc\n"_s), "11111");
    EXPECT_EQ(Orchestra(u"1,2;note\nx"_s), "0001111110");
    EXPECT_EQ(Orchestra(u"x;note\n "_s), "00000000") << "a word runs to the next blank";
    EXPECT_EQ(Orchestra(u"\n; out\n;out"_s), "01111110000") << "one without a line feed ends the scan";
    EXPECT_EQ(Score(u"i1 0 1 ; c\ni"_s), "000000011110");
}

TEST_F(Scanner, BlockComment)
{
    EXPECT_EQ(Orchestra(u"/* a */ out "_s), "111111102220");
    EXPECT_EQ(Orchestra(u"/*/ out "_s), "11102220") << "the star serves both marks";
    EXPECT_EQ(Orchestra(u"/* open out "_s), "000000000000");
    EXPECT_EQ(Orchestra(u"out /* out "_s), "22200000000");
    EXPECT_EQ(Orchestra(u"/**/* out */ out "_s), "11111111111102220") << "the closing slash opens the next";
    EXPECT_EQ(Orchestra(u"1 / 2 out "_s), "0000002220");
    EXPECT_EQ(Score(u"/* open\n; c\n"_s), "000000000000");
}

TEST_F(Scanner, CommentsRunBeyondTheRange)
{
    const QString text = u"out ; c\n out out "_s;
    EXPECT_EQ(Digits(Paint(text.size(), ScanRange(text, 0, 6, ScanMode::Orchestra, opcodes).runs)),
              "222011110000000000"_ba.first(text.size()));
}

TEST_F(Scanner, Words)
{
    EXPECT_EQ(Orchestra(u"oscil\n"_s), "222220");
    EXPECT_EQ(Orchestra(u"oscil"_s), "00000") << "the range's last character is no part of the word";
    EXPECT_EQ(Orchestra(u"oscilx"_s), "222220");
    EXPECT_EQ(Orchestra(u"oscil( "_s), "0000000");
    EXPECT_EQ(Orchestra(u"a1=oscil "_s), "000000000");
    EXPECT_EQ(Orchestra(u"1oscil "_s), "0222220");
    EXPECT_EQ(Orchestra(u"Oscil "_s), "000000") << "case counts";
    EXPECT_EQ(Orchestra(u"oscil\u0001"_s), "222220") << "any code below 33 ends a word";
    EXPECT_EQ(Orchestra(u"\u00e9out out "_s), "00000"
                                              "2220");
    EXPECT_EQ(Orchestra(u"\u0416out "_s), "02220") << "no letter of the code page";
    EXPECT_EQ(Score(u"out oscil "_s), "0000000000");
}

TEST_F(Scanner, TheLastWordOfTheListIsNoOpcodeUnlessItStandsTwice)
{
    OpcodeList list;
    list.Add(u"a b c\n"_s);
    const QString text = u"a b c "_s;
    EXPECT_EQ(Digits(Paint(6, ScanRange(text, 0, 0, ScanMode::Orchestra, list).runs)), "202000");
}

TEST_F(Scanner, Directives)
{
    EXPECT_EQ(Orchestra(u"#define A #1#\n"_s), "44444440000000");
    EXPECT_EQ(Orchestra(u"#include\t\"x\" "_s), "4444444405550");
    EXPECT_EQ(Orchestra(u"#define\n "_s), "022222200") << "no directive, but here an opcode of that name";
    EXPECT_EQ(Orchestra(u"#definex "_s), "000000000");
    EXPECT_EQ(Orchestra(u"#undef A\n#ifdef A\n"_s), QByteArray(18, '0'));
    EXPECT_EQ(Orchestra(u"#define"_s), "0000000");
    EXPECT_EQ(Score(u"#include \"a\"\n"_s), "4444444405550");
}

TEST_F(Scanner, MacroNames)
{
    EXPECT_EQ(Orchestra(u"$abc out "_s), "444402220");
    EXPECT_EQ(Orchestra(u"$x;note\n"_s), "44000000") << "what ends the name is not looked at";
    EXPECT_EQ(Orchestra(u"$x;out\n"_s), "4402220");
    EXPECT_EQ(Orchestra(u"$ x"_s), "400");
    EXPECT_EQ(Orchestra(u"$a_b "_s), "44000");
    EXPECT_EQ(Orchestra(u"$\u00e91\u00b2. "_s), "444400");
}

TEST_F(Scanner, AMacroNameAtTheVeryEndFails)
{
    const QString text = u"out $abc"_s;
    const ScanResult found = ScanRange(text, 0, 0, ScanMode::Orchestra, opcodes);
    EXPECT_TRUE(found.ranOffText);
    EXPECT_EQ(found.runs, (StyleRuns{{0, 3, StyleClass::Opcode}}));
    EXPECT_TRUE(ScanRange(text, 0, 6, ScanMode::Orchestra, opcodes).ranOffText) << "the range is no bound";
    EXPECT_FALSE(ScanRange(text + u'\n', 0, 0, ScanMode::Orchestra, opcodes).ranOffText);
    EXPECT_FALSE(ScanRange(u"x $"_s, 0, 0, ScanMode::Orchestra, opcodes).ranOffText) << "never a token";
    EXPECT_TRUE(ScanRange(u"i1 $a"_s, 0, 0, ScanMode::Score, opcodes).ranOffText);
}

TEST_F(Scanner, Strings)
{
    EXPECT_EQ(Orchestra(u"\"out\" out "_s), "5555502220");
    EXPECT_EQ(Orchestra(u"\"a\nb\n"_s), "55555") << "without a partner to the end, over line ends";
    EXPECT_EQ(Orchestra(u"\"a\\\"out "_s), "55552220") << "there is no escape";
    EXPECT_EQ(Orchestra(u"1\""_s), "00");
    EXPECT_EQ(Score(u"\"x\"\n"_s), "5550");
}

TEST_F(Scanner, PairedTags)
{
    EXPECT_EQ(TagStyles(u"<a>x</a>"_s), "66606666");
    EXPECT_EQ(TagStyles(u"<a><b></b></a>"_s), QByteArray(14, '6'));
    EXPECT_EQ(TagStyles(u"<a>x</b>"_s), "00000000");
    EXPECT_EQ(TagStyles(u"</a><a>"_s), "0000000") << "a closing tag is looked for behind";
    EXPECT_EQ(TagStyles(u"<a x>y</a>"_s), "0000000000") << "the name is all between the signs";
    EXPECT_EQ(TagStyles(u"<a x>y</a x>"_s), "666660666666");
    EXPECT_EQ(TagStyles(u"<A>x</a>"_s), "00000000");
    EXPECT_EQ(TagStyles(u"<a><a></a>"_s), "6666666666") << "two share one closing tag";
    EXPECT_EQ(TagStyles(u"<a></a></a>"_s), "66666660000");
    EXPECT_EQ(TagStyles(u"<></>"_s), "66666");
    EXPECT_EQ(TagStyles(u"<a<b></b></a<b>"_s), "666660000666666")
        << "what stands in a paired tag's name is no tag";
    EXPECT_EQ(TagStyles(u"1 < 2 <a></a>"_s), "0000006666666");
}

TEST_F(Scanner, UnifiedDocument)
{
    EXPECT_EQ(Unified(u"<CsInstruments>\nout 1\n</CsInstruments>\n<CsScore>\nout ;x\n</CsScore>\n"_s),
              QByteArray(15, '6') + "02220000"_ba.first(7) + QByteArray(16, '6') + "0" + QByteArray(9, '6') +
                  "00000111" + QByteArray(10, '6') + "0");
    EXPECT_EQ(Unified(u"<CsInstruments> out </CsInstruments><CsScore> ;x\n"_s),
              QByteArray(15, '6') + "02220" + QByteArray(16, '6') + QByteArray(13, '0'))
        << "a score without its closing tag is skipped";
    EXPECT_EQ(Unified(u"out <CsInstruments> out <CsScore> out "_s), QByteArray(38, '0'));
    EXPECT_EQ(Unified(u"<CsInstruments>; </CsInstruments>\n x"_s),
              QByteArray(15, '6') + QByteArray(19, '1') + "00")
        << "a comment runs on over the closing tag";
}

TEST_F(Scanner, RangesBeyondTheTextAndOtherModes)
{
    const QString text = u"out out "_s;
    const StyleRuns both{{0, 3, StyleClass::Opcode}, {4, 3, StyleClass::Opcode}};
    EXPECT_EQ(ScanRange(text, -5, 99, ScanMode::Orchestra, opcodes).runs, both);
    EXPECT_TRUE(ScanRange(text, 8, 8, ScanMode::Orchestra, opcodes).runs.empty());
    EXPECT_TRUE(ScanRange(text, 7, 3, ScanMode::Orchestra, opcodes).runs.empty());
    EXPECT_TRUE(ScanRange(QString(), 0, 0, ScanMode::Orchestra, opcodes).runs.empty());
    EXPECT_TRUE(ScanRange(text, 0, 0, ScanMode::None, opcodes).runs.empty());
    EXPECT_TRUE(ScanRange(text, 0, 0, ScanMode(4), opcodes).runs.empty());
    EXPECT_TRUE(ScanUnified(QString(), opcodes).empty());
}

TEST_F(Scanner, NoTextMakesItSlow)
{
    constexpr qsizetype size = 400'000; // a pass that were not linear would take minutes
    const auto chain = [](QStringView piece) { return piece.toString().repeated(size / piece.size()); };
    // Names of every length that end at the same bracket, and closing tags for some of them.
    QString ladder;
    for (int length = 0; ladder.size() < size / 2; ++length)
        ladder += u"</"_s + QString(length, u'<') + u'>';
    const QStringList texts = {
        QString(size, u'<'),
        QString(size, u'<') + u"></"_s + QString(size / 2, u'<') + u'>',
        chain(u"<a"),
        chain(u"</"),
        chain(u"<a>"),
        chain(u"</a>"),
        chain(u"<a></a>"),
        chain(u"</") + u'>',
        (QString(500, u'<') + u'>').repeated(size / 1000) + ladder,
        chain(u"/*"),
        chain(u"*/"),
        chain(u"\""),
        chain(u"$"),
        chain(u"#"),
        chain(u"a;"),
        chain(u"1;"),
        QString(size, u'a'),
        QString(size, u'\0'),
    };
    for (const QString &text : texts) {
        QElapsedTimer timer;
        timer.start();
        for (int mode = 1; mode <= 3; ++mode)
            ScanRange(text, 0, 0, ScanMode(mode), opcodes);
        ScanUnified(text, opcodes);
        ScanUnified(u"<CsInstruments>"_s + text + u"</CsInstruments><CsScore>"_s + text + u"</CsScore>"_s,
                    opcodes);
        EXPECT_LT(timer.elapsed(), 20000) << "a text of " << ::testing::PrintToString(text.left(10));
    }
}

TEST_F(Scanner, ThePairingOfTagsOfManyLengthsIsThatOfThePlainLoop)
{
    QString text = QString(40, u'<') + u'>';
    for (int length : {3, 0, 17, 39, 40, 2})
        text += u"</"_s + QString(length, u'<') + u'>';
    oracle::Painting painting{QByteArray(text.size(), char(StyleClass::Text))};
    oracle::HighlightRange(text, 0, 0, 3, opcodes.OpcodeWords(), painting);
    EXPECT_EQ(TagStyles(text), Digits(painting.styles));
}

} // namespace zelvane::test
