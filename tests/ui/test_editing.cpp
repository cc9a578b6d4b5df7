// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/qtdesktop.h"
#include "shell/editorkeys.h"
#include "shell/tabwidth.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"

#include <algorithm>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMimeData>
#include <random>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A main window with a text and the keyboard in it.
struct Editing : EditorWindow {
    explicit Editing(const QString &text = {})
    {
        Open();
        Load(text);
        window->activateWindow();
        if (!Eventually([this] { return QApplication::activeWindow() == window.get(); }))
            QTest::qFail("the main window is not the active one", __FILE__, __LINE__);
        Text().setFocus();
    }

    void Load(const QString &text)
    {
        DocumentRecord &document = window->Context().document;
        document.Loading = true;
        Text().LoadText(text);
        document.Loading = document.Modified = false;
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&Text(), key, modifiers); }
    void Type(const QString &typed)
    {
        for (const QChar c : typed) {
            if (c == u'\n')
                Key(Qt::Key_Return);
            else
                QTest::keyClick(&Text(), char(c.unicode()));
        }
    }
    void Undo() { Key(Qt::Key_Z, Qt::ControlModifier); }
    void Redo() { Key(Qt::Key_Y, Qt::ControlModifier); }
    void Run(const QString &row) { Row(row).trigger(); }
    QString Status() { return window->Context().status.Text(); }
    /// One digit for each character: its class.
    QString Colours()
    {
        QString colours;
        for (qsizetype i = 0; i < Text().Length(); ++i)
            colours.append(QChar(u'0' + int(Text().StyleAt(i))));
        return colours;
    }
    bool Modified() { return window->Context().document.Modified; }

    /// Undo and redo lead from the present state to the one before the command and back, in one step.
    void CheckOneStep(const QString &before, const TextSpan &selectionBefore)
    {
        const QString after = Text().Text();
        Undo();
        QCOMPARE(Text().Text(), before);
        QCOMPARE(Text().Selection(), selectionBefore);
        QVERIFY(!Text().CanUndo());
        Redo();
        QCOMPARE(Text().Text(), after);
        QVERIFY(!Text().CanRedo());
    }
};

} // namespace

class EditingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TypingIsUndoneByWord();
    void TabInsertsBlanksToTheNextStop_data();
    void TabInsertsBlanksToTheNextStop();
    void TabIsNoWiderThanTheWidest();
    void TabMovesSeveralLines();
    void ShiftTabOnOneLineMovesNothing();
    void RichClipboardGivesPlainText();
    void ClipboardCommands();
    void CommentAtTheCaret();
    void CommentOfLines_data();
    void CommentOfLines();
    void UncommentTakesEveryMark();
    void RemoveCommentsOfTheWholeText();
    void RemoveCommentsWithoutAny();
    void RemoveCommentsKeepsColoursForUndo();
    void CommandsLeaveLiveCodeItsColours();
    void UndoGivesBackEveryColour();
    void IndentByMenu();
    void ChangeOfCase();
    void ChangeOfCaseHasNoKey();
    void GoToLineScrolls();
    void EditMenuEnables();
    void ToolbarButtonsRunCommands();
    void RightClickShowsTheMenus();
    void StatusTellsTheSelection();
};

void EditingTest::TypingIsUndoneByWord()
{
    Editing on;
    on.Type(u"asig oscil\nend"_s);
    QCOMPARE(on.Text().Text(), u"asig oscil\nend"_s);
    QVERIFY(on.Modified());
    QCOMPARE(on.Text().UndoType(), u" Typing"_s);
    QStringList states;
    while (on.Text().CanUndo()) {
        on.Undo();
        states.append(on.Text().Text());
    }
    QCOMPARE(states, QStringList({u"asig oscil"_s, u"asig"_s, u""_s}));
    for (const QString &state : {u"asig"_s, u"asig oscil"_s, u"asig oscil\nend"_s}) {
        on.Redo();
        QCOMPARE(on.Text().Text(), state);
    }
    on.Key(Qt::Key_Backspace);
    on.Key(Qt::Key_Backspace);
    QCOMPARE(on.Text().UndoType(), u" Delete"_s);
    on.Undo();
    QCOMPARE(on.Text().Text(), u"asig oscil\nen"_s);
}

