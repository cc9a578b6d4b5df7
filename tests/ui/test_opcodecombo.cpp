// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/bands.h"
#include "shell/layoutkeys.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const QString Prompt = u"Opcodes (press Enter to insert)"_s;

/// A main window whose band of opcodes is hidden, so that a test says when the list loads.
struct Opcodes : EditorWindow {
    explicit Opcodes(const QByteArray &words = "oscil outs linen Oscil\n")
    {
        WriteFile(u"opcodes.txt"_s, words);
        settings.SaveFlag(Keys::Band(WindowBand::Opcodes), false);
        Open();
        window->activateWindow();
    }

    QComboBox &Combo() { return Find<QComboBox>(u"cmbOpcodes"_s); }
    void ToggleBand() { Row(u"mnuShowToolbar_1"_s).trigger(); }
    StatusLine &Status() { return window->Context().status; }
    QStringList Items()
    {
        QStringList items;
        for (int row = 0; row < Combo().count(); ++row)
            items.append(Combo().itemText(row));
        return items;
    }
    void Load(const QString &text, const TextSpan &selection)
    {
        Text().LoadText(text);
        Text().SetSelection(selection.start, selection.end);
    }
};

} // namespace

class OpcodeComboTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheListIsSortedAndTheFieldKeepsItsText();
    void EnterInsertsWhatStandsInTheField();
    void EnterReplacesTheSelection();
    void AnEmptyFileIsLoadedAgain();
    void AFailureIsToldInTheStatusLine();
    void TheStatusLineIsClearedOnlyOfTheOwnText();
    void TheStatusLineTellsAgainWhatItTold();
    void TheFileLineStandsAfterTheStart();
    void AClickDropsTheList();
    void AClickSelectsTheField();
    void TheListMarksWhatEnterInserts();
    void ThePointerMarksNothing();
};

void OpcodeComboTest::TheListIsSortedAndTheFieldKeepsItsText()
{
    Opcodes on;
    QCOMPARE(on.Combo().currentText(), Prompt);
    QVERIFY(on.Items().isEmpty());
    on.ToggleBand();
    QCOMPARE(on.Items(), QStringList({u"linen"_s, u"Oscil"_s, u"oscil"_s, u"outs"_s}));
    QCOMPARE(on.Combo().currentText(), Prompt);
    QCOMPARE(on.Status().Text(), QString());
}

void OpcodeComboTest::EnterInsertsWhatStandsInTheField()
{
    Opcodes on;
    on.ToggleBand();
    on.Load(u"ab"_s, {1, 1});
    on.Combo().setFocus();
    QTest::keyClick(&on.Combo(), Qt::Key_Return);
    QCOMPARE(on.Text().Text(), u'a' + Prompt + u'b');
    QCOMPARE(on.Text().Selection(), (TextSpan{1, 1 + Prompt.size()}));
    QCOMPARE(on.window->focusWidget(), &on.Text());
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), u"ab"_s);
    QVERIFY(!on.Text().CanUndo());
}

