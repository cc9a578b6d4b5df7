// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/macroexpansion.h"

#include "oracle/presetmacros.h"
#include "platform/parameters.h"
#include "platform/runtimeerror.h"
#include "run/runkeys.h"
#include "run/toolpaths.h"
#include "shell/documentkind.h"
#include "support/boxes.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class Macros : public ::testing::Test
{
protected:
    QString Open(const QString &name)
    {
        context.document.CurrentFile = context.WriteFile(name);
        ClassifyDocument(context.document, context.settings);
        return context.document.CurrentFile;
    }

    /// The expanded text; a failed macro gives the text "failed".
    QString Expand(QString text, bool confirm = false)
    {
        return ExpandPresetMacros(text, confirm, run) ? text : u"failed"_s;
    }

    void ExpectErrorNumber(const QString &text, ErrorNumber number)
    {
        try {
            Expand(text);
            FAIL() << "no error";
        } catch (const RunTimeError &error) {
            EXPECT_EQ(int(error.Number()), int(number));
        }
    }

    TestContext context;
    ToolPaths tools{.Csound = u"/bin/csound"_s,
                    .Csound2 = u"/opt/csound 7"_s,
                    .Help = u"/help.html"_s,
                    .Editor = u"audacity"_s,
                    .Player = u"aplay"_s};
    RunContext run{context.editor, tools, context.windows};
};

} // namespace

TEST_F(Macros, ToolPathsAreNotQuoted)
{
    EXPECT_EQ(Expand(u"$CSOUND$|$CSOUND2$|$HELP$|$EDITOR$|$PLAYER$"_s),
              u"/bin/csound|/opt/csound 7|/help.html|audacity|aplay"_s);
}

TEST_F(Macros, ShiftSwapsTheCompilers)
{
    context.desktop.keysDown = {KeyCode::Shift};
    EXPECT_EQ(Expand(u"$CSOUND$|$CSOUND2$|$HELP$"_s), u"/opt/csound 7|/bin/csound|/help.html"_s);
    EXPECT_EQ(ExpandStaticMacros(u"$CSOUND$"_s, run), u"/bin/csound"_s);
}

TEST_F(Macros, NamesMayHaveAnyCase)
{
    EXPECT_EQ(Expand(u"$csound$ $CsOuNd$"_s), u"/bin/csound /bin/csound"_s);
}

TEST_F(Macros, ProgramItself)
{
    EXPECT_EQ(Expand(u"$ME$"_s), QCoreApplication::applicationFilePath());
    EXPECT_EQ(Expand(u"$MEDIR$"_s), QCoreApplication::applicationDirPath());
    EXPECT_FALSE(Expand(u"$MEDIR$"_s).endsWith(u'/'));
}

TEST_F(Macros, PartsOfTheDocument)
{
    const QString document = Open(u"my song.orc"_s);
    const QString folder = context.folder.path();
    EXPECT_EQ(Expand(u"$DOCUMENT$"_s), u'"' + document + u'"');
    EXPECT_EQ(Expand(u"$NAME$"_s), folder + u"/my song"_s);
    EXPECT_EQ(Expand(u"$BASENAME$"_s), u"my song"_s);
    EXPECT_EQ(Expand(u"$DIR$"_s), folder);
    EXPECT_EQ(Expand(u"$EXT$"_s), u"orc"_s);
}

TEST_F(Macros, WindowsPathIsQuotedButNotItsFolder)
{
    context.document.CurrentFile = u"C:\\a b\\x.orc"_s;
    EXPECT_EQ(Expand(u"$DOCUMENT$"_s), u"\"C:\\a b\\x.orc\""_s);
    EXPECT_EQ(Expand(u"$DIR$"_s), u"C:\\a b"_s);
}

