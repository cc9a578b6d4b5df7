// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/autoindent.h"

#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const QString Unit = u"  "_s;

/// What stands in the text after a letter, a blank or Enter.
QString Typed(QString text, QChar key, FileKind kind = FileKind::Orchestra)
{
    const auto setBlanks = [&text](const QString &blanks) {
        const qsizetype start = text.lastIndexOf(u'\n') + 1;
        qsizetype end = start;
        while (end < text.size() && (text[end] == u' ' || text[end] == u'\t'))
            ++end;
        text.replace(start, end - start, blanks);
    };
    if (key == u'\n') {
        const EnterIndent enter = AutoIndenter(text, true, kind, Unit).Enter({});
        if (enter.line)
            setBlanks(*enter.line);
        return text + u'\n' + enter.next;
    }
    text += key;
    const AutoIndenter indenter(text, true, kind, Unit);
    const auto closing =
        indenter.Closing(key == u' ' ? AutoIndenter::Typed::Blank : AutoIndenter::Typed::Letter);
    if (closing)
        setBlanks(*closing);
    return text;
}

/// Types a text without the blanks that its lines begin with.
QString Retyped(const QString &text, FileKind kind = FileKind::Orchestra)
{
    QString typed;
    bool atStart = true;
    for (const QChar c : text) {
        if (atStart && c == u' ')
            continue;
        atStart = c == u'\n';
        typed = Typed(typed, c, kind);
    }
    return typed;
}

TEST(AutoIndent, ATextComesOutAsItIsTyped)
{
    const QString text = u"sr = 44100\n"
                         "instr 1\n"
                         "  if p4 == 1 then\n"
                         "    a1 = 1 ; then if\n"
                         "  elseif p4 == 2 then\n"
                         "    a1 = 2\n"
                         "  else\n"
                         "    while k1 < 2 do\n"
                         "      k1 += 1\n"
                         "    od\n"
                         "    if k1 goto x\n"
                         "    prints \"instr\"\n"
                         "  endif\n"
                         "  if k1 then\n"
                         "    a2 = 1\n"
                         "  fi\n"
                         "  Sa = {{\n"
                         "    if a then\n"
                         "    more\n"
                         "  }}\n"
                         "  a1 = 1\n"
                         "endin\n"
                         "\n"
                         "opcode x, i, i\n"
                         "  xin = 1\n"
                         "endop\n"
                         "#define M(a) #\n"
                         "  k = 1\n"
                         "#\n"
                         "#define N #1#\n"
                         "#ifdef A\n"
                         "#else\n"
                         "#end\n"
                         "/* instr 1\n"
                         "if a then */\n"
                         "x = 1\n"_s;
    EXPECT_EQ(Retyped(text), text);
}

TEST(AutoIndent, OnlyInstrumentsAndScoresOfAUnifiedDocumentCount)
{
    const QString text = u"<CsoundSynthesizer>\n"
                         "<CsOptions>\n"
                         "instr if then\n"
                         "</CsOptions>\n"
                         "<CsInstruments>\n"
                         "instr 1\n"
                         "  a = 1\n"
                         "endin\n"
                         "</CsInstruments>\n"
                         "<CsScore>\n"
                         "{ 2 A\n"
                         "  i 1 0 1 ; instr\n"
                         "}\n"
                         "instr\n"
                         "</CsScore>\n"
                         "instr 1\n"
                         "</CsoundSynthesizer>\n"_s;
    EXPECT_EQ(Retyped(text, FileKind::Unified), text);
    EXPECT_EQ(Retyped(u"instr 1\na\n"_s, FileKind::Other), u"instr 1\na\n"_s);
}

