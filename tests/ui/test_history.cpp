// SPDX-License-Identifier: GPL-3.0-or-later
// The buttons of the history in the real window.

#include "shell/document.h"
#include "shell/editorcontext.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <memory>
#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

class HistoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void BothAreGreyAndSilentAtTheStart();
    void WalksABA();
    void ListsLeadToEachFile();
    void KeysGoBackAndOn();
    void ARefusedMoveKeepsTheButtons();
    void ATooltipIsNoMarkedUpText();

private:
    QString Open(const QString &name)
    {
        const QString path = editor->WriteFile(name, "instr 1\na1 oscil 1, 2, 3\nout a1\nendin\n");
        editor->window->Documents().OpenFile(path);
        return path;
    }
    QString CurrentName() const { return QFileInfo(Document().CurrentFile).fileName(); }
    const DocumentRecord &Document() const { return editor->window->Context().document; }
    QAction &Button(const QString &key) { return *ToolbarButton(*editor, key); }
    QToolButton &Face(const QString &key) { return editor->Find<QToolButton>(u"Toolbar1_"_s + key); }
    /// Enabled or not, the tooltip that is seen, and the list.
    QString State(const QString &key)
    {
        QStringList entries;
        for (const QAction *entry : Button(key).menu()->actions())
            entries.append(entry->text());
        return (Button(key).isEnabled() ? u"on|"_s : u"off|"_s) + Face(key).toolTip() + u'|' +
               entries.join(u',');
    }
    void Press(Qt::Key key)
    {
        editor->window->activateWindow();
        editor->Text().setFocus();
        QTest::keyClick(editor->window->windowHandle(), key, Qt::ControlModifier);
    }

    std::unique_ptr<EditorWindow> editor;
};

void HistoryTest::init()
{
    editor = std::make_unique<EditorWindow>();
    editor->Open();
}

void HistoryTest::cleanup()
{
    editor.reset();
}

void HistoryTest::BothAreGreyAndSilentAtTheStart()
{
    QCOMPARE(State(u"back"_s), u"off||"_s);
    QCOMPARE(State(u"next"_s), u"off||"_s);
    Open(u"a.orc"_s);
    QCOMPARE(State(u"back"_s), u"off||"_s);
    QCOMPARE(State(u"next"_s), u"off||"_s);
    QCOMPARE(Face(u"back"_s).accessibleName(), u"Back"_s);
    QCOMPARE(Face(u"back"_s).popupMode(), QToolButton::MenuButtonPopup);
}

void HistoryTest::WalksABA()
{
    const QString a = Open(u"a.orc"_s);
    editor->Text().SetSelection(8, 10);
    Open(u"b.orc"_s);
    QCOMPARE(State(u"back"_s), u"on|Back to a.orc (Ctrl+PgUp)|&a.orc"_s);
    QCOMPARE(State(u"next"_s), u"off||"_s);
    editor->Text().SetSelection(3, 3);
    editor->window->Documents().OpenFile(a);
    // A has moved to the end: only B is behind it.
    QCOMPARE(State(u"back"_s), u"on|Back to b.orc (Ctrl+PgUp)|&b.orc"_s);
    QCOMPARE(State(u"next"_s), u"off||"_s);
    editor->Text().SetSelection(1, 5);

    Button(u"back"_s).trigger();
    QCOMPARE(CurrentName(), u"b.orc"_s);
    QCOMPARE(editor->Text().Selection(), (TextSpan{3, 3}));
    QCOMPARE(State(u"back"_s), u"off||"_s);
    QCOMPARE(State(u"next"_s), u"on|Go to a.orc (Ctrl+PgDown)|&a.orc"_s);

    Button(u"next"_s).trigger();
    QCOMPARE(CurrentName(), u"a.orc"_s);
    // The move back did not keep what was selected.
    QCOMPARE(editor->Text().Selection(), (TextSpan{0, 0}));
    QVERIFY(!Document().Modified);
    QVERIFY(!editor->Text().CanUndo());
}

void HistoryTest::ListsLeadToEachFile()
{
    for (const QString &name : {u"a.orc"_s, u"b.orc"_s, u"c & d.orc"_s})
        Open(name);
    QCOMPARE(State(u"back"_s), u"on|Back to b.orc (Ctrl+PgUp)|&b.orc,&a.orc"_s);
    QMenu &back = *Button(u"back"_s).menu();
    back.actions().at(1)->trigger();
    QVERIFY(Eventually([&] { return CurrentName() == u"a.orc"; }));
    QCOMPARE(State(u"back"_s), u"off||"_s);
    QCOMPARE(State(u"next"_s), u"on|Go to b.orc (Ctrl+PgDown)|&b.orc,&c && d.orc"_s);
    editor->Find<QAction>(u"Toolbar1_next_menu_2"_s).trigger();
    QVERIFY(Eventually([&] { return CurrentName() == u"c & d.orc"; }));
    Button(u"back"_s).trigger();
    Open(u"e.orc"_s);
    QCOMPARE(State(u"back"_s), u"on|Back to b.orc (Ctrl+PgUp)|&b.orc,&a.orc"_s);
    QCOMPARE(State(u"next"_s), u"off||"_s);
}

void HistoryTest::KeysGoBackAndOn()
{
    Open(u"a.orc"_s);
    Press(Qt::Key_PageUp);
    QCOMPARE(CurrentName(), u"a.orc"_s);
    Open(u"b.orc"_s);
    Press(Qt::Key_PageUp);
    QCOMPARE(CurrentName(), u"a.orc"_s);
    Press(Qt::Key_PageDown);
    QCOMPARE(CurrentName(), u"b.orc"_s);
    // Also with the toolbar out of sight.
    editor->Row(u"mnuShowToolbar_0"_s).trigger();
    QVERIFY(!editor->Find<QToolBar>(u"Toolbar1"_s).isVisible());
    Press(Qt::Key_PageUp);
    QCOMPARE(CurrentName(), u"a.orc"_s);
}

void HistoryTest::ARefusedMoveKeepsTheButtons()
{
    Open(u"a.orc"_s);
    const QString b = Open(u"b.orc"_s);
    editor->Text().ReplaceSelection(u"x"_s);
    const QString before = State(u"back"_s);
    editor->desktop.ExpectMessage(SaveChanges(b), BoxAnswer::Cancel);
    Button(u"back"_s).trigger();
    QCOMPARE(CurrentName(), u"b.orc"_s);
    QCOMPARE(State(u"back"_s), before);
    QVERIFY(editor->Text().Text().startsWith(u'x'));
    editor->desktop.ExpectMessage(SaveChanges(b), BoxAnswer::No);
    Button(u"back"_s).trigger();
    QCOMPARE(CurrentName(), u"a.orc"_s);
}

void HistoryTest::ATooltipIsNoMarkedUpText()
{
    Open(u"<b>a.orc"_s);
    Open(u"b.orc"_s);
    QVERIFY(Face(u"back"_s).toolTip().contains(u"Back to &lt;b&gt;a.orc"_s));
}

int main(int argc, char **argv)
{
    return RunUiTest<HistoryTest>(argc, argv);
}

#include "test_history.moc"