TEST_F(Macros, OutputFiles)
{
    Open(u"x.csd"_s);
    const QString folder = context.folder.path();
    EXPECT_EQ(Expand(u"$WAVE$ $AIFF$ $LOG$"_s),
              folder + u"/x.wav "_s + folder + u"/x.aif "_s + folder + u"/x.log"_s);
}

TEST_F(Macros, SearchedFiles)
{
    const QString orchestra = Open(u"a b.orc"_s);
    const QString score = context.WriteFile(u"a b.sco"_s);
    const QString midi = context.WriteFile(u"a b.mid"_s);
    const QString sound = context.WriteFile(u"a b.wav"_s);
    EXPECT_EQ(Expand(u"$ORCHESTRA$ $SCORE$ $MIDI$ $SOUNDINPUT$"_s),
              u"\"%1\" \"%2\" \"%3\" \"%4\""_s.arg(orchestra, score, midi, sound));
}

TEST_F(Macros, UnifiedFileStandsForItsScore)
{
    const QString document = Open(u"x.csd"_s);
    EXPECT_EQ(Expand(u"$ORCHESTRA$ $SCORE$|"_s), document + u"  |"_s);
    EXPECT_EQ(Expand(u"$ORCHESTRA$ $SCORE$|"_s, true), document + u"  |"_s);
}

TEST_F(Macros, Environment)
{
    context.desktop.environment = {{u"SFDIR"_s, u"/s f"_s},
                                   {u"SSDIR"_s, u"/ss"_s},
                                   {u"SADIR"_s, u"/sa"_s},
                                   {u"INCDIR"_s, u"/inc"_s},
                                   {u"HOME"_s, u"/home"_s}};
    EXPECT_EQ(Expand(u"$SFDIR$|$SSDIR$|$SADIR$|$INCDIR$|$HOME$"_s), u"/s f|/ss|/sa|/inc|$HOME$"_s);
}

TEST_F(Macros, SelectionUpToItsFirstLineEnd)
{
    context.text.text = u"first line\nsecond\n"_s;
    context.text.selection = {2, 15};
    EXPECT_EQ(Expand(u"<$SEL$>"_s), u"<rst line>"_s);
    context.text.selection = {0, 5};
    EXPECT_EQ(Expand(u"$SEL$"_s), u"first"_s);
}

TEST_F(Macros, SelectionWithoutAnyFails)
{
    context.text.text = u"first line\nsecond\n"_s;
    EXPECT_EQ(Expand(u"$SEL$"_s), u"failed"_s);
    EXPECT_EQ(context.status.text, u"SEL macro returned empty string."_s);
    context.text.selection = {10, 14}; // begins at the line end
    EXPECT_EQ(SelectionFirstLine(context.editor), QString());
}

TEST_F(Macros, SelectionNeedsTheMainWindow)
{
    context.text.text = u"abc"_s;
    context.text.selection = {0, 3};
    context.windows.mainWindowActive = false;
    context.desktop.ExpectMessage({.text = u"SEL macro returned empty string."_s, .icon = BoxIcon::Warning});
    EXPECT_EQ(Expand(u"$SEL$"_s), u"failed"_s);
    EXPECT_TRUE(context.status.shown.isEmpty());
}

TEST_F(Macros, ClipCopiesAndVanishes)
{
    context.text.text = u"one\ntwo"_s;
    context.text.selection = {2, 5};
    context.desktop.clipboard = u"old"_s;
    EXPECT_EQ(Expand(u"-a $CLIP$ -b"_s), u"-a  -b"_s);
    EXPECT_EQ(context.desktop.clipboard, u"e\nt"_s);
    context.text.selection = {};
    EXPECT_EQ(Expand(u"$CLIP$"_s), QString());
    EXPECT_EQ(context.desktop.clipboard, u"one\ntwo"_s);
}

TEST_F(Macros, ClipLeavesTheClipboardFromAnotherWindow)
{
    context.text.text = u"one"_s;
    context.desktop.clipboard = u"old"_s;
    context.windows.mainWindowActive = false;
    EXPECT_EQ(Expand(u"x$CLIP$y"_s), u"xy"_s);
    EXPECT_EQ(context.desktop.clipboard, u"old"_s);
}