TEST(AutoIndent, KeepsWhatTheUserHasMade)
{
    EXPECT_EQ(Typed(u"   a"_s, u'\n'), u"   a\n   "_s);
    EXPECT_EQ(Typed(u"\ta"_s, u'\n'), u"\ta\n\t"_s);
    EXPECT_EQ(Typed(u"a\n    "_s, u'\n'), u"a\n\n    "_s);
    // Less than the opening line has is not made more.
    EXPECT_EQ(Typed(u"  instr 1\nendi"_s, u'n'), u"  instr 1\nendin"_s);
    // Blanks of another kind are left alone.
    EXPECT_EQ(Typed(u"\tif a then\n        endi"_s, u'f'), u"\tif a then\n        endif"_s);
}

TEST(AutoIndent, TheTextSaysHowDeepAStepIs)
{
    const QString tabs = u"instr 1\n\ta1 = 1\n\tif k1 then\n\t\ta1 = 2\n\tendif\nendin\n"_s;
    const QString four = QString(tabs).replace(u'\t', u"    "_s);
    EXPECT_EQ(Typed(tabs + u"instr 2"_s, u'\n'), tabs + u"instr 2\n\t"_s);
    EXPECT_EQ(Typed(four + u"instr 2"_s, u'\n'), four + u"instr 2\n    "_s);
    // The nearest block counts.
    EXPECT_EQ(Typed(tabs + four + u"instr 2"_s, u'\n'), tabs + four + u"instr 2\n    "_s);
    EXPECT_EQ(Typed(four + tabs + u"instr 2"_s, u'\n'), four + tabs + u"instr 2\n\t"_s);
    // So does the one that the line stands in, behind lines without anything.
    EXPECT_EQ(Typed(u"instr 1\n\n \n   a1 = 1\n   if k1 then"_s, u'\n'),
              u"instr 1\n\n \n   a1 = 1\n   if k1 then\n      "_s);
    // What is put below something else is no step, and neither is what does not stand deeper.
    for (const QString &odd : {u"instr 1\n         a1 = 1\nendin\n"_s, u"instr 1\n \ta1 = 1\nendin\n"_s,
                               u"instr 1\na1 = 1\nendin\n"_s, u"\tinstr 1\n        a1 = 1\n\tendin\n"_s,
                               u"; instr 1\n    a1 = 1\n"_s, u"a1 = 1\n    a1 = 2\n"_s})
        EXPECT_EQ(Typed(odd + u"instr 2"_s, u'\n'), odd + u"instr 2\n  "_s);
}

TEST(AutoIndent, TheLineBelowSaysItFirst)
{
    const auto next = [](const QString &before, const QString &below) {
        return AutoIndenter(before, true, FileKind::Orchestra, Unit).Enter({}, below).next;
    };
    EXPECT_EQ(next(u"instr 1"_s, u"\n    a1 = 1\nendin\n"_s), u"    "_s);
    EXPECT_EQ(next(u"instr 1"_s, u"\n\n  \n\ta1 = 1"_s), u"\t"_s);
    EXPECT_EQ(next(u"instr 1\n\tif k1 then"_s, u"\n\t\ta1 = 1\n"_s), u"\t\t"_s);
    EXPECT_EQ(next(u"instr 1\n    a1 = 1\nendin\ninstr 2"_s, u"\n   a1 = 1\n"_s), u"   "_s);
    EXPECT_EQ(next(u"instr 1\n    a1 = 1\nendin\ninstr 2"_s, u"\nendin\n"_s), u"    "_s);
    EXPECT_EQ(next(u"instr 1"_s, u"\nendin\n"_s), Unit);
    EXPECT_EQ(next(u"instr 1"_s, {}), Unit);
    EXPECT_EQ(next(u"a1 = 1"_s, u"\n    a1 = 1"_s), QString()) << "nothing is opened";
}

TEST(AutoIndent, ClosingWordsNeedWhatTheyClose)
{
    EXPECT_EQ(Typed(u"  endi"_s, u'n'), u"  endin"_s);
    EXPECT_EQ(Typed(u"if a then\n  x endi"_s, u'f'), u"if a then\n  x endif"_s);
    EXPECT_EQ(Typed(u"if a then\n  x endif"_s, u'\n'), u"if a then\n  x endif\n"_s);
    EXPECT_EQ(Typed(u"; if a then\n  endi"_s, u'f'), u"; if a then\n  endif"_s);
}

