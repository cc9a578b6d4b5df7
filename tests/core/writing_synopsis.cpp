// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/synopsis.h"

#include "support/printers.h"
#include "support/randomtext.h"
#include "writing/manualsynopsis.h"
#include "writing/opcodearguments.h"
#include "writing/textnames.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

QStringList Arguments(const Synopsis &synopsis)
{
    QStringList arguments;
    for (const TextSpan &span : synopsis.arguments)
        arguments.append(synopsis.text.sliced(span.start, span.Length()));
    return arguments;
}

QStringList Texts(const std::vector<Synopsis> &forms)
{
    QStringList texts;
    for (const Synopsis &form : forms)
        texts.append(form.text);
    return texts;
}

void ExpectSound(const Synopsis &synopsis, const QString &opcode)
{
    EXPECT_EQ(synopsis.text.sliced(synopsis.name.start, synopsis.name.Length()), opcode);
    qsizetype from = synopsis.name.end;
    for (const TextSpan &span : synopsis.arguments) {
        EXPECT_GE(span.start, from);
        EXPECT_LT(span.start, span.end);
        EXPECT_LE(span.end, synopsis.text.size());
        from = span.end;
    }
}

void WriteFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

TEST(Synopsis, KnowsWhereItsArgumentsStand)
{
    const Synopsis oscil = ReadSynopsis(u"ares  oscil xamp, xcps\n [, ifn, iphs]", u"oscil").value();
    EXPECT_EQ(oscil.text, u"ares oscil xamp, xcps [, ifn, iphs]");
    EXPECT_EQ(Arguments(oscil), QStringList({u"xamp"_s, u"xcps"_s, u"ifn"_s, u"iphs"_s}));
    EXPECT_EQ(oscil.Outputs(), u"ares");
    EXPECT_EQ(oscil.Shown(3), 3);
    EXPECT_EQ(oscil.Shown(4), -1);
    EXPECT_EQ(oscil.RichText(1), u"ares <b>oscil</b> xamp, <b>xcps</b> [, ifn, iphs]");
    EXPECT_EQ(oscil.RichText(-1), u"ares <b>oscil</b> xamp, xcps [, ifn, iphs]");
    EXPECT_EQ(oscil.RichText(9), oscil.RichText(-1));
}

