// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outline.h"
#include "language/outlinecommands.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "shell/documentkeys.h"
#include "support/printers.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const QString Orchestra = u"sr = 44100\ninstr 1, 2 ; bass\nloop: a1 = $A\nendin\n#define A #1#\nb1 = $A\n"
                          "#include \"u.orc\"\n"_s;

class OutlineCommands : public ::testing::Test, protected TestContext
{
protected:
    OutlineCommands()
    {
        document.DocumentKind = FileKind::Orchestra;
        document.CurrentFile = folder.filePath(u"pieces/a.orc"_s);
        QDir(folder.path()).mkpath(u"pieces"_s);
        Scan(Orchestra);
    }

    void Scan(const QString &newText)
    {
        text.text = newText;
        outline = ScanOutline(newText, document.DocumentKind);
    }
    void Click(const QString &key) { ShowOutlineNode(editor, outline, outline.Find(key)); }

    Outline outline;
};

} // namespace

TEST_F(OutlineCommands, AClickOnAnInstrumentShowsItOnTopAndCountsIt)
{
    Click(u"ins1"_s);
    EXPECT_EQ(text.selection, (TextSpan{11, 11}));
    EXPECT_EQ(text.firstVisibleLine, 1);
    EXPECT_EQ(status.text, u"Instrument: 3 lines - 37 characters");
}

TEST_F(OutlineCommands, AClickOnAnElementShowsItOnTopAndTellsItsPlace)
{
    Click(u"ins1lbl1"_s);
    EXPECT_EQ(text.selection, (TextSpan{33, 33}));
    EXPECT_EQ(text.firstVisibleLine, 2);
    EXPECT_EQ(status.text, u"loop: @ character 33");
    Click(u"mac1"_s);
    EXPECT_EQ(text.firstVisibleLine, 4);
    EXPECT_EQ(status.text, u"A @ character 49");
    Click(u"mac1cal1"_s);
    EXPECT_EQ(text.firstVisibleLine, 5);
    EXPECT_EQ(status.text, u"A @ character 68");
    Click(u"inc1"_s);
    EXPECT_EQ(status.text, u"u.orc @ character 71");
}

TEST_F(OutlineCommands, NothingScrollsWhenTheCaretIsThereAlready)
{
    text.selection = {49, 49};
    text.firstVisibleLine = 1;
    Click(u"mac1"_s);
    EXPECT_EQ(text.firstVisibleLine, 1);
    EXPECT_EQ(status.text, u"A @ character 49");
    // What is selected from there on stays.
    text.selection = {49, 52};
    Click(u"mac1"_s);
    EXPECT_EQ(text.selection, (TextSpan{49, 52}));
    EXPECT_EQ(text.firstVisibleLine, 1);
    text.selection = {48, 49};
    Click(u"mac1"_s);
    EXPECT_EQ(text.selection, (TextSpan{49, 49}));
    EXPECT_EQ(text.firstVisibleLine, 4);
    text.selection = {11, 20};
    text.firstVisibleLine = 0;
    Click(u"ins1"_s);
    EXPECT_EQ(text.selection, (TextSpan{11, 20}));
    EXPECT_EQ(text.firstVisibleLine, 0);
}

TEST_F(OutlineCommands, ALongCaptionIsCutInTheStatusLine)
{
    Scan(u"#define A "_s + QString(1'000'000, u'x'));
    Click(u"mac1"_s);
    EXPECT_EQ(status.text, u"A "_s + QString(297, u'x') + u"\u2026 @ character 0"_s);
    EXPECT_EQ(outline.Caption(outline.Find(u"mac1"_s)).size(), 1'000'002);
}

TEST_F(OutlineCommands, ARootTellsItsCountAndMovesNothing)
{
    text.selection = {5, 7};
    Click(u"rootins"_s);
    EXPECT_EQ(status.text, u"1 Instruments");
    EXPECT_EQ(text.selection, (TextSpan{5, 7}));
}

TEST_F(OutlineCommands, TheRootOfTheTagsTellsNothing)
{
    document.DocumentKind = FileKind::Unified;
    Scan(u"<CsScore>\ns\n</CsScore>\n"_s);
    status.text = u"before"_s;
    Click(u"rootags"_s);
    EXPECT_EQ(status.text, u"before");
    Click(u"rootsec"_s);
    EXPECT_EQ(status.text, u"2 Sections");
    // Kept: the place of the first section counts from 1.
    Click(u"sec0"_s);
    EXPECT_EQ(status.text, u"Section 1 @ character 1");
    EXPECT_EQ(text.selection, (TextSpan{1, 1}));
}

TEST_F(OutlineCommands, ALabelBelongsToItsInstrument)
{
    EXPECT_EQ(InstrumentOfNode(outline, outline.Find(u"ins1"_s)), 1);
    EXPECT_EQ(InstrumentOfNode(outline, outline.Find(u"ins1lbl1"_s)), 1);
    for (const QString &key : {u"rootins"_s, u"mac1"_s, u"mac1cal1"_s, u"inc1"_s})
        EXPECT_EQ(InstrumentOfNode(outline, outline.Find(key)), 0) << qPrintable(key);
}