void OpcodeComboTest::EnterReplacesTheSelection()
{
    Opcodes on;
    on.ToggleBand();
    on.Load(u"a1 buzz 1"_s, {3, 7});
    on.Combo().setCurrentIndex(
        on.Combo().findText(u"oscil"_s, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    QTest::keyClick(&on.Combo(), Qt::Key_Enter);
    QCOMPARE(on.Text().Text(), u"a1 oscil 1"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{3, 8}));
    QCOMPARE(on.Text().StyleAt(4), StyleClass::Text); // coloured with the next full pass
    on.Combo().lineEdit()->selectAll();
    QTest::keyClicks(on.Combo().lineEdit(), u"not in the list"_s);
    QTest::keyClick(on.Combo().lineEdit(), Qt::Key_Return);
    QCOMPARE(on.Text().Text(), u"a1 not in the list 1"_s);
    QCOMPARE(on.Combo().count(), 4);
}

void OpcodeComboTest::AnEmptyFileIsLoadedAgain()
{
    Opcodes on("");
    on.ToggleBand();
    QCOMPARE(on.Combo().count(), 0);
    on.WriteFile(u"opcodes.txt"_s, "linen\n");
    on.ToggleBand();
    on.ToggleBand();
    QCOMPARE(on.Items(), QStringList(u"linen"_s));
}

void OpcodeComboTest::AFailureIsToldInTheStatusLine()
{
    Opcodes on;
    QVERIFY(QFile::remove(on.folder.filePath(u"opcodes.txt"_s)));
    on.ToggleBand();
    QCOMPARE(on.Status().Text(), u"Error loading opcodes list."_s);
    QCOMPARE(on.Combo().count(), 0);
    QCOMPARE(on.Combo().currentText(), Prompt);
    on.WriteFile(u"opcodes.txt"_s, "linen oscil\n");
    on.ToggleBand();
    on.ToggleBand();
    QCOMPARE(on.Combo().count(), 2);
    QCOMPARE(on.Status().Text(), QString());
}

void OpcodeComboTest::TheStatusLineIsClearedOnlyOfTheOwnText()
{
    Opcodes on(QByteArray("oscil linen\n").repeated(300));
    QString seen;
    QTimer::singleShot(0, on.window.get(), [&] {
        seen = on.Status().Text();
        on.Status().Show(u"something else"_s);
    });
    on.ToggleBand();
    QCOMPARE(seen, u"loading opcodes list..."_s);
    QCOMPARE(on.Status().Text(), u"something else"_s);
    QCOMPARE(on.Combo().count(), 600);
}

void OpcodeComboTest::TheStatusLineTellsAgainWhatItTold()
{
    Opcodes on;
    on.Status().Show(u"told before"_s);
    on.ToggleBand();
    QCOMPARE(on.Combo().count(), 4);
    QCOMPARE(on.Status().Text(), u"told before"_s);
}

void OpcodeComboTest::TheFileLineStandsAfterTheStart()
{
    EditorWindow editor;
    const QString file = editor.WriteFile(u"a.orc"_s, "instr 1\nendin\n");
    editor.Open({file});
    QVERIFY(editor.Find<QComboBox>(u"cmbOpcodes"_s).count() > 0);
    const QString line = editor.window->Context().status.Text();
    QVERIFY2(line.startsWith(u"a.orc: last saved "_s), qPrintable(line));
}

void OpcodeComboTest::AClickDropsTheList()
{
    Opcodes on;
    on.ToggleBand();
    QVERIFY(!on.Combo().view()->isVisible());
    QTest::mouseClick(on.Combo().lineEdit(), Qt::LeftButton);
    QVERIFY(Eventually([&] { return on.Combo().view()->isVisible(); }));
    on.Combo().hidePopup();
}

void OpcodeComboTest::AClickSelectsTheField()
{
    Opcodes on;
    on.ToggleBand();
    for (const QString &text : {Prompt, u"oscil"_s, u"mine"_s}) {
        on.Combo().setEditText(text);
        on.Combo().lineEdit()->deselect();
        QTest::mouseClick(on.Combo().lineEdit(), Qt::LeftButton);
        QVERIFY(Eventually([&] { return on.Combo().view()->isVisible(); }));
        QCOMPARE(on.Combo().lineEdit()->selectedText(), text);
        QTest::keyClicks(on.Combo().view(), u"li"_s);
        QCOMPARE(on.Combo().currentText(), u"li"_s);
        on.Combo().hidePopup();
    }
}

void OpcodeComboTest::TheListMarksWhatEnterInserts()
{
    Opcodes on;
    on.ToggleBand();
    on.Combo().setFocus();
    on.Combo().lineEdit()->clear();
    on.Combo().showPopup();
    QAbstractItemView &list = *on.Combo().view();
    const auto marked = [&list] { return list.currentIndex().data().toString(); };
    QTest::keyClicks(&list, u"osci"_s);
    QCOMPARE(marked(), QString()); // the beginning of a name is no name
    QVERIFY(list.selectionModel()->selectedIndexes().isEmpty());
    QTest::keyClicks(&list, u"l"_s);
    QCOMPARE(marked(), u"oscil"_s);
    QTest::keyClick(&list, Qt::Key_Backspace);
    QCOMPARE(marked(), QString());
    QTest::keyClick(&list, Qt::Key_Down); // goes on from where the names begin so
    QCOMPARE(marked(), u"Oscil"_s);
    QCOMPARE(on.Combo().currentText(), u"Oscil"_s);
    QTest::keyClick(&list, Qt::Key_Up);
    QCOMPARE(on.Combo().currentText(), u"linen"_s);
    on.Combo().setEditText({});
    QTest::keyClicks(&list, u"ou"_s);
    on.Load({}, {0, 0});
    QTest::keyClick(&list, Qt::Key_Return);
    QCOMPARE(on.Text().Text(), u"ou"_s);
}

void OpcodeComboTest::ThePointerMarksNothing()
{
    Opcodes on;
    on.ToggleBand();
    on.Combo().setCurrentIndex(2);
    on.Combo().showPopup();
    QAbstractItemView &list = *on.Combo().view();
    QVERIFY(Eventually([&] { return list.isVisible(); }));
    for (int row = 0; row < on.Combo().count(); ++row) {
        QTest::mouseMove(list.viewport(), list.visualRect(list.model()->index(row, 0)).center());
        QCoreApplication::processEvents();
        QCOMPARE(list.currentIndex().row(), 2);
    }
    // A click still takes a name; right after it has dropped the list takes none.
    QVERIFY(Eventually([&] {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualRect(list.model()->index(3, 0)).center());
        return on.Combo().currentText() == u"outs"_s;
    }));
}

int main(int argc, char **argv)
{
    return RunUiTest<OpcodeComboTest>(argc, argv);
}

#include "test_opcodecombo.moc"
