// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/statementfields.h"

#include "platform/runtimeerror.h"
#include "shell/documentsteps.h"
#include "support/printers.h"
#include "support/recordedcolour.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr auto Stored =
    "<instruments>\r\n"
    "<instr number=\"1\" name=\"Bell\">\r\n"
    "<p number=\"2\" name=\"Start\" group=\"Built-in\" format=\"0\" min=\"0\" max=\"9\"/>\r\n"
    "<p number=\"1\" name=\"Number\" group=\"Built-in\" format=\"1\" min=\"1\" max=\"9\"/>\r\n"
    "<p number=\"3\" format=\"0\" min=\"0\" max=\"9\"/>\r\n"
    "</instr>\r\n"
    "<instr number=\"2\"><p number=\"1\" format=\"0\" min=\"0\" max=\"9\"/>"
    "<p number=\"3\" format=\"0\" min=\"0\" max=\"9\"/></instr>\r\n"
    "<instr number=\"3\"><p number=\"1\" format=\"x\" min=\"0\" max=\"9\"/></instr>\r\n"
    "</instruments>\r\n";

struct StatementFieldsTest : testing::Test, TestContext {
    DocumentSteps steps;
    RecordedColour colour;

    StatementFieldsTest()
    {
        document.DocumentKind = FileKind::Score;
        document.CurrentFile = WriteFile(u"song.sco"_s);
        WriteFile(u"song.xml"_s, Stored);
        steps.colour.Take(colour);
    }

    /// Puts the text into the editor and the caret to where it holds a bar.
    std::optional<StatementFields> Read(QString marked)
    {
        const qsizetype caret = marked.indexOf(u'|');
        text.SetText(marked.remove(u'|'));
        text.SetSelection(caret, caret);
        return ReadStatement(editor);
    }
    void ExpectNotFound()
    {
        desktop.ExpectMessage({.text = u"Score i statement not found.\n\nPosition the cursor on the first "
                                       "line of a score i statement."_s,
                               .icon = BoxIcon::Warning});
    }
    static QStringList Values(const StatementFields &fields)
    {
        QStringList values;
        for (const pClass &field : fields.instrument->pCol)
            values.append(field.value);
        return values;
    }
};

TEST_F(StatementFieldsTest, TheStatementGivesTheValues)
{
    const std::optional<StatementFields> fields = Read(u"f1 0 8\ni1 0 2| 440 [1 2]\ne\n"_s);
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->instrument->nome, u"Bell"_s);
    EXPECT_EQ(Values(*fields), (QStringList{u"1"_s, u"0"_s, u"2"_s, u"440"_s, u"[1 2]"_s}));
    EXPECT_EQ(fields->text, u"1 0 2 440 [1 2]"_s);
    EXPECT_EQ(fields->range, (TextSpan{8, 23}));
    // In order of their numbers, and those of the further tokens behind.
    const KeyedCollection<pClass> &p = fields->instrument->pCol;
    EXPECT_EQ(p.At(0).nome, u"Number"_s);
    EXPECT_EQ(p.At(1).nome, u"Start"_s);
    EXPECT_EQ(p.At(3).nome, QString());
    EXPECT_EQ(p.At(4).number, 5);
    EXPECT_EQ(p.At(4).key, u"i1p5"_s);
    EXPECT_EQ(p.At(4).max, 0);
}

TEST_F(StatementFieldsTest, AShortStatementLeavesTheOthersEmpty)
{
    const std::optional<StatementFields> fields = Read(u"i1 |0\n"_s);
    ASSERT_TRUE(fields);
    EXPECT_EQ(Values(*fields), (QStringList{u"1"_s, u"0"_s, QString()}));
}

TEST_F(StatementFieldsTest, AnUnknownInstrumentIsBare)
{
    const std::optional<StatementFields> fields = Read(u"|i7.1 0 2\n"_s);
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->instrument->number, 7);
    EXPECT_EQ(fields->instrument->nome, QString());
    EXPECT_EQ(Values(*fields), (QStringList{u"7.1"_s, u"0"_s, u"2"_s}));
    EXPECT_EQ(fields->instrument->pCol.At(2).number, 3);
    EXPECT_EQ(fields->instrument->pCol.At(2).formato, PFormat::Real);
}

