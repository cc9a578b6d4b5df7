// SPDX-License-Identifier: GPL-3.0-or-later

// Completion of words and the hint on arguments, with keys typed into the real window.

#include "platform/ui/textcontrol.h"
#include "shell/toolkeys.h"
#include "shell/ui/appearance.h"
#include "support/editorwindow.h"
#include "support/uitest.h"
#include "window/ui/frmeditor.h"
#include "writing/writingkeys.h"

#include <QAbstractItemModel>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QListView>
#include <QScreen>
#include <QScrollBar>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// An orchestra with the aids on.
struct Typist : EditorWindow {
    explicit Typist(const QByteArray &content = "\n", bool byItself = true,
                    const QString &name = u"piece.orc"_s)
    {
        WriteFile(u"opcodes.txt"_s, "0dbfs oscil oscili outs linen endin endop print prints OSCsend moscil "
                                    "pow FLpanel FLknob if x\n");
        settings.SaveFlag(Keys::Completion, true);
        settings.SaveFlag(Keys::AutoComplete, byItself);
        settings.SaveFlag(Keys::ArgumentHint, true);
        Open({WriteFile(name, content)});
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        Text().setFocus();
        Text().SetSelection(Text().Length(), Text().Length());
    }

    QListView &List() { return Find<QListView>(u"lstCompletion"_s); }
    QLabel &Tip() { return Find<QLabel>(u"lblArgumentHint"_s); }
    void Type(const QString &text)
    {
        for (const QChar c : text) {
            if (c == u'\n')
                Press(Qt::Key_Return);
            else
                QTest::sendKeyEvent(QTest::Click, &Text(), Qt::Key_unknown, QString(c), Qt::NoModifier);
        }
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&Text(), key, modifiers);
    }
    void Ask() { Press(Qt::Key_Space, Qt::ControlModifier); }
    void AskHint() { Press(Qt::Key_Space, Qt::ControlModifier | Qt::ShiftModifier); }
    /// The rows, none while the list is not there.
    QStringList Rows()
    {
        QStringList rows;
        const QAbstractItemModel &model = *List().model();
        for (int row = 0; List().isVisible() && row < model.rowCount(); ++row)
            rows.append(model.index(row, 0).data().toString());
        return rows;
    }
    QString Current() { return List().currentIndex().data().toString(); }
    /// What the tip shows, the bold in stars.
    QString Hint()
    {
        if (!Tip().isVisible())
            return {};
        QString text = Tip().text();
        text.remove(u"<p style='white-space:pre-wrap'>"_s).remove(u"</p>"_s);
        text.replace(u"<b>"_s, u"*"_s).replace(u"</b>"_s, u"*"_s).replace(u"<br>"_s, u"\n"_s);
        return text;
    }
    QString Line()
    {
        return Text().TextRange(Text().LineStart(Text().LineOfOffset(Text().CaretOffset())), Text().Length());
    }
};

} // namespace

class CompletionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheListComesWithThreeLettersAndNarrows();
    void TabAndEnterTakeAndUndoGivesTheLettersBack();
    void EscLeavesAndTheWordIsLeftAlone();
    void TypingGoesOnUndisturbed();
    void AWholeWordNeedsNothingTaken();
    void TheCommandListsByBeginningsAndParts();
    void NamesOfTheTextAreListed();
    void NoListByItselfInCommentsAndStrings();
    void AScoreListsNoOpcodes();
    void OptionsAndLabelsAreAskedOnly();
    void OtherTextsAreAskedOnly();
    void ArrowsMoveInTheListAlone();
    void ItClosesWithFocusScrollAndLoad();
    void TheWholeWordIsReplaced();
    void ANumberIsNoWord();
    void AClickTakes();
    void ItIsShownInsideTheScreen();
    void LongNamesStayInBounds();
    void ItHasAccessibleNames();
    void TheHintFollowsTheArguments();
    void TheHintKnowsFunctionsAndOwnOpcodes();
    void TheHintReadsTheManual();
    void TheHintGoes();
    void TakenOutTheyLeaveNothing();
    void LargeTextsAreReadInAPause();
};

