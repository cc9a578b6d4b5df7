// SPDX-License-Identifier: GPL-3.0-or-later

// The writing aids that stand in the text itself, in the window of the editor.

#include "platform/desktop.h"
#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "platform/ui/textdecorations.h"
#include "shell/command.h"
#include "shell/documentlifecycle.h"
#include "shell/editorcontext.h"
#include "shell/editorkeys.h"
#include "shell/settingkey.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commands.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/randomtext.h"
#include "support/uitest.h"
#include "window/ui/frmeditor.h"
#include "window/ui/rooms.h"
#include "writing/blocks.h"
#include "writing/codemap.h"
#include "writing/foldlevels.h"
#include "writing/ui/frmbookmarks.h"
#include "writing/ui/writingroom.h"
#include "writing/writingkeys.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QInputMethodQueryEvent>
#include <QListWidget>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

struct AidsWindow : EditorWindow {
    /// @param aids the settings that are on; indents are four blanks
    explicit AidsWindow(std::initializer_list<FlagKey> aids)
    {
        for (const FlagKey &key : aids)
            settings.SaveFlag(key, true);
        settings.SaveFlag(Keys::TabInsertSpaces, true);
        settings.SaveNumber(Keys::TabSpaces, 4);
    }
    void OpenText(const QString &name, const QByteArray &bytes)
    {
        Open({WriteFile(name, bytes)});
        Text().setFocus();
    }
    void Turn(const FlagKey &key, bool on)
    {
        settings.SaveFlag(key, on);
        window->Looks().ApplyAll();
    }
    TextDecorations &Marks() { return *window->Rooms().writing.Decorations(); }
    /// What is marked, part after part.
    QString Marked(Indicator indicator)
    {
        QString marked;
        for (const TextSpan &span : Marks().Shown(indicator))
            marked += (marked.isEmpty() ? u""_s : u" "_s) + Text().TextRange(span.start, span.end);
        return marked;
    }
    void PutCaret(qsizetype offset) { Text().SetSelection(offset, offset); }
    void Type(const QString &text)
    {
        for (const QChar c : text) {
            if (c == u'\n')
                QTest::keyClick(&Text(), Qt::Key_Return);
            else
                QTest::keyClick(&Text(), c.toLatin1());
        }
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier)
    {
        QTest::keyClick(&Text(), key, held);
    }
};

} // namespace

class TextAidsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void BracketsAreMarkedAtTheCaret();
    void BracketsFollowTheTextAndItsUndo();
    void WordsAreMarkedInTheView();
    void WordsAreMarkedInTheViewOfAVeryLongLine();
    void LinesMoveWithTheirColoursInOneStep();
    void TypedTextIsIndented();
    void EnterIsOneStepOfUndo();
    void AClosingWordIsOneStepWithItsIndent();
    void AWordThatGoesOnGetsItsIndentBack();
    void WhatAnInputMethodGivesIsTyped();
    void TabsIndentWhereTabsAreSet();
    void ATextThatIsIndentedGoesOnAsItIs();
    void WithoutTheAidEnterIsPlain();
    void BlocksFoldByMarginAndCommands();
    void FoldLevelsFollowEditsAndUndo();
    void TheCaretIsNeverHidden();
    void WhatIsFoldedMovesAsAWhole();
    void FoldsComeBackWithTheirFile();
    void FoldingIsNoEditAndGoesWithoutATrace();
    void BookmarksAreSetVisitedAndListed();
    void FoldsAndBookmarksAreRememberedWhileTheAidsAreOff();
    void AFoldedBookmarkIsSeenAtItsHeader();
    void BookmarksFollowEditsAndUndo();
    void BookmarksComeBackWithTheirFile();
    void AMovedLineTakesItsBookmarkAlong();
    void AllAidsTogetherAgreeWithAFreshLook();
    void UndoReloadAndOtherLineEndsLeaveTheAidsRight();
    void HostileTextsAreNoHarm_data();
    void HostileTextsAreNoHarm();
};

void TextAidsTest::BracketsAreMarkedAtTheCaret()
{
    AidsWindow editor({Keys::BracketMatch});
    editor.OpenText(u"a.csd"_s, "<CsInstruments>\na = (b * [c) ; (\nprints(\"x)\")\n</CsInstruments>\n");
    editor.PutCaret(0);
    QVERIFY(
        Eventually([&] { return editor.Marked(Indicator::Brace) == u"<CsInstruments> </CsInstruments>"_s; }));
    const QString text = editor.Text().Text();
    editor.PutCaret(text.indexOf(u"(b"));
    QCOMPARE(editor.Marked(Indicator::Brace), u"( )"_s);
    editor.PutCaret(text.indexOf(u"[c"));
    QCOMPARE(editor.Marked(Indicator::Brace), QString());
    QCOMPARE(editor.Marked(Indicator::BraceUnmatched), u"["_s);
    editor.PutCaret(text.indexOf(u"(\nprints"));
    QCOMPARE(editor.Marked(Indicator::BraceUnmatched), QString());
    editor.PutCaret(text.indexOf(u"(\"x") + 1);
    QCOMPARE(editor.Marked(Indicator::Brace), u"( )"_s);
    editor.Text().SetSelection(0, 3);
    QCOMPARE(editor.Marked(Indicator::Brace), QString());
    editor.PutCaret(0);
    editor.Turn(Keys::CurrentLine, true);
    editor.Turn(Keys::BracketMatch, false);
    QCOMPARE(editor.Marked(Indicator::Brace), QString());
    QVERIFY(!editor.Text().CanUndo());
}