TEST_F(StatementFieldsTest, WithoutAStatementTheUserIsTold)
{
    for (const QString &marked :
         {u"|f1 0 8\n"_s, u"|i 1 0 2\n"_s, u"i1 0 2\n| 5\n"_s, u"|"_s, u"|i0 1\n"_s}) {
        ExpectNotFound();
        EXPECT_FALSE(Read(marked));
        desktop.CheckAllCame();
    }
}

TEST_F(StatementFieldsTest, GapsInThePFieldsAreTold)
{
    desktop.ExpectMessage(
        {.text = u"Error while sorting p-fields: non-consecutive items."_s, .icon = BoxIcon::Critical});
    EXPECT_FALSE(Read(u"|i2 0 1\n"_s));
}

TEST_F(StatementFieldsTest, WithoutATokenNothingIsTold)
{
    EXPECT_FALSE(Read(u"|i12"_s));
}

TEST_F(StatementFieldsTest, WhatCannotBeReadIsAnError)
{
    EXPECT_THROW(Read(u"|i99999 0 1\n"_s), RunTimeError);
    EXPECT_THROW(Read(u"|i3 0 1\n"_s), RunTimeError);
    EXPECT_THROW(Read(u"|i7 "_s + u"1 "_s.repeated(32767) + u"\n"_s), RunTimeError);
}

TEST_F(StatementFieldsTest, AsManyPFieldsAsANumberHolds)
{
    const std::optional<StatementFields> fields = Read(u"|i7 "_s + u"1 "_s.repeated(32766) + u"\n"_s);
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->instrument->pCol.Count(), 32767);
}

TEST_F(StatementFieldsTest, TheValuesGoIntoTheStatementAsOneEdit)
{
    std::optional<StatementFields> fields = Read(u"i1 0 2| 440\ni2 0 1\n"_s);
    ASSERT_TRUE(fields);
    fields->instrument->pCol.At(1).value = u"1.25"_s;
    fields->instrument->pCol.At(3).value = u"lost"_s;
    text.EmptyUndoBuffer();
    RewriteStatement(editor, steps, *fields);
    EXPECT_EQ(text.text, u"i1 1.25 2 440\ni2 0 1\n"_s);
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_EQ(text.Selection(), (TextSpan{13, 13}));
    EXPECT_EQ(colour.inserted, (std::vector<TextSpan>{{1, 13}}));
}

TEST_F(StatementFieldsTest, GroupsInTheirOrder)
{
    const std::optional<StatementFields> fields = Read(u"|i1 0 2 440\n"_s);
    ASSERT_TRUE(fields);
    EXPECT_EQ(GroupsOf(*fields->instrument), (QStringList{u"Built-in"_s, u"No Group"_s}));
    fields->instrument->pCol.At(3).group = u"built-in"_s;
    EXPECT_EQ(GroupsOf(*fields->instrument), (QStringList{u"Built-in"_s, u"No Group"_s, u"built-in"_s}));
}

TEST(StatementFieldTexts, TellOfTheField)
{
    pClass field;
    EXPECT_EQ(FieldCaption(field, 4), u"p4:"_s);
    EXPECT_EQ(FieldHint(field, 4), u"p4"_s);
    field.nome = u"Amp"_s;
    field.description = u"How loud"_s;
    field.min = -.5;
    field.max = 200;
    EXPECT_EQ(FieldCaption(field, 4), u"&Amp:"_s);
    EXPECT_EQ(FieldHint(field, 4), u"p4 - How loud"_s);
    EXPECT_EQ(SliderHint(field), u"Min -.5 Max 200"_s);
    EXPECT_EQ(FormatWord(PFormat::Real), u"Real"_s);
    EXPECT_EQ(FormatWord(PFormat::Integer), u"Integer"_s);
    EXPECT_EQ(FormatWord(PFormat::Boolean), u"Boolean"_s);
    EXPECT_EQ(FormatWord(PFormat::String), u"String"_s);
    EXPECT_EQ(FormatWord(PFormat(9)), QString());
}

} // namespace

} // namespace zelvane::test
