// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/longlinestyles.h"

#include "support/randomtext.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

/// The steps of a text whose first one has the bit: their characters, with "|" between them.
QString StepsOf(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    QByteArray styles(utf8.size(), char(3));
    StepAlternation(0).Apply(utf8, styles.data());
    QByteArray marked;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        EXPECT_EQ(ClassOf(styles[i]), 3);
        if (i == 0)
            EXPECT_TRUE(styles[0] & StepBit);
        else if ((styles[i] & StepBit) != (styles[i - 1] & StepBit))
            marked += '|';
        marked += utf8[i];
    }
    return QString::fromUtf8(marked);
}

TEST(LongLineStyles, TwoCharactersAreAStep)
{
    EXPECT_EQ(StepsOf({}), u""_s);
    EXPECT_EQ(StepsOf(u"a"_s), u"a"_s);
    EXPECT_EQ(StepsOf(u"abcde"_s), u"ab|cd|e"_s);
    EXPECT_EQ(StepsOf(u"äбγ字x"_s), u"äб|γ字|x"_s);
}

TEST(LongLineStyles, WhatChangesItsLooksStaysWithWhatItFollows)
{
    EXPECT_EQ(StepsOf(u"سلام ab"_s), u"سلام| a|b"_s);
    EXPECT_EQ(StepsOf(u"ae\u0301\u0300xy"_s), u"ae\u0301\u0300|xy"_s);
    EXPECT_EQ(StepsOf(u"ab\u200Dcd"_s), u"ab\u200D|cd"_s);
    EXPECT_EQ(StepsOf(u"ab😀cd"_s), u"ab😀|cd"_s);
}

TEST(LongLineStyles, AStepDiffersFromTheStyleBefore)
{
    for (const char before : {char(0), StepBit}) {
        QByteArray styles("\1\2\3");
        StepAlternation(before).Apply("abc", styles.data());
        EXPECT_NE(styles[0] & StepBit, before & StepBit);
        EXPECT_EQ(styles[1] & StepBit, styles[0] & StepBit);
        EXPECT_NE(styles[2] & StepBit, styles[0] & StepBit);
    }
}

TEST(LongLineStyles, PiecesGiveWhatTheWholeGivesAndOldTurnsDoNotCount)
{
    test::RandomText texts({u"a"_s, u" "_s, u"é"_s, u"e\u0301"_s, u"ن"_s, u"字"_s, u"😀"_s, u"9"_s}, 40);
    for (int i = 0; i < 3000; ++i) {
        const QString text = texts.Next();
        const QByteArray utf8 = text.toUtf8();
        QByteArray whole(utf8.size(), char(5));
        StepAlternation(0).Apply(utf8, whole.data());

        QByteArray pieces(utf8.size(), char(5 | (i % 2 ? StepBit : 0)));
        StepAlternation alternation(0);
        qsizetype done = 0;
        while (done < utf8.size()) {
            qsizetype end = done + texts.Number(1, 9);
            while (end < utf8.size() && (uchar(utf8[end]) & 0xC0) == 0x80)
                ++end;
            end = std::min(end, utf8.size());
            alternation.Apply(QByteArrayView(utf8).sliced(done, end - done), pieces.data() + done);
            done = end;
        }
        ASSERT_EQ(pieces, whole) << text.toStdString();
    }
}

} // namespace
} // namespace zelvane
