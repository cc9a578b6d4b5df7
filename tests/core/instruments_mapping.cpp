// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/mapping.h"

#include "instruments/instrgui.h"
#include "oracle/mappingoracle.h"
#include "platform/runtimeerror.h"
#include "shell/documentsteps.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/recordedcolour.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <optional>
#include <QByteArray>
#include <QString>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomRuns = 20000;

/// An orchestra with descriptions of its instruments 1, 2 and 3 beside it.
struct Mapping : testing::Test, TestContext {
    DocumentSteps steps;
    RecordedColour colour;

    Mapping()
    {
        steps.colour.Take(colour);
        document.DocumentKind = FileKind::Orchestra;
        document.CurrentFile = WriteFile(u"song.orc"_s);
        WriteFile(
            u"song.xml"_s,
            "<instruments>\r\n"
            "<instr number=\"1\">\r\n"
            "<p number=\"1\" format=\"1\" min=\"1\" max=\"200\"/>\r\n"
            "<p number=\"3\" name=\"Duration\" description=\"Duration time in beats\" "
            "variable=\"idur\"/>\r\n"
            "<p number=\"4\"/>\r\n"
            "</instr>\r\n"
            "<instr number=\"2\"><p number=\"5\" description=\"Loudness\" variable=\"iamp\"/></instr>\r\n"
            "<instr number=\"3\"><p number=\"4\"/></instr>\r\n"
            "</instruments>\r\n");
    }

    MappingResult Map(const QString &number, bool comments = false, bool ask = false)
    {
        text.EmptyUndoBuffer();
        return MapParameters(editor, steps, {number, comments, ask});
    }
    QString Mapped(const QString &before, const QString &number, bool comments = false, bool ask = false)
    {
        text.SetText(before);
        EXPECT_EQ(Map(number, comments, ask), MappingResult::Finished);
        return text.text;
    }
    void ExpectWarning(const QString &warning)
    {
        desktop.ExpectMessage({.text = warning, .icon = BoxIcon::Warning});
    }
};

} // namespace

TEST_F(Mapping, TheFirstRunMakesABlock)
{
    EXPECT_EQ(Mapped(u"sr = 44100\ninstr 1\nendin\n"_s, u"1"_s, true),
              u"sr = 44100\ninstr 1\n;<ZelvaneParameterMapping>\n"
              "idur = p3   ; Duration. Duration time in beats\n"
              ";</ZelvaneParameterMapping>\nendin\n"_s);
    // Behind the new lines, where the caret was put to insert them.
    const qsizetype behind = text.text.indexOf(u"endin"_s);
    EXPECT_EQ(text.Selection(), (TextSpan{behind, behind}));
}

TEST_F(Mapping, TheNextRunReplacesItsContents)
{
    const QString first = Mapped(u"instr 1\nendin\n"_s, u"1"_s, true);
    const QString second =
        u"instr 1\n;<ZelvaneParameterMapping>\nidur = p3\n;</ZelvaneParameterMapping>\nendin\n"_s;
    EXPECT_EQ(Mapped(first, u"1"_s), second);
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_EQ(Mapped(second, u"1"_s), second);
}

TEST_F(Mapping, TheBlockIsColoured)
{
    Mapped(u"instr 1\nendin\n"_s, u"1"_s);
    const TextSpan block{8, text.text.indexOf(u"\nendin"_s)};
    Map(u"1"_s);
    EXPECT_EQ(colour.inserted, (std::vector<TextSpan>{block, block}));
}

TEST_F(Mapping, WithoutVariablesTheBlockIsEmpty)
{
    EXPECT_EQ(Mapped(u"instr 3\nendin\n"_s, u"3"_s),
              u"instr 3\n;<ZelvaneParameterMapping>\n;</ZelvaneParameterMapping>\nendin\n"_s);
}