void TextAidsTest::BracketsFollowTheTextAndItsUndo()
{
    AidsWindow editor({Keys::BracketMatch});
    editor.OpenText(u"a.orc"_s, "a = (b\n");
    editor.PutCaret(5);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::BraceUnmatched) == u"("_s; }));
    editor.PutCaret(6);
    editor.Type(u")"_s);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::Brace) == u"( )"_s; }));
    editor.Text().Undo();
    QCOMPARE(editor.Marked(Indicator::Brace), QString());
    editor.PutCaret(5);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::BraceUnmatched) == u"("_s; }));
    editor.Text().Redo();
    editor.PutCaret(5);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::Brace) == u"( )"_s; }));
    // Another document.
    editor.OpenText(u"b.orc"_s, "[1]\n");
    editor.PutCaret(0);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::Brace) == u"[ ]"_s; }));
}

void TextAidsTest::WordsAreMarkedInTheView()
{
    AidsWindow editor({Keys::SameWord});
    editor.OpenText(u"a.orc"_s, "kamp = 1\na1 = kamp * kamp2 ; kamp\n" + QByteArray(400, '\n') + "kamp\n");
    editor.PutCaret(2);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord) == u"kamp kamp kamp"_s; }));
    editor.PutCaret(editor.Text().Text().indexOf(u"kamp2"));
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord).isEmpty(); }));
    editor.Text().SetSelection(0, 4);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord) == u"kamp kamp kamp"_s; }));
    editor.Text().ScrollToLine(390);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord).isEmpty(); }));
    editor.Text().ScrollToLine(0);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord) == u"kamp kamp kamp"_s; }));
    editor.Text().SetSelection(0, 3);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord).isEmpty(); }));
}

void TextAidsTest::WordsAreMarkedInTheViewOfAVeryLongLine()
{
    AidsWindow editor({Keys::SameWord});
    // Far behind the start of the line a word stands three times, and at the end of the line once more.
    const qsizetype place = 600'000;
    QByteArray line = QByteArray("filler ").repeated(place / 7).leftJustified(place, ' ');
    line += "kamp + kamp + kamp2 * kamp " + QByteArray("filler ").repeated(2000) + "kamp\n";
    editor.OpenText(u"a.orc"_s, "kamp\n" + line);
    editor.Text().SetWordWrap(false);
    const qsizetype start = 5 + place;
    editor.PutCaret(start + 24); // the view ends a little behind
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord).endsWith(u"kamp kamp kamp"_s); }));
    const std::vector<TextSpan> spans = editor.Marks().Shown(Indicator::SameWord);
    const auto isThere = [&](qsizetype at) {
        return std::find(spans.begin(), spans.end(), TextSpan{at, at + 4}) != spans.end();
    };
    QVERIFY(isThere(start) && isThere(start + 7) && isThere(start + 22));
    QVERIFY(!isThere(start + 14) && !isThere(editor.Text().Length() - 5));
    // Scrolled away from the word, there is nothing to mark.
    editor.Text().SetSelection(0, 0);
    QVERIFY(Eventually([&] { return editor.Marked(Indicator::SameWord).isEmpty(); }));
}

void TextAidsTest::LinesMoveWithTheirColoursInOneStep()
{
    AidsWindow editor({Keys::MoveLines});
    editor.OpenText(u"a.orc"_s, "oscil x\nplain\n; note\n");
    const auto styles = [&] {
        QByteArray row;
        for (qsizetype at = 0; at < editor.Text().Length(); ++at)
            row += char('0' + int(editor.Text().StyleAt(at)));
        return row;
    };
    const QByteArray before = styles();
    editor.PutCaret(3);
    editor.Key(Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(editor.Text().Text(), u"plain\noscil x\n; note\n"_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{9, 9}));
    QCOMPARE(styles().left(14), "00000"
                                "0"
                                "22222000");
    editor.Key(Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(editor.Text().Text(), u"oscil x\nplain\n; note\n"_s);
    QCOMPARE(styles(), before);
    editor.Key(Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(editor.Text().Text(), u"oscil x\noscil x\nplain\n; note\n"_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{11, 11}));
    QCOMPARE(styles().left(16), "2222200022222000");
    editor.Text().Undo();
    editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), u"plain\noscil x\n; note\n"_s);
    editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), u"oscil x\nplain\n; note\n"_s);
    QCOMPARE(styles(), before);
    QVERIFY(!editor.Text().CanUndo());
    QCOMPARE(editor.Text().Selection(), (TextSpan{3, 3}));
}

void TextAidsTest::TypedTextIsIndented()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.OpenText(u"a.orc"_s, "");
    editor.Type(u"instr 1\nif p4 == 1 then\na1 = 1\nelse\na1 = 2\nfi\nendin\nx"_s);
    QCOMPARE(editor.Text().Text(), u"instr 1\n    if p4 == 1 then\n        a1 = 1\n    else\n        a1 = 2\n"
                                   "    fi\nendin\nx"_s);
}

void TextAidsTest::EnterIsOneStepOfUndo()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.OpenText(u"a.orc"_s, "if a then\n    b\n    fi\n");
    editor.PutCaret(22);
    editor.Key(Qt::Key_Return);
    QCOMPARE(editor.Text().Text(), u"if a then\n    b\nfi\n\n"_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{19, 19}));
    QCOMPARE(editor.Text().UndoType(), u" Typing"_s);
    editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), u"if a then\n    b\n    fi\n"_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{22, 22}));
    QVERIFY(!editor.Text().CanUndo());
    editor.Text().Redo();
    QCOMPARE(editor.Text().Text(), u"if a then\n    b\nfi\n\n"_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{19, 19}));
    editor.Text().Undo();
    // The selection goes with the key, and so do the blanks behind it.
    editor.Text().SetSelection(9, 10);
    editor.Key(Qt::Key_Return);
    QCOMPARE(editor.Text().Text(), u"if a then\n    b\n    fi\n"_s);
    editor.Text().Undo();
    QVERIFY(!editor.Text().CanUndo());
    // A line of blanks is left empty; what stands behind keeps its place.
    editor.PutCaret(12);
    editor.Key(Qt::Key_Return);
    QCOMPARE(editor.Text().Text(), u"if a then\n\n    b\n    fi\n"_s);
}