TEST_F(Macros, ClipboardFailureIsARunTimeError)
{
    context.desktop.clipboardFails = true;
    ExpectErrorNumber(u"$CLIP$"_s, ErrorNumber::DeviceError);
}

TEST_F(Macros, CharacterBehindClipIsPassedOver)
{
    EXPECT_EQ(Expand(u"$CLIP$$CSOUND$"_s), u"$CSOUND$"_s);
    EXPECT_EQ(Expand(u"$CLIP$ $CSOUND$"_s), u" /bin/csound"_s);
}

TEST_F(Macros, ClosingDollarOfAnUnknownNameOpensTheNext)
{
    EXPECT_EQ(Expand(u"$FOO$CSOUND$"_s), u"$FOO/bin/csound"_s);
    EXPECT_EQ(Expand(u"$$CSOUND$"_s), u"$/bin/csound"_s);
    EXPECT_EQ(Expand(u"$$"_s), u"$$"_s);
    EXPECT_EQ(Expand(u"costs 5$"_s), u"costs 5$"_s);
    EXPECT_EQ(Expand(u"$"_s), u"$"_s);
    EXPECT_EQ(Expand({}), QString());
}

TEST_F(Macros, KnownNameWithoutItsClosingDollar)
{
    ExpectErrorNumber(u"a $CSOUND"_s, ErrorNumber::InvalidCall);
    EXPECT_EQ(Expand(u"a $CSOUN"_s), u"a $CSOUN"_s);
    tools.Player.clear();
    context.desktop.ExpectMessage(
        {.text = u"PLAYER macro returned empty string. Do you want to open the Preferences dialog box now?"_s,
         .icon = BoxIcon::Warning,
         .buttons = BoxButtons::YesNo},
        BoxAnswer::No);
    EXPECT_EQ(Expand(u"$PLAYER"_s), u"failed"_s);
}

TEST_F(Macros, WhatAMacroGivesIsScannedFromItsSecondCharacter)
{
    tools.Editor = u"x$PLAYER$"_s;
    EXPECT_EQ(Expand(u"$EDITOR$"_s), u"xaplay"_s);
    tools.Editor = u"$PLAYER$x"_s;
    EXPECT_EQ(Expand(u"$EDITOR$"_s), u"$PLAYER$x"_s);
    tools.Editor = u"a$PLA"_s;
    EXPECT_EQ(Expand(u"$EDITOR$YER$"_s), u"aaplay"_s);
}

TEST_F(Macros, FirstFailureLeavesTheRest)
{
    tools.Csound.clear();
    context.desktop.ExpectMessage(
        {.text = u"CSOUND macro returned empty string. Do you want to open the Preferences dialog box now?"_s,
         .icon = BoxIcon::Warning,
         .buttons = BoxButtons::YesNo},
        BoxAnswer::No);
    QString text = u"$PLAYER$ $csound$ $HELP$"_s;
    EXPECT_FALSE(ExpandPresetMacros(text, false, run));
    EXPECT_EQ(text, u"aplay $csound$ $HELP$"_s);
    EXPECT_TRUE(context.windows.calls.isEmpty());
}

