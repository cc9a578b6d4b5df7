// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/statement.h"

#include "core/oracle/statementoracle.h"
#include "platform/runtimeerror.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

/// What stands in a text's statement; the caret is where the text holds a bar.
struct Read {
    QString text;
    std::optional<Statement> statement;
    int instrument = 0;

    explicit Read(QString marked)
    {
        const qsizetype caret = marked.indexOf(u'|');
        text = marked.remove(u'|');
        statement = ParseStatement(text, caret);
        instrument = StatementInstrument(text, caret);
    }
    QStringList Values() const { return statement ? statement->values : QStringList{u"nothing"_s}; }
    QString Saved() const
    {
        return statement ? text.mid(statement->range.start, statement->range.Length()) : u"nothing"_s;
    }
    /// The whole text with other values in the statement.
    QString With(const QStringList &values) const
    {
        QString written = text;
        written.replace(statement->range.start, statement->range.Length(), WriteStatement(Saved(), values));
        return written;
    }
};

test::RandomText Texts()
{
    return test::RandomText({u" i"_s, u"\ni"_s, u"i"_s,  u" "_s,  u" "_s, u" "_s, u"\n"_s, u"\t"_s, u"\r"_s,
                             u"1"_s,  u"2"_s,   u"90"_s, u".5"_s, u"a"_s, u"f"_s, u"e"_s,  u"w"_s,  u"x"_s,
                             u"["_s,  u"]"_s,   u"\""_s, u";"_s,  u"/"_s, u"*"_s, u"/*"_s, u"<"_s,  u"+"_s},
                            24, 1313);
}

/// What most texts begin with, so that many hold a statement.
QString Beginning(test::RandomText &random)
{
    const QStringList beginnings{u""_s, u"i"_s, u"i1 "_s, u"f1\ni2 0\t"_s};
    return beginnings[random.Number(0, 3)];
}

TEST(Statement, ReadsWhatTheLoopReads)
{
    test::RandomText texts = Texts();
    int found = 0;
    for (int i = 0; i < 40000; ++i) {
        const QString text = Beginning(texts) + texts.Next();
        const qsizetype caret = texts.Number(0, int(text.size()));
        oracle::ScoreStatement loop{.s = text, .caret = caret};
        const auto where = [&] {
            return "at " + std::to_string(caret) + " of " + testing::PrintToString(text);
        };
        const std::optional<int> number = loop.Number();
        if (number)
            ASSERT_EQ(StatementInstrument(text, caret), *number) << where();
        else
            ASSERT_THROW(StatementInstrument(text, caret), RunTimeError) << where();
        const std::optional<Statement> statement = ParseStatement(text, caret);
        ASSERT_EQ(statement.has_value(), loop.Parse()) << where();
        if (!statement)
            continue;
        ++found;
        ASSERT_EQ(statement->values, loop.values) << where();
        ASSERT_EQ(statement->range.start, loop.rangeStart) << where();
        ASSERT_EQ(statement->range.end, loop.rangeEnd) << where();
    }
    EXPECT_GT(found, 10000);
}

TEST(Statement, WritesWhatTheLoopWrites)
{
    test::RandomText texts = Texts();
    test::RandomText words({u"7"_s, u" "_s, u"a"_s, u";"_s, u"/*"_s, u"[1 +"_s}, 3, 5);
    for (int i = 0; i < 40000; ++i) {
        const QString text = texts.Next();
        QStringList values;
        for (int n = texts.Number(0, 6); n > 0; --n)
            values.append(words.Next());
        ASSERT_EQ(WriteStatement(text, values), oracle::ScoreStatement::Write(text, values))
            << testing::PrintToString(text) << " with " << testing::PrintToString(values);
    }
}

TEST(Statement, ItsOwnValuesChangeNothing)
{
    test::RandomText texts = Texts();
    for (int i = 0; i < 40000; ++i) {
        const QString text = Beginning(texts) + texts.Next();
        const std::optional<Statement> statement = ParseStatement(text, texts.Number(0, int(text.size())));
        if (!statement)
            continue;
        const QString saved = text.mid(statement->range.start, statement->range.Length());
        ASSERT_EQ(WriteStatement(saved, statement->values), saved) << testing::PrintToString(text);
    }
}