void CompletionTest::TheListComesWithThreeLettersAndNarrows()
{
    Typist typist;
    typist.Type(u"os"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Type(u"c"_s);
    QCOMPARE(typist.Rows(), QStringList({u"oscil"_s, u"oscili"_s, u"OSCsend"_s, u"moscil"_s}));
    QCOMPARE(typist.Current(), u"oscil"_s);
    QVERIFY(typist.Text().hasFocus());
    typist.Type(u"ili"_s);
    QCOMPARE(typist.Rows(), QStringList()); // what is left has been typed
    typist.Press(Qt::Key_Backspace);
    typist.Press(Qt::Key_Backspace);
    typist.Press(Qt::Key_Backspace);
    typist.Type(u"i"_s);
    QCOMPARE(typist.Rows(), QStringList({u"oscil"_s, u"oscili"_s, u"moscil"_s}));
    typist.Press(Qt::Key_Backspace);
    QCOMPARE(typist.Rows(), QStringList({u"oscil"_s, u"oscili"_s, u"OSCsend"_s, u"moscil"_s}));
    typist.Press(Qt::Key_Backspace);
    QCOMPARE(typist.Rows().first(), u"oscil"_s);
    QCOMPARE(typist.Text().Text(), u"\nos"_s);
    // Without the setting only the command brings it.
    Typist asked("\n", false);
    asked.Type(u"osc"_s);
    QVERIFY(!asked.List().isVisible());
    asked.Ask();
    QVERIFY(asked.List().isVisible());
}

void CompletionTest::TabAndEnterTakeAndUndoGivesTheLettersBack()
{
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return, Qt::Key_Enter}) {
        Typist typist;
        typist.Type(u"a1 lin"_s);
        typist.Press(key);
        QCOMPARE(typist.Text().Text(), u"\na1 linen"_s);
        QCOMPARE(typist.Text().CaretOffset(), 9);
        QVERIFY(!typist.List().isVisible());
        typist.Text().Undo();
        QCOMPARE(typist.Text().Text(), u"\na1 lin"_s);
        QCOMPARE(typist.Text().CaretOffset(), 7);
        QVERIFY(!typist.List().isVisible());
        typist.Text().Redo();
        QCOMPARE(typist.Text().Text(), u"\na1 linen"_s);
        typist.Type(u" 1"_s);
        typist.Text().Undo();
        typist.Text().Undo();
        QCOMPARE(typist.Text().Text(), u"\na1 lin"_s);
    }
}