void EditingTest::TabInsertsBlanksToTheNextStop_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("blanks");
    QTest::newRow("five in front") << 5 << 3;
    QTest::newRow("eight in front") << 8 << 8;
    QTest::newRow("none in front") << 0 << 8;
    QTest::newRow("seven in front") << 7 << 1;
}

void EditingTest::TabInsertsBlanksToTheNextStop()
{
    QFETCH(int, columns);
    QFETCH(int, blanks);
    Editing on(u"first line\n"_s);
    on.settings.SaveFlag(Keys::TabInsertSpaces, true);
    on.Text().SetSelection(11, 11);
    on.Type(QString(columns, u'x'));
    on.Key(Qt::Key_Tab);
    QCOMPARE(on.Text().Text(), u"first line\n"_s + QString(columns, u'x') + QString(blanks, u' '));
    on.settings.SaveFlag(Keys::TabInsertSpaces, false);
    on.Key(Qt::Key_Tab);
    QVERIFY(on.Text().Text().endsWith(u"\t"));
    on.Undo();
    QVERIFY(on.Text().Text().endsWith(QString(blanks, u' ')));
}

void EditingTest::TabIsNoWiderThanTheWidest()
{
    Editing on(u"first line\n"_s);
    on.settings.SaveFlag(Keys::TabInsertSpaces, true);
    on.settings.SaveNumber(Keys::TabSpaces, 999999999);
    on.Text().SetSelection(11, 11);
    on.Key(Qt::Key_Tab);
    QCOMPARE(on.Text().Text(), u"first line\n"_s + QString(WidestTab, u' '));
}

void EditingTest::TabMovesSeveralLines()
{
    const QString text = u"one\ntwo\nthree\n"_s;
    Editing on(text);
    on.Text().SetSelection(1, 6);
    on.Key(Qt::Key_Tab);
    QCOMPARE(on.Text().Text(), u"\tone\n\ttwo\nthree\n"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 9}));
    on.CheckOneStep(text, {1, 6});
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 9}));
    on.Key(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(on.Text().Text(), text);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 7}));

    on.settings.SaveFlag(Keys::TabInsertSpaces, true);
    on.settings.SaveNumber(Keys::TabSpaces, 2);
    on.Key(Qt::Key_Tab);
    QCOMPARE(on.Text().Text(), u"  one\n  two\nthree\n"_s);
}

void EditingTest::ShiftTabOnOneLineMovesNothing()
{
    Editing on(u"\tone\ntwo"_s);
    on.settings.SaveFlag(Keys::TabInsertSpaces, true);
    on.Text().SetSelection(1, 5); // ends with its only line end
    on.Key(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY2(on.Text().Text().startsWith(u"\t"), "the line keeps its indent");
    QCOMPARE(on.Text().Text(), u"\t"_s + QString(7, u' ') + u"two"_s);
}

void EditingTest::RichClipboardGivesPlainText()
{
    Editing on;
    QtDesktop desktop;
    frmEditor window(on.settings, desktop, CommandLine(QStringList()));
    window.show();
    window.Init();
    auto &text = *window.findChild<TextControl *>(u"TxtEdit"_s);
    auto *rich = new QMimeData;
    rich->setHtml(u"<b>bold</b> &amp; <i>more</i>"_s);
    rich->setText(u"bold & more\r\nline"_s);
    QApplication::clipboard()->setMimeData(rich);
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(text.Text(), u"bold & more\nline"_s);
    QCOMPARE(text.UndoType(), u" Paste"_s);
    for (qsizetype i = 0; i < text.Length(); ++i)
        QCOMPARE(text.StyleAt(i), StyleClass::Text);
    text.SetSelection(0, 4);
    QTest::keyClick(&text, Qt::Key_X, Qt::ControlModifier);
    const QMimeData *put = QApplication::clipboard()->mimeData();
    QCOMPARE(put->text(), u"bold"_s);
    QVERIFY(!put->hasHtml());
    QCOMPARE(text.Text(), u" & more\nline"_s);
    window.Context().document.Modified = false;
}

void EditingTest::ClipboardCommands()
{
    Editing on(u"one two"_s);
    on.desktop.clipboard = u"before"_s;
    on.Key(Qt::Key_C, Qt::ControlModifier);
    on.Key(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(on.desktop.clipboard, u"before"_s);
    QCOMPARE(on.Text().Text(), u"one two"_s);
    on.Text().SetSelection(0, 4);
    on.Key(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(on.desktop.clipboard, u"one "_s);
    QCOMPARE(on.Text().UndoType(), u" Cut"_s);
    on.Text().SetSelection(3, 3);
    on.Key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(on.Text().Text(), u"twoone "_s);
    on.Undo();
    on.Undo();
    QCOMPARE(on.Text().Text(), u"one two"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 4}));
}

void EditingTest::CommentAtTheCaret()
{
    Editing on(u"ab"_s);
    on.Text().SetSelection(1, 1);
    on.Run(u"mnuComment"_s);
    QCOMPARE(on.Text().Text(), u"a;b"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{2, 2}));
    on.CheckOneStep(u"ab"_s, {1, 1});
}

