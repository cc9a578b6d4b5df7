// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/longlines.h"

#include "support/testcontext.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QStringList>
#include <random>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

TEST(LongLines, TheLongestLineIsFound)
{
    EXPECT_EQ(LongestLine(u""), 0);
    EXPECT_EQ(LongestLine(u"\n\n"), 0);
    EXPECT_EQ(LongestLine(u"abc"), 3);
    EXPECT_EQ(LongestLine(u"ab\r\nabcd\rabc\n"), 4);
    std::mt19937 random(1);
    for (int round = 0; round < 1000; ++round) {
        QString text;
        for (int i = int(random() % 40); i > 0; --i)
            text += u"ab\n\r"[random() % 4];
        qsizetype longest = 0;
        for (const QString &line : QString(text).replace(u'\r', u'\n').split(u'\n'))
            longest = std::max(longest, line.size());
        EXPECT_EQ(LongestLine(text), longest);
    }
}

TEST(LongLines, AnUnwieldyLineIsFoundWhereverItStands)
{
    test::TestContext context;
    const QByteArray line(8'000'001, 'a');
    for (const int before : {0, 65'536, 3'999'999, 6'000'000}) {
        const QByteArray first = QByteArray(before, '\n');
        const QString name = context.WriteFile(u"x"_s, first + line + "\nb");
        EXPECT_EQ(UnwieldyLineOf(name), line.size()) << before;
        EXPECT_EQ(UnwieldyLineOf(context.WriteFile(u"x"_s, first + line.chopped(1) + "\nb")), 0) << before;
    }
    // In UTF-16 the bytes of line ends are parts of letters too.
    const QByteArray line16 = QByteArray("\x0A\x0D").repeated(8'000'001);
    EXPECT_EQ(UnwieldyLineOf(context.WriteFile(u"x"_s, "\xFF\xFE" + line16)), 8'000'001);
    EXPECT_EQ(UnwieldyLineOf(context.WriteFile(u"x"_s, "\xFE\xFF" + line16)), 8'000'001);
    EXPECT_EQ(UnwieldyLineOf(context.WriteFile(u"x"_s, QByteArray("a line\n").repeated(2'000'000))), 0);
    EXPECT_EQ(UnwieldyLineOf(context.folder.filePath(u"not there"_s)), 0);
    EXPECT_EQ(UnwieldyLineOf(context.folder.path()), 0);
}

} // namespace