TEST_F(Mapping, MissingVariablesAreAskedFor)
{
    desktop.ExpectInput(u"Missing variable name"_s,
                        u"Specify a variable name for p4.\n(must begin with letter i)"_s, u"ipch"_s);
    EXPECT_EQ(
        Mapped(u"instr 1\nendin\n"_s, u"1"_s, false, true),
        u"instr 1\n;<ZelvaneParameterMapping>\nidur = p3\nipch = p4\n;</ZelvaneParameterMapping>\nendin\n"_s);
    desktop.ExpectInput(u"Missing variable name"_s,
                        u"Specify a variable name for p4.\n(must begin with letter i)"_s, std::nullopt);
    EXPECT_EQ(Mapped(u"instr 1\nendin\n"_s, u"1"_s, false, true),
              u"instr 1\n;<ZelvaneParameterMapping>\nidur = p3\n;</ZelvaneParameterMapping>\nendin\n"_s);
}

TEST_F(Mapping, TheBlockOfALaterInstrumentIsTaken)
{
    EXPECT_EQ(Mapped(u"instr 1\nendin\ninstr 2\n;<ZelvaneParameterMapping>\niamp = p5\n"
                     ";</ZelvaneParameterMapping>\nendin\n"_s,
                     u"1"_s),
              u"instr 1\nendin\ninstr 2\n;<ZelvaneParameterMapping>\nidur = p3\n"
              ";</ZelvaneParameterMapping>\nendin\n"_s);
    // One of an earlier instrument is not.
    EXPECT_EQ(Mapped(u"instr 1\n<ZelvaneParameterMapping>x</ZelvaneParameterMapping>\ninstr 2\n\n"_s, u"2"_s),
              u"instr 1\n<ZelvaneParameterMapping>x</ZelvaneParameterMapping>\ninstr 2\n"
              ";<ZelvaneParameterMapping>\niamp = p5\n;</ZelvaneParameterMapping>\n\n"_s);
}

TEST_F(Mapping, WhatIsNoNumberIsRefused)
{
    text.SetText(u"instr 1\nendin\n"_s);
    for (const QString &number : {QString(), u"abc"_s, u"1x"_s, u"1,5"_s}) {
        ExpectWarning(u"Specify an instrument number or press Cancel."_s);
        EXPECT_EQ(Map(number), MappingResult::NumberIsMissing);
        desktop.CheckAllCame();
    }
    EXPECT_THROW(Map(u"32768"_s), RunTimeError);
    EXPECT_EQ(text.text, u"instr 1\nendin\n"_s);
    // A half goes to the even neighbour.
    EXPECT_TRUE(Mapped(u"instr 2\nendin\n"_s, u" 2.5 "_s).contains(u"iamp = p5"_s));
}

TEST_F(Mapping, AnInstrumentWithoutDataIsRefused)
{
    text.SetText(u"instr 7\nendin\n"_s);
    ExpectWarning(u"Cannot find instrument data. Use the Instrument Properties dialog box before running "
                  "this command."_s);
    EXPECT_EQ(Map(u"7"_s), MappingResult::DataIsMissing);
    EXPECT_EQ(text.text, u"instr 7\nendin\n"_s);
}

TEST_F(Mapping, AStoreThatCannotBeReadIsNoData)
{
    WriteFile(u"song.xml"_s, "<instruments><instr number=\"1\"><p number=\"3\" variable=\"idur\"/>");
    text.SetText(u"instr 1\nendin\n"_s);
    ExpectWarning(u"Cannot find instrument data. Use the Instrument Properties dialog box before running "
                  "this command."_s);
    EXPECT_EQ(Map(u"1"_s), MappingResult::DataIsMissing);
    EXPECT_EQ(text.text, u"instr 1\nendin\n"_s);
}

TEST_F(Mapping, DataThatDoesNotConvertIsAnError)
{
    for (const auto *fields : {"<p number=\"3\" format=\"x\" variable=\"idur\"/>",
                               "<p number=\"3\" variable=\"idur\"/><p number=\"3\" variable=\"iend\"/>"}) {
        WriteFile(u"song.xml"_s,
                  QByteArray("<instruments><instr number=\"1\">") + fields + "</instr></instruments>");
        text.SetText(u"instr 1\nendin\n"_s);
        EXPECT_THROW(Map(u"1"_s), RunTimeError) << fields;
        EXPECT_EQ(text.text, u"instr 1\nendin\n"_s);
        EXPECT_EQ(text.undoSteps, 0);
    }
}