TEST_F(OutlineCommands, ACopyHasTheCharacterBehindTheInstrument)
{
    text.selection = {3, 4};
    CopyInstrument(editor, outline.Instrument(1));
    EXPECT_EQ(desktop.clipboard, u"instr 1, 2 ; bass\nloop: a1 = $A\nendin\n");
    EXPECT_EQ(text.selection, (TextSpan{3, 4}));
    Scan(u"instr 1\nendin"_s);
    CopyInstrument(editor, outline.Instrument(1));
    EXPECT_EQ(desktop.clipboard, u"instr 1\nendin") << "as far as there is text";
}

TEST_F(OutlineCommands, AnExportProposesTheNumberAndWritesTheTextWithALineEnd)
{
    settings.SaveText(Keys::OrchestraExtensions, u"orx orc"_s);
    const QString path = WriteFile(u"out.orx"_s, "old");
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orx;*.orc"_s}},
                              .folder = document.CurrentFile,
                              .fileName = u"Instr1.orx"_s,
                              .defaultExtension = u"orx"_s},
                             {.path = path});
    ExportInstrument(editor, outline.Instrument(1), u"1, 2 ; bass"_s);
    EXPECT_EQ(ReadFileBytes(path), "instr 1, 2 ; bass\r\nloop: a1 = $A\r\nendin\r\n\r\n");
}

TEST_F(OutlineCommands, AnExportOfANamedInstrumentProposesZeroAndMayBeCancelled)
{
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}},
                              .folder = document.CurrentFile,
                              .fileName = u"Instr0.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {});
    ExportInstrument(editor, outline.Instrument(1), u"bass"_s);
    desktop.CheckAllCame();
}

TEST_F(OutlineCommands, AnExportThatCannotBeWrittenIsAnError)
{
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}},
                              .folder = document.CurrentFile,
                              .fileName = u"Instr3.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {.path = folder.filePath(u"nowhere/x.orc"_s)});
    EXPECT_THROW(ExportInstrument(editor, outline.Instrument(1), u"3"_s), RunTimeError);
}

TEST_F(OutlineCommands, AnExportKeepsTheEncodingOfTheDocument)
{
    document.Encoding.form = TextEncoding::Form::Windows1252;
    Scan(u"instr 1 ; \u00e9\nendin\n"_s);
    const QString path = folder.filePath(u"x.orc"_s);
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}},
                              .folder = document.CurrentFile,
                              .fileName = u"Instr1.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {.path = path});
    ExportInstrument(editor, outline.Instrument(1), u"1 ; \u00e9"_s);
    EXPECT_EQ(ReadFileBytes(path), "instr 1 ; \xe9\r\nendin\r\n\r\n");
}

TEST_F(OutlineCommands, AnIncludeIsFoundInTheCurrentFolderFirst)
{
    const QString before = QDir::currentPath();
    QDir(folder.path()).mkpath(u"here"_s);
    QDir(folder.path()).mkpath(u"includes"_s);
    desktop.environment[u"INCDIR"_s] = folder.filePath(u"includes"_s);
    const QString includes = WriteFile(u"includes/u.orc"_s);
    OpenInclude(editor, u"u.orc"_s);
    const QString beside = WriteFile(u"pieces/u.orc"_s);
    OpenInclude(editor, u"u.orc"_s);
    const QString here = WriteFile(u"here/u.orc"_s);
    QDir::setCurrent(folder.filePath(u"here"_s));
    OpenInclude(editor, u"u.orc"_s);
    QDir::setCurrent(before);
    OpenInclude(editor, here);
    // It need not belong to the same piece: the related files are looked for anew.
    EXPECT_EQ(operations.lastOrigin, OpenOrigin::Command);
    EXPECT_EQ(operations.calls, (QStringList{u"open "_s + includes, u"open "_s + beside, u"open "_s + here,
                                             u"open "_s + here}));
}

TEST_F(OutlineCommands, AMissingIncludeIsTold)
{
    QDir(folder.path()).mkpath(u"pieces/u.orc"_s); // a folder is no file
    for (int i = 0; i < 2; ++i)
        desktop.ExpectMessage({.text = u"Cannot find u.orc"_s, .icon = BoxIcon::Warning});
    text.selection = {1, 2};
    OpenInclude(editor, u"u.orc"_s);
    InsertInclude(editor, u"u.orc"_s, 71);
    EXPECT_EQ(operations.calls, QStringList());
    EXPECT_EQ(text.selection, (TextSpan{1, 2}));
}

TEST_F(OutlineCommands, AnInsertedIncludeTakesThePlaceOfItsLine)
{
    const QString path = WriteFile(u"pieces/u.orc"_s);
    InsertInclude(editor, u"u.orc"_s, 74);
    EXPECT_EQ(operations.calls, QStringList{u"insert "_s + path});
    EXPECT_EQ(text.SelectedText(), u"#include \"u.orc\"");
}

} // namespace zelvane::test
