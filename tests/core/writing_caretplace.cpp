// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/caretplace.h"

#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

bool IsOpcode(QStringView name)
{
    return name == u"oscil" || name == u"linen" || name == u"abs" || name == u"outs" || name == u"print";
}

/// The call at the "|" of a statement as text: opcode, argument, rate.
QString CallAt(QString statement)
{
    const qsizetype place = statement.indexOf(u'|');
    statement.remove(place, 1);
    const auto call = FindCall(statement, place, IsOpcode);
    if (!call)
        return u"none"_s;
    const QString rate = call->rate.isNull() ? QString() : u' ' + QString(call->rate);
    return u"%1 %2%3"_s.arg(call->opcode).arg(call->argument).arg(rate);
}

TextPart PartAtBar(QString line, bool inComment = false)
{
    return PartAtEnd(line.first(line.indexOf(u'|')), inComment);
}

/// Writes a random statement together with the call that each of its places is in. Blanks stand where the
/// next character decides, so that each place has one answer.
class StatementWriter
{
public:
    explicit StatementWriter(RandomText &random) : m_random(random) {}

    void Write()
    {
        Put(u"kres "_s, u"none"_s);
        Call(u"oscil"_s, u" k"_s, u" "_s, QString(), 0);
    }

    QString text;
    QStringList calls; ///< for each place before a character

private:
    void Put(const QString &piece, const QString &call)
    {
        text += piece;
        for (qsizetype i = 0; i < piece.size(); ++i)
            calls.append(call);
    }

    void Call(const QString &name, const QString &rate, const QString &open, const QString &close, int depth)
    {
        Put(name + open, name + u" -1"_s + rate);
        // The place behind the bracket or blank is in the first argument: it is that of what comes next.
        const int count = m_random.Number(1, 4);
        for (int i = 0; i < count; ++i) {
            const QString here = u"%1 %2%3"_s.arg(name).arg(i).arg(rate);
            Put(u" "_s, here);
            switch (m_random.Number(0, depth > 3 ? 3 : 5)) {
            case 0:
                Put(u"1 "_s, here);
                break;
            case 1:
                Put(u"\"a, (b\" "_s, here);
                break;
            case 2:
                Put(u"kArr[3] "_s, here);
                break;
            case 3:
                Put(u"(2 + 1) "_s, here);
                break;
            case 4:
                Call(u"abs"_s, {}, u"("_s, u")"_s, depth + 1);
                Put(u" "_s, here);
                break;
            default:
                Call(u"linen"_s, u" a"_s, u":a("_s, u")"_s, depth + 1);
                Put(u" "_s, here);
                break;
            }
            if (i + 1 < count)
                Put(u","_s, here);
        }
        Put(close, u"%1 %2%3"_s.arg(name).arg(count - 1).arg(rate));
    }

    RandomText &m_random;
};

} // namespace

TEST(CaretPlace, FindsTheArgumentOfAStatement)
{
    EXPECT_EQ(CallAt(u"a1 osc|il 1, 2"_s), u"oscil -1 a");
    EXPECT_EQ(CallAt(u"a1 oscil| 1, 2"_s), u"oscil -1 a");
    EXPECT_EQ(CallAt(u"a1 oscil |1, 2"_s), u"oscil 0 a");
    EXPECT_EQ(CallAt(u"a1 oscil 1,| 2"_s), u"oscil 1 a");
    EXPECT_EQ(CallAt(u"gkx, ky oscil 1, 2,|"_s), u"oscil 2 k");
    EXPECT_EQ(CallAt(u"  outs |a1, a2"_s), u"outs 0");
    EXPECT_EQ(CallAt(u"a|1 oscil 1, 2"_s), u"none");
    EXPECT_EQ(CallAt(u"again: outs a1,|"_s), u"outs 1");
    EXPECT_EQ(CallAt(u"a1 oscil.kk 1, |"_s), u"oscil 1 a");
    EXPECT_EQ(CallAt(u"a1 unknown 1, |"_s), u"none");
    EXPECT_EQ(CallAt(u"|"_s), u"none");
}