TEST(Statement, IsFoundFromWhereTheCaretIs)
{
    for (const QString &text :
         {u"|i1 0 2 440\n"_s, u"i|1 0 2 440\n"_s, u"i1 0 2 4|40\n"_s, u"i1 0 2 440|\n"_s,
          u"f1 0 8\n|i1 0 2 440\n"_s, u"\ti1 0 2 4|40\n"_s, u"f1\ri1 0 2 4|40\n"_s})
        EXPECT_EQ(Read(text).Values(), (QStringList{u"1"_s, u"0"_s, u"2"_s, u"440"_s}))
            << testing::PrintToString(text);
    EXPECT_EQ(Read(u"i1 0 2\ni7 |1 2\n"_s).instrument, 7);
    EXPECT_EQ(Read(u"i1 0 2|\ni7 1 2\n"_s).instrument, 1);
    // Not on the lines behind the first one, and not in front of the letter.
    EXPECT_EQ(Read(u"i1 0 2\n 3 |4\n"_s).instrument, -1);
    EXPECT_EQ(Read(u"f1 |0 2 i1 0 1\n"_s).instrument, -1);
    EXPECT_EQ(Read(u"xi1 0 |2\n"_s).instrument, -1);
    EXPECT_EQ(Read(u"|"_s).instrument, -1);
    EXPECT_EQ(Read(u"|I1 0 2\n"_s).instrument, -1);
    EXPECT_EQ(Read(u"xi1 0 |2\n"_s).Values(), QStringList{u"nothing"_s});
    // The nearest one.
    EXPECT_EQ(Read(u"i1 0 i2 |0\n"_s).instrument, 2);
    EXPECT_EQ(FindStatement(u"i1 0", 99), 0);
}

TEST(Statement, NumberOfTheInstrument)
{
    EXPECT_EQ(Read(u"|i12 0 1\n"_s).instrument, 12);
    EXPECT_EQ(Read(u"|i12.5 0 1\n"_s).instrument, 12);
    EXPECT_EQ(Read(u"|i 1 0 2\n"_s).instrument, 0);
    EXPECT_EQ(Read(u"|i-1 0 2\n"_s).instrument, 0);
    EXPECT_EQ(Read(u"|i\"name\" 0 2\n"_s).instrument, 0);
    EXPECT_EQ(Read(u"|instr 1\n"_s).instrument, 0);
    EXPECT_EQ(Read(u"|i32767 0 1\n"_s).instrument, 32767);
    EXPECT_THROW(StatementInstrument(u"i32768 0 1\n", 0), RunTimeError);
    // The text's last character is not looked at.
    EXPECT_EQ(Read(u"|i12"_s).instrument, 1);
    EXPECT_EQ(Read(u"|i1"_s).instrument, 0);
    EXPECT_EQ(Read(u"|i"_s).instrument, 0);
}

TEST(Statement, TokensHoldBlanksInBracketsAndQuotes)
{
    const Read read(u"|i1 0 2 [1 + 2] \"a b\" 3 . +\n"_s);
    EXPECT_EQ(read.Values(),
              (QStringList{u"1"_s, u"0"_s, u"2"_s, u"[1 + 2]"_s, u"\"a b\""_s, u"3"_s, u"."_s, u"+"_s}));
    EXPECT_EQ(read.Saved(), u"1 0 2 [1 + 2] \"a b\" 3 . +"_s);
}

TEST(Statement, GoesOnOverLines)
{
    const Read read(u"|i1 0 2\n\t440 .5\n\n 7\ni2 0 1\n"_s);
    EXPECT_EQ(read.Values(), (QStringList{u"1"_s, u"0"_s, u"2"_s, u"440"_s, u".5"_s, u"7"_s}));
    EXPECT_EQ(read.Saved(), u"1 0 2\n\t440 .5\n\n 7"_s);
}

TEST(Statement, EndsWhereAnotherBegins)
{
    for (const QChar letter : u"fiatsbmnrvew"_s)
        EXPECT_EQ(Read(u"|i1 0 2\n"_s + letter + u"9 8 7\n"_s).Saved(), u"1 0 2"_s) << int(letter.unicode());
    EXPECT_EQ(Read(u"|i1 0 2 < 3\n"_s).Saved(), u"1 0 2"_s);
    EXPECT_EQ(Read(u"|i1 0 2\n</CsScore>\n"_s).Saved(), u"1 0 2"_s);
    EXPECT_EQ(Read(u"|i1 0 2 /* 3 */ 4\n"_s).Saved(), u"1 0 2"_s);
    EXPECT_EQ(Read(u"|i1 0 2/* 3 */\n"_s).Saved(), u"1 0"_s);
    EXPECT_EQ(Read(u"|i1 0 \"/*\" 4\n"_s).Saved(), u"1 0"_s);
    // Inside a token they are characters like others.
    EXPECT_EQ(Read(u"|i1 0 1e3 x<y 2/3 5\n"_s).Saved(), u"1 0 1e3 x<y 2/3 5"_s);
}