void EditingTest::CommentOfLines_data()
{
    QTest::addColumn<TextSpan>("selection");
    QTest::addColumn<bool>("blockForm");
    QTest::addColumn<QString>("result");
    QTest::addColumn<TextSpan>("selected");
    QTest::newRow("part of a line") << TextSpan{1, 2} << true << u"a;bc\nde\nf"_s << TextSpan{1, 3};
    QTest::newRow("a line with its end") << TextSpan{0, 4} << true << u";abc\nde\nf"_s << TextSpan{0, 5};
    QTest::newRow("lines") << TextSpan{0, 6} << false << u";abc\n;de\nf"_s << TextSpan{0, 8};
    QTest::newRow("lines with their ends") << TextSpan{0, 7} << false << u";abc\n;de\nf"_s << TextSpan{0, 9};
    QTest::newRow("lines as a block") << TextSpan{0, 6} << true << u"/*abc\nde*/\nf"_s << TextSpan{0, 10};
}

void EditingTest::CommentOfLines()
{
    QFETCH(TextSpan, selection);
    QFETCH(bool, blockForm);
    QFETCH(QString, result);
    QFETCH(TextSpan, selected);
    Editing on(u"abc\nde\nf"_s);
    on.settings.SaveFlag(Keys::CppComments, blockForm);
    on.Text().SetSelection(selection.start, selection.end);
    on.Run(u"mnuComment"_s);
    QCOMPARE(on.Text().Text(), result);
    QCOMPARE(on.Text().Selection(), selected);
    QVERIFY(on.Modified());
    on.CheckOneStep(u"abc\nde\nf"_s, selection);
}

void EditingTest::UncommentTakesEveryMark()
{
    const QString text = u";a /*\"b;\"*/ c;\nd;"_s;
    Editing on(text);
    QVERIFY(!on.Row(u"mnuUncomment"_s).isEnabled());
    on.Text().SetSelection(0, text.size() - 1);
    QVERIFY(on.Row(u"mnuUncomment"_s).isEnabled());
    on.Run(u"mnuUncomment"_s);
    QCOMPARE(on.Text().Text(), u"a \"b\" c\nd;"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 9}));
    on.CheckOneStep(text, {0, text.size() - 1});
}

void EditingTest::RemoveCommentsOfTheWholeText()
{
    const QString text = u"a ; x\n; y\n/* b\n*/c\n"_s;
    Editing on(text);
    on.Text().SetSelection(3, 3);
    on.Run(u"mnuRemoveComments"_s);
    QCOMPARE(on.Text().Text(), u"a \nc\n"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 0}));
    QCOMPARE(on.Status(), QString());
    QVERIFY(!on.window->Context().document.Loading);
    QVERIFY2(on.Modified(), "an edit is an edit, though its events were passed over");
    QVERIFY(on.window->windowTitle().contains(u"Untitled*"));
    QVERIFY(on.Row(u"mnuUndo"_s).isEnabled());
    QCOMPARE(on.EditorWindow::Find<QLabel>(u"lblLine"_s).text(), u"Line 1 Col 1"_s);
    on.CheckOneStep(text, {3, 3});
}

void EditingTest::RemoveCommentsWithoutAny()
{
    Editing on(u"a\nb"_s);
    on.Text().SetSelection(1, 3);
    on.Run(u"mnuRemoveComments"_s);
    QCOMPARE(on.Text().Text(), u"a\nb"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{1, 1}));
    QVERIFY(!on.Modified());
}