void CompletionTest::EscLeavesAndTheWordIsLeftAlone()
{
    Typist typist;
    typist.Type(u"osc"_s);
    typist.Press(Qt::Key_Escape);
    QVERIFY(!typist.List().isVisible());
    typist.Type(u"i"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Ask();
    QVERIFY(typist.List().isVisible());
    typist.Press(Qt::Key_Escape);
    typist.Type(u" lin"_s);
    QCOMPARE(typist.Rows(), QStringList({u"linen"_s}));
    QCOMPARE(typist.Text().Text(), u"\nosci lin"_s);
    typist.Press(Qt::Key_Escape);
    // The place stays with its word, and goes with it.
    typist.Text().ReplaceRange(0, 0, u"; some\n"_s);
    typist.Press(Qt::Key_End, Qt::ControlModifier);
    typist.Type(u"e"_s);
    QVERIFY(!typist.List().isVisible());
    for (int i = 0; i < 4; ++i)
        typist.Press(Qt::Key_Backspace);
    typist.Type(u"osc"_s);
    QVERIFY(typist.List().isVisible());
    typist.Press(Qt::Key_Escape);
    typist.Type(u"i"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Text().SetSelection(typist.Text().Length() - 4, typist.Text().Length());
    typist.Type(u"osc"_s);
    QVERIFY(typist.List().isVisible());
    typist.Press(Qt::Key_Escape);
    typist.Text().LoadText(typist.Text().Text());
    typist.Press(Qt::Key_End, Qt::ControlModifier);
    typist.Type(u"i"_s);
    QVERIFY(typist.List().isVisible());
}

void CompletionTest::TypingGoesOnUndisturbed()
{
    Typist typist;
    typist.Type(u"kosc1 = (osc+2)\nosc\"osc\"osc,"_s);
    QVERIFY(!typist.List().isVisible());
    // The Enter behind "2)" found no list.
    QCOMPARE(typist.Text().Text(), u"\nkosc1 = (osc+2)\nosc\"osc\"osc,"_s);
    typist.Type(u"osc"_s);
    typist.Press(Qt::Key_Left);
    QVERIFY(!typist.List().isVisible());
    QCOMPARE(typist.Text().CaretOffset(), typist.Text().Length() - 1);
}

void CompletionTest::AWholeWordNeedsNothingTaken()
{
    Typist typist;
    typist.Type(u"oscil"_s);
    QCOMPARE(typist.Current(), u"oscil"_s);
    typist.Press(Qt::Key_Return);
    QCOMPARE(typist.Text().Text(), u"\noscil\n"_s);
    typist.Type(u"oscil"_s);
    typist.Press(Qt::Key_Down);
    typist.Press(Qt::Key_Return);
    QCOMPARE(typist.Text().Text(), u"\noscil\noscili"_s);
    // So is a word that the text has already, though longer ones begin like it.
    Typist again("asig2 = 1\nasig = 2\n");
    again.Type(u"out asig"_s);
    QCOMPARE(again.Rows(), QStringList({u"asig"_s, u"asig2"_s}));
    again.Type(u"\ninstr out\nopcode out\n#define out\n"_s);
    QCOMPARE(again.Text().Text(), u"asig2 = 1\nasig = 2\nout asig\ninstr out\nopcode out\n#define out\n"_s);
}

void CompletionTest::TheCommandListsByBeginningsAndParts()
{
    Typist typist("ksend = 1\n", false);
    typist.Type(u"send"_s);
    typist.Ask();
    QCOMPARE(typist.Rows(), QStringList({u"ksend"_s, u"OSCsend"_s}));
    typist.Press(Qt::Key_Escape);
    typist.Type(u" "_s);
    typist.Ask();
    QVERIFY(typist.Rows().size() > 10);
    typist.Type(u"p"_s);
    QCOMPARE(typist.Rows(), QStringList({u"pow"_s, u"print"_s, u"prints"_s}));
    // Back to where nothing had been typed, and out of it.
    typist.Press(Qt::Key_Backspace);
    QVERIFY(typist.List().isVisible());
    typist.Press(Qt::Key_Backspace);
    QVERIFY(!typist.List().isVisible());
    typist.Type(u"zzz"_s);
    typist.Ask();
    QVERIFY(!typist.List().isVisible());
}

void CompletionTest::NamesOfTheTextAreListed()
{
    Typist typist("#define TEMPO #120#\n"
                  "giSine ftgen 0, 0, 1024, 10, 1\n"
                  "instr Bass\nendin\n"
                  "opcode Warmer, a, a\nendop\n"
                  "; remark words\n",
                  false);
    const auto kind = [&](const QString &typed) {
        typist.Press(Qt::Key_Escape); // with the list, Enter would take what is current
        typist.Type(u"\n"_s + typed);
        typist.Ask();
        const QModelIndex row = typist.List().model()->index(0, 0);
        return QString(row.data().toString() + u' ' + row.data(Qt::UserRole).toString());
    };
    QCOMPARE(kind(u"$T"_s), u"$TEMPO macro"_s);
    typist.Press(Qt::Key_Tab);
    QCOMPARE(typist.Line(), u"$TEMPO"_s);
    QCOMPARE(kind(u"TEM"_s), u"$TEMPO macro"_s);
    QCOMPARE(kind(u"sine"_s), u"giSine table"_s);
    QCOMPARE(kind(u"bas"_s), u"Bass instrument"_s);
    QCOMPARE(kind(u"War"_s), u"Warmer own opcode"_s);
    QCOMPARE(kind(u"osc"_s), u"oscil opcode"_s);
    typist.Press(Qt::Key_Escape);
    typist.Type(u"\nrema"_s);
    typist.Ask();
    QVERIFY(!typist.List().isVisible());
    typist.Type(u"\n; rema"_s);
    typist.Ask();
    QCOMPARE(typist.Rows(), QStringList({u"remark"_s}));
}

void CompletionTest::NoListByItselfInCommentsAndStrings()
{
    Typist typist("/* a\n");
    typist.Type(u"osc"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Type(u" */ osc"_s);
    QVERIFY(typist.List().isVisible());
    typist.Type(u" ; osc"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Type(u"\nprints \"osc"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Text().ReplaceRange(0, typist.Text().Length(), u"scoreline {{\n\n}}\n"_s);
    typist.Text().SetSelection(13, 13);
    typist.Type(u"osc"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Text().SetSelection(typist.Text().Length(), typist.Text().Length());
    typist.Type(u"osc"_s);
    QVERIFY(typist.List().isVisible());
    typist.Type(u" // osc"_s);
    QVERIFY(!typist.List().isVisible());
}

void CompletionTest::AScoreListsNoOpcodes()
{
    Typist typist("<CsoundSynthesizer>\n<CsInstruments>\ninstr Oscar\nendin\n</CsInstruments>\n<CsScore>\n\n"
                  "</CsScore>\n</CsoundSynthesizer>\n",
                  true, u"piece.csd"_s);
    const qsizetype inScore = typist.Text().Text().indexOf(u"<CsScore>\n"_s) + 10;
    typist.Text().SetSelection(inScore, inScore);
    typist.Type(u"i \"osc"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Ask();
    QCOMPARE(typist.Rows(), QStringList({u"Oscar"_s}));
    typist.Press(Qt::Key_Tab);
    const qsizetype inOrchestra = typist.Text().Text().indexOf(u"endin"_s);
    typist.Text().SetSelection(inOrchestra, inOrchestra);
    typist.Type(u"\nosc"_s);
    QCOMPARE(typist.Rows(), QStringList());
    typist.Text().SetSelection(inOrchestra, inOrchestra);
    typist.Type(u"osc "_s);
    QVERIFY(typist.Text().Text().contains(u"i \"Oscar\n"_s));
}

void CompletionTest::OptionsAndLabelsAreAskedOnly()
{
    Typist typist("\n", true, u"piece.csd"_s);
    const QString options = u"<CsoundSynthesizer>\n<CsOptions>\n-+rtaudio=osc\n</CsOptions>\n"_s;
    typist.Type(options);
    QCOMPARE(typist.Text().Text(), u"\n"_s + options);
    typist.Type(u"<CsInstruments>\nlin"_s);
    QCOMPARE(typist.Current(), u"linen"_s);
    typist.Press(Qt::Key_Escape);
    typist.Type(u"\nif k1 == 1 kgoto end\nreinit end\ntimout 0, 1, end\n"_s);
    QVERIFY(typist.Text().Text().endsWith(u"lin\nif k1 == 1 kgoto end\nreinit end\ntimout 0, 1, end\n"_s));
    typist.Type(u"end"_s);
    QVERIFY(typist.List().isVisible());
    typist.Press(Qt::Key_Escape);
    typist.Type(u"\n</CsInstruments>\nosc"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Ask();
    QVERIFY(typist.List().isVisible());
}

void CompletionTest::OtherTextsAreAskedOnly()
{
    Typist typist("\n", true, u"readme.txt"_s);
    typist.Type(u"osc"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Ask();
    QVERIFY(typist.List().isVisible());
}

void CompletionTest::ArrowsMoveInTheListAlone()
{
    Typist typist;
    typist.Type(u"osc"_s);
    typist.Press(Qt::Key_Down);
    typist.Press(Qt::Key_Down);
    QCOMPARE(typist.Current(), u"OSCsend"_s);
    typist.Press(Qt::Key_Up);
    QCOMPARE(typist.Current(), u"oscili"_s);
    typist.Press(Qt::Key_PageDown);
    QCOMPARE(typist.Current(), u"moscil"_s);
    typist.Press(Qt::Key_PageUp);
    QCOMPARE(typist.Current(), u"oscil"_s);
    typist.Press(Qt::Key_Up);
    QCOMPARE(typist.Current(), u"oscil"_s);
    QCOMPARE(typist.Text().CaretOffset(), typist.Text().Length());
    typist.Press(Qt::Key_Escape);
    typist.Press(Qt::Key_Up);
    QCOMPARE(typist.Text().LineOfOffset(typist.Text().CaretOffset()), 0);
}

void CompletionTest::ItClosesWithFocusScrollAndLoad()
{
    Typist typist;
    const auto open = [&] {
        typist.Type(u"\nosc"_s);
        QVERIFY(typist.List().isVisible());
    };
    open();
    typist.Find<QWidget>(u"cmbOpcodes"_s).setFocus();
    QVERIFY(!typist.List().isVisible());
    typist.Text().setFocus();
    open();
    QWheelEvent wheel({10, 10}, typist.Text().viewport()->mapToGlobal(QPointF(10, 10)), {}, {0, -120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(typist.Text().viewport(), &wheel);
    QVERIFY(!typist.List().isVisible());
    open();
    QTest::mouseClick(typist.Text().viewport(), Qt::LeftButton, {}, {5, 5});
    QVERIFY(!typist.List().isVisible());
    open();
    typist.Text().LoadText(u"another"_s);
    QVERIFY(!typist.List().isVisible());
    typist.Text().SetSelection(7, 7);
    open();
    typist.window->resize(typist.window->size() - QSize(20, 20));
    QVERIFY(Eventually([&] { return !typist.List().isVisible(); }));
}

void CompletionTest::TheWholeWordIsReplaced()
{
    Typist typist("oscil\n", false);
    typist.Text().SetSelection(2, 2);
    typist.Ask();
    typist.Press(Qt::Key_Tab);
    QCOMPARE(typist.Text().Text(), u"oscil\n"_s);
    typist.Text().SetSelection(0, 5);
    typist.Type(u"oscfreq"_s);
    typist.Text().SetSelection(3, 3);
    typist.Ask();
    typist.Press(Qt::Key_Tab);
    QCOMPARE(typist.Text().Text(), u"oscil\n"_s);
    QCOMPARE(typist.Text().CaretOffset(), 5);
    typist.Text().Undo();
    QCOMPARE(typist.Text().Text(), u"oscfreq\n"_s);
    // One name for another that begins like it, and nothing of what stands beside.
    typist.Text().SetText(u"a1 oscil, 2\n"_s);
    typist.Text().SetSelection(5, 5);
    typist.Ask();
    typist.Press(Qt::Key_Down);
    QCOMPARE(typist.Current(), u"oscili"_s);
    typist.Press(Qt::Key_Tab);
    QCOMPARE(typist.Text().Text(), u"a1 oscili, 2\n"_s);
    QCOMPARE(typist.Text().CaretOffset(), 9);
}

void CompletionTest::ANumberIsNoWord()
{
    Typist typist;
    typist.Type(u"a1 oscil 100"_s);
    typist.Ask();
    QCOMPARE(typist.Rows(), QStringList());
    typist.Type(u"\n0d"_s);
    QCOMPARE(typist.Rows(), QStringList());
    typist.Type(u"b"_s);
    QCOMPARE(typist.Rows(), QStringList({u"0dbfs"_s}));
    typist.Press(Qt::Key_Tab);
    QCOMPARE(typist.Text().Text(), u"\na1 oscil 100\n0dbfs"_s);
}

void CompletionTest::AClickTakes()
{
    Typist typist;
    typist.Type(u"osc"_s);
    const QRect row = typist.List().visualRect(typist.List().model()->index(1, 0));
    QTest::mouseClick(typist.List().viewport(), Qt::LeftButton, {}, row.center());
    QCOMPARE(typist.Text().Text(), u"\noscili"_s);
    QVERIFY(!typist.List().isVisible());
}

void CompletionTest::ItIsShownInsideTheScreen()
{
    Typist typist;
    const QRect screen = typist.window->screen()->availableGeometry();
    for (const QPoint &corner : {QPoint(0, 0), QPoint(screen.right() - 320, screen.bottom() - 260)}) {
        typist.window->setGeometry(QRect(corner, QSize(320, 260)));
        QCoreApplication::processEvents();
        typist.Text().SetText(u"\n"_s.repeated(200));
        typist.Text().SetSelection(200, 200);
        typist.Type(u"aaaaaaaaaaaaaaaaaa osc"_s);
        QVERIFY(typist.List().isVisible());
        const QRect list = typist.List().geometry();
        QVERIFY2(screen.contains(list), qPrintable(u"%1 %2"_s.arg(list.left()).arg(list.top())));
        const QRect word = typist.Text().RangeOnScreen(219, 222);
        QVERIFY(!list.intersects(word));
        typist.Press(Qt::Key_Escape);
        typist.Type(u" oscil "_s);
        QVERIFY(typist.Tip().isVisible());
        QVERIFY(screen.contains(typist.Tip().geometry()));
        typist.Type(u"osc"_s);
        QVERIFY(typist.List().isVisible() && typist.Tip().isVisible());
        QVERIFY(screen.contains(typist.List().geometry()));
        QVERIFY(!typist.List().geometry().intersects(typist.Tip().geometry()));
        typist.Press(Qt::Key_Escape);
        typist.Press(Qt::Key_Escape);
    }
}

void CompletionTest::LongNamesStayInBounds()
{
    const QByteArray name = "kLong" + QByteArray(150, 'x') + "End";
    QByteArray ports("k");
    for (int i = 1; i < 5000; ++i)
        ports += 'k';
    Typist typist(name + " = 1\nkLong" + QByteArray(1'000'000, 'y') + " = 1\nopcode Many, 0, " + ports +
                      "\nendop\n",
                  false);
    typist.Type(u"kLong"_s);
    // So large a text is read in a pause.
    QVERIFY(Eventually([&] {
        typist.Ask();
        return typist.List().isVisible();
    }));
    QCOMPARE(typist.Rows(),
             QStringList(u"kLong"_s + QString(34, u'x') + u'\u2026' + QString(17, u'x') + u"End"_s));
    QVERIFY(typist.List().width() < 70 * QFontMetrics(typist.List().font()).maxWidth());
    typist.Press(Qt::Key_Tab);
    QCOMPARE(typist.Line(), QString::fromLatin1(name));
    typist.Type(u"\nMany 1, 2, "_s);
    QVERIFY(typist.Hint().startsWith(u"*Many* k, k, *k*, k, "_s));
    QVERIFY(typist.Tip().height() < typist.window->height() / 4);
}

void CompletionTest::ItHasAccessibleNames()
{
    Typist typist;
    typist.Type(u"osc"_s);
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&typist.List());
    QVERIFY(list);
    QCOMPARE(list->text(QAccessible::Name), u"Completions"_s);
    QCOMPARE(list->child(0)->text(QAccessible::Name), u"oscil, opcode"_s);
    typist.Press(Qt::Key_Tab);
    typist.Type(u" "_s);
    QAccessibleInterface *tip = QAccessible::queryAccessibleInterface(&typist.Tip());
    QVERIFY(tip->text(QAccessible::Name).startsWith(u"a oscil a"_s));
}

void CompletionTest::TheHintFollowsTheArguments()
{
    Typist typist("\n", false);
    typist.settings.SaveText(Keys::Help, typist.folder.filePath(u"none.hlp"_s));
    typist.window->Looks().ApplyAll();
    typist.Type(u"a1 linen"_s);
    QCOMPARE(typist.Hint(), QString());
    typist.Type(u" "_s);
    QCOMPARE(typist.Hint(), u"a *linen* *a|k*, i, i, i"_s);
    typist.Type(u"1, 2"_s);
    QCOMPARE(typist.Hint(), u"a *linen* a|k, *i*, i, i"_s);
    typist.Press(Qt::Key_Home);
    QCOMPARE(typist.Hint(), QString());
    typist.Press(Qt::Key_End);
    QCOMPARE(typist.Hint(), QString());
    typist.AskHint();
    QCOMPARE(typist.Hint(), u"a *linen* a|k, *i*, i, i"_s);
    typist.Press(Qt::Key_Left);
    typist.Press(Qt::Key_Left);
    typist.Press(Qt::Key_Left);
    QCOMPARE(typist.Hint(), u"a *linen* *a|k*, i, i, i"_s);
    typist.Press(Qt::Key_End);
    typist.Type(u", 3, 4 \\\n"_s);
    QCOMPARE(typist.Hint(), u"a *linen* a|k, i, i, *i*"_s);
    typist.Type(u"\n"_s);
    QCOMPARE(typist.Hint(), QString());
    typist.Type(u"k1 linen 1,"_s);
    QCOMPARE(typist.Hint(), u"k *linen* k, *i*, i, i"_s);
    typist.Type(u"\nfoo 1,"_s);
    typist.AskHint();
    QCOMPARE(typist.Hint(), QString());
}

void CompletionTest::TheHintKnowsFunctionsAndOwnOpcodes()
{
    Typist typist("opcode Warmer, a, ak\nain, kheat xin\naout = ain * kheat\nxout aout\nendop\n", false);
    typist.settings.SaveText(Keys::Help, typist.folder.filePath(u"none.hlp"_s));
    typist.window->Looks().ApplyAll();
    typist.Type(u"a1 Warmer "_s);
    QCOMPARE(typist.Hint(), u"aout *Warmer* *ain*, kheat"_s);
    typist.Type(u"linen:a("_s);
    QCOMPARE(typist.Hint(), u"a *linen* *a|k*, i, i, i"_s);
    typist.Type(u"1, 2, 3, 4), "_s);
    QCOMPARE(typist.Hint(), u"aout *Warmer* ain, *kheat*"_s);
    typist.Type(u"; linen "_s);
    QCOMPARE(typist.Hint(), QString());
    typist.Type(u"\n/* one\ntwo linen , */ a1 linen 1, "_s);
    QCOMPARE(typist.Hint(), u"a *linen* a|k, *i*, i, i"_s);
    typist.Type(u"/* "_s);
    QCOMPARE(typist.Hint(), QString());
}

void CompletionTest::TheHintReadsTheManual()
{
    Typist typist("\n", false);
    typist.WriteFile(u"mine.hlp"_s, "[Manual]\nFolder=.\nPage=$WORD$.html\nContents=index.html\n");
    typist.WriteFile(u"index.html"_s, "contents");
    typist.WriteFile(u"linen.html"_s,
                     "<pre class=\"synopsis\">ares <strong>linen</strong> xamp, irise &lt;s&gt;"
                     "</pre><pre class=\"synopsis\">kres linen kamp</pre>");
    typist.settings.SaveText(Keys::Help, typist.folder.filePath(u"mine.hlp"_s));
    typist.window->Looks().ApplyAll();
    typist.Type(u"linen "_s);
    QCOMPARE(typist.Hint(), u"ares *linen* *xamp*, irise &lt;s&gt;\nkres *linen* *kamp*"_s);
    typist.Type(u"\na1 linen 1, "_s);
    QCOMPARE(typist.Hint(), u"ares *linen* xamp, *irise &lt;s&gt;*"_s);
    // What the manual alone describes.
    typist.WriteFile(u"FLpanel.html"_s, "<pre class=\"synopsis\"><b>FLpanel</b> \"label\", iwidth</pre>");
    typist.Type(u"\nFLpanel 1, "_s);
    QCOMPARE(typist.Hint(), u"*FLpanel* &quot;label&quot;, *iwidth*"_s);
    typist.Type(u"\nFLknob 1, "_s);
    QCOMPARE(typist.Hint(), QString());
    typist.WriteFile(u"other.html"_s, "<pre class=\"synopsis\">other kamp</pre>");
    typist.Type(u"\nother 1, "_s);
    QCOMPARE(typist.Hint(), QString()); // no opcode
    // A condition is no list of arguments.
    typist.WriteFile(u"if.html"_s, "<pre class=\"synopsis\">if xa R xb then</pre>");
    typist.Type(u"\nif (k1 > linen("_s);
    QCOMPARE(typist.Hint(), u"ares *linen* *xamp*, irise &lt;s&gt;\nkres *linen* *kamp*"_s);
    typist.Type(u"1)) "_s);
    QCOMPARE(typist.Hint(), QString());
    typist.AskHint();
    QCOMPARE(typist.Hint(), QString());
}

void CompletionTest::TheHintGoes()
{
    Typist typist("\n", false);
    const auto show = [&] {
        typist.Type(u"\na1 linen 1, "_s);
        QVERIFY(typist.Tip().isVisible());
    };
    show();
    typist.Press(Qt::Key_Escape);
    QVERIFY(!typist.Tip().isVisible());
    show();
    typist.Find<QWidget>(u"cmbOpcodes"_s).setFocus();
    QVERIFY(!typist.Tip().isVisible());
    typist.Text().setFocus();
    show();
    QWheelEvent wheel({10, 10}, typist.Text().viewport()->mapToGlobal(QPointF(10, 10)), {}, {0, -120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(typist.Text().viewport(), &wheel);
    QVERIFY(!typist.Tip().isVisible());
    show();
    typist.Text().LoadText(u"another"_s);
    QVERIFY(!typist.Tip().isVisible());
}

void CompletionTest::TakenOutTheyLeaveNothing()
{
    Typist typist;
    typist.Type(u"osc"_s);
    typist.settings.SaveFlag(Keys::Completion, false);
    typist.settings.SaveFlag(Keys::ArgumentHint, false);
    typist.window->Looks().ApplyAll();
    QVERIFY(!typist.window->findChild<QListView *>(u"lstCompletion"_s));
    QVERIFY(!typist.window->findChild<QLabel *>(u"lblArgumentHint"_s));
    typist.Type(u"il 1, osc"_s);
    typist.Press(Qt::Key_Tab);
    QVERIFY(typist.Text().Text().startsWith(u"\noscil 1, osc"_s));
    QVERIFY(typist.Text().Text() != u"\noscil 1, osc"_s);
}

void CompletionTest::LargeTextsAreReadInAPause()
{
    QByteArray content = "giFarAway ftgen 0, 0, 1024, 10, 1\n";
    while (content.size() < 200'000)
        content += "a1 oscil 1, 440\n";
    Typist typist(content, false);
    typist.Type(u"giFar"_s);
    QVERIFY(Eventually([&] {
        typist.Ask();
        return typist.Rows() == QStringList({u"giFarAway"_s});
    }));
    typist.Press(Qt::Key_Escape);
    // What was typed a moment ago counts at once.
    typist.Type(u"\nkNearWord = 1\nkNear"_s);
    typist.Ask();
    QCOMPARE(typist.Rows(), QStringList({u"kNearWord"_s}));
    // An open comment at the beginning takes all that follows.
    typist.Press(Qt::Key_Escape);
    typist.Type(u"\na1 linen 1, "_s);
    QVERIFY(typist.Tip().isVisible());
    typist.Text().ReplaceRange(0, 0, u"/* "_s);
    QVERIFY(Eventually([&] {
        typist.AskHint();
        return !typist.Tip().isVisible();
    }));
}

int main(int argc, char **argv)
{
    return RunUiTest<CompletionTest>(argc, argv);
}

#include "test_completion.moc"