TEST(Statement, ASemicolonTakesOneCharacterOff)
{
    EXPECT_EQ(Read(u"|i1 0 2 440;c\n"_s).Values(), (QStringList{u"1"_s, u"0"_s, u"2"_s, u"440"_s}));
    EXPECT_EQ(Read(u"|i1 0 2 440;c\n"_s).Saved(), u"1 0 2 44"_s);
    EXPECT_EQ(Read(u"|i1 0 2 440  ; c\n"_s).Saved(), u"1 0 2 44"_s);
    EXPECT_EQ(Read(u"|i1 0 2\n;c\n"_s).Saved(), u"1 0 "_s);
    EXPECT_EQ(Read(u"|i1;\n"_s).Saved(), QString());
    // Also one in a string, which the statement does not survive.
    EXPECT_EQ(Read(u"|i1 0 \"a;b\" 3\n"_s).Values(), (QStringList{u"1"_s, u"0"_s}));
    EXPECT_EQ(Read(u"|i1 0 \"a;b\" 3\n"_s).Saved(), u"1 "_s);
}

TEST(Statement, NeedsATokenWithSomethingBehind)
{
    EXPECT_EQ(Read(u"|i1"_s).Values(), QStringList{u"nothing"_s});
    EXPECT_EQ(Read(u"|i"_s).Values(), QStringList{u"nothing"_s});
    EXPECT_EQ(Read(u"|i;1 2\n"_s).Values(), QStringList{u"nothing"_s});
    EXPECT_EQ(Read(u"|i[1 2\n"_s).Values(), QStringList{u"nothing"_s});
    // The text's last token is not one of the statement.
    EXPECT_EQ(Read(u"|i1 0 2"_s).Values(), (QStringList{u"1"_s, u"0"_s}));
    EXPECT_EQ(Read(u"|i1 0 2"_s).Saved(), u"1 0"_s);
}

TEST(Statement, TakesNewValuesAllButTheLast)
{
    const QStringList values{u"9"_s, u"8"_s, u"7.25"_s, u"6"_s};
    EXPECT_EQ(Read(u"|i1 0 2 440\ni2 0 1\n"_s).With(values), u"i9 8 7.25 440\ni2 0 1\n"_s);
    EXPECT_EQ(Read(u"|i1  0\t2 ; c\n"_s).With(values), u"i9  8\t2 ; c\n"_s);
    EXPECT_EQ(Read(u"|i1 0 440; c\n"_s).With(values), u"i9 8 440; c\n"_s);
    EXPECT_EQ(Read(u"|i1 0 2 440 5 6\n"_s).With(values), u"i9 8 7.25 6 5 6\n"_s);
    EXPECT_EQ(Read(u"|i1 0 [1 + 2] \"a b\" 3\n"_s).With({u"1"_s, u"0"_s, u"\"x y\""_s, u"[z]"_s}),
              u"i1 0 \"x y\" [z] 3\n"_s);
    EXPECT_EQ(Read(u"|i1 0 2\n"_s).With({}), u"i1 0 2\n"_s);
}

TEST(Statement, AWrittenTextIsNotStoppedByATag)
{
    EXPECT_EQ(WriteStatement(u"1 < 2 3", {u"a"_s, u"b"_s, u"c"_s}), u"a b c 3"_s);
    EXPECT_EQ(WriteStatement(u"1 f 2 3", {u"a"_s, u"b"_s, u"c"_s}), u"a f 2 3"_s);
}

TEST(Statement, LongOnesAreReadInOnePass)
{
    // A loop that rebuilt the text would take minutes.
    const QString text = u"i1 0 "_s + u"12.5 "_s.repeated(100000) + u"e\n"_s;
    const std::optional<Statement> statement = ParseStatement(text, text.size() / 2);
    ASSERT_TRUE(statement);
    EXPECT_EQ(statement->values.size(), 100002);
    const QString saved = text.mid(statement->range.start, statement->range.Length());
    EXPECT_EQ(WriteStatement(saved, statement->values), saved);
}

} // namespace
} // namespace zelvane