TEST(Synopsis, LongFormsAreShortened)
{
    QStringList types;
    for (int i = 0; i < 20'000; ++i)
        types.append(u"k%1"_s.arg(i));
    const Synopsis form = MakeSynopsis(types.join(u", "_s), u"Long", types.join(u", "_s));
    const QString first = form.RichText(0), middle = form.RichText(10'000), last = form.RichText(19'999);
    EXPECT_TRUE(first.startsWith(u"k0, k1, "_s) && first.contains(u" <b>Long</b> <b>k0</b>, k1, "_s) &&
                first.endsWith(u", k19999"_s));
    EXPECT_TRUE(middle.contains(u"<b>Long</b> k0, k1, "_s) &&
                middle.contains(u", k9999, <b>k10000</b>, k10001, "_s));
    EXPECT_TRUE(last.endsWith(u", k19998, <b>k19999</b>"_s));
    for (const QString &text : {first, middle, last, form.RichText(-1), Shortened(form.text)}) {
        EXPECT_LT(text.size(), 1100);
        EXPECT_TRUE(text.contains(u" ... "_s));
    }
    EXPECT_EQ(Shortened(QString(300, u'x')), QString(300, u'x'));
}

TEST(Synopsis, ReadsTheManualsManners)
{
    const auto arguments = [](QStringView line, QStringView opcode) {
        return Arguments(ReadSynopsis(line, opcode).value());
    };
    EXPECT_EQ(arguments(u"schedule insnum, iwhen, idur [, ip4] [, ip5] [...]", u"schedule"),
              QStringList({u"insnum"_s, u"iwhen"_s, u"idur"_s, u"ip4"_s, u"ip5"_s, u"..."_s}));
    EXPECT_EQ(arguments(u"abs(x) (no rate restriction)", u"abs"), QStringList({u"x"_s}));
    EXPECT_EQ(arguments(u"kys[] bpf kxs[], kx1, ..., kxn, kyn", u"bpf"),
              QStringList({u"kxs[]"_s, u"kx1"_s, u"..."_s}));
    EXPECT_EQ(arguments(u"ares fof xamp, \\\n ifna [, iphs[, ifmode]]", u"fof"),
              QStringList({u"xamp"_s, u"ifna"_s, u"iphs"_s, u"ifmode"_s}));
    EXPECT_EQ(arguments(u"FLgroup \"a, label\", iwidth", u"FLgroup"),
              QStringList({u"\"a, label\""_s, u"iwidth"_s}));
    EXPECT_EQ(arguments(u"out asig1[, asig2,....]", u"out"),
              QStringList({u"asig1"_s, u"asig2"_s, u"...."_s}));
    EXPECT_EQ(arguments(u"kstatus, kchan midiin", u"midiin"), QStringList());
    EXPECT_FALSE(ReadSynopsis(u"ares oscil xamp", u"osc"));
    EXPECT_FALSE(ReadSynopsis(u"i/kout[] setcoli/kin[]", u"setcoli"));
    EXPECT_EQ(ReadSynopsis(u"schedule insnum [...]", u"schedule")->Shown(7), 1);
}

TEST(Synopsis, AnyLineIsRead)
{
    RandomText random({u"osc"_s, u" "_s, u","_s, u"["_s, u"]"_s, u"("_s, u")"_s, u"\""_s, u"..."_s, u"k"_s,
                       u"\\"_s, u"\n"_s, u"&"_s, u"<"_s},
                      20);
    for (int i = 0; i < 20000; ++i) {
        const QString line = random.Next();
        const auto synopsis = ReadSynopsis(line, u"osc");
        if (!synopsis)
            continue;
        ExpectSound(*synopsis, u"osc"_s);
        for (int argument = -1; argument < 5; ++argument)
            ASSERT_FALSE(synopsis->RichText(argument).isEmpty());
    }
}

TEST(Synopsis, OwnOpcodesHaveTheNamesOfTheirBody)
{
    UserOpcode opcode{u"Filter"_s, {u"a"_s}, {u"a"_s, u"k"_s, u"o"_s}, {}, {}};
    EXPECT_EQ(SynopsisOf(opcode).text, u"a Filter a, k [, i=0]");
    opcode.inputs = {u"ain"_s, u"kcut"_s, u"iskip"_s};
    opcode.outputs = {u"aout"_s};
    EXPECT_EQ(SynopsisOf(opcode).text, u"aout Filter ain, kcut [, iskip=0]");
    EXPECT_EQ(Arguments(SynopsisOf(opcode)), QStringList({u"ain"_s, u"kcut"_s, u"iskip=0"_s}));
    EXPECT_EQ(SynopsisOf({u"a"_s, {}, {u"S[]"_s}, {}, {}}).text, u"a S[]");
}

TEST(Synopsis, TheFormsThatACallMeansComeFirst)
{
    std::vector<Synopsis> forms;
    for (const QStringView line : {QStringView(u"kres oscil kamp"), QStringView(u"ares oscil kamp"),
                                   QStringView(u"ares oscil aamp, acps"), QStringView(u"gir oscil iamp")})
        forms.push_back(ReadSynopsis(line, u"oscil").value());
    EXPECT_EQ(Texts(FormsForCall(forms, u'a', 0)),
              QStringList({u"ares oscil kamp"_s, u"ares oscil aamp, acps"_s}));
    EXPECT_EQ(Texts(FormsForCall(forms, u'a', 1)),
              QStringList({u"ares oscil aamp, acps"_s, u"ares oscil kamp"_s}));
    EXPECT_EQ(Texts(FormsForCall(forms, u'i', -1)), QStringList({u"gir oscil iamp"_s}));
    EXPECT_EQ(FormsForCall(forms, u'S', 0), forms);
    EXPECT_EQ(FormsForCall(forms, QChar(), 0), forms);
    EXPECT_TRUE(FormsForCall({}, u'a', 0).empty());
}

TEST(OpcodeArguments, FormsThatDifferInRatesAloneAreOne)
{
    const OpcodeArguments arguments(u"osc\ta\tkkjo\nosc\ta\takjo\nosc\tk\tkkjo\nosc\ta\tkki[]o\n"
                                    "out\t-\ty\nxin\t****\t-\nfin\t-\tSim\n"_s);
    EXPECT_EQ(Texts(arguments.Forms(u"osc")),
              QStringList({u"a osc k|a, k [, i=-1] [, i=0]"_s, u"k osc k, k [, i=-1] [, i=0]"_s,
                           u"a osc k, k, i[] [, i=0]"_s}));
    EXPECT_EQ(Texts(arguments.Forms(u"out")), QStringList({u"out [a, ...]"_s}));
    EXPECT_EQ(Texts(arguments.Forms(u"xin")), QStringList({u"any, ... xin"_s}));
    EXPECT_EQ(Texts(arguments.Forms(u"fin")), QStringList({u"fin S, i [, i, ...]"_s}));
    EXPECT_EQ(arguments.Forms(u"fin")[0].Shown(8), 3);
    EXPECT_TRUE(arguments.Forms(u"none").empty());
    EXPECT_FALSE(arguments.Contains(u"none"));
}

TEST(OpcodeArguments, TheShippedListHasTheOpcodes)
{
    const QString text = ShippedOpcodeArguments();
    const OpcodeArguments arguments(text);
    int count = 0;
    for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts)) {
        const QString opcode = line.section(u'\t', 0, 0);
        const std::vector<Synopsis> forms = arguments.Forms(opcode);
        ASSERT_FALSE(forms.empty()) << qPrintable(opcode);
        for (const Synopsis &form : forms)
            ExpectSound(form, opcode);
        ++count;
    }
    EXPECT_GT(count, 1500);
    EXPECT_EQ(Texts(FormsForCall(arguments.Forms(u"a"), {}, 0)), QStringList({u"a a k"_s}));
}

