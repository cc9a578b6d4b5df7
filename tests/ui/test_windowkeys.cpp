// SPDX-License-Identifier: GPL-3.0-or-later
// The keys that the window takes, and where the Tab key goes.

#include "platform/ui/contextmenukey.h"
#include "platform/ui/systemcolours.h"
#include "shell/layoutkeys.h"
#include "support/editorwindow.h"
#include "support/outlinerows.h"
#include "support/uitest.h"

#include <QColor>
#include <QComboBox>
#include <QImage>
#include <QPalette>
#include <QTimer>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

class WindowKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FontSizeKeysAreNoEdit();
    void PresetKeysRunRows();
    void NoControlIsATabStopBesideTheText();
    void ControlKeysWithoutACommandTypeNothing();
    void AKeyLeadsRound();
    void TheRoundPassesWhatIsHidden();
    void ContextMenusOpenWithAKey();
    void TheTextHasTheKeyboardAfterGoToLine();
    void AnEmptyTreeShowsThatItHasTheKeyboard();
};

namespace
{

/// Presses the key where the keyboard is. @return the name of the control that has the keyboard then
QString FocusAfter(Qt::Key key, Qt::KeyboardModifiers held = {})
{
    QTest::keyClick(QApplication::focusWidget(), key, held);
    return QApplication::focusWidget()->objectName();
}

void FocusText(EditorWindow &editor)
{
    editor.window->activateWindow();
    editor.Text().setFocus();
    QVERIFY(Eventually([&] { return editor.Text().hasFocus(); }));
}

} // namespace

