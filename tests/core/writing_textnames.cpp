// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/textnames.h"

#include "shell/findtext.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <set>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

QStringList Names(const WordList &list, NameKind kind)
{
    QStringList names;
    for (std::size_t i = 0; i < list.Count(); ++i) {
        if (list.Kind(i) == kind)
            names.append(list.Text(i).toString());
    }
    return names;
}

std::set<QString> All(const WordList &list)
{
    std::set<QString> names;
    for (std::size_t i = 0; i < list.Count(); ++i)
        names.insert(list.Text(i).toString());
    return names;
}

/// The words of a stretch that begin like a name; in code without those behind a "$".
void AddWords(const QString &text, std::set<QString> &words, bool isCode)
{
    QString word;
    QChar before;
    for (const QChar c : text + u' ') {
        if (IsWordCharacter(c)) {
            word += c;
            continue;
        }
        if (!word.isEmpty() && !word[0].isDigit() && !(isCode && before == u'$'))
            words.insert(word);
        word.clear();
        before = c;
    }
}

} // namespace

TEST(TextNames, TheWordsAreThoseOfAScanOfEachToken)
{
    RandomText random({u"ab"_s, u"c"_s, u"1"_s, u" "_s, u"\n"_s, u";"_s, u"/*"_s, u"*/"_s, u"/"_s, u"\""_s,
                       u"$"_s, u"ä"_s, u","_s},
                      20);
    for (int i = 0; i < 20000; ++i) {
        const QString text = random.Next();
        // The scan as plain steps: what a token takes is no code.
        std::set<QString> code, comments;
        QString plain;
        const auto flush = [&] {
            AddWords(plain, code, true);
            plain.clear();
        };
        qsizetype at = 0;
        while (at < text.size()) {
            const QChar c = text[at];
            const bool tokenMayBegin = at < text.size() - 1;
            qsizetype end = -1;
            bool comment = false;
            if (c == u';' || (c == u'/' && tokenMayBegin && text[at + 1] == u'/')) {
                end = text.indexOf(u'\n', at);
                end = end < 0 ? text.size() : end + 1;
                comment = true;
            } else if (c == u'/' && tokenMayBegin && text[at + 1] == u'*') {
                end = text.indexOf(u"*/"_s, at);
                end = end < 0 ? text.size() : end + 2;
                comment = true;
            } else if (c == u'"') {
                end = tokenMayBegin ? text.indexOf(u'"', at + 1) + 1 : text.size();
                end = end <= 0 ? text.size() : end;
            } else if (c == u'$' && tokenMayBegin) {
                end = at + 1;
                while (end < text.size() && (text[end].isLetterOrNumber()))
                    ++end;
                flush();
                if (text.mid(end, 2) == u"//") {
                    plain += u' ';
                    at = end;
                    continue;
                }
                // The character behind the name begins no token; it is a letter of no word either.
                plain += end < text.size() ? text[end] : QChar(u' ');
                at = end + 1;
                continue;
            }
            if (end < 0) {
                plain += c;
                ++at;
                continue;
            }
            flush();
            AddWords(text.mid(at, end - at), comment ? comments : code, false);
            // The slash that closes a comment may open the next.
            at = comment && c == u'/' && text[at + 1] == u'*' && end < text.size() && text[end] == u'*' &&
                         text[end - 1] == u'/' && end - at > 2
                     ? end - 1
                     : end;
        }
        flush();
        const TextNames names = FindNames(text, false);
        ASSERT_EQ(All(names.code), code) << ::testing::PrintToString(text);
        ASSERT_EQ(All(names.comments), comments) << ::testing::PrintToString(text);
    }
}

TEST(TextNames, KnowsWhatNamesStandFor)
{
    const TextNames names = FindNames(u"#define NOTE(a'b) #i $a 0 $b#\n"
                                      "#define  TEMPO #120#\n"
                                      "giSine ftgen 0, 0, 1024, 10, 1\n"
                                      "giSaw = ftgenonce(0, 0, 1024, 7, 1)\n"
                                      "instr Bass, 12, +Lead ; not this: instr Other\n"
                                      "a1 oscil .5, 440, giSine\n"
                                      "endin\n"
                                      "/* instr Never */\n"
                                      "opcode Filter, a, ako ; a low pass\n"
                                      "ain, kcut, iskip xin\n"
                                      "aout tone ain, kcut, iskip\n"
                                      "xout aout\n"
                                      "endop\n",
                                      false);
    EXPECT_EQ(Names(names.code, NameKind::Macro), QStringList({u"$NOTE"_s, u"$TEMPO"_s}));
    EXPECT_EQ(Names(names.code, NameKind::Table), QStringList({u"giSaw"_s, u"giSine"_s}));
    EXPECT_EQ(Names(names.code, NameKind::Instrument), QStringList({u"Bass"_s, u"Lead"_s}));
    EXPECT_EQ(Names(names.code, NameKind::UserOpcode), QStringList({u"Filter"_s}));
    ASSERT_EQ(names.opcodes.size(), 1u);
    EXPECT_EQ(names.opcodes[0], (UserOpcode{u"Filter"_s,
                                            {u"a"_s},
                                            {u"a"_s, u"k"_s, u"o"_s},
                                            {u"aout"_s},
                                            {u"ain"_s, u"kcut"_s, u"iskip"_s}}));
    EXPECT_TRUE(Names(names.comments, NameKind::Word).contains(u"Never"_s));
    EXPECT_FALSE(Names(names.code, NameKind::Word).contains(u"Never"_s));
}