TEST(OpcodeArguments, AnyFileIsRead)
{
    RandomText random({u"osc"_s, u"\t"_s, u"\n"_s, u"a"_s, u"m"_s, u"["_s, u"]"_s, u"*"_s, u"-"_s, u"\0"_s,
                       u"ä"_s, u" "_s, u"?"_s},
                      40);
    for (int i = 0; i < 20000; ++i) {
        const OpcodeArguments arguments(random.Next());
        for (const QString &opcode : {u"osc"_s, u"a"_s, u"m"_s}) {
            for (const Synopsis &form : arguments.Forms(opcode))
                ExpectSound(form, opcode);
        }
    }
}

TEST(ManualSynopses, ReadsThePagesOfTheManual)
{
    const QTemporaryDir folder;
    WriteFile(folder.filePath(u"manual.hlp"_s),
              "[Manual]\nFolder=pages\nPage=$WORD$.html\nContents=index.html\n"
              "[Pages]\nosci=osc.html\n");
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"pages"_s));
    WriteFile(folder.filePath(u"pages/index.html"_s), "<pre class=\"synopsis\">lost ia</pre>");
    WriteFile(folder.filePath(u"pages/osc.html"_s),
              "<h1>osc</h1><pre class=\"synopsis\">ares <span class=\"command\"><strong>osc</strong></span> "
              "kamp, \\\n   \"a&amp;b\" [, i&#x66;n]</pre>\n<pre class=\"synopsis\">kres osci</pre><pre "
              "class=\"synopsis\">open osc");
    ManualSynopses manual;
    EXPECT_TRUE(manual.Forms(u"osc"_s).empty());
    manual.SetHelpFile(folder.filePath(u"manual.hlp"_s));
    EXPECT_EQ(Texts(manual.Forms(u"osc"_s)), QStringList({u"ares osc kamp, \"a&b\" [, ifn]"_s}));
    EXPECT_EQ(Texts(manual.Forms(u"osci"_s)), QStringList({u"kres osci"_s}));
    EXPECT_TRUE(manual.Forms(u"lost"_s).empty());
    EXPECT_TRUE(manual.Forms(u"../manual"_s).empty());
    manual.SetHelpFile({});
    EXPECT_TRUE(manual.Forms(u"osc"_s).empty());
}

TEST(ManualSynopses, AnyPageIsRead)
{
    RandomText random({u"<pre class=\"synopsis\">"_s, u"</pre>"_s, u"osc"_s, u" "_s, u"<"_s, u">"_s, u"&"_s,
                       u"&lt;"_s, u"&#99999999;"_s, u"&#0;"_s, u";"_s, u","_s, u"["_s, u"("_s},
                      24);
    for (int i = 0; i < 20000; ++i) {
        for (const Synopsis &form : ReadManualPage(random.Next(), u"osc"_s))
            ExpectSound(form, u"osc"_s);
    }
}

} // namespace zelvane::test
