// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/brackets.h"

#include "core/oracle/blocksoracle.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomTexts = 40000;

/// The text with a caret, shown as "|", and the brackets that are marked there, each between "<" and ">".
QString Marked(QString text, FileKind kind = FileKind::Orchestra)
{
    const qsizetype caret = text.indexOf(u'|');
    text.remove(caret, 1);
    const auto found = BracketAt(FindBrackets(text, CodeMap(text, kind), kind), caret);
    if (!found)
        return {};
    const auto part = [&](const TextSpan &span) { return text.sliced(span.start, span.Length()); };
    return QString::number(found->here.start) + u' ' + part(found->here) +
           (found->partner ? u' ' + QString::number(found->partner->start) + u' ' + part(*found->partner)
                           : u" alone"_s);
}

TEST(Brackets, AreThoseOfTheLoop)
{
    RandomText texts({u"("_s, u")"_s, u"["_s, u"]"_s, u"{"_s, u"}"_s, u"{{"_s, u"}}"_s, u"\""_s, u";"_s,
                      u"\n"_s, u"/*"_s, u"*/"_s, u"a"_s});
    for (int i = 0; i < RandomTexts; ++i) {
        const QString text = texts.Next();
        for (const bool isOrchestra : {true, false}) {
            const FileKind kind = isOrchestra ? FileKind::Orchestra : FileKind::Score;
            QByteArray parts(text.size() + 1, 'C');
            oracle::PaintParts(text + u'\n', 0, text.size() + 1, isOrchestra, parts);
            const CodeMap map(text, kind);
            QList<qsizetype> found(text.size(), -2);
            const std::vector<Bracket> brackets = FindBrackets(text, map, kind);
            qint32 before = 0;
            for (const Bracket &bracket : brackets) {
                ASSERT_GE(bracket.start, before) << testing::PrintToString(text);
                before = bracket.End();
                if (map.At(bracket.start) == CodePart::Code)
                    found[bracket.start] =
                        bracket.partner < 0 ? -1 : brackets[std::size_t(bracket.partner)].start;
            }
            ASSERT_EQ(found, oracle::Partners(text, parts, isOrchestra)) << testing::PrintToString(text);
        }
    }
}

TEST(Brackets, TheOneBeforeTheCaretIsBetter)
{
    EXPECT_EQ(Marked(u"a(b)|(c)"_s), u"3 ) 1 ("_s);
    EXPECT_EQ(Marked(u"a|(b)"_s), u"1 ( 3 )"_s);
    EXPECT_EQ(Marked(u"a(|)"_s), u"1 ( 2 )"_s);
    EXPECT_EQ(Marked(u"a(b|)"_s), u"3 ) 1 ("_s);
    EXPECT_EQ(Marked(u"|a(b)"_s), QString());
    EXPECT_EQ(Marked(u"a(b) |c"_s), QString());
}

TEST(Brackets, OneWithoutAPartnerIsAlone)
{
    EXPECT_EQ(Marked(u"a = (b * [|c)"_s), u"9 [ alone"_s);
    EXPECT_EQ(Marked(u"a = b)|"_s), u"5 ) alone"_s);
    EXPECT_EQ(Marked(u"a = (|b\n"_s), u"4 ( alone"_s);
    EXPECT_EQ(Marked(u"prints \"|a\n"_s), u"7 \" alone"_s);
}

TEST(Brackets, ThoseInStringsAndCommentsAreNone)
{
    EXPECT_EQ(Marked(u"prints(\"a :)\", 1)|"_s), u"16 ) 6 ("_s);
    EXPECT_EQ(Marked(u"prints(\"a :)|\", 1)"_s), u"12 \" 7 \""_s);
    EXPECT_EQ(Marked(u"a = (b ; :)\n)|"_s), u"12 ) 4 ("_s);
    EXPECT_EQ(Marked(u"a = ( /* ) */ b)|"_s), u"15 ) 4 ("_s);
}

TEST(Brackets, StringsHaveTheirMarks)
{
    EXPECT_EQ(Marked(u"prints \"a\"|"_s), u"9 \" 7 \""_s);
    EXPECT_EQ(Marked(u"prints |\"a\""_s), u"7 \" 9 \""_s);
    EXPECT_EQ(Marked(u"a scoreline_i {{|\ni 1 0 (1\n}}"_s), u"14 {{ 26 }}"_s);
    EXPECT_EQ(Marked(u"{{ a }}|"_s), u"5 }} 0 {{"_s);
}

TEST(Brackets, ScoresHaveSingleBraces)
{
    EXPECT_EQ(Marked(u"{ 2 A\n{ 3 B\n}}|\n"_s, FileKind::Score), u"13 } 0 {"_s);
}

TEST(Brackets, TagsOfAUnifiedDocumentAreBrackets)
{
    const QString text =
        u"<CsoundSynthesizer>\n<CsOptions>(\n</CsOptions>\n<CsInstruments>\n"
        "a = (b<c) > d)\n</CsInstruments>\n<CsScore>\n)\n</CsScore>\n</CsoundSynthesizer>\n"_s;
    const auto at = [&](QStringView mark, qsizetype further = 0) {
        QString with = text;
        return Marked(with.insert(with.indexOf(mark) + further, u'|'), FileKind::Unified);
    };
    EXPECT_EQ(at(u"<CsoundS"), u"0 <CsoundSynthesizer> 117 </CsoundSynthesizer>"_s);
    EXPECT_EQ(at(u"</CsOptions>", 5), u"33 </CsOptions> 20 <CsOptions>"_s);
    EXPECT_EQ(at(u"<CsScore>", 9), u"94 <CsScore> 106 </CsScore>"_s);
    EXPECT_EQ(at(u"</CsInstr", 3), u"77 </CsInstruments> 46 <CsInstruments>"_s);
    EXPECT_EQ(at(u"(\n</CsOpt", 1), u"31 ( alone"_s);
    EXPECT_EQ(at(u"(b<"), u"66 ( 70 )"_s);
    EXPECT_EQ(at(u"\n</CsInstr"), u"75 ) alone"_s);
    EXPECT_EQ(at(u")\n</CsScore"), u"104 ) alone"_s);
}

TEST(Brackets, ManyOpenOnesTakeNoLonger)
{
    QString text;
    for (int i = 0; i < 400000; ++i)
        text += u"([}{{"_s;
    QElapsedTimer timer;
    timer.start();
    const CodeMap map(text, FileKind::Orchestra);
    EXPECT_EQ(FindBrackets(text, map, FileKind::Orchestra).size(), 400000u * 4);
    EXPECT_LT(timer.elapsed(), 20000);
}

} // namespace

} // namespace zelvane::test
