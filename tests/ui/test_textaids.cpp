// SPDX-License-Identifier: GPL-3.0-or-later

// The writing aids that stand in the text itself, in the window of the editor.

#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "platform/ui/textdecorations.h"
#include "shell/command.h"
#include "shell/editorkeys.h"
#include "shell/settingkey.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commands.h"
#include "support/editorwindow.h"
#include "support/uitest.h"
#include "window/ui/frmeditor.h"
#include "window/ui/rooms.h"
#include "writing/ui/writingroom.h"
#include "writing/writingkeys.h"

#include <initializer_list>
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
    void LinesMoveWithTheirColoursInOneStep();
    void TypedTextIsIndented();
    void EnterIsOneStepOfUndo();
    void AClosingWordIsOneStepWithItsIndent();
    void AWordThatGoesOnGetsItsIndentBack();
    void TabsIndentWhereTabsAreSet();
    void WithoutTheAidEnterIsPlain();
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

void TextAidsTest::TabsIndentWhereTabsAreSet()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.settings.SaveFlag(Keys::TabInsertSpaces, false);
    editor.OpenText(u"a.orc"_s, "");
    editor.Type(u"instr 1\nx"_s);
    QCOMPARE(editor.Text().Text(), u"instr 1\n\tx"_s);
}

void TextAidsTest::WithoutTheAidEnterIsPlain()
{
    AidsWindow editor({Keys::AutoIndent});
    editor.OpenText(u"a.orc"_s, "");
    editor.Turn(Keys::AutoIndent, false);
    editor.Type(u"  instr 1\nx"_s);
    QCOMPARE(editor.Text().Text(), u"  instr 1\nx"_s);
}

int main(int argc, char **argv)
{
    return RunUiTest<TextAidsTest>(argc, argv);
}

#include "test_textaids.moc"