void EditingTest::RemoveCommentsKeepsColoursForUndo()
{
    Editing on(u"a1 oscil ; x\n"_s);
    on.Text().ApplyStyles(0, 13, {{3, 5, StyleClass::Opcode}, {9, 4, StyleClass::Comment}});
    on.Run(u"mnuRemoveComments"_s);
    on.Undo();
    QCOMPARE(on.Text().StyleAt(2), StyleClass::Text);
    QCOMPARE(on.Text().StyleAt(3), StyleClass::Opcode);
    QCOMPARE(on.Text().StyleAt(7), StyleClass::Opcode);
    QCOMPARE(on.Text().StyleAt(8), StyleClass::Text);
    QCOMPARE(on.Text().StyleAt(9), StyleClass::Comment);
}

void EditingTest::CommandsLeaveLiveCodeItsColours()
{
    Editing on;
    const QString code = u"; note\n  a1 oscil 1 ; c\n  outs a1\n"_s;
    on.Load(code);
    on.Text().ApplyStyles(0, code.size(),
                          {{0, 7, StyleClass::Comment},
                           {12, 5, StyleClass::Opcode},
                           {20, 4, StyleClass::Comment},
                           {26, 4, StyleClass::Opcode}});
    const QString colours = on.Colours();
    on.Text().SetSelection(7, code.size());
    on.Run(u"mnuComment"_s);
    on.Run(u"mnuUncomment"_s);
    // Every ";" is gone, that of the comment behind the code too.
    QCOMPARE(on.Text().Text(), QString(code).remove(20, 1));
    const QString uncommented = on.Colours();
    QCOMPARE(uncommented, QString(colours).remove(20, 1));
    on.Run(u"mnuCase_0"_s);
    QCOMPARE(on.Colours(), uncommented);
    on.Undo();
    QCOMPARE(on.Colours(), uncommented);
    on.Undo();
    on.Undo();
    QCOMPARE(on.Text().Text(), code);
    QCOMPARE(on.Colours(), colours);
}

void EditingTest::UndoGivesBackEveryColour()
{
    struct State {
        QString text, colours;
        bool operator==(const State &) const = default;
    };
    Editing on;
    const QString line = u"; \u00e9t\u00e9\n  a1 oscil 1 ; c\n"_s;
    on.Load(line.repeated(6));
    for (int i = 0; i < 6; ++i) {
        const int at = i * int(line.size());
        on.Text().ApplyStyles(at, at,
                              {{at, 6, StyleClass::Comment},
                               {at + 11, 5, StyleClass::Opcode},
                               {at + 19, 4, StyleClass::Comment}});
    }
    const auto now = [&] { return State{on.Text().Text(), on.Colours()}; };
    const QStringList rows = {u"mnuComment"_s,    u"mnuUncomment"_s, u"mnuCase_0"_s,   u"mnuCase_1"_s,
                              u"mnuCase_2"_s,     u"mnuIndent_0"_s,  u"mnuIndent_1"_s, u"mnuRemoveComments"_s,
                              u"mnuEditItem_0"_s, u"mnuEditItem_2"_s};
    std::vector<State> states = {now()};
    size_t current = 0;
    std::mt19937 random(3);
    const auto below = [&](qsizetype limit) { return qsizetype(random() % size_t(limit)); };
    for (int round = 0; round < 1000; ++round) {
        const qsizetype length = on.Text().Length();
        const qsizetype start = below(length + 1);
        on.Text().SetSelection(start, std::min(start + 1 + below(60), length));
        switch (below(8)) {
        case 0:
        case 1:
        case 2:
            on.Undo();
            current -= current > 0 ? 1 : 0;
            QCOMPARE(now(), states[current]);
            continue;
        case 3:
        case 4:
            on.Redo();
            current += current + 1 < states.size() ? 1 : 0;
            QCOMPARE(now(), states[current]);
            continue;
        case 5:
            on.Text().CloseUndoGroup();
            on.Type(u"q"_s);
            break;
        case 6:
            if (length > 600)
                on.Text().SetSelection(200, -1);
            else if (length > 100)
                on.Text().SetSelection(start, start);
            else
                on.Text().SetSelection(length, length);
            on.Key(length > 600 ? Qt::Key_Backspace : Qt::Key_Return);
            break;
        default:
            on.Run(rows[below(rows.size())]);
            break;
        }
        if (now() == states[current]) {
            // Whether a change into the same is a step is not this test's matter.
            on.Text().EmptyUndoBuffer();
            states = {now()};
            current = 0;
            continue;
        }
        const size_t before = current;
        states.resize(current + 1);
        states.push_back(now());
        ++current;
        on.Undo();
        QCOMPARE(now(), states[before]);
        on.Redo();
        QCOMPARE(now(), states[current]);
    }
}