void TextAidsTest::AClosingWordIsOneStepWithItsIndent()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.OpenText(u"a.orc"_s, "instr 1\n    a\n    ");
    editor.PutCaret(18);
    editor.Type(u"endin"_s);
    QCOMPARE(editor.Text().Text(), u"instr 1\n    a\nendin"_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{19, 19}));
    editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), u"instr 1\n    a\n    "_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{18, 18}));
    QVERIFY(!editor.Text().CanUndo());
    editor.Text().Redo();
    QCOMPARE(editor.Text().Text(), u"instr 1\n    a\nendin"_s);
    QVERIFY(!editor.Text().CanRedo());
}

void TextAidsTest::AWordThatGoesOnGetsItsIndentBack()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.OpenText(u"a.orc"_s, "if a then\n    ");
    editor.PutCaret(14);
    editor.Type(u"else"_s);
    QCOMPARE(editor.Text().Text(), u"if a then\nelse"_s);
    editor.Type(u"x"_s);
    QCOMPARE(editor.Text().Text(), u"if a then\n    elsex"_s);
    QCOMPARE(editor.Text().Selection(), (TextSpan{19, 19}));
    editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), u"if a then\n    "_s);
    editor.Type(u"elseif b then"_s);
    QCOMPARE(editor.Text().Text(), u"if a then\nelseif b then"_s);
    // What is pasted is left as it is.
    editor.Text().SetText(u"if a then\n    "_s);
    editor.PutCaret(14);
    editor.Text().ReplaceSelection(u"endif"_s);
    QCOMPARE(editor.Text().Text(), u"if a then\n    endif"_s);
}

void TextAidsTest::WhatAnInputMethodGivesIsTyped()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.OpenText(u"a.orc"_s, "instr 1\n    ");
    editor.PutCaret(12);
    // While a letter goes in, the input method asks where.
    const auto ask = QObject::connect(&editor.Text(), &TextControl::edited, [&] {
        QInputMethodQueryEvent query(Qt::ImCursorRectangle);
        QCoreApplication::sendEvent(&editor.Text(), &query);
    });
    QInputMethodEvent given;
    given.setCommitString(u"endin"_s);
    QCoreApplication::sendEvent(&editor.Text(), &given);
    QCOMPARE(editor.Text().Text(), u"instr 1\nendin"_s);
    editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), u"instr 1\n    "_s);
    editor.Type(u"endin"_s);
    QCOMPARE(editor.Text().Text(), u"instr 1\nendin"_s);
    QObject::disconnect(ask);
}

void TextAidsTest::TabsIndentWhereTabsAreSet()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.settings.SaveFlag(Keys::TabInsertSpaces, false);
    editor.OpenText(u"a.orc"_s, "");
    editor.Type(u"instr 1\nx"_s);
    QCOMPARE(editor.Text().Text(), u"instr 1\n\tx"_s);
}

void TextAidsTest::ATextThatIsIndentedGoesOnAsItIs()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.settings.SaveFlag(Keys::TabInsertSpaces, false);
    editor.OpenText(u"a.orc"_s, "instr 1\n  a1 = 1\nendin\ninstr 2\n   a1 = 1\nendin\n");
    editor.PutCaret(7);
    editor.Type(u"\nx"_s);
    QCOMPARE(editor.Text().Text(), u"instr 1\n  x\n  a1 = 1\nendin\ninstr 2\n   a1 = 1\nendin\n"_s);
    editor.PutCaret(editor.Text().Length());
    editor.Type(u"instr 3\nx"_s);
    QVERIFY(editor.Text().Text().endsWith(u"instr 3\n   x"_s));
}

void TextAidsTest::WithoutTheAidEnterIsPlain()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.OpenText(u"a.orc"_s, "");
    editor.Turn(Keys::AutoIndent, false);
    editor.Type(u"  instr 1\nx"_s);
    QCOMPARE(editor.Text().Text(), u"  instr 1\nx"_s);
}

namespace
{

const QByteArray Piece =
    "<CsoundSynthesizer>\n<CsInstruments>\ninstr 1\n  if p4 == 1 then\n    a1 = 1\n  endif\n"
    "endin\ninstr 2\n  a2 = 1\nendin\n</CsInstruments>\n<CsScore>\ni 1 0 1\n</CsScore>\n"
    "</CsoundSynthesizer>\n";

/// The depth of each line, and "+" behind that of a header.
QString Levels(AidsWindow &editor)
{
    QString levels;
    for (qsizetype line = 0; line < editor.Text().LineCount(); ++line) {
        const FoldLevel level = editor.Marks().FoldLevelOf(line);
        levels += QString::number(level.depth) + (level.header ? u"+"_s : u" "_s);
    }
    return levels.trimmed();
}

/// The numbers of lines as one text.
QString Row(const std::vector<qsizetype> &lines)
{
    QString row;
    for (const qsizetype line : lines)
        row += (row.isEmpty() ? u""_s : u" "_s) + QString::number(line);
    return row;
}

QString Bookmarked(AidsWindow &editor)
{
    return Row(editor.Marks().MarkedLines(LineMarker::Bookmark));
}

const QString PieceLevels = u"0+1+2+3+4 4 3 2+3 3 2 1+2 2 1 0"_s;

} // namespace