TEST(AutoIndent, ShortWordsWaitForTheirEnd)
{
    EXPECT_EQ(Typed(u"if a then\n  f"_s, u'i'), u"if a then\n  fi"_s);
    EXPECT_EQ(Typed(u"if a then\n  fi"_s, u' '), u"if a then\nfi "_s);
    EXPECT_EQ(Typed(u"if a then\n  fi"_s, u'\n'), u"if a then\nfi\n"_s);
    EXPECT_EQ(Typed(u"if a then\n  fil"_s, u' '), u"if a then\n  fil "_s);
}

TEST(AutoIndent, LongWordsThatGoOnAreKnown)
{
    const QString text = u"if a then\n  else"_s;
    EXPECT_TRUE(AutoIndenter(text, true, FileKind::Orchestra, Unit).BeginsWithClosing());
    EXPECT_FALSE(AutoIndenter(QString(text + u'w'), true, FileKind::Orchestra, Unit).BeginsWithClosing());
    const QString elseIf = text + u"if"_s;
    EXPECT_TRUE(AutoIndenter(elseIf, true, FileKind::Orchestra, Unit).BeginsWithClosing());
}

TEST(AutoIndent, WhatClosesBehindTheCaretStandsLessDeep)
{
    const auto next = [](const QString &before, const QString &behind) {
        return AutoIndenter(before, true, FileKind::Orchestra, Unit).Enter(behind).next;
    };
    EXPECT_EQ(next(u"  instr 1"_s, u" endin"_s), u"  "_s);
    EXPECT_EQ(next(u"  if a then\n    b"_s, u"endif"_s), u"  "_s);
    EXPECT_EQ(next(u"  a = {{"_s, u"}}"_s), u"  "_s);
    EXPECT_EQ(next(u"  instr 1"_s, u" a = 1"_s), u"    "_s);
}

TEST(AutoIndent, APieceOfATextBeginsWhereItIsKnown)
{
    const auto next = [](const QString &before, FileKind kind = FileKind::Orchestra) {
        return AutoIndenter(before, false, kind, Unit).Enter({}).next;
    };
    EXPECT_EQ(next(u"instr in a comment\n*/ x\ny"_s), QString());
    EXPECT_EQ(next(u"x */ instr 1"_s), Unit);
    EXPECT_EQ(next(u"x\n}}\ninstr 1"_s), Unit);
    EXPECT_EQ(next(u"x\ninstr 1"_s, FileKind::Unified), Unit);
    EXPECT_EQ(next(u"x\n</CsInstruments>\ninstr 1"_s, FileKind::Unified), QString());
}

TEST(AutoIndent, RandomProgramsComeOutAsTheyAreTyped)
{
    RandomText random({u"x"_s});
    for (int i = 0; i < 300; ++i) {
        QString text;
        QStringList open;
        for (int line = random.Number(5, 30); line > 0; --line) {
            static const QStringList opening = {u"if a then"_s, u"while b do"_s, u"until c do"_s,
                                                u"S = {{"_s};
            static const QStringList closing = {u"endif"_s, u"od"_s, u"od"_s, u"}}"_s};
            const int what = random.Number(0, 3);
            if (what == 0 && (open.isEmpty() || open.last() != u"}}")) {
                const int kind = random.Number(0, 3);
                text += Unit.repeated(open.size()) + opening[kind] + u'\n';
                open.append(closing[kind]);
            } else if (what == 1 && !open.isEmpty()) {
                const QString word = open.takeLast();
                text += Unit.repeated(open.size()) + word + u'\n';
            } else {
                text += Unit.repeated(open.size()) + u"a = (1) ; b\n"_s;
            }
        }
        ASSERT_EQ(Retyped(text).chopped(Unit.size() * open.size()), text);
    }
}

} // namespace

} // namespace zelvane::test
