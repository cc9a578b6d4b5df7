// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/flagtable.h"

#include "oracle/flagtable.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QFile>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
void PrintTo(const FlagRow &row, std::ostream *out)
{
    *out << '[' << row.flag.toStdString() << '|' << row.type.toStdString() << '|'
         << row.description.toStdString() << ']';
}
} // namespace zelvane

namespace zelvane::test
{

namespace
{

QByteArray ShippedBytes()
{
    QFile file(QStringLiteral(ZELVANE_SOURCE_DIR) + u"/data/flags.txt"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

QString Word(std::mt19937 &random, const QString &letters, int least, int most)
{
    QString word;
    for (int left = std::uniform_int_distribution(least, most)(random); left > 0; --left)
        word += letters[std::uniform_int_distribution<qsizetype>(0, letters.size() - 1)(random)];
    return word;
}

} // namespace

TEST(FlagTable, ShippedFileHasItsForm)
{
    const QByteArray bytes = ShippedBytes();
    ASSERT_FALSE(bytes.isEmpty());
    EXPECT_EQ(bytes[0], ' ');
    EXPECT_EQ(bytes.count('\n'), 56);
    EXPECT_EQ(bytes.count("\r\n"), 56);
    EXPECT_EQ(bytes.count('\t'), 56);
    EXPECT_TRUE(bytes.endsWith("\r\n"));
}

TEST(FlagTable, ShippedTable)
{
    const std::vector<FlagRow> &rows = ShippedFlagTable();
    ASSERT_EQ(rows.size(), 56u);
    EXPECT_EQ(rows[0], (FlagRow{u"-U"_s, u"unam"_s, u"run utility program unam"_s}));
    EXPECT_EQ(rows[1], (FlagRow{u"-C"_s, {}, u"use Cscore processing of scorefile"_s}));
    EXPECT_EQ(rows[5], (FlagRow{u"-o"_s, u"fnam"_s, u"sound output filename"_s}));
    EXPECT_EQ(rows[28],
              (FlagRow{u"-t"_s, u"N"_s, u"use uninterpreted beats of the score, initially at tempo N"_s}));
    EXPECT_EQ(rows[29],
              (FlagRow{u"-t"_s, u"0"_s, u"use score,srt for sorted score rather than a temporary"_s}));
    EXPECT_EQ(rows[34],
              (FlagRow{u"-H#"_s, {}, u"print a heartbeat style 1, 2 or 3 at each soundfile write"_s}));
    EXPECT_EQ(rows[40], (FlagRow{u"--"_s, u"fnam"_s, u"log output to file"_s}));
    EXPECT_EQ(rows[46],
              (FlagRow{u"-+O"_s, {}, u"suppress all console text output for better realtime performance"_s}));
    EXPECT_EQ(rows[55], (FlagRow{u"-+S"_s, u"num"_s,
                                 u"enable DirectSound secondary buffer audio out (num is optional)"_s}));
    // All flags and the types of their values, in the order of the list.
    const QString expected = u"-U unam|-C|-I|-n|-i fnam|-o fnam|-b N|-B N|-A|-W|-J|-h|-c|-a|-8|-u|-s|-l|-f|"
                             "-r N|-k N|-K|-v|-m N|-d|-g|-G|-x fnam|-t N|-t 0|-L dnam|-M dnam|-F fnam|-R|"
                             "-H#|-N|-T|-D|-z|-Z|-- fnam|-+j num|-+J num|-+K num|-+q num|-+p num|-+O|-+e|"
                             "-+y|-+Q num|-+Y|-+*|-+/ fnam|-+X num|-+C num|-+S num"_s;
    QStringList flags;
    for (const FlagRow &row : rows)
        flags.append(row.type.isEmpty() ? row.flag : row.flag + u' ' + row.type);
    EXPECT_EQ(flags.join(u'|'), expected);
    for (const FlagRow &row : rows)
        EXPECT_FALSE(row.description.isEmpty());
}

TEST(FlagTable, ShippedTableIsTheFile)
{
    const QString text = QString::fromLatin1(ShippedBytes());
    EXPECT_EQ(ShippedFlagTable(), LoadFlagTable(text));
    EXPECT_EQ(ShippedFlagTable(), oracle::LoadFlagTable(text));
}

TEST(FlagTable, FirstCharacterIsSkipped)
{
    EXPECT_EQ(LoadFlagTable(u"-a\tfirst\r\n-b\tsecond\r\n"_s),
              (std::vector<FlagRow>{{u"a"_s, {}, u"first"_s}, {u"-b"_s, {}, u"second"_s}}));
}

TEST(FlagTable, PaddingBeforeTheTabIsNoType)
{
    EXPECT_EQ(LoadFlagTable(u" -x   \ttext\r\n-y   N\tmore\r\n"_s),
              (std::vector<FlagRow>{{u"-x"_s, {}, u"text"_s}, {u"-y"_s, u"N"_s, u"more"_s}}));
}

TEST(FlagTable, TextBehindTheTabIsKeptWhole)
{
    EXPECT_EQ(LoadFlagTable(u" -x\ta\tb  c \r\n"_s), (std::vector<FlagRow>{{u"-x"_s, {}, u"a\tb  c "_s}}));
}

TEST(FlagTable, DamagedTablesEnd)
{
    EXPECT_TRUE(LoadFlagTable({}).empty());
    EXPECT_TRUE(LoadFlagTable(u" "_s).empty());
    EXPECT_TRUE(LoadFlagTable(u" \r\n\r\n"_s).empty());
    EXPECT_EQ(LoadFlagTable(u" -x"_s), (std::vector<FlagRow>{{u"-x"_s, {}, {}}}));
    EXPECT_EQ(LoadFlagTable(u" -x N\n-y\td"_s),
              (std::vector<FlagRow>{{u"-x"_s, u"N"_s, {}}, {u"-y"_s, {}, u"d"_s}}));
}

TEST(FlagTable, EqualsThePlainReaderOnRandomTables)
{
    std::mt19937 random(20011);
    for (int round = 0; round < 20000; ++round) {
        QString text = u" "_s;
        for (int line = std::uniform_int_distribution(0, 5)(random); line > 0; --line) {
            text += Word(random, u"-+#*ab0"_s, 1, 4) + Word(random, u" "_s, 0, 3);
            if (text.endsWith(u' '))
                text += Word(random, u"Nfnu m"_s, 0, 3);
            text += u'\t' + Word(random, u"ab \t-'"_s, 0, 6) + u"\r\n"_s;
        }
        ASSERT_EQ(LoadFlagTable(text), oracle::LoadFlagTable(text)) << text.toStdString();
    }
}

} // namespace zelvane::test