void TextAidsTest::BlocksFoldByMarginAndCommands()
{
    AidsWindow editor({Keys::Folding});
    editor.OpenText(u"a.csd"_s, Piece);
    QVERIFY(Eventually([&] { return Levels(editor) == PieceLevels; }));
    QVERIFY(editor.Marks().IsMarginShown(TextMargin::Folds));
    Q_EMIT editor.Marks().marginClicked(TextMargin::Folds, 7, Qt::NoModifier);
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"7"_s);
    QVERIFY(editor.Marks().IsLineHidden(8));
    QVERIFY(editor.Marks().IsLineHidden(9));
    QVERIFY(!editor.Marks().IsLineHidden(10));
    Q_EMIT editor.Marks().marginClicked(TextMargin::Folds, 7, Qt::NoModifier);
    QCOMPARE(Row(editor.Marks().FoldedLines()), QString());
    // Another margin, and a line that is no header.
    Q_EMIT editor.Marks().marginClicked(TextMargin::Markers, 7, Qt::NoModifier);
    Q_EMIT editor.Marks().marginClicked(TextMargin::Folds, 8, Qt::NoModifier);
    QCOMPARE(Row(editor.Marks().FoldedLines()), QString());

    Commands &commands = editor.window->CommandTable();
    editor.PutCaret(editor.Text().LineStart(4));
    commands.Run(Cmd::mnuFold[FoldEntry::Here]);
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"3"_s);
    QCOMPARE(editor.Text().LineOfOffset(editor.Text().CaretOffset()), 3);
    commands.Run(Cmd::mnuFold[FoldEntry::Here]);
    QCOMPARE(Row(editor.Marks().FoldedLines()), QString());
    commands.Run(Cmd::mnuFold[FoldEntry::All]);
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"2 7"_s);
    QVERIFY(!editor.Marks().IsLineHidden(12));
    commands.Run(Cmd::mnuFold[FoldEntry::None]);
    QCOMPARE(Row(editor.Marks().FoldedLines()), QString());
    QVERIFY(!editor.Marks().IsLineHidden(4));
}

void TextAidsTest::FoldLevelsFollowEditsAndUndo()
{
    AidsWindow editor({Keys::Folding});
    editor.OpenText(u"a.orc"_s, "instr 1\na\nendin\nb\ninstr 2\nendin\n");
    QVERIFY(Eventually([&] { return Levels(editor) == u"0+1 1 0 0+1 0"_s; }));
    editor.Marks().SetFolded(4, true);
    editor.PutCaret(0);
    editor.Type(u"x\n"_s);
    QVERIFY(Eventually([&] { return Levels(editor) == u"0 0+1 1 0 0+1 0"_s; }));
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"5"_s);
    editor.Type(u"/* "_s);
    QVERIFY(Eventually([&] { return Levels(editor) == u"0 0+1 1 0 0+1 0"_s; }));
    // What was a header is none any more, and hides nothing.
    editor.Text().ReplaceRange(editor.Text().Length(), editor.Text().Length(), u"*/"_s);
    QVERIFY(Eventually([&] { return Levels(editor) == u"0 0+1 1 1 1 1 1"_s; }));
    QCOMPARE(Row(editor.Marks().FoldedLines()), QString());
    QVERIFY(!editor.Marks().IsLineHidden(6));
    while (editor.Text().CanUndo())
        editor.Text().Undo();
    QVERIFY(Eventually([&] { return Levels(editor) == u"0+1 1 0 0+1 0"_s; }));
    editor.Text().SetText(u"a\nif b then\nc\nendif"_s);
    QVERIFY(Eventually([&] { return Levels(editor) == u"0 0+1 1"_s; }));
    editor.Text().Undo();
    QVERIFY(Eventually([&] { return Levels(editor) == u"0+1 1 0 0+1 0"_s; }));
    for (qsizetype line = 0; line < editor.Text().LineCount(); ++line)
        QVERIFY(!editor.Marks().IsLineHidden(line));
}

void TextAidsTest::TheCaretIsNeverHidden()
{
    AidsWindow editor({Keys::Folding});
    editor.OpenText(u"a.csd"_s, Piece);
    QVERIFY(Eventually([&] { return Levels(editor) == PieceLevels; }));
    Commands &commands = editor.window->CommandTable();
    commands.Run(Cmd::mnuFold[FoldEntry::All]);
    // What Find, the outline and Undo do.
    const qsizetype place = editor.Text().Text().indexOf(u"a1 =");
    editor.Text().SetSelection(place, place + 2);
    QVERIFY(!editor.Marks().IsLineHidden(4));
    QCOMPARE(editor.Text().Selection(), (TextSpan{place, place + 2}));
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"7"_s);
    // The keys pass over what is folded.
    editor.PutCaret(editor.Text().LineStart(7));
    editor.Key(Qt::Key_Down);
    QCOMPARE(editor.Text().LineOfOffset(editor.Text().CaretOffset()), 10);
}