void WindowKeysTest::FontSizeKeysAreNoEdit()
{
    EditorWindow editor;
    editor.Open();
    const double before = editor.Text().CurrentFont().points;
    QTest::keyClick(&editor.Text(), Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    const double larger = editor.Text().CurrentFont().points;
    QVERIFY(larger > before);
    QTest::keyClick(&editor.Find<QTreeView>(u"tvwBrowse"_s), Qt::Key_Minus,
                    Qt::ControlModifier | Qt::KeypadModifier | Qt::AltModifier);
    QCOMPARE(editor.Text().CurrentFont().points, larger);
    QTest::keyClick(&editor.Find<QComboBox>(u"cmbOpcodes"_s), Qt::Key_Minus,
                    Qt::ControlModifier | Qt::KeypadModifier);
    QCOMPARE(editor.Text().CurrentFont().points, before);
    QVERIFY(!editor.window->Context().document.Modified);
    QCOMPARE(editor.Text().Text(), QString());
    QVERIFY(!editor.Text().CanUndo());
}

void WindowKeysTest::PresetKeysRunRows()
{
    EditorWindow editor;
    for (int i = 1; i <= 21; ++i) {
        const QString name = u"Preset %1"_s.arg(i);
        editor.settings.SaveSetting(u"Presets"_s, name, {});
        editor.settings.SaveSetting(name, u"Command"_s, u"/bin/p%1"_s.arg(i));
    }
    editor.Open();
    const auto expect = [&](int i) {
        editor.desktop.ExpectShellRun({.file = u"/bin/p%1"_s.arg(i), .folder = u"/bin"_s});
    };
    for (int digit = 1; digit <= 10; ++digit) {
        expect(digit);
        QTest::keyClick(&editor.Text(), Qt::Key(Qt::Key_0 + digit % 10), Qt::ControlModifier);
        expect(digit + 10);
        QTest::keyClick(&editor.Text(), Qt::Key(Qt::Key_0 + digit % 10), Qt::AltModifier);
    }
    editor.desktop.CheckAllCame();
    QTest::keyClick(&editor.Find<QTreeView>(u"tvwBrowse"_s), Qt::Key_1,
                    Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(editor.Text().Text(), QString());
    expect(3);
    QTest::keyClick(&editor.Find<QTreeView>(u"tvwBrowse"_s), Qt::Key_3, Qt::ControlModifier);
    // Ctrl held down counts for the click on a row, and not for the key.
    editor.desktop.keysDown = {KeyCode::Ctrl};
    expect(4);
    QTest::keyClick(&editor.Text(), Qt::Key_4, Qt::ControlModifier);

    EditorWindow empty;
    empty.Open();
    QTest::keyClick(&empty.Text(), Qt::Key_1, Qt::ControlModifier);
    QTest::keyClick(&empty.Text(), Qt::Key_0, Qt::AltModifier);
    QCOMPARE(empty.Text().Text(), QString());
}

void WindowKeysTest::NoControlIsATabStopBesideTheText()
{
    EditorWindow editor;
    editor.Open();
    editor.window->activateWindow();
    auto &combo = editor.Find<QComboBox>(u"cmbOpcodes"_s);
    auto &tree = editor.Find<QTreeView>(u"tvwBrowse"_s);
    editor.Text().setFocus();
    QVERIFY(Eventually([&] { return editor.Text().hasFocus(); }));
    QVERIFY(!(editor.Text().focusPolicy() & Qt::TabFocus));
    QVERIFY(!(combo.focusPolicy() & Qt::TabFocus));
    QVERIFY(!(tree.focusPolicy() & Qt::TabFocus));
    QTest::keyClick(&editor.Text(), Qt::Key_Tab);
    QCOMPARE(editor.Text().Text(), u"\t"_s);
    tree.setFocus();
    QVERIFY(tree.focusPolicy() & Qt::TabFocus);
    QVERIFY(combo.focusPolicy() & Qt::TabFocus);
    QVERIFY(editor.Text().focusPolicy() & Qt::TabFocus);
}

void WindowKeysTest::ControlKeysWithoutACommandTypeNothing()
{
    EditorWindow editor;
    editor.Open({editor.WriteFile(u"a.txt"_s, "one two\nthree\n")});
    editor.Text().SetSelection(4, 4);
    for (const Qt::Key key : {Qt::Key_J, Qt::Key_K, Qt::Key_T, Qt::Key_W, Qt::Key_Slash, Qt::Key_BracketLeft,
                              Qt::Key_Backslash}) {
        QTest::keyClick(&editor.Text(), key, Qt::ControlModifier);
        QTest::keyClick(&editor.Text(), key, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(editor.Text().Text(), u"one two\nthree\n"_s);
    }
    QVERIFY(!editor.window->Context().document.Modified);
}

void WindowKeysTest::AKeyLeadsRound()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::RelatedFiles, true);
    Commands &commands = editor.Open().CommandTable();
    commands.SetEnabled(Cmd::mnuStop, true);
    FocusText(editor);
    const QStringList round = {u"cmbOpcodes"_s, u"tvwBrowse"_s, u"tvwRelated"_s, u"tbPlayer_play"_s,
                               u"TxtEdit"_s};
    for (int turn = 0; turn < 2; ++turn) {
        for (const QString &stop : round)
            QCOMPARE(FocusAfter(Qt::Key_F6), stop);
    }
    for (const int stop : {3, 2, 1, 0, 4})
        QCOMPARE(FocusAfter(Qt::Key_F6, Qt::ShiftModifier), round[stop]);
    QCOMPARE(editor.Text().Text(), QString());

    // From any button of the player.
    editor.Find<QWidget>(u"tbPlayer_stop"_s).setFocus();
    QCOMPARE(FocusAfter(Qt::Key_F6), u"TxtEdit"_s);
}

void WindowKeysTest::TheRoundPassesWhatIsHidden()
{
    EditorWindow editor;
    editor.Open();
    FocusText(editor);
    editor.Row(u"mnuShowToolbar_1"_s).trigger();
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(!editor.Find<QWidget>(u"tvwRelated"_s).isVisible());
    for (const Command command : {Cmd::mnuPlay, Cmd::mnuLoop}) // nothing of the player can be used
        editor.window->CommandTable().SetEnabled(command, false);
    QCOMPARE(FocusAfter(Qt::Key_F6), u"tvwBrowse"_s);
    QCOMPARE(FocusAfter(Qt::Key_F6), u"TxtEdit"_s);
    editor.Row(u"mnuBrowse"_s).trigger();
    QCOMPARE(FocusAfter(Qt::Key_F6), u"TxtEdit"_s);
}

void WindowKeysTest::ContextMenusOpenWithAKey()
{
    const ContextMenuKey key(qApp);
    EditorWindow editor;
    editor.settings.SaveSetting(u"Presets"_s, u"Listen"_s, {});
    editor.settings.SaveSetting(u"Listen"_s, u"Command"_s, u"/bin/listen"_s);
    editor.settings.SaveSetting(u"Listen"_s, u"CreateButton"_s, u"1"_s);
    editor.Open({editor.WriteFile(u"a.orc"_s, OutlinedText)});
    FocusText(editor);
    const auto opened = [&](QWidget &at) {
        QString name;
        QTimer look; // a menu may wait for its end inside the key
        QObject::connect(&look, &QTimer::timeout, &look, [&name] {
            if (QWidget *menu = QApplication::activePopupWidget()) {
                name = menu->objectName();
                menu->close();
            }
        });
        look.start(0);
        QTest::keyClick(&at, Qt::Key_F10, Qt::ShiftModifier);
        Eventually([&name] { return !name.isEmpty(); });
        return name;
    };
    QCOMPARE(opened(editor.Text()), u"mnuEdit"_s);
    auto &tree = editor.Find<QTreeView>(u"tvwBrowse"_s);
    tree.setFocus();
    QCOMPARE(opened(tree), u"mnuTreeView"_s);
    tree.setCurrentIndex(RowOfKey(tree, u"ins1"_s));
    QCOMPARE(opened(tree), u"mnuBrowseEditable"_s);
    QCOMPARE(opened(editor.Find<QWidget>(u"tbPresets_Listen"_s)), u"mnuPresetPopup"_s);
    QCOMPARE(opened(editor.Find<QWidget>(u"CoolBar1"_s)), u"mnuToolbar"_s);
}

void WindowKeysTest::TheTextHasTheKeyboardAfterGoToLine()
{
    EditorWindow editor;
    editor.Open();
    FocusText(editor);
    editor.Find<QTreeView>(u"tvwBrowse"_s).setFocus();
    editor.desktop.ExpectInput(u"Go to line"_s,
                               u"Type the line number you want to go to.\n"
                               "(Use + and - to move from current position).\n\nTotal lines: 1"_s,
                               u"1"_s);
    editor.Row(u"mnuGoTo"_s).trigger();
    editor.desktop.CheckAllCame();
    QVERIFY(editor.Text().hasFocus());
}

void WindowKeysTest::AnEmptyTreeShowsThatItHasTheKeyboard()
{
    EditorWindow editor;
    editor.Open();
    FocusText(editor);
    auto &tree = editor.Find<QTreeView>(u"tvwBrowse"_s);
    QCOMPARE(tree.model()->rowCount(), 0);
    const auto edge = [&tree] {
        const QImage picture = tree.viewport()->grab().toImage();
        return picture.pixelColor(picture.width() / 2, 0);
    };
    const QColor base = tree.palette().color(QPalette::Base);
    QCOMPARE(edge(), base);
    tree.setFocus();
    QVERIFY2(Contrast(edge(), base) >= 3, qPrintable(edge().name()));
    editor.Text().setFocus();
    QCOMPARE(edge(), base);
}

int main(int argc, char **argv)
{
    return RunUiTest<WindowKeysTest>(argc, argv);
}

#include "test_windowkeys.moc"
