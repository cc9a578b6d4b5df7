// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/charblocks.h"
#include "language/scanner.h"
#include "oracle/scanoracle.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomTexts = 40000;

const QString Words = u"oscil out a ab abc instr define zz zz\n"_s;

/// Texts of the pieces that matter to the scanners, so that tokens meet, nest and break off.
class RandomText
{
public:
    explicit RandomText(unsigned seed, const QStringList &pieces) : m_random(seed), m_pieces(pieces) {}

    QString Next()
    {
        QString text;
        for (int count = Below(5) == 0 ? Below(60) : Below(14); count > 0; --count)
            text += m_pieces[Below(int(m_pieces.size()))];
        // Now and then far into the text, so that tokens cross the scanner's blocks.
        if (Below(8) == 0)
            text.prepend(QString(50 + Below(20), u' '));
        return text;
    }
    int Below(int bound) { return std::uniform_int_distribution(0, bound - 1)(m_random); }

private:
    std::mt19937 m_random;
    QStringList m_pieces;
};

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
        RandomText random(seed, pieces);
        int failures = 0, coloured = 0;
        for (int i = 0; i < RandomTexts; ++i) {
            const QString text = random.Next();
            const auto length = int(text.size());
            qsizetype start = 0, end = 0;
            if (random.Below(2) == 0) {
                start = random.Below(length + 1);
                end = start + random.Below(length - int(start) + 1);
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
    RandomText random(4, UnifiedPieces);
    int both = 0;
    for (int i = 0; i < RandomTexts; ++i) {
        const QString text = random.Next();
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

} // namespace zelvane::test
