// SPDX-License-Identifier: GPL-3.0-or-later
// The keys that the window takes, and where the Tab key goes.

#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QComboBox>
#include <QTreeWidget>

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
};

void WindowKeysTest::FontSizeKeysAreNoEdit()
{
    EditorWindow editor;
    editor.Open();
    const double before = editor.Text().CurrentFont().points;
    QTest::keyClick(&editor.Text(), Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    const double larger = editor.Text().CurrentFont().points;
    QVERIFY(larger > before);
    QTest::keyClick(&editor.Find<QTreeWidget>(u"tvwBrowse"_s), Qt::Key_Minus,
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
    QTest::keyClick(&editor.Find<QTreeWidget>(u"tvwBrowse"_s), Qt::Key_1,
                    Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(editor.Text().Text(), QString());
    expect(3);
    QTest::keyClick(&editor.Find<QTreeWidget>(u"tvwBrowse"_s), Qt::Key_3, Qt::ControlModifier);
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
    auto &tree = editor.Find<QTreeWidget>(u"tvwBrowse"_s);
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

int main(int argc, char **argv)
{
    return RunUiTest<WindowKeysTest>(argc, argv);
}

#include "test_windowkeys.moc"