TEST_F(Mapping, VariablesAreAskedForBeforeTheStatementIsLookedFor)
{
    text.SetText(u"instr 2\nendin\n"_s);
    desktop.ExpectInput(u"Missing variable name"_s,
                        u"Specify a variable name for p4.\n(must begin with letter i)"_s, u"ipch"_s);
    EXPECT_THROW(Map(u"1"_s, false, true), RunTimeError);
    desktop.CheckAllCame();
    EXPECT_EQ(text.text, u"instr 2\nendin\n"_s);
}

TEST_F(Mapping, InstrumentZeroIsOneLikeOthers)
{
    WriteFile(u"song.xml"_s, "<instruments><instr number=\"0\"><p number=\"3\" variable=\"idur\"/></instr>"
                             "</instruments>");
    EXPECT_EQ(Mapped(u"instr 1\nendin\ninstr 0\nendin\n"_s, u"0"_s),
              u"instr 1\nendin\ninstr 0\n;<ZelvaneParameterMapping>\nidur = p3\n"
              ";</ZelvaneParameterMapping>\nendin\n"_s);
    ExpectWarning(u"Cannot find instrument data. Use the Instrument Properties dialog box before running "
                  "this command."_s);
    EXPECT_EQ(Map(u"-1"_s), MappingResult::DataIsMissing);
}

TEST_F(Mapping, DescriptionsInFrontOfAnOrchestraAreNoInstruments)
{
    document.DocumentKind = FileKind::Unified;
    const QString data =
        u"<Zelvane>\n<instruments>\n<instr number=\"1\">\n<p number=\"3\" variable=\"idur\"/>\n"
        "</instr>\n</instruments>\n</Zelvane>\n<CsInstruments>\ninstr 1\n"_s;
    EXPECT_EQ(Mapped(data + u"endin\n</CsInstruments>\n"_s, u"1"_s),
              data + u";<ZelvaneParameterMapping>\nidur = p3\n;</ZelvaneParameterMapping>\nendin\n"
                     "</CsInstruments>\n"_s);
}

TEST_F(Mapping, WithoutTheStatementNothingIsWritten)
{
    for (const QString &orchestra : {u"instr 2\nendin\n"_s, u"instr 1"_s, QString(),
                                     u";<ZelvaneParameterMapping>;</ZelvaneParameterMapping>"_s}) {
        text.SetText(orchestra);
        EXPECT_THROW(Map(u"1"_s), RunTimeError);
        EXPECT_EQ(text.text, orchestra);
    }
}

TEST_F(Mapping, RandomTextsComeOutAsTheStepsSay)
{
    RandomText texts({u"instr 1\n"_s, u"instr  2 ; x\n"_s, u"instr"_s, u" 1"_s, u"\n"_s, u";"_s, u"a"_s,
                      u"<ZelvaneParameterMapping>"_s, u"</ZelvaneParameterMapping>"_s,
                      u"<ZelvaneParameterMapping>\nx\n;</ZelvaneParameterMapping>"_s, u"Mapping>"_s},
                     10);
    for (int run = 0; run < RandomRuns; ++run) {
        const QString before = texts.Next();
        const qint32 number = texts.Number(1, 2);
        const bool comments = texts.Number(0, 1);
        text.SetText(before);
        const qint32 pos = FindInstrStatement(before, number);
        if (pos < 0) {
            ASSERT_THROW(Map(QString::number(number), comments), RunTimeError);
            ASSERT_EQ(text.text, before);
            continue;
        }
        const QString code = GenerateVariableCode(editor, number, comments, false).remove(u'\r');
        ASSERT_EQ(Map(QString::number(number), comments), MappingResult::Finished);
        ASSERT_EQ(text.text, oracle::MapParameters(before, code, pos)) << testing::PrintToString(before);
    }
}

} // namespace zelvane::test
