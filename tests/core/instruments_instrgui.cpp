// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/instrgui.h"

#include "instruments/zelvanedata.h"
#include "oracle/instrumentsoracle.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "support/boxes.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <bit>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <QString>
#include <QStringList>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomRuns = 20000;

/// A unified document whose tag holds a store.
struct Stored : testing::Test, TestContext {
    Stored() { document.DocumentKind = FileKind::Unified; }

    void Show(const QString &xml) { text.SetText(u"<Zelvane>\n"_s + xml + u"</Zelvane>"_s); }
    std::unique_ptr<InstrClass> Load(qint32 number, bool sort = false)
    {
        return LoadInstrument(editor, number, {}, sort);
    }
    /// The instruments of the store, by key and name.
    QString LoadAll()
    {
        Instruments instruments;
        LoadInstruments(editor, instruments);
        QStringList all;
        for (qsizetype i = 0; i < instruments.Count(); ++i)
            all.append(instruments.KeyAt(i) + u'=' + instruments.At(i).nome);
        return all.join(u' ');
    }
    void ExpectReport(const QString &error) { desktop.ExpectMessage(ErrorBox(error), BoxAnswer::Cancel); }
};

} // namespace

TEST(XmlValues, AreEscapedOnce)
{
    EXPECT_EQ(EscapeXmlValue(u"a & b < c > d \" e ' f ? g"_s),
              u"a &amp; b &lt; c &gt; d &quot; e &#39; f &#63; g"_s);
    EXPECT_EQ(EscapeXmlValue(u"&lt;"_s), u"&amp;lt;"_s);
    EXPECT_EQ(EscapeXmlValue({}), QString());
}

TEST(XmlValues, AreEscapedAsTheSixReplacementsDo)
{
    RandomText texts({u"&"_s, u"<"_s, u">"_s, u"\""_s, u"'"_s, u"?"_s, u"amp;"_s, u"x"_s, u"\t"_s});
    for (int run = 0; run < RandomRuns; ++run) {
        const QString before = texts.Next();
        QString expected = before;
        expected.replace(u"&"_s, u"&amp;"_s).replace(u"<"_s, u"&lt;"_s).replace(u">"_s, u"&gt;"_s);
        expected.replace(u"\""_s, u"&quot;"_s).replace(u"'"_s, u"&#39;"_s).replace(u"?"_s, u"&#63;"_s);
        ASSERT_EQ(EscapeXmlValue(before), expected);
    }
}

TEST(XmlNumbers, AreWrittenAsTheFormatTells)
{
    for (const auto &[number, text] : std::initializer_list<std::pair<double, QString>>{{0, u"0"_s},
                                                                                        {-0.0, u"0"_s},
                                                                                        {.5, u".5"_s},
                                                                                        {-.5, u"-.5"_s},
                                                                                        {200, u"200"_s},
                                                                                        {1e20, u"1E+20"_s},
                                                                                        {1e-5, u"1E-05"_s}})
        EXPECT_EQ(NumberText(number), text);
    std::mt19937_64 random(20011);
    for (int run = 0; run < RandomRuns; ++run) {
        const quint64 bits = random();
        // All floats there are, and those that people type.
        const double number = run % 2 ? double(qint64(bits % 2000001) - 1000000) / (run % 3 ? 1000 : 64)
                                      : std::bit_cast<double>(bits);
        if (number - number != 0)
            continue;
        ASSERT_EQ(NumberText(number), oracle::NumberText(number));
        ASSERT_EQ(NumberText(Val(NumberText(number))), NumberText(number));
    }
}

TEST(InstrumentXml, EscapesValuesTwice)
{
    InstrClass instrument;
    instrument.number = 7;
    EXPECT_EQ(InstrToXml(instrument), u"<instr number=\"7\"/>"_s);
    instrument.nome = u"a\"b"_s;
    instrument.description = u"\t<é?"_s;
    EXPECT_EQ(InstrToXml(instrument),
              u"<instr number=\"7\" name=\"a&amp;quot;b\" description=\"&#9;&amp;lt;é&amp;#63;\"/>"_s);
    pClass &field = instrument.addP(1);
    field.min = .5;
    field.max = -1e20;
    field.formato = PFormat::String;
    EXPECT_EQ(InstrToXml(instrument),
              u"<instr number=\"7\" name=\"a&amp;quot;b\" description=\"&#9;&amp;lt;é&amp;#63;\">"
              "<p number=\"1\" format=\"3\" min=\".5\" max=\"-1E+20\"/></instr>"_s);
    field.nome = u"n"_s;
    field.description = u"d"_s;
    field.group = u"g"_s;
    field.unit = u"‰"_s;
    field.variable = u"i1"_s;
    field.value = u"not stored"_s;
    instrument.nome.clear();
    instrument.description.clear();
    EXPECT_EQ(InstrToXml(instrument),
              u"<instr number=\"7\"><p number=\"1\" name=\"n\" description=\"d\" group=\"g\" format=\"3\" "
              "min=\".5\" max=\"-1E+20\" unit=\"‰\" variable=\"i1\"/></instr>"_s);
}

