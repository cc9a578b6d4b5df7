// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/instrumentproperties.h"

#include "instruments/zelvanedata.h"
#include "platform/runtimeerror.h"
#include "support/printers.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const FieldPage Empty{.min = u"0"_s, .max = u"0"_s};

struct Properties : testing::Test, TestContext {
    Instruments instruments;

    InstrClass *New(const std::optional<QString> &answer, const QString &warning = {})
    {
        desktop.ExpectInput(u"New instrument"_s, u"Type instrument number."_s, answer);
        if (!warning.isEmpty())
            ExpectWarning(warning);
        return NewInstrument(instruments, desktop);
    }
    void ExpectWarning(const QString &warning)
    {
        desktop.ExpectMessage({.text = warning, .icon = BoxIcon::Warning});
    }
};

} // namespace

TEST_F(Properties, NewInstrumentHasThreeFields)
{
    InstrClass *const made = New(u"12"_s);
    ASSERT_TRUE(made);
    EXPECT_EQ(made, instruments.Find(u"i12"_s));
    EXPECT_EQ(made->number, 12);
    EXPECT_EQ(made->nome, u"Instrument 12"_s);
    EXPECT_EQ(made->description, QString());
    ASSERT_EQ(made->pCol.Count(), 3);
    const QString builtIn = u"Built-in"_s;
    EXPECT_EQ(PageOf(made->pCol.At(0)),
              (FieldPage{u"Number"_s, u"Instrument number"_s, builtIn, u"1"_s, u"200"_s, 1}));
    EXPECT_EQ(PageOf(made->pCol.At(1)),
              (FieldPage{u"Start"_s, u"Starting time in beats"_s, builtIn, u"0"_s, u"100"_s, 0, u"Beats"_s}));
    EXPECT_EQ(PageOf(made->pCol.At(2)), (FieldPage{u"Duration"_s, u"Duration time in beats"_s, builtIn,
                                                   u"0"_s, u"100"_s, 0, u"Beats"_s, u"idur"_s}));
    EXPECT_EQ(made->pCol.KeyAt(2), u"i12p3"_s);
}

TEST_F(Properties, NewInstrumentNeedsANumber)
{
    for (const char16_t *answer : {u"", u"one", u"0", u"-1", u"1x"})
        EXPECT_EQ(New(QString::fromUtf16(answer)), nullptr);
    EXPECT_EQ(New(std::nullopt), nullptr);
    EXPECT_THROW(New(u"40000"_s), RunTimeError);
    EXPECT_TRUE(instruments.IsEmpty());
    // A half goes to the even neighbour.
    EXPECT_EQ(New(u"1.5"_s)->number, 2);
    EXPECT_EQ(New(u"2"_s, u"Instrument already exists."_s), nullptr);
    EXPECT_EQ(instruments.Count(), 1);
}

TEST_F(Properties, NewInstrumentKnowsThoseThatHaveChangedTheirNumbers)
{
    InstrClass *const made = New(u"1"_s);
    EXPECT_TRUE(StorePage(*made, {.number = u"5"_s}, instruments, desktop));
    EXPECT_EQ(instruments.KeyOf(*made), u"i1"_s);
    for (const QString &taken : {u"1"_s, u"5"_s})
        EXPECT_EQ(New(taken, u"Instrument already exists."_s), nullptr);
}

TEST_F(Properties, InstrumentPageIsStoredWhole)
{
    InstrClass &made = *New(u"1"_s);
    New(u"2"_s);
    EXPECT_EQ(PageOf(made), (InstrumentPage{u"Instrument 1"_s, {}, u"1"_s}));
    for (const char16_t *number : {u"", u"0", u".9", u"-3", u"x"}) {
        ExpectWarning(u"Invalid instrument number."_s);
        EXPECT_FALSE(StorePage(made, {u"n"_s, u"d"_s, QString::fromUtf16(number)}, instruments, desktop));
    }
    ExpectWarning(u"Instrument already exists."_s);
    EXPECT_FALSE(StorePage(made, {u"n"_s, u"d"_s, u"2"_s}, instruments, desktop));
    EXPECT_THROW(StorePage(made, {u"n"_s, u"d"_s, u"40000"_s}, instruments, desktop), RunTimeError);
    EXPECT_EQ(PageOf(made), (InstrumentPage{u"Instrument 1"_s, {}, u"1"_s}));
    EXPECT_TRUE(StorePage(made, {u"n"_s, u"d"_s, u"7 is it"_s}, instruments, desktop));
    EXPECT_EQ(PageOf(made), (InstrumentPage{u"n"_s, u"d"_s, u"7"_s}));
    EXPECT_EQ(made.pCol.KeyAt(0), u"i1p1"_s);
}