TEST_F(Macros, PreferencesAreOfferedForToolPaths)
{
    tools = {};
    for (const QString &name : {u"CSOUND"_s, u"CSOUND2"_s, u"HELP"_s, u"EDITOR"_s, u"PLAYER"_s}) {
        context.windows.calls.clear();
        context.desktop.ExpectMessage(
            {.text = name +
                     u" macro returned empty string. Do you want to open the Preferences dialog box now?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo},
            BoxAnswer::Yes);
        EXPECT_EQ(Expand(u'$' + name + u'$'), u"failed"_s);
        EXPECT_EQ(context.windows.calls, QStringList{u"preferences"_s});
    }
}

TEST_F(Macros, UnsetVariableTellsWhatToWrite)
{
    for (const QString &name : {u"SFDIR"_s, u"SSDIR"_s, u"SADIR"_s, u"INCDIR"_s}) {
        context.desktop.ExpectMessage(
            {.text = name + u" macro returned empty string.\n\n"_s + name +
                     u" environment variable is not set. You should add the following line to the "
                     u"Autoexec.bat:\n\nSET "_s +
                     name + u"=Drive:\\Directory\n\nAnd reboot your system."_s,
             .icon = BoxIcon::Warning});
        EXPECT_EQ(Expand(u'$' + name + u'$'), u"failed"_s);
    }
}

TEST_F(Macros, MacrosOfADocumentFailWithoutOne)
{
    for (const QString &name :
         {u"DOCUMENT"_s, u"ORCHESTRA"_s, u"SCORE"_s, u"MIDI"_s, u"SOUNDINPUT"_s, u"WAVE"_s, u"AIFF"_s,
          u"LOG"_s, u"NAME"_s, u"BASENAME"_s, u"DIR"_s, u"EXT"_s}) {
        EXPECT_EQ(Expand(u'$' + name + u'$'), u"failed"_s);
        EXPECT_EQ(context.status.text, name + u" macro returned empty string."_s);
    }
    context.windows.mainWindowActive = false;
    context.desktop.ExpectMessage({.text = u"WAVE macro returned empty string."_s, .icon = BoxIcon::Warning});
    EXPECT_EQ(Expand(u"$Wave$"_s), u"failed"_s);
}

TEST_F(Macros, NoToOverwritingFails)
{
    Open(u"x.csd"_s);
    const QString wave = context.WriteFile(u"x.wav"_s);
    context.settings.SaveFlag(Keys::OverwritePrompt, true);
    context.desktop.ExpectMessage({.text = wave + u" already exists. Do you want to overwrite it?"_s,
                                   .icon = BoxIcon::Warning,
                                   .buttons = BoxButtons::YesNo},
                                  BoxAnswer::No);
    EXPECT_EQ(Expand(u"-o $WAVE$"_s), u"failed"_s);
    EXPECT_EQ(context.status.text, u"WAVE macro returned empty string."_s);
}

TEST_F(Macros, ConfirmAFileToWrite)
{
    Open(u"x.csd"_s);
    const QString folder = context.folder.path();
    FileDialogRequest dialog{.title = u"WAVE - Confirm macro expansion"_s,
                             .filters = {{u"All Files"_s, u"*"_s}},
                             .folder = folder,
                             .fileName = folder + u"/x.wav"_s};
    context.desktop.ExpectSaveDialog(dialog, {u"/out put.wav"_s});
    EXPECT_EQ(Expand(u"$WAVE$"_s, true), u"\"/out put.wav\""_s);
    // The default extension is that of a file on disk.
    context.WriteFile(u"x.wav"_s);
    dialog.defaultExtension = u"wav"_s;
    context.desktop.ExpectSaveDialog(dialog, {});
    EXPECT_EQ(Expand(u"$WAVE$"_s, true), u"failed"_s);
    EXPECT_EQ(context.status.text, u"WAVE macro returned empty string."_s);
}

TEST_F(Macros, ConfirmAFileToRead)
{
    const QString document = Open(u"x.orc"_s);
    const QString score = context.WriteFile(u"x.sco"_s);
    const auto dialog = [](const QString &macro, const QString &value, const QString &name,
                           const QString &label, const QString &patterns) {
        return FileDialogRequest{.title = macro + u" - Confirm macro expansion"_s,
                                 .filters = {{label, patterns}, {u"All Files"_s, u"*"_s}},
                                 .folder = value,
                                 .fileName = name};
    };
    context.desktop.ExpectOpenDialog(
        dialog(u"ORCHESTRA"_s, document, u"x.orc"_s, u"Orchestra Files"_s, u"*.orc"_s), {u"/a.orc"_s});
    context.desktop.ExpectOpenDialog(dialog(u"SCORE"_s, score, u"x.sco"_s, u"Score Files"_s, u"*.sco"_s), {});
    EXPECT_EQ(Expand(u"$CSOUND$ $ORCHESTRA$ $SCORE$ $DOCUMENT$"_s, true), u"failed"_s);
    EXPECT_EQ(context.status.text, u"SCORE macro returned empty string."_s);
}

TEST_F(Macros, ConfirmAsksNothingForEmptyValuesAndOtherMacros)
{
    EXPECT_EQ(ConfirmMacroValue(u"SCORE"_s, {}, run), QString());
    EXPECT_EQ(ConfirmMacroValue(u"WAVE"_s, {}, run), QString());
    for (const QString &name : {u"CSOUND"_s, u"DOCUMENT"_s, u"SFDIR"_s, u"SEL"_s, u"NAME"_s})
        EXPECT_EQ(ConfirmMacroValue(name, u"v"_s, run), u"v"_s);
}

TEST_F(Macros, CancelledSearchFails)
{
    Open(u"x.sco"_s);
    context.desktop.ExpectOpenDialog(SelectHalf(u"Orchestra"_s, u"orc"_s, u"x*"_s, context.folder.path()),
                                     {});
    EXPECT_EQ(Expand(u"$ORCHESTRA$"_s, true), u"failed"_s);
    EXPECT_EQ(context.status.text, u"ORCHESTRA macro returned empty string."_s);
}

#ifdef Q_OS_LINUX
TEST_F(Macros, FileNamesWithQuotesComeOutOfTheParametersWhole)
{
    const QString document = Open(u"my \"best\" song.csd"_s);
    EXPECT_EQ(SplitParameters(Expand(u"-d $DOCUMENT$ -W"_s)), (QStringList{u"-d"_s, document, u"-W"_s}));
}
#endif

TEST_F(Macros, OuterBlanksAreNoReasonForQuotes)
{
    context.document.CurrentFile = u" /x.csd "_s;
    EXPECT_EQ(Expand(u"$DOCUMENT$"_s), u" /x.csd "_s);
    context.document.CurrentFile = u" /a b "_s;
    EXPECT_EQ(Expand(u"$DOCUMENT$"_s), u"\" /a b \""_s);
}

TEST_F(Macros, StaticMacrosAreWholeFields)
{
    context.desktop.environment[u"SFDIR"_s] = u"/sf"_s;
    EXPECT_EQ(ExpandStaticMacros(u"$CSOUND$"_s, run), u"/bin/csound"_s);
    EXPECT_EQ(ExpandStaticMacros(u"$csound2$"_s, run), u"/opt/csound 7"_s);
    EXPECT_EQ(ExpandStaticMacros(u"$SFDIR$"_s, run), u"/sf"_s);
    EXPECT_EQ(ExpandStaticMacros(u"$ME$"_s, run), QCoreApplication::applicationFilePath());
    EXPECT_EQ(ExpandStaticMacros(u"$MeDir$"_s, run), QCoreApplication::applicationDirPath());
    for (const QString &text : {u"$CSOUND$ -h"_s, u" $CSOUND$"_s, u"$DOCUMENT$"_s, u"$SEL$"_s, u"$CLIP$"_s,
                                u"$"_s, u"$$"_s, u""_s, u"CSOUND"_s, u"$SSDIR$"_s, u"/usr/bin/x"_s})
        EXPECT_EQ(ExpandStaticMacros(text, run), text);
}

TEST_F(Macros, PickerRows)
{
    const auto rows = MacroPickerRows();
    ASSERT_EQ(rows.size(), 25u);
    EXPECT_EQ(rows[0].macro, u"$CSOUND$"_s);
    EXPECT_EQ(rows[0].description, u"Csound executable"_s);
    EXPECT_EQ(rows[8].description, u"Search for MIDI files "_s);
    EXPECT_EQ(rows[24].macro, u"$MEDIR$"_s);
    // Each of them is known.
    for (const MacroRow &row : rows) {
        QStringList asked;
        QString text = row.macro;
        ScanMacros(text, [&asked](const QString &name) -> MacroValue {
            asked.append(name);
            return {MacroValue::State::Text, u"v"_s};
        });
        EXPECT_EQ(asked, QStringList{row.macro.sliced(1, row.macro.size() - 2)});
    }
    Open(u"x.csd"_s);
    context.text.text = u"t"_s;
    context.text.selection = {0, 1};
    context.desktop.environment = {
        {u"SFDIR"_s, u"1"_s}, {u"SSDIR"_s, u"2"_s}, {u"SADIR"_s, u"3"_s}, {u"INCDIR"_s, u"4"_s}};
    context.WriteFile(u"x.mid"_s);
    context.WriteFile(u"x.wav"_s);
    for (const MacroRow &row : rows)
        EXPECT_NE(Expand(row.macro), row.macro);
}

TEST_F(Macros, ScanCountsIn16Bits)
{
    const QString full(32767, u'x');
    EXPECT_EQ(Expand(full), full);
    ExpectErrorNumber(full + u'x', ErrorNumber::Overflow);
    // What the macros leave is counted, not what they were.
    const QString shrinks = QString(32760, u'x') + u"$EDITOR$"_s;
    tools.Editor = u"ed"_s;
    EXPECT_EQ(Expand(shrinks), QString(32760, u'x') + u"ed"_s);
    ExpectErrorNumber(QString(32767, u'x') + u"$EDITOR$"_s, ErrorNumber::Overflow);
    // A failure before the end of the count comes first.
    EXPECT_EQ(Expand(u"$SEL$"_s + full), u"failed"_s);
}

TEST_F(Macros, OverflowHasItsText)
{
    try {
        Expand(QString(40000, u'x'));
        FAIL();
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.Description(), u"Overflow"_s);
    }
}