void EditingTest::IndentByMenu()
{
    Editing on(u"one\ntwo\n"_s);
    on.Text().SetSelection(5, 5);
    on.Run(u"mnuIndent_0"_s);
    QCOMPARE(on.Text().Text(), u"one\n\ttwo\n"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{4, 8}));
    on.CheckOneStep(u"one\ntwo\n"_s, {5, 5});
    on.Run(u"mnuIndent_1"_s);
    QCOMPARE(on.Text().Text(), u"one\ntwo\n"_s);
    on.Run(u"mnuIndent_1"_s);
    QCOMPARE(on.Text().Text(), u"one\ntwo\n"_s);
}

void EditingTest::ChangeOfCase()
{
    const QString text = u"aSIG oscil\n\u00e9t\u00c9"_s;
    Editing on(text);
    on.Run(u"mnuCase_0"_s);
    QCOMPARE(on.Text().Text(), u"ASIG OSCIL\n\u00c9T\u00c9"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, text.size()}));
    on.CheckOneStep(text, {0, 0});
    on.Run(u"mnuCase_1"_s);
    QCOMPARE(on.Text().Text(), u"asig oscil\n\u00e9t\u00e9"_s);
    on.Text().SetSelection(1, 7);
    on.Run(u"mnuCase_2"_s);
    QCOMPARE(on.Text().Text(), u"aSig Oscil\n\u00e9t\u00e9"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{1, 7}));
}

void EditingTest::ChangeOfCaseHasNoKey()
{
    // Without a selection these commands change the whole text: a slip of the finger must not run them.
    Editing on(u"aSIG oscil"_s);
    for (const QString &row : {u"mnuCase_0"_s, u"mnuCase_1"_s, u"mnuCase_2"_s}) {
        QVERIFY(on.Row(row).shortcuts().isEmpty());
        QVERIFY(!on.Row(row).text().contains(u'\t'));
    }
    on.Text().setFocus();
    for (const Qt::Key key : {Qt::Key_U, Qt::Key_L})
        QTest::keyClick(&on.Text(), key, Qt::ControlModifier);
    QCOMPARE(on.Text().Text(), u"aSIG oscil"_s);
    QVERIFY(!on.Text().CanUndo());
}

void EditingTest::GoToLineScrolls()
{
    Editing on(QString(u"line\n"_s).repeated(300));
    const auto goTo = [&](const QString &answer) {
        on.desktop.ExpectInput(u"Go to line"_s,
                               u"Type the line number you want to go to.\n"
                               "(Use + and - to move from current position).\n\nTotal lines: 301"_s,
                               answer);
        on.Run(u"mnuGoTo"_s);
    };
    goTo(u"200"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{995, 995}));
    QCOMPARE(on.Text().FirstVisibleLine(), 199);
    goTo(u"+3"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{1010, 1010}));
    QCOMPARE(on.Text().FirstVisibleLine(), 202);
    goTo(u"301"_s);
    QCOMPARE(on.Text().FirstVisibleLine(), 300);
    goTo(u"1"_s);
    QCOMPARE(on.Text().FirstVisibleLine(), 0);
    for (const QString &bad : {u"0"_s, u"302"_s, u"-1"_s}) {
        on.desktop.ExpectInput(u"Go to line"_s,
                               u"Type the line number you want to go to.\n"
                               "(Use + and - to move from current position).\n\nTotal lines: 301"_s,
                               bad);
        on.desktop.ExpectMessage({.text = u"Invalid line number."_s, .icon = BoxIcon::Warning});
        on.Run(u"mnuGoTo"_s);
        QCOMPARE(on.Text().Selection(), (TextSpan{0, 0}));
    }
    on.desktop.CheckAllCame();
}