TEST(InstrumentXml, SortsThePFields)
{
    ScriptedDesktop desktop;
    Instruments instruments;
    for (const qint16 number : {5, 2}) {
        auto instrument = std::make_unique<InstrClass>();
        instrument->number = number;
        instrument->addP(2);
        instrument->addP(number == 5 ? 5 : 1);
        instruments.Add(InstrumentKey(number), std::move(instrument));
    }
    // Instrument 5 has p2 and p5.
    desktop.ExpectMessage(
        {.text = u"Error while sorting p-fields: non-consecutive items."_s, .icon = BoxIcon::Critical});
    EXPECT_EQ(InstrumentsToXml(instruments, desktop),
              u"<instruments><instr number=\"5\"><p number=\"2\" format=\"0\" min=\"0\" max=\"0\"/>"
              "<p number=\"5\" format=\"0\" min=\"0\" max=\"0\"/></instr>"
              "<instr number=\"2\"><p number=\"1\" format=\"0\" min=\"0\" max=\"0\"/>"
              "<p number=\"2\" format=\"0\" min=\"0\" max=\"0\"/></instr></instruments>"_s);
    Instruments none;
    EXPECT_EQ(InstrumentsToXml(none, desktop), u"<instruments></instruments>"_s);
}

TEST_F(Stored, InstrumentIsReadWhole)
{
    Show(u"<instruments><instr number=\"3\" name=\"a&quot;b\" description=\"x\ty&#63;\">"
         "<p number=\"2\" name=\"n\" description=\"d\" group=\"g\" format=\"2\" min=\"-.5x\" max=\"1E+20\" "
         "unit=\"u\" variable=\"iv\"/><p/></instr></instruments>"_s);
    const std::unique_ptr<InstrClass> instrument = Load(3);
    ASSERT_TRUE(instrument);
    EXPECT_EQ(instrument->number, 3);
    EXPECT_EQ(instrument->nome, u"a\"b"_s);
    EXPECT_EQ(instrument->description, u"x\ty?"_s);
    ASSERT_EQ(instrument->pCol.Count(), 2);
    const pClass &field = instrument->pCol.At(0);
    EXPECT_EQ(field.key, u"i3p2"_s);
    EXPECT_EQ(field.number, 2);
    EXPECT_EQ(field.nome, u"n"_s);
    EXPECT_EQ(field.description, u"d"_s);
    EXPECT_EQ(field.group, u"g"_s);
    EXPECT_EQ(field.formato, PFormat::Boolean);
    EXPECT_EQ(field.min, -.5);
    EXPECT_EQ(field.max, 1e20);
    EXPECT_EQ(field.unit, u"u"_s);
    EXPECT_EQ(field.variable, u"iv"_s);
    EXPECT_EQ(instrument->pCol.At(1).number, 0);
    EXPECT_EQ(Load(4), nullptr);
}

TEST_F(Stored, InstrumentIsTheFirstOfItsNumber)
{
    Show(u"<instruments><instr name=\"none\"/><instr number=\"x\" name=\"x\"/><instr number=\"\" "
         u"name=\"empty\"/>"
         "<instr number=\"2.0\" name=\"a\"/><instr number=\"2\" name=\"b\"/></instruments>"_s);
    EXPECT_EQ(Load(2)->nome, u"a"_s);
    EXPECT_EQ(Load(1), nullptr);
    // An empty number is 0, and nothing of that element is read.
    const std::unique_ptr<InstrClass> empty = Load(0);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->nome, QString());
}