void TextAidsTest::WhatIsFoldedMovesAsAWhole()
{
    AidsWindow editor({Keys::Folding, Keys::MoveLines});
    const QString first = u"instr 1\n  if p4 == 1 then\n    a1 = 1\n  endif\nendin\n"_s;
    const QString second = u"instr 2\n  a2 = 1\nendin\n"_s;
    editor.OpenText(u"a.orc"_s, (u"a\n"_s + first + second).toLatin1());
    QVERIFY(Eventually([&] { return editor.Marks().FoldLevelOf(6).header; }));
    for (const qsizetype line : {2, 1, 6})
        editor.Marks().SetFolded(line, true);
    const auto held = Qt::ControlModifier | Qt::ShiftModifier;
    editor.PutCaret(4);
    editor.Key(Qt::Key_Down, held);
    QCOMPARE(editor.Text().Text(), u"a\n"_s + second + first);
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"1 4 5"_s);
    QVERIFY(editor.Marks().IsLineHidden(2));
    QVERIFY(!editor.Marks().IsLineHidden(4));
    QVERIFY(editor.Marks().IsLineHidden(7));
    QCOMPARE(editor.Text().LineOfOffset(editor.Text().CaretOffset()), 4);
    editor.Key(Qt::Key_Up, held);
    editor.Key(Qt::Key_Up, held);
    QCOMPARE(editor.Text().Text(), first + u"a\n"_s + second);
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"0 1 6"_s);
    editor.Key(Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(editor.Text().Text(), first + first + u"a\n"_s + second);
    const auto isFolded = [&] { return Row(editor.Marks().FoldedLines()) == u"0 1 5 6 11"_s; };
    QVERIFY2(isFolded(), qPrintable(Row(editor.Marks().FoldedLines())));
    QCOMPARE(editor.Text().LineOfOffset(editor.Text().CaretOffset()), 5);
    QVERIFY(!editor.Marks().IsLineHidden(5));
    // A line below what is folded goes over it.
    editor.PutCaret(editor.Text().LineStart(10));
    editor.Key(Qt::Key_Up, held);
    QCOMPARE(editor.Text().Text(), first + u"a\n"_s + first + second);
    QCOMPARE(Row(editor.Marks().FoldedLines()), u"0 1 6 7 11"_s);
    editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), first + first + u"a\n"_s + second);
}

void TextAidsTest::FoldsComeBackWithTheirFile()
{
    AidsWindow editor({Keys::Folding});
    editor.OpenText(u"a.csd"_s, Piece);
    const QString other = editor.WriteFile(u"b.csd"_s, Piece);
    const QString first = editor.folder.filePath(u"a.csd"_s);
    QVERIFY(Eventually([&] { return Levels(editor) == PieceLevels; }));
    editor.Marks().SetFolded(3, true);
    editor.Marks().SetFolded(7, true);
    editor.window->Documents().OpenFile(other);
    QVERIFY(Eventually([&] { return Levels(editor) == PieceLevels; }));
    QCOMPARE(Row(editor.Marks().FoldedLines()), QString());
    // Meanwhile another program has put a line before.
    editor.WriteFile(u"a.csd"_s, "; more\n" + Piece);
    editor.window->Documents().OpenFile(first);
    QVERIFY(Eventually([&] { return Row(editor.Marks().FoldedLines()) == u"4 8"_s; }));
    QVERIFY(editor.Marks().IsLineHidden(5));
    editor.window->Documents().NewFile(FileKind::Orchestra, {});
    QVERIFY(Eventually([&] { return Levels(editor).startsWith(u'0'); }));
    QCOMPARE(Row(editor.Marks().FoldedLines()), QString());
}

void TextAidsTest::FoldingIsNoEditAndGoesWithoutATrace()
{
    AidsWindow editor({Keys::Folding, Keys::CurrentLine});
    editor.OpenText(u"a.csd"_s, Piece);
    QVERIFY(Eventually([&] { return Levels(editor) == PieceLevels; }));
    const QString text = editor.Text().Text();
    editor.window->CommandTable().Run(Cmd::mnuFold[FoldEntry::All]);
    QCOMPARE(editor.Text().Text(), text);
    QVERIFY(!editor.Text().CanUndo());
    QVERIFY(!editor.window->Context().document.Modified);
    editor.Turn(Keys::Folding, false);
    QVERIFY(!editor.Marks().IsMarginShown(TextMargin::Folds));
    for (qsizetype line = 0; line < editor.Text().LineCount(); ++line) {
        QVERIFY(!editor.Marks().IsLineHidden(line));
        QCOMPARE(editor.Marks().FoldLevelOf(line), FoldLevel());
    }
    editor.Turn(Keys::Folding, true);
    QVERIFY(Eventually([&] { return Levels(editor) == PieceLevels; }));
}

void TextAidsTest::BookmarksAreSetVisitedAndListed()
{
    AidsWindow editor({Keys::Bookmarks});
    editor.OpenText(u"a.csd"_s, Piece);
    Commands &commands = editor.window->CommandTable();
    commands.Run(Cmd::mnuBookmark[BookmarkEntry::Next]);
    QCOMPARE(editor.window->Context().status.Text(), u"No bookmarks."_s);
    for (const qsizetype line : {7, 2}) {
        editor.PutCaret(editor.Text().LineStart(line) + 1);
        commands.Run(Cmd::mnuBookmark[BookmarkEntry::Toggle]);
    }
    Q_EMIT editor.Marks().marginClicked(TextMargin::Markers, 12, Qt::NoModifier);
    QCOMPARE(Bookmarked(editor), u"2 7 12"_s);
    const auto line = [&] { return editor.Text().LineOfOffset(editor.Text().CaretOffset()); };
    for (const qsizetype next : {7, 12, 2}) {
        commands.Run(Cmd::mnuBookmark[BookmarkEntry::Next]);
        QCOMPARE(line(), next);
    }
    for (const qsizetype previous : {12, 7}) {
        commands.Run(Cmd::mnuBookmark[BookmarkEntry::Previous]);
        QCOMPARE(line(), previous);
    }
    {
        ModalDriver driver;
        driver.Expect<frmBookmarks>([](frmBookmarks &dialog) {
            auto &list = *dialog.findChild<QListWidget *>(u"lstBookmarks"_s);
            QCOMPARE(list.count(), 3);
            QCOMPARE(list.item(0)->text(), u"3: instr 1"_s);
            QCOMPARE(list.currentRow(), 1);
            QTest::mouseClick(dialog.findChild<QPushButton *>(u"bRemove"_s), Qt::LeftButton);
            QCOMPARE(list.count(), 2);
            list.setCurrentRow(1);
            QTest::keyClick(&list, Qt::Key_Return);
        });
        commands.Run(Cmd::mnuBookmark[BookmarkEntry::List]);
    }
    QCOMPARE(line(), 12);
    QCOMPARE(Bookmarked(editor), u"2 12"_s);
    commands.Run(Cmd::mnuBookmark[BookmarkEntry::Toggle]);
    QCOMPARE(Bookmarked(editor), u"2"_s);
    QVERIFY(!editor.Text().CanUndo());
    editor.Turn(Keys::CurrentLine, true);
    editor.Turn(Keys::Bookmarks, false);
    QCOMPARE(Bookmarked(editor), QString());
    QVERIFY(!editor.Marks().IsMarginShown(TextMargin::Markers));
}