TEST(CaretPlace, FindsTheArgumentOfAFunction)
{
    EXPECT_EQ(CallAt(u"a1 = oscil(1, |2)"_s), u"oscil 1");
    EXPECT_EQ(CallAt(u"a1 = oscil:k(1, |2)"_s), u"oscil 1 k");
    EXPECT_EQ(CallAt(u"a1 = oscil(1, abs(|2), 3)"_s), u"abs 0");
    EXPECT_EQ(CallAt(u"a1 = oscil(1, abs(2), |3)"_s), u"oscil 2");
    EXPECT_EQ(CallAt(u"a1 = oscil(1, 2)|"_s), u"none");
    EXPECT_EQ(CallAt(u"a1 = oscil(1, (2 + |3), 4)"_s), u"oscil 1");
    EXPECT_EQ(CallAt(u"outs(a1, |a2)"_s), u"outs 1");
    EXPECT_EQ(CallAt(u"outs abs(a1), kx[2, 3], |a2"_s), u"outs 2");
    EXPECT_EQ(CallAt(u"a1 = oscil |"_s), u"none");
    EXPECT_EQ(CallAt(u"abs = |3"_s), u"none");
    EXPECT_EQ(CallAt(u"print (1 + 2), |3"_s), u"print 1");
}

TEST(CaretPlace, PassesOverStringsAndComments)
{
    EXPECT_EQ(CallAt(u"print \"a, b\", |"_s), u"print 1");
    EXPECT_EQ(CallAt(u"print \"a, |b\""_s), u"print 0");
    EXPECT_EQ(CallAt(u"print \"a, |"_s), u"print 0");
    EXPECT_EQ(CallAt(u"print 1 /* , */ ,|"_s), u"print 1");
    EXPECT_EQ(CallAt(u"print 1 /* , |*/"_s), u"none");
    EXPECT_EQ(CallAt(u"print 1 ; , |"_s), u"none");
    EXPECT_EQ(CallAt(u"print 1 // , |"_s), u"none");
    EXPECT_EQ(CallAt(u"print 1, \\ ; more\n 2, |"_s), u"print 2");
    EXPECT_EQ(CallAt(u"print {{a, (b}}, |"_s), u"print 1");
    EXPECT_EQ(CallAt(u"print {{a, |(b}}"_s), u"print 0");
    EXPECT_EQ(CallAt(u"print \"// no comment\", |"_s), u"print 1");
}

TEST(CaretPlace, FindsTheCallAtEachPlaceOfAStatement)
{
    RandomText random({}, 0);
    for (int i = 0; i < 800; ++i) {
        StatementWriter statement(random);
        statement.Write();
        for (qsizetype place = 0; place < statement.text.size(); ++place) {
            const auto call = FindCall(statement.text, place, IsOpcode);
            const QString rate = call && !call->rate.isNull() ? u' ' + QString(call->rate) : QString();
            const QString found =
                call ? u"%1 %2%3"_s.arg(call->opcode).arg(call->argument).arg(rate) : u"none"_s;
            // At the first character of an opcode the place is at the opcode; at that of anything else in
            // the argument.
            QString expected = statement.calls[place];
            const bool behindOpening =
                place > 0 && expected.contains(u" -1"_s) &&
                (statement.text[place - 1] == u'(' || statement.text[place - 1] == u' ') &&
                !statement.text[place].isLetter();
            if (behindOpening)
                expected.replace(u" -1"_s, u" 0"_s);
            ASSERT_EQ(found, expected) << ::testing::PrintToString(statement.text) << ' ' << place;
        }
    }
}