TEST_F(Stored, InstrumentIsSortedOnRequest)
{
    Show(u"<instruments><instr number=\"1\"><p number=\"2\"/><p number=\"1\"/></instr></instruments>"_s);
    EXPECT_EQ(Load(1)->pCol.At(0).number, 2);
    EXPECT_EQ(Load(1, true)->pCol.At(0).number, 1);
}

TEST_F(Stored, InstrumentThatDoesNotConvertIsAnError)
{
    for (const char16_t *fields : {u"<p number=\"one\"/>", u"<p format=\"256\"/>", u"<p format=\"\"/>",
                                   u"<p max=\"1e999\"/>", u"<p number=\"1\"/><p number=\"1\"/>"}) {
        Show(u"<instruments><instr number=\"1\">"_s + QString::fromUtf16(fields) +
             u"</instr></instruments>"_s);
        EXPECT_THROW(Load(1), RunTimeError);
    }
}

TEST_F(Stored, InstrumentComesFromTheGivenXml)
{
    EXPECT_EQ(LoadInstrument(editor, 1, u"<x><y><instr number=\"1\" name=\"a\"/></y></x>"_s, false)->nome,
              u"a"_s);
    EXPECT_EQ(LoadInstrument(editor, 1, u"<instr number=\"1\" name=\"b\"/>"_s, false)->nome, u"b"_s);
    EXPECT_EQ(LoadInstrument(editor, 1, u"<instr number=\"1\">"_s, false), nullptr);
}

TEST_F(Stored, InstrumentsAreLoadedUpToAnError)
{
    Show(u"<instruments><instr number=\"4\" name=\"a\"/><instr number=\"1\" name=\"b\"/></instruments>"_s);
    EXPECT_EQ(LoadAll(), u"i4=a i1=b"_s);
    Show(
        u"<instruments><instr number=\"4\" name=\"a\"/><instr number=\"x\"/><instr number=\"2\"/></instruments>"_s);
    ExpectReport(u"Type mismatch (13)"_s);
    EXPECT_EQ(LoadAll(), u"i4=a"_s);
    Show(u"<instruments><instr number=\"4\" name=\"a\"/><instr number=\"4\"/></instruments>"_s);
    ExpectReport(u"The key \"i4\" is there twice (5)"_s);
    EXPECT_EQ(LoadAll(), u"i4=a"_s);
    Show(u"<instruments><instr number=\"40000\"/></instruments>"_s);
    ExpectReport(u"Overflow (6)"_s);
    EXPECT_EQ(LoadAll(), QString());
}

TEST_F(Stored, InstrumentsOfNoStoreAreNone)
{
    EXPECT_EQ(LoadAll(), QString());
    Show(u"<instruments><instr number=\"4\"></instruments>"_s);
    EXPECT_EQ(LoadAll(), QString());
    Show(u"<other><instr number=\"4\"/></other>"_s);
    EXPECT_EQ(LoadAll(), QString());
}

TEST_F(Stored, InstrumentsInsideOthersDoNotFillTheMemory)
{
    QString xml = u"<instruments>"_s;
    for (int depth = 1; depth <= 10; ++depth)
        xml += u"<instr number=\"%1\">"_s.arg(depth);
    for (int field = 0; field < 30000; ++field)
        xml += u"<p number=\"%1\"/>"_s.arg(field);
    xml += u"</instr>"_s.repeated(10) + u"</instruments>"_s;
    Show(xml);
    ExpectReport(u"There are too many p-fields (7)"_s);
    EXPECT_TRUE(LoadAll().startsWith(u"i1= i2="));
}

TEST(InstrStatements, AreFoundByNumber)
{
    const QString orchestra = u"; instrument 1\ninstr 2, 1\n a\nendin\n\tinstr\t 1 ; x\n b\nendin\n"_s;
    EXPECT_EQ(FindInstrStatement(orchestra, 1), orchestra.indexOf(u" b\n"));
    EXPECT_EQ(FindInstrStatement(orchestra, 2), orchestra.indexOf(u" a\n"));
    EXPECT_EQ(FindInstrStatement(orchestra, 3), -1);
    EXPECT_EQ(FindInstrStatement(u"instr 1", 1), -1);
    EXPECT_EQ(FindInstrStatement(u"instr 1\n", 1), -1);
    EXPECT_EQ(FindInstrStatement(u"instr 1\n\n", 1), 8);
    EXPECT_EQ(FindInstrStatement(u"instr1\nx", 1), 7);
    EXPECT_EQ(FindInstrStatement(u"Instr 1\nx", 1), -1);
    EXPECT_EQ(FindInstrStatement({}, 0), -1);
    // Digits without end are no number of an instrument.
    EXPECT_EQ(FindInstrStatement(u"instr 99999999999\ninstr 1\nx"_s, 1), 26);
    EXPECT_EQ(FindInstrStatement(QString(u"instr "_s + u"9"_s.repeated(400) + u"\ninstr 1\nx"_s), 1), 415);
}