void TextAidsTest::FoldsAndBookmarksAreRememberedWhileTheAidsAreOff()
{
    AidsWindow editor({Keys::Folding, Keys::Bookmarks});
    editor.OpenText(u"a.orc"_s, "a\ninstr 1\n b\nendin\nc\n");
    QVERIFY(Eventually([&] { return editor.Marks().FoldLevelOf(1).header; }));
    editor.Marks().SetFolded(1, true);
    editor.PutCaret(0);
    editor.window->CommandTable().Run(Cmd::mnuBookmark[BookmarkEntry::Toggle]);
    QVERIFY(editor.Marks().HasMarker(LineMarker::Bookmark, 0));
    // With all aids off, too; meanwhile lines come.
    editor.Turn(Keys::Folding, false);
    editor.Turn(Keys::Bookmarks, false);
    QVERIFY(!editor.window->Rooms().writing.Decorations());
    editor.Text().ReplaceRange(0, 0, u"new\nnew\n"_s);
    editor.Turn(Keys::Folding, true);
    editor.Turn(Keys::Bookmarks, true);
    QCOMPARE(editor.Marks().MarkedLines(LineMarker::Bookmark), (std::vector<qsizetype>{2}));
    QVERIFY(Eventually([&] { return editor.Marks().IsFolded(3); }));
    QCOMPARE(editor.Marks().FoldedLines(), (std::vector<qsizetype>{3}));
}

void TextAidsTest::AFoldedBookmarkIsSeenAtItsHeader()
{
    AidsWindow editor({Keys::Folding, Keys::Bookmarks});
    editor.OpenText(u"a.orc"_s, "instr 1\n if a then\n  b\n fi\nendin\nc\n");
    TextDecorations &marks = editor.Marks();
    QVERIFY(Eventually([&] { return marks.FoldLevelOf(1).header; }));
    const auto folded = [&] { return marks.MarkedLines(LineMarker::FoldedBookmark); };
    using Lines = std::vector<qsizetype>;
    editor.PutCaret(editor.Text().LineStart(2));
    editor.window->CommandTable().Run(Cmd::mnuBookmark[BookmarkEntry::Toggle]);
    QCOMPARE(folded(), Lines());
    marks.SetFolded(1, true);
    QVERIFY(Eventually([&] { return folded() == Lines{1}; }));
    marks.SetFolded(0, true);
    QVERIFY(Eventually([&] { return folded() == Lines{0}; }));
    QCOMPARE(marks.MarkedLines(LineMarker::Bookmark), Lines{2});
    // The way to a bookmark unfolds what hides it.
    editor.PutCaret(0);
    editor.window->CommandTable().Run(Cmd::mnuBookmark[BookmarkEntry::Next]);
    QVERIFY(Eventually([&] { return folded().empty(); }));
    QCOMPARE(editor.Text().LineOfOffset(editor.Text().CaretOffset()), 2);
    // One that is taken away while it is hidden leaves nothing.
    marks.SetFolded(0, true);
    QVERIFY(Eventually([&] { return folded() == Lines{0}; }));
    editor.Turn(Keys::Bookmarks, false);
    QVERIFY(Eventually([&] { return folded().empty(); }));
    QVERIFY(!editor.Text().CanUndo());
}

void TextAidsTest::BookmarksFollowEditsAndUndo()
{
    AidsWindow editor({Keys::Bookmarks});
    editor.OpenText(u"a.orc"_s, "a\nb\nc\nd\n");
    for (const qsizetype line : {1, 2})
        Q_EMIT editor.Marks().marginClicked(TextMargin::Markers, line, Qt::NoModifier);
    editor.PutCaret(0);
    editor.Type(u"\n"_s);
    QCOMPARE(Bookmarked(editor), u"2 3"_s);
    editor.PutCaret(editor.Text().LineStart(2));
    editor.Type(u"\n"_s);
    QCOMPARE(Bookmarked(editor), u"3 4"_s);
    // The lines go, and come back.
    editor.Text().SetSelection(editor.Text().LineStart(3), editor.Text().LineStart(5));
    editor.Key(Qt::Key_Delete);
    QCOMPARE(Bookmarked(editor), QString());
    editor.Text().Undo();
    QCOMPARE(Bookmarked(editor), u"3 4"_s);
    editor.Text().Redo();
    QCOMPARE(Bookmarked(editor), QString());
    editor.Text().Undo();
    // The whole text, as a conversion does.
    editor.Text().SetText(u"x\ny\nb\nz\nc"_s);
    QCOMPARE(Bookmarked(editor), u"2 4"_s);
    editor.Text().Undo();
    QCOMPARE(Bookmarked(editor), u"3 4"_s);
    while (editor.Text().CanUndo())
        editor.Text().Undo();
    QCOMPARE(editor.Text().Text(), u"a\nb\nc\nd\n"_s);
    QCOMPARE(Bookmarked(editor), u"1 2"_s);
}

