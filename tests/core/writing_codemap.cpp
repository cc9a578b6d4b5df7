// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/codemap.h"

#include "core/oracle/blocksoracle.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomTexts = 40000;

const QStringList Pieces = {u";"_s,  u"/*"_s, u"*/"_s, u"/"_s, u"*"_s,        u"\""_s,        u"$"_s,
                            u"$a"_s, u"\n"_s, u"\n"_s, u" "_s, u"a"_s,        u"oscil"_s,     u"{{"_s,
                            u"}}"_s, u"{"_s,  u"}"_s,  u"("_s, u"#define "_s, u"#include "_s, u"\u00e9"_s};

QByteArray Painted(qsizetype length, const CodeMap &map)
{
    QByteArray parts(length, 'C');
    for (const CodeStretch &stretch : map.Stretches()) {
        for (qint32 i = stretch.start; i < stretch.end; ++i)
            parts[i] = "CLBQR"[int(stretch.part)];
    }
    return parts;
}

QByteArray PaintedByLoops(const QString &text, bool isOrchestra)
{
    QByteArray parts(text.size() + 1, 'C');
    oracle::PaintParts(text + u'\n', 0, text.size() + 1, isOrchestra, parts);
    return parts.chopped(1);
}

TEST(CodeMap, FindsWhatTheLoopsFind)
{
    RandomText texts(Pieces);
    for (int i = 0; i < RandomTexts; ++i) {
        const QString text = texts.Next();
        ASSERT_EQ(Painted(text.size(), CodeMap(text, FileKind::Orchestra)), PaintedByLoops(text, true))
            << testing::PrintToString(text);
        ASSERT_EQ(Painted(text.size(), CodeMap(text, FileKind::Score)), PaintedByLoops(text, false))
            << testing::PrintToString(text);
    }
}

TEST(CodeMap, FindsWhatTheLoopsFindInTheSectionsOfAUnifiedDocument)
{
    RandomText texts(Pieces, 12);
    for (int i = 0; i < RandomTexts; ++i) {
        const QString head = texts.Next() + u"\n<CsInstruments>"_s;
        const QString orchestra = texts.Next();
        const QString middle = u"</CsInstruments>"_s + texts.Next() + u"<CsScore>"_s;
        const QString score = texts.Next();
        const QString text = head + orchestra + middle + score + u"</CsScore>"_s + texts.Next();
        const QString ended = text + u'\n';
        QByteArray parts(ended.size(), 'C');
        oracle::PaintParts(ended, head.size(), head.size() + orchestra.size(), true, parts);
        qsizetype scoreStart = head.size() + orchestra.size() + middle.size();
        const qsizetype scoreEnd = scoreStart + score.size();
        // A comment that runs on into the score hides what it covers.
        while (scoreStart < text.size() && parts[scoreStart] != 'C')
            ++scoreStart;
        if (scoreStart < scoreEnd)
            oracle::PaintParts(ended, scoreStart, scoreEnd, false, parts);
        ASSERT_EQ(Painted(text.size(), CodeMap(text, FileKind::Unified)), parts.chopped(1))
            << testing::PrintToString(text);
    }
}

TEST(CodeMap, StretchesRiseAndAnswerForTheirPlaces)
{
    RandomText texts(Pieces);
    for (int i = 0; i < 2000; ++i) {
        const QString text = texts.Next();
        const CodeMap map(text, FileKind::Orchestra);
        const QByteArray parts = Painted(text.size(), map);
        qint32 before = 0;
        for (const CodeStretch &stretch : map.Stretches()) {
            ASSERT_GE(stretch.start, before);
            ASSERT_GT(stretch.end, stretch.start);
            before = stretch.end;
        }
        ASSERT_LE(before, text.size());
        const qsizetype from = texts.Number(0, int(text.size()));
        const qsizetype to = texts.Number(int(from), int(text.size()));
        QByteArray walked(text.size(), '?');
        map.ForEach(
            from, to,
            [&](qsizetype start, qsizetype end) {
                for (qsizetype at = start; at < end; ++at)
                    walked[at] = 'C';
            },
            [&](const CodeStretch &stretch) { EXPECT_GE(stretch.start, from); });
        for (qsizetype at = 0; at < text.size(); ++at) {
            ASSERT_EQ("CLBQR"[int(map.At(at))], parts[at]);
            ASSERT_EQ(walked[at] == 'C', at >= from && at < to && parts[at] == 'C');
        }
    }
}

TEST(CodeMap, SeesStringsAndCommentsThatTouchWords)
{
    const QString text = u"prints(\"a ; b\")\nkx=1;c\n"_s;
    EXPECT_EQ(Painted(text.size(), CodeMap(text, FileKind::Orchestra)), "CCCCCCCQQQQQQQCCCCCCLLL");
}

TEST(CodeMap, AnyOtherDocumentIsAllCode)
{
    EXPECT_TRUE(CodeMap(u"; a \"b\"\n", FileKind::Other).Stretches().empty());
    EXPECT_TRUE(CodeMap(u"", FileKind::Orchestra).Stretches().empty());
    EXPECT_TRUE(CodeMap(u"", FileKind::Unified).Stretches().empty());
}

} // namespace

} // namespace zelvane::test