TEST(InstrStatements, AreFoundAsTheLoopTells)
{
    RandomText texts({u"instr"_s, u"instr "_s, u"instr 1"_s, u"instr\t2"_s, u" "_s, u"\t"_s, u"1"_s, u"2"_s,
                      u"0"_s, u"\n"_s, u"\n"_s, u"-"_s, u"."_s, u"+"_s, u";"_s, u"i"_s, u"nstr"_s, u"x"_s});
    int found = 0;
    for (int run = 0; run < RandomRuns; ++run) {
        const QString now = texts.Next();
        const qint32 number = texts.Number(-1, 12);
        const qint32 expected = oracle::FindInstrStatement(now, number);
        ASSERT_EQ(FindInstrStatement(now, number), expected) << now.toStdString() << " for " << number;
        found += expected != -1;
    }
    EXPECT_GT(found, RandomRuns / 20);
}

TEST_F(Stored, FieldsBecomeAssignments)
{
    Show(
        u"<instruments><instr number=\"1\"><p number=\"1\" name=\"Number\"/><p number=\"2\"/>"
        "<p number=\"3\" name=\"Duration\" description=\"Duration time in beats\" variable=\"idur\"/>"
        "<p number=\"4\" name=\"N\" variable=\"in\"/><p number=\"5\" description=\"D\" variable=\"id\"/>"
        "<p number=\"6\" variable=\"i6\"/></instr><instr number=\"2\"><p number=\"4\"/></instr></instruments>"_s);
    EXPECT_EQ(GenerateVariableCode(editor, 1, true, false),
              u"\r\nidur = p3   ; Duration. Duration time in beats\r\nin = p4   ; N.\r\nid = p5   ; D\r\n"
              "i6 = p6\r\n;"_s);
    EXPECT_EQ(GenerateVariableCode(editor, 1, false, false),
              u"\r\nidur = p3\r\nin = p4\r\nid = p5\r\ni6 = p6\r\n;"_s);
    EXPECT_EQ(GenerateVariableCode(editor, 2, true, false), u"\r\n;"_s);
    EXPECT_EQ(GenerateVariableCode(editor, 3, true, true), QString());
}

TEST_F(Stored, FieldsAreAssignedOnALineEach)
{
    Show(u"<instruments><instr number=\"1\"><p number=\"4\" name=\"two\nlines\" "
         "description=\"a1 oscil 1&#13;&#10;out a1&#13;x&#11;y&#12;z&#133;u&#8232;v&#8233;w\" "
         "variable=\"iamp&#10;x\"/></instr></instruments>"_s);
    EXPECT_EQ(GenerateVariableCode(editor, 1, true, false),
              u"\r\niamp x = p4   ; two lines. a1 oscil 1 out a1 x y z u v w\r\n;"_s);
    EXPECT_EQ(LoadInstrument(editor, 1, {}, false)->pCol.At(0).nome, u"two\nlines"_s);
}

TEST_F(Stored, FieldsWithoutAVariableAreAskedFor)
{
    Show(u"<instruments><instr number=\"1\"><p number=\"1\"/><p number=\"2\"/><p number=\"3\"/>"
         "<p number=\"4\" variable=\"iamp\"/><p number=\"5\"/></instr></instruments>"_s);
    const QString before = text.text;
    desktop.ExpectInput(u"Missing variable name"_s,
                        u"Specify a variable name for p3.\n(must begin with letter i)"_s, std::nullopt);
    desktop.ExpectInput(u"Missing variable name"_s,
                        u"Specify a variable name for p5.\n(must begin with letter i)"_s, u"kfreq"_s);
    EXPECT_EQ(GenerateVariableCode(editor, 1, true, true), u"\r\niamp = p4\r\nkfreq = p5\r\n;"_s);
    EXPECT_EQ(text.text, before);
}

} // namespace zelvane::test