void TextAidsTest::BookmarksComeBackWithTheirFile()
{
    AidsWindow editor({Keys::Bookmarks});
    editor.OpenText(u"a.orc"_s, "a\nb\nc\nd\n");
    const QString first = editor.folder.filePath(u"a.orc"_s);
    const QString other = editor.WriteFile(u"b.orc"_s, "a\nb\n");
    for (const qsizetype line : {1, 3})
        Q_EMIT editor.Marks().marginClicked(TextMargin::Markers, line, Qt::NoModifier);
    editor.window->Documents().OpenFile(other);
    QCoreApplication::processEvents();
    QCOMPARE(Bookmarked(editor), QString());
    editor.WriteFile(u"a.orc"_s, "x\nb\nc\nc\nd\n");
    editor.window->Documents().OpenFile(first);
    QVERIFY(Eventually([&] { return Bookmarked(editor) == u"1 4"_s; }));
    // Again: what is gone is forgotten.
    editor.WriteFile(u"a.orc"_s, "x\nb\n");
    editor.window->Documents().OpenFile(first);
    QVERIFY(Eventually([&] { return Bookmarked(editor) == u"1"_s; }));
}

void TextAidsTest::AMovedLineTakesItsBookmarkAlong()
{
    AidsWindow editor({Keys::Bookmarks, Keys::MoveLines});
    editor.OpenText(u"a.orc"_s, "aa\nbb\ncc\ndd\n");
    Q_EMIT editor.Marks().marginClicked(TextMargin::Markers, 1, Qt::NoModifier);
    const auto held = Qt::ControlModifier | Qt::ShiftModifier;
    editor.PutCaret(3);
    editor.Key(Qt::Key_Down, held);
    QCOMPARE(Bookmarked(editor), u"2"_s);
    editor.Key(Qt::Key_Up, held);
    editor.Key(Qt::Key_Up, held);
    QCOMPARE(editor.Text().Text(), u"bb\naa\ncc\ndd\n"_s);
    QCOMPARE(Bookmarked(editor), u"0"_s);
    // The neighbour's goes along with the neighbour.
    editor.PutCaret(3);
    editor.Key(Qt::Key_Up, held);
    QCOMPARE(editor.Text().Text(), u"aa\nbb\ncc\ndd\n"_s);
    QCOMPARE(Bookmarked(editor), u"1"_s);
    editor.Text().Undo();
    QCOMPARE(Bookmarked(editor), u"0"_s);
}

void TextAidsTest::AllAidsTogetherAgreeWithAFreshLook()
{
    AidsWindow editor({Keys::Folding, Keys::Bookmarks, Keys::BracketMatch, Keys::SameWord, Keys::MoveLines});
    editor.OpenText(u"a.csd"_s, Piece);
    RandomText random({u"instr 3\n"_s, u"endin\n"_s, u"if a then\n"_s, u"endif\n"_s, u"/*"_s, u"*/"_s, u"("_s,
                       u"\""_s, u"\n"_s, u"\u00e9"_s, u"</CsScore>"_s},
                      4);
    for (int round = 0; round < 12; ++round) {
        for (int n = random.Number(1, 6); n > 0; --n) {
            const int length = int(editor.Text().Length());
            const int start = random.Number(0, length);
            const int what = random.Number(0, 9);
            if (what < 2 && editor.Text().CanUndo())
                editor.Text().Undo();
            else if (what < 3 && editor.Text().CanRedo())
                editor.Text().Redo();
            else if (what < 4)
                editor.Marks().SetFolded(random.Number(0, int(editor.Text().LineCount()) - 1), true);
            else
                editor.Text().ReplaceRange(start, std::min(length, start + random.Number(0, 30)),
                                           random.Next());
        }
        const QString text = editor.Text().Text();
        const CodeMap map(text, FileKind::Unified);
        QString levels;
        for (const FoldLine &line : FoldLevels(text, FindBlocks(text, map, FileKind::Unified)))
            levels += QString::number(line.level) + (line.isHeader ? u"+"_s : u" "_s);
        QVERIFY2(Eventually([&] { return Levels(editor) == levels.trimmed(); }), qPrintable(text));
        // Nothing is hidden but by a folded header.
        for (qsizetype line = 0; line < editor.Text().LineCount(); ++line) {
            bool hidden = false;
            for (auto header = editor.Marks().FoldHeaderOf(line); header;
                 header = editor.Marks().FoldHeaderOf(*header))
                hidden = hidden || editor.Marks().IsFolded(*header);
            QCOMPARE(editor.Marks().IsLineHidden(line), hidden);
        }
    }
}