TEST_F(Properties, FieldPageIsStoredWhole)
{
    InstrClass instrument;
    pClass &field = instrument.addP(4);
    EXPECT_EQ(PageOf(field), Empty);
    for (const char16_t *variable : {u"Ifreq", u"freq", u" i"}) {
        ExpectWarning(u"Invalid variable name. Must begin with letter 'i'."_s);
        EXPECT_FALSE(StorePage(field, {.name = u"n"_s, .variable = QString::fromUtf16(variable)}, desktop));
    }
    EXPECT_THROW(StorePage(field, {.name = u"n"_s, .max = u"1e999"_s}, desktop), RunTimeError);
    EXPECT_EQ(PageOf(field), Empty);
    EXPECT_TRUE(
        StorePage(field, {u"n"_s, u"d"_s, u"g"_s, u"text"_s, u"-0.5 Hz"_s, 3, u"u"_s, u"i"_s}, desktop));
    EXPECT_EQ(PageOf(field), (FieldPage{u"n"_s, u"d"_s, u"g"_s, u"0"_s, u"-.5"_s, 3, u"u"_s, u"i"_s}));
}

TEST_F(Properties, FormatThatNobodyKnowsStays)
{
    InstrClass instrument;
    pClass &field = instrument.addP(1);
    field.formato = PFormat(200);
    EXPECT_EQ(PageOf(field).format, -1);
    EXPECT_TRUE(StorePage(field, PageOf(field), desktop));
    EXPECT_EQ(field.formato, PFormat(200));
}

TEST_F(Properties, NodesAreCaptioned)
{
    InstrClass instrument;
    instrument.number = 3;
    EXPECT_EQ(NodeCaption(instrument), u"[instr 3]"_s);
    instrument.nome = u"Pad"_s;
    EXPECT_EQ(NodeCaption(instrument), u"[instr 3] Pad"_s);
    pClass &field = instrument.addP(4);
    EXPECT_EQ(NodeCaption(field), u"[p4] "_s);
    field.nome = u"Amp"_s;
    EXPECT_EQ(NodeCaption(field), u"[p4] Amp"_s);
}

TEST_F(Properties, GroupsAreListedOnce)
{
    New(u"1"_s)->addP(4).group = u"Tone"_s;
    New(u"2"_s)->addP(4).group = u"tone"_s;
    instruments.At(1).addP(5).group = u"Tone"_s;
    instruments.At(1).addP(6);
    EXPECT_EQ(ParameterGroups(instruments), (QStringList{u"Built-in"_s, u"Tone"_s, u"tone"_s}));
}

TEST_F(Properties, InstrumentsAreStoredWithTheDocument)
{
    document.DocumentKind = FileKind::Unified;
    EXPECT_FALSE(StoreInstruments(editor, instruments, {}));
    text.SetText(u"<Zelvane></Zelvane>"_s);
    EXPECT_TRUE(StoreInstruments(editor, instruments, {}));
    EXPECT_EQ(text.text, u"<Zelvane>\n<instruments/>\n</Zelvane>"_s);
    New(u"1"_s);
    EXPECT_TRUE(StoreInstruments(editor, instruments, {}));
    EXPECT_EQ(text.text,
              u"<Zelvane>\n<instruments>\n<instr number=\"1\" name=\"Instrument 1\">\n"
              "<p number=\"1\" name=\"Number\" description=\"Instrument number\" group=\"Built-in\" "
              "format=\"1\" min=\"1\" max=\"200\"/>\n"
              "<p number=\"2\" name=\"Start\" description=\"Starting time in beats\" group=\"Built-in\" "
              "format=\"0\" min=\"0\" max=\"100\" unit=\"Beats\"/>\n"
              "<p number=\"3\" name=\"Duration\" description=\"Duration time in beats\" group=\"Built-in\" "
              "format=\"0\" min=\"0\" max=\"100\" unit=\"Beats\" variable=\"idur\"/>\n"
              "</instr>\n</instruments>\n</Zelvane>"_s);
}

} // namespace zelvane::test