TEST(CaretPlace, AnyStatementIsRead)
{
    RandomText random({u"oscil"_s, u"abs("_s, u"("_s,  u")"_s,  u"["_s,  u"]"_s,  u","_s,  u" "_s,
                       u"="_s,     u":"_s,    u"."_s,  u"\""_s, u"/*"_s, u"*/"_s, u"//"_s, u";"_s,
                       u"\n"_s,    u"\\"_s,   u"{{"_s, u"}}"_s, u"$a"_s, u"1"_s},
                      24);
    for (int i = 0; i < 6000; ++i) {
        const QString text = random.Next();
        for (qsizetype place = 0; place <= text.size(); ++place) {
            const auto call = FindCall(text, place, IsOpcode);
            if (call) {
                ASSERT_TRUE(IsOpcode(call->opcode));
                ASSERT_GE(call->argument, -1);
            }
        }
    }
}

TEST(CaretPlace, TellsStringsAndComments)
{
    EXPECT_EQ(PartAtBar(u"a1 oscil |"_s), TextPart::Code);
    EXPECT_EQ(PartAtBar(u"prints \"os|cil\""_s), TextPart::String);
    EXPECT_EQ(PartAtBar(u"prints \"oscil\"|"_s), TextPart::Code);
    EXPECT_EQ(PartAtBar(u"a1;|"_s), TextPart::Comment);
    EXPECT_EQ(PartAtBar(u"a1 // |"_s), TextPart::Comment);
    EXPECT_EQ(PartAtBar(u"a1 /* |"_s), TextPart::Comment);
    EXPECT_EQ(PartAtBar(u"a1 /* */|"_s), TextPart::Code);
    EXPECT_EQ(PartAtBar(u"a1 \"http://x\" |"_s), TextPart::Code);
    EXPECT_EQ(PartAtBar(u"a comment | goes on"_s, true), TextPart::Comment);
    EXPECT_EQ(PartAtBar(u"a comment */ a1 |"_s, true), TextPart::Code);
    EXPECT_EQ(PartAtBar(u"|"_s), TextPart::Code);
}

TEST(CaretPlace, SpansHoldWhatIsBetweenTheirEnds)
{
    const std::vector<TextSpan> comments = {{2, 8}, {10, 20}};
    for (const auto &[offset, inside] : {std::pair{2, false}, {3, true}, {7, true}, {8, false}, {15, true}})
        EXPECT_EQ(IsInside(comments, offset, 30), inside) << offset;
    EXPECT_TRUE(IsInside(comments, 20, 20));
    EXPECT_FALSE(IsInside({}, 0, 0));
}

TEST(CaretPlace, FindsTheWordAtAPlace)
{
    const auto word = [](QString line) {
        const qsizetype place = line.indexOf(u'|');
        line.remove(place, 1);
        const auto found = FindWord(line, place);
        return found ? line.sliced(found->span.start, found->span.Length()) + u'<' + found->typed.toString()
                     : u"none"_s;
    };
    EXPECT_EQ(word(u"a1 osc|il"_s), u"oscil<osc");
    EXPECT_EQ(word(u"a1 $TEM|"_s), u"$TEM<$TEM");
    EXPECT_EQ(word(u"a1 $|"_s), u"$<$");
    EXPECT_EQ(word(u"a1 12|"_s), u"none");
    EXPECT_EQ(word(u"a1 |12"_s), u"none");
    EXPECT_EQ(word(u"1e|3"_s), u"none");
    EXPECT_EQ(word(u"2nd|"_s), u"none");
    EXPECT_EQ(word(u"0|"_s), u"0<0");
    EXPECT_EQ(word(u"0db|"_s), u"0db<0db");
    EXPECT_EQ(word(u"|0dbfs = 1"_s), u"0dbfs<");
    EXPECT_EQ(word(u"10db|"_s), u"none");
    EXPECT_EQ(word(u"|"_s), u"<");
    EXPECT_EQ(word(u"(kfreq|)"_s), u"kfreq<kfreq");
}

} // namespace zelvane::test