void TextAidsTest::UndoReloadAndOtherLineEndsLeaveTheAidsRight()
{
    AidsWindow editor(
        {Keys::LineNumbers, Keys::Folding, Keys::Bookmarks, Keys::SameWord, Keys::BracketMatch});
    QByteArray bytes = "b\r\ninstr 1\r\nk1 = (k2)\r\nout k1\r\nendin\r\ninstr 2\r\nx\r\nendin\r\n";
    editor.OpenText(u"a.orc"_s, bytes);
    TextControl &text = editor.Text();
    const auto numbersWidth = [&] {
        return text.SendScintilla(QsciScintillaBase::SCI_GETMARGINWIDTHN, int(TextMargin::Numbers));
    };
    const QString levels = u"0 0+1 1 1 0+1 1 0"_s;
    QVERIFY(Eventually([&] { return Levels(editor) == levels; }));
    const long width = numbersWidth();
    editor.PutCaret(text.LineStart(3));
    editor.window->CommandTable().Run(Cmd::mnuBookmark[BookmarkEntry::Toggle]);
    editor.Marks().SetFolded(5, true);

    // Told lines further down than at first.
    const auto isRight = [&](int by, const char *when) {
        const QString above = u"0 "_s.repeated(by);
        const auto asLines = [by](int line) { return QString::number(line + by); };
        QVERIFY2(Eventually([&] { return Levels(editor) == above + levels; }), when);
        QVERIFY2(Eventually([&] { return Row(editor.Marks().FoldedLines()) == asLines(5); }), when);
        QVERIFY2(Eventually([&] { return Bookmarked(editor) == asLines(3); }), when);
        const qsizetype line = text.LineStart(2 + by);
        editor.PutCaret(line + 5);
        QVERIFY2(Eventually([&] { return editor.Marked(Indicator::Brace) == u"( )"_s; }), when);
        editor.PutCaret(line);
        QVERIFY2(Eventually([&] { return editor.Marked(Indicator::SameWord) == u"k1 k1"_s; }), when);
        QCOMPARE(numbersWidth() > width, by > 900);
    };
    isRight(0, "first");
    for (const int by : {1, 1000}) {
        text.ReplaceRange(0, 0, QString(by, u'\n'));
        isRight(by, "edited");
        text.Undo();
        isRight(0, "undone");
        text.Redo();
        isRight(by, "redone");
        text.Undo();
    }
    const QString file = editor.WriteFile(u"a.orc"_s, bytes.replace("\r\n", "\n"));
    editor.desktop.ExpectMessage({.text = u"Load last saved version of "_s + file + u'?',
                                  .icon = BoxIcon::Warning,
                                  .buttons = BoxButtons::YesNo},
                                 BoxAnswer::Yes);
    editor.window->Documents().OpenFile(file);
    isRight(0, "other line ends");
    editor.window->Documents().OpenFile(editor.WriteFile(u"a.orc"_s, "\n" + bytes));
    isRight(1, "more lines");
    QVERIFY(editor.window->Documents().SaveFile(editor.folder.filePath(u"b.orc"_s)));
    isRight(1, "another name");
    // Of a score it is all plain lines, but the marks stay.
    QVERIFY(editor.window->Documents().SaveFile(editor.folder.filePath(u"b.sco"_s)));
    editor.PutCaret(0);
    QVERIFY(Eventually([&] { return Levels(editor) == u"0 "_s.repeated(10).trimmed(); }));
    QVERIFY(!editor.Marks().IsLineHidden(7));
    QCOMPARE(Bookmarked(editor), u"4"_s);
}

void TextAidsTest::HostileTextsAreNoHarm_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("one line of 5 MB") << u"a1 oscil (k1), \"x\" "_s.repeated(250'000);
    QTest::newRow("a million lines") << u"\n"_s.repeated(1'000'000);
    QTest::newRow("nothing closes") << u"instr 1\nif a then\n({[<a \"{{ /*\n"_s.repeated(30'000);
    constexpr char16_t Stray[] = {0, 0xD800, 0xDC00, 0xFFFD, 0xFEFF, u' ', u'\n', u'"', u'('};
    QString stray = u"instr 1\n a\n"_s;
    for (int at = 0; at < 200'000; ++at)
        stray += QChar(Stray[at * 7 % int(std::size(Stray))]);
    QTest::newRow("no characters") << stray;
    RandomText random({QString(QChar(1)), u"\u00FF"_s, QString(QChar(0)), u"/*"_s, u"\""_s, u"\n"_s, u"{{"_s,
                       QString(QChar(127))},
                      100);
    QString binary;
    while (binary.size() < 500'000)
        binary += random.Next();
    QTest::newRow("binary") << binary;
}

void TextAidsTest::HostileTextsAreNoHarm()
{
    QFETCH(QString, text);
    AidsWindow editor({});
#define ZELVANE_SAVE_AID(Type, Name, ...) editor.settings.SaveFlag(Keys::Name, true);
    ZELVANE_WRITING_KEYS(ZELVANE_SAVE_AID)
#undef ZELVANE_SAVE_AID
    editor.OpenText(u"a.orc"_s, "");
    editor.Text().LoadText(text);
    const QByteArray before = editor.Text().Utf8();
    Commands &commands = editor.window->CommandTable();
    for (const qsizetype place : {qsizetype(0), editor.Text().Length() / 2, editor.Text().Length()}) {
        editor.PutCaret(place);
        editor.Type(u"x(\n"_s);
        commands.Run(Cmd::mnuBookmark[BookmarkEntry::Toggle]);
        editor.Key(Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
        commands.Run(Cmd::mnuFold[FoldEntry::All]);
        // The pause in which all is scanned, and colours come.
        const qsizetype caret = editor.Text().CaretOffset();
        const qsizetype at = editor.Text().LineStart(editor.Text().LineOfOffset(caret));
        editor.Text().ReplaceRange(at, at, u"()"_s);
        editor.PutCaret(at);
        QVERIFY(QTest::qWaitFor(
            [&] {
                return !editor.Marked(Indicator::Brace).isEmpty() ||
                       !editor.Marked(Indicator::BraceUnmatched).isEmpty() ||
                       CodeMap(editor.Text().Text(), FileKind::Orchestra).At(at) != CodePart::Code;
            },
            60'000));
        commands.Run(Cmd::mnuFold[FoldEntry::None]);
    }
    while (editor.Text().CanUndo())
        editor.Text().Undo();
    QVERIFY(editor.Text().Utf8() == before);
    // Each key of the user comes through at once; a debugging build on a busy machine takes its time.
    editor.PutCaret(editor.Text().Length() / 2);
    QElapsedTimer clock;
    clock.start();
    editor.Type(u"abcdefghij"_s);
    QVERIFY2(clock.elapsed() < 20'000, qPrintable(QString::number(clock.elapsed())));
}

int main(int argc, char **argv)
{
    return RunUiTest<TextAidsTest>(argc, argv);
}

#include "test_textaids.moc"