TEST_F(Macros, MacroThatNamesItselfEndsInAnOverflow)
{
    tools.Editor = u"a$EDITOR$"_s;
    EXPECT_EQ(int(oracle::ExpandPresetMacros(u"$EDITOR$"_s, {{u"EDITOR"_s, tools.Editor}}).how),
              int(oracle::MacroEnd::How::Overflow));
    ExpectErrorNumber(u"$EDITOR$"_s, ErrorNumber::Overflow);
}

TEST_F(Macros, LongSelectionThatNamesItselfEndsSoon)
{
    context.text.text = u"a$SEL$"_s + QString(5'000'000, u'b');
    context.text.selection = {0, context.text.text.size()};
    QElapsedTimer clock;
    clock.start();
    ExpectErrorNumber(u"$SEL$"_s, ErrorNumber::Overflow);
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST_F(Macros, LongFieldOfMacrosIsScannedOnce)
{
    tools.Editor = u"e"_s;
    QString text;
    for (int i = 0; i < 30000; ++i)
        text += u"$EDITOR$"_s;
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(Expand(text), QString(30000, u'e'));
    EXPECT_LT(clock.elapsed(), 5000);
}

namespace
{

QString RandomPiece(std::mt19937 &random, const QStringList &pieces, int most)
{
    QString text;
    for (int left = std::uniform_int_distribution(0, most)(random); left > 0; --left)
        text += pieces[qsizetype(random() % size_t(pieces.size()))];
    return text;
}

} // namespace

TEST_F(Macros, EqualsThePlainLoopOnRandomTexts)
{
    std::mt19937 random(20013);
    const QStringList pieces{u"$"_s,      u"$"_s,       u"$"_s,      u" "_s,        u"x"_s,
                             u"CSOUND"_s, u"Csound2"_s, u"editor"_s, u"PLAYER"_s,   u"HELP"_s,
                             u"SEL"_s,    u"CLIP"_s,    u"SFDIR"_s,  u"DOCUMENT"_s, u"$WAVE$"_s,
                             u"NAME"_s,   u"$SEL$"_s,   u"$CLIP$"_s, u"$EDITOR$"_s};
    int compared = 0;
    int failed = 0;
    int broken = 0;
    for (int round = 0; round < 50000; ++round) {
        tools = {.Csound = RandomPiece(random, pieces, 3),
                 .Csound2 = u"c2"_s,
                 .Help = RandomPiece(random, pieces, 2),
                 .Editor = RandomPiece(random, pieces, 2),
                 .Player = u"a b"_s};
        context.text.text = RandomPiece(random, pieces, 2);
        context.text.selection = {0, context.text.text.size()};
        context.desktop.environment[u"SFDIR"_s] = RandomPiece(random, pieces, 2);
        context.document.CurrentFile = u"/d/"_s + RandomPiece(random, pieces, 2) + u".csd"_s;
        const QString name = context.document.CurrentFile.chopped(4);
        const oracle::MacroTable table{{u"CSOUND"_s, tools.Csound},
                                       {u"CSOUND2"_s, tools.Csound2},
                                       {u"HELP"_s, tools.Help},
                                       {u"EDITOR"_s, tools.Editor},
                                       {u"PLAYER"_s, tools.Player},
                                       {u"SEL"_s, context.text.text},
                                       {u"CLIP"_s, {}},
                                       {u"SFDIR"_s, context.desktop.environment[u"SFDIR"_s]},
                                       {u"DOCUMENT"_s, context.document.CurrentFile},
                                       {u"NAME"_s, name},
                                       {u"WAVE"_s, name + u".wav"_s}};
        const QString text = RandomPiece(random, pieces, 8);
        const oracle::MacroEnd expected = oracle::ExpandPresetMacros(text, table, 200);
        if (expected.how == oracle::MacroEnd::How::GaveUp)
            continue; // names itself: tests of its own
        ++compared;
        QString result = text;
        using How = oracle::MacroEnd::How;
        if (expected.how == How::Failed) {
            ++failed;
            const QStringList offersPreferences{u"CSOUND"_s, u"HELP"_s, u"EDITOR"_s};
            if (offersPreferences.contains(expected.failed)) {
                context.desktop.ExpectMessage(
                    {.text =
                         expected.failed +
                         u" macro returned empty string. Do you want to open the Preferences dialog box now?"_s,
                     .icon = BoxIcon::Warning,
                     .buttons = BoxButtons::YesNo},
                    BoxAnswer::No);
            } else if (expected.failed == u"SFDIR") {
                context.desktop.ExpectMessage(
                    {.text =
                         u"SFDIR macro returned empty string.\n\nSFDIR environment variable is not set. You "
                         u"should "
                         u"add the following line to the Autoexec.bat:\n\nSET SFDIR=Drive:\\Directory\n\nAnd "
                         u"reboot your system."_s,
                     .icon = BoxIcon::Warning});
            }
            ASSERT_FALSE(ExpandPresetMacros(result, false, run)) << text.toStdString();
            ASSERT_EQ(result, expected.text);
        } else if (expected.how == How::InvalidCall) {
            ++broken;
            ASSERT_THROW(ExpandPresetMacros(result, false, run), RunTimeError) << text.toStdString();
        } else {
            ASSERT_EQ(int(expected.how), int(How::Done));
            ASSERT_TRUE(ExpandPresetMacros(result, false, run)) << text.toStdString();
            ASSERT_EQ(result, expected.text) << text.toStdString();
        }
        if (HasFailure())
            return;
    }
    EXPECT_GT(compared, 45000);
    EXPECT_GT(failed, 1000);
    EXPECT_GT(broken, 100);
}

} // namespace zelvane::test