TEST(TextNames, VeryLongWordsAreNoNames)
{
    const QString longest(200, u'a'), longer(201, u'b');
    const TextNames names =
        FindNames(longest + u' ' + longer + u"\ninstr "_s + longer + u"\n#define "_s + longer + u" #1#\n"_s +
                      longer + u" ftgen 0, 0, 8, 10, 1\nopcode "_s + longer + u", a, a\n; "_s + longer,
                  false);
    for (const QString &name : All(names.code))
        EXPECT_LE(name.size(), 200);
    EXPECT_TRUE(All(names.code).contains(longest));
    EXPECT_TRUE(All(names.comments).empty());
}

TEST(TextNames, TwoSlashesBeginAComment)
{
    const TextNames names = FindNames(u"a1 = 1 // don't say \"no /* here\n"
                                      "instr Bass // instr Other\n"
                                      "Sout = \"http://www\" ; // twice\n"
                                      "k1 = $HALF// more\n"
                                      "/* // */ kfree = 1\n",
                                      false);
    EXPECT_EQ(All(names.code), (std::set<QString>{u"a1"_s, u"instr"_s, u"Bass"_s, u"Sout"_s, u"http"_s,
                                                  u"www"_s, u"k1"_s, u"kfree"_s}));
    EXPECT_EQ(All(names.comments), (std::set<QString>{u"don"_s, u"t"_s, u"say"_s, u"no"_s, u"here"_s,
                                                      u"instr"_s, u"Other"_s, u"twice"_s, u"more"_s}));
    EXPECT_EQ(Names(names.code, NameKind::Instrument), QStringList(u"Bass"_s));
    EXPECT_EQ(names.blockComments.size(), 1u);
}

TEST(TextNames, KnowsBlockCommentsAndSections)
{
    const QString text = u"<CsScore>\ni1 /* a\nb */ 0 ; /* no\n</CsScore>\n/* open"_s;
    const TextNames names = FindNames(text, true);
    const TextSpan closed = {text.indexOf(u"/* a"_s), text.indexOf(u"*/"_s) + 2};
    const TextSpan open = {text.indexOf(u"/* open"_s), text.size()};
    EXPECT_EQ(names.blockComments, std::vector<TextSpan>({closed, open}));
    EXPECT_EQ(names.score, (TextSpan{9, text.indexOf(u"</CsScore>"_s)}));
    EXPECT_EQ(FindNames(text, false).score, TextSpan());
    EXPECT_EQ(names.orchestra, TextSpan());
    const QString unclosed = u"<CsOptions>\n<CsInstruments>\ninstr 1\n"_s;
    EXPECT_EQ(FindNames(unclosed, true).orchestra, (TextSpan{27, unclosed.size()}));
    EXPECT_EQ(FindNames(unclosed + u"</CsInstruments>\n"_s, true).orchestra, (TextSpan{27, unclosed.size()}));
}

TEST(TextNames, KnowsStringsInBraces)
{
    const QString text = u"a {{ b \" c }} \" {{ \" d {{ e\nf }} ; {{\n{{ open"_s;
    const TextNames names = FindNames(text, false);
    std::vector<QString> strings;
    for (const TextSpan &span : names.bracedStrings)
        strings.push_back(text.sliced(span.start, span.Length()));
    EXPECT_EQ(strings, std::vector<QString>({u"{{ b \" c }}"_s, u"{{ \" d {{ e\nf }}"_s}));
}

TEST(TextNames, TypesOfAnOpcodeAreOneEach)
{
    EXPECT_EQ(ReadTypes(u"kS[]o"), QStringList({u"k"_s, u"S[]"_s, u"o"_s}));
    EXPECT_EQ(ReadTypes(u"0"), QStringList());
    EXPECT_EQ(ReadTypes(u"]["), QStringList());
    EXPECT_EQ(ReadTypes(u""), QStringList());
}

TEST(TextNames, AnyTextIsRead)
{
    RandomText random({u"opcode "_s,    u"instr "_s, u"xin"_s,      u"xout "_s, u"endop"_s, u"\n"_s,
                       u","_s,          u"a"_s,      u"#define "_s, u"ftgen"_s, u"="_s,     u"["_s,
                       u"]"_s,          u";"_s,      u"/*"_s,       u"\""_s,    u"$"_s,     u"<CsScore>"_s,
                       u"</CsScore>"_s, u"+"_s,      u"0"_s},
                      40);
    for (int i = 0; i < 20000; ++i) {
        const QString text = random.Next();
        const TextNames names = FindNames(text, true);
        for (const TextSpan &comment : names.blockComments)
            ASSERT_LE(comment.end, text.size());
        ASSERT_LE(names.score.end, text.size());
    }
}

} // namespace zelvane::test