void EditingTest::EditMenuEnables()
{
    Editing on(u"one"_s);
    on.desktop.clipboard.clear();
    const auto enabled = [&] {
        on.window->CommandTable().MenuOpening(Menu::mnuEdit);
        QStringList rows;
        for (const char16_t *name : {u"mnuUndo", u"mnuRedo", u"mnuEditItem_0", u"mnuEditItem_1",
                                     u"mnuEditItem_2", u"mnuDelete", u"mnuUncomment"}) {
            if (on.Row(QString::fromUtf16(name)).isEnabled())
                rows.append(QString::fromUtf16(name));
        }
        return rows.join(u' ');
    };
    QCOMPARE(enabled(), QString());
    for (const char16_t *name : {u"mnuComment", u"mnuRemoveComments", u"mnuIndent_0", u"mnuIndent_1",
                                 u"mnuCase_0", u"mnuCase_1", u"mnuCase_2", u"mnuTabSpace", u"mnuSelectAll",
                                 u"mnuFind", u"mnuFindAgain", u"mnuReplace", u"mnuGoTo"})
        QVERIFY2(on.Row(QString::fromUtf16(name)).isEnabled(), qPrintable(QString::fromUtf16(name)));
    on.desktop.clipboard = u"x"_s;
    QCOMPARE(enabled(), u"mnuEditItem_2"_s);
    on.Run(u"mnuSelectAll"_s);
    QCOMPARE(enabled(), u"mnuEditItem_0 mnuEditItem_1 mnuEditItem_2 mnuDelete mnuUncomment"_s);
    on.Run(u"mnuDelete"_s);
    QCOMPARE(on.Text().Text(), QString());
    QCOMPARE(enabled(), u"mnuUndo mnuEditItem_2"_s);
    on.Run(u"mnuUndo"_s);
    QCOMPARE(enabled(), u"mnuRedo mnuEditItem_0 mnuEditItem_1 mnuEditItem_2 mnuDelete mnuUncomment"_s);
    QCOMPARE(on.Row(u"mnuUndo"_s).text(), u"&Undo\tCtrl+Z"_s);
}

void EditingTest::ToolbarButtonsRunCommands()
{
    Editing on(u"one"_s);
    on.Run(u"Toolbar1_comment"_s);
    QCOMPARE(on.Text().Text(), u";one"_s);
    QMenu &drop = on.EditorWindow::Find<QMenu>(u"Toolbar1_comment_menu"_s);
    QCOMPARE(drop.actions().size(), 2);
    QVERIFY(!drop.actions()[1]->isEnabled());
    on.Text().SetSelection(0, -1);
    QVERIFY(drop.actions()[1]->isEnabled());
    drop.actions()[1]->trigger();
    QCOMPARE(on.Text().Text(), u"one"_s);
    drop.actions()[0]->trigger();
    QCOMPARE(on.Text().Text(), u";one"_s);
    on.Run(u"Toolbar1_undo"_s);
    QCOMPARE(on.Text().Text(), u"one"_s);
    on.Run(u"Toolbar1_redo"_s);
    QCOMPARE(on.Text().Text(), u";one"_s);

    QMenu &find = on.EditorWindow::Find<QMenu>(u"Toolbar1_find_menu"_s);
    for (const auto &[entry, title] : {std::pair(0, u"Find"_s), std::pair(1, u"Replace"_s)}) {
        find.actions()[entry]->trigger();
        auto &dialog = on.EditorWindow::Find<QWidget>(u"frmFind"_s);
        QCOMPARE(dialog.windowTitle(), title);
    }
}

void EditingTest::RightClickShowsTheMenus()
{
    Editing on(u"one"_s);
    for (const auto &[modifiers, name] :
         {std::pair<Qt::KeyboardModifiers, QString>(Qt::NoModifier, u"mnuEdit"_s),
          std::pair<Qt::KeyboardModifiers, QString>(Qt::ControlModifier, u"mnuInsert"_s)}) {
        const QPoint at(20, 10);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, on.Text().viewport()->mapToGlobal(at),
                                modifiers);
        QApplication::sendEvent(on.Text().viewport(), &event);
        QMenu &menu = on.EditorWindow::Find<QMenu>(name);
        QVERIFY2(menu.isVisible(), qPrintable(name));
        menu.close();
    }
}

void EditingTest::StatusTellsTheSelection()
{
    Editing on(u"one two\nthree\nfour"_s);
    on.Text().SetSelection(0, 3);
    QCOMPARE(on.Status(), u"3 characters selected"_s);
    on.Text().SetSelection(0, 15);
    QCOMPARE(on.Status(), u"2 lines selected"_s);
    on.Key(Qt::Key_Right);
    QCOMPARE(on.Status(), QString());
    QCOMPARE(on.EditorWindow::Find<QLabel>(u"lblLine"_s).text(), u"Line 3 Col 2"_s);
}

int main(int argc, char **argv)
{
    return RunUiTest<EditingTest>(argc, argv);
}

#include "test_editing.moc"
