// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/opcodecombo.h"
#include "shell/toolkeys.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// The opcode list alone on the screen, over a text of its own.
struct ComboOnScreen : TestContext {
    int focused = 0;
    OpcodeCombo combo{editor, folder.path(), [this] { ++focused; }};

    explicit ComboOnScreen(const QByteArray &opcodes = "oscil Outs a linen zz zz\n")
    {
        WriteFile(u"opcodes.txt"_s, opcodes);
        text.SetText(u"one two\n"_s);
    }
    void ShowLoaded()
    {
        combo.LoadOpcodeCombo();
        combo.show();
        QVERIFY(QTest::qWaitForWindowExposed(&combo));
    }
    QStringList Items() const
    {
        QStringList items;
        for (int i = 0; i < combo.count(); ++i)
            items += combo.itemText(i);
        return items;
    }
    void DropByClick()
    {
        QTest::mouseClick(combo.lineEdit(), Qt::LeftButton, {}, QPoint(4, combo.lineEdit()->height() / 2));
        QTRY_VERIFY(combo.view()->isVisible());
    }
};

class TestLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheListIsSortedWithoutRegardToCase()
    {
        ComboOnScreen on;
        QCOMPARE(on.combo.currentText(), u"Opcodes (press Enter to insert)"_s);
        QCOMPARE(on.combo.count(), 0);
        on.combo.LoadOpcodeCombo();
        QCOMPARE(on.Items(), QStringList({u"a"_s, u"linen"_s, u"oscil"_s, u"Outs"_s, u"zz"_s, u"zz"_s}));
        QCOMPARE(on.combo.currentText(), u"Opcodes (press Enter to insert)"_s);
        QCOMPARE(on.combo.currentIndex(), -1);
        QCOMPARE(on.status.shown, QStringList({u"loading opcodes list..."_s, QString()}));
    }

    void LoadingServesEvents()
    {
        ComboOnScreen on(QByteArray("abc ").repeated(2000) + "\n");
        bool served = false;
        int loadedThen = 0;
        QTimer::singleShot(0, &on.combo, [&] {
            served = true;
            loadedThen = on.combo.count();
            on.status.Show(u"another text"_s);
            on.combo.setEditText(u"typed meanwhile"_s);
            on.combo.LoadOpcodeCombo(); // no second time while it runs
        });
        on.combo.LoadOpcodeCombo();
        QVERIFY(served);
        QVERIFY(loadedThen > 0 && loadedThen < 2000);
        QCOMPARE(on.combo.count(), 2000);
        QCOMPARE(on.combo.currentText(), u"typed meanwhile"_s);
        QCOMPARE(on.status.shown, QStringList({u"loading opcodes list..."_s, u"another text"_s}));
    }

    void LoadingOutlivesTheListsEnd()
    {
        TestContext context;
        context.WriteFile(u"opcodes.txt"_s, QByteArray("abc ").repeated(2000) + "\n");
        auto *combo = new OpcodeCombo(context.editor, context.folder.path(), [] {});
        QTimer::singleShot(0, combo, [combo] { delete combo; });
        combo->LoadOpcodeCombo();
        QCOMPARE(context.status.shown, QStringList({u"loading opcodes list..."_s}));
    }

    void AFailedLoadIsToldInTheStatusLine()
    {
        ComboOnScreen on;
        QVERIFY(QFile::remove(on.folder.filePath(u"opcodes.txt"_s)));
        on.combo.LoadOpcodeCombo();
        QCOMPARE(on.combo.count(), 0);
        QCOMPARE(on.status.text, u"Error loading opcodes list."_s);
        on.WriteFile(u"opcodes.txt"_s, "a b\n");
        on.combo.LoadOpcodeCombo();
        QCOMPARE(on.combo.count(), 2);
    }

    void EnterInsertsWhatStandsInTheField()
    {
        ComboOnScreen on;
        on.ShowLoaded();
        on.text.SetSelection(4, 7);
        QTest::keyClick(&on.combo, Qt::Key_Return);
        QCOMPARE(on.text.text, u"one Opcodes (press Enter to insert)\n"_s);
        QCOMPARE(on.text.SelectedText(), u"Opcodes (press Enter to insert)"_s);
        QCOMPARE(on.focused, 1);

        on.combo.setCurrentIndex(2);
        QTest::keyClick(&on.combo, Qt::Key_Enter);
        QCOMPARE(on.text.text, u"one oscil\n"_s);
        QCOMPARE(on.text.selection, (TextSpan{4, 9}));

        on.combo.lineEdit()->selectAll();
        QTest::keyClicks(&on.combo, u"osc"_s);
        QCOMPARE(on.combo.currentText(), u"osc"_s);
        QTest::keyClick(on.combo.lineEdit(), Qt::Key_Return);
        QCOMPARE(on.text.text, u"one osc\n"_s);
        QCOMPARE(on.combo.count(), 6);
        QCOMPARE(on.focused, 3);
    }

    void AClickDropsTheList()
    {
        ComboOnScreen on;
        on.ShowLoaded();
        on.DropByClick();
        QTest::keyClick(on.combo.view(), Qt::Key_Escape);
        QTRY_VERIFY(!on.combo.view()->isVisible());
        QCOMPARE(on.combo.currentText(), u"Opcodes (press Enter to insert)"_s);
        QCOMPARE(on.focused, 0);
    }

    void ANameIsTakenFromTheListAndInserted()
    {
        ComboOnScreen on;
        on.ShowLoaded();
        on.text.SetSelection(0, 0);
        on.DropByClick();
        QTest::keyClick(on.combo.view(), Qt::Key_Down);
        QCOMPARE(on.combo.currentText(), u"a"_s);
        QTest::keyClick(on.combo.view(), Qt::Key_Down);
        QTest::keyClick(on.combo.view(), Qt::Key_Return);
        QTRY_VERIFY(!on.combo.view()->isVisible());
        QCOMPARE(on.text.text, u"linenone two\n"_s);
        QCOMPARE(on.text.SelectedText(), u"linen"_s);

        on.DropByClick();
        const QRect row = on.combo.view()->visualRect(on.combo.model()->index(3, 0));
        QTest::mouseMove(on.combo.view()->viewport(), row.center());
        QTest::mouseClick(on.combo.view()->viewport(), Qt::LeftButton, {}, row.center());
        QTRY_COMPARE(on.combo.currentText(), u"Outs"_s);
        QTest::keyClick(&on.combo, Qt::Key_Return);
        QCOMPARE(on.text.text, u"Outsone two\n"_s);
    }

    void TextTypedOverTheDroppedListGoesToTheField()
    {
        ComboOnScreen on;
        on.ShowLoaded();
        on.DropByClick();
        QTest::keyClicks(on.combo.view(), u"ou"_s);
        QCOMPARE(on.combo.currentText(), u"ou"_s);
        QVERIFY(!on.combo.view()->currentIndex().isValid()); // Enter inserts "ou"
        QTest::keyClick(on.combo.view(), Qt::Key_Backspace);
        QCOMPARE(on.combo.currentText(), u"o"_s);
        QTest::keyClick(on.combo.view(), Qt::Key_Return);
        QCOMPARE(on.text.text, u"oone two\n"_s);
        QCOMPARE(on.text.SelectedText(), u"o"_s);
        QCOMPARE(on.focused, 1);
    }

    void TheWindowColoursAnewOnRequest()
    {
        EditorWindow editor;
        frmEditor &window = editor.Open({editor.WriteFile(u"a.orc"_s, "oscil x\n")});
        window.Context().text.SetSelection(6, 7);
        window.Context().text.ReplaceSelection(u"outs"_s);
        QVERIFY(window.Context().text.CanUndo());
        editor.Row(u"mnuRefreshSyntaxHighlight"_s).trigger();
        QVERIFY(!window.Context().text.CanUndo());
        QVERIFY(!window.Context().document.Loading);
        QVERIFY(window.Context().document.Modified);
        QCOMPARE(window.Context().status.Text(), u"Syntax highlight..."_s);
        QVERIFY(editor.Text().isVisible());
    }

    void AFailedPassLeavesTheTextInSight()
    {
        EditorWindow editor;
        const QString file = editor.WriteFile(u"a.orc"_s, "oscil $abc");
        const MessageBoxRequest box =
            ErrorBox(RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s));
        editor.desktop.ExpectMessage(box, BoxAnswer::Cancel);
        frmEditor &window = editor.Open({file});
        QVERIFY(editor.Text().isVisible());
        editor.desktop.ExpectMessage(box, BoxAnswer::Cancel);
        editor.Row(u"mnuRefreshSyntaxHighlight"_s).trigger();
        QVERIFY(editor.Text().isVisible());
        QVERIFY(editor.Text().isEnabled());
        QVERIFY(!window.Context().document.Loading);
        QCOMPARE(window.Context().text.Text(), u"oscil $abc"_s);
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    void HelpOnTheSelectedWord()
    {
        EditorWindow editor;
        frmEditor &window = editor.Open({editor.WriteFile(u"a.orc"_s, "oscil x\n")});
        editor.settings.SaveText(Keys::Help, u"/manual/x.hlp"_s);
        window.Context().text.SetSelection(0, 5);
        editor.desktop.ExpectShellRun({.file = u"/manual/x.hlp"_s, .parameters = u"-k \"oscil\""_s});
        editor.Row(u"mnuCsHelp"_s).trigger();
        QCOMPARE(window.Context().status.Text(), u"Help keyword: oscil"_s);
    }
};

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<TestLanguage>(argc, argv);
}

#include "test_language.moc"
