// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/textaccessible.h"

#include "platform/ui/textcontrol.h"
#include "support/scripteddesktop.h"
#include "support/uitest.h"

#include <algorithm>
#include <QInputMethodEvent>
#include <random>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

struct Reader {
    ScriptedDesktop desktop;
    TextControl control{desktop};
    QAccessibleInterface *whole = nullptr;
    QAccessibleTextInterface *text = nullptr;

    explicit Reader(const QString &content)
    {
        control.resize(400, 300);
        control.show();
        control.LoadText(content);
        whole = QAccessible::queryAccessibleInterface(&control);
        text = whole ? whole->textInterface() : nullptr;
    }

    /// The piece of a kind at, before or after an offset, with its place: "12-15 abc".
    using Piece = QString (QAccessibleTextInterface::*)(int, QAccessible::TextBoundaryType, int *,
                                                        int *) const;
    QString Told(Piece piece, int offset, QAccessible::TextBoundaryType kind) const
    {
        int start = 0;
        int end = 0;
        const QString found = (text->*piece)(offset, kind, &start, &end);
        return u"%1-%2 %3"_s.arg(start).arg(end).arg(found);
    }
};

/// What a reader that follows the events knows of the text and the caret.
struct Follower {
    QString text;
    int caret = 0;

    Follower()
    {
        TextAccessible::SetListener([this](QAccessibleEvent &event) { Follow(event); });
    }
    ~Follower() { TextAccessible::SetListener({}); }

    void Replace(int at, const QString &gone, const QString &come)
    {
        QCOMPARE(text.mid(at, gone.size()), gone);
        text.replace(at, gone.size(), come);
    }
    void Follow(QAccessibleEvent &event)
    {
        if (auto *insert = dynamic_cast<QAccessibleTextInsertEvent *>(&event))
            Replace(insert->changePosition(), {}, insert->textInserted());
        else if (auto *remove = dynamic_cast<QAccessibleTextRemoveEvent *>(&event))
            Replace(remove->changePosition(), remove->textRemoved(), {});
        else if (auto *update = dynamic_cast<QAccessibleTextUpdateEvent *>(&event))
            Replace(update->changePosition(), update->textRemoved(), update->textInserted());
        else if (auto *moved = dynamic_cast<QAccessibleTextCursorEvent *>(&event))
            caret = moved->cursorPosition();
    }
};

} // namespace

class TextAccessibleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void IsAnEditableText();
    void GivesTextByOffsets();
    void GivesPieces();
    void FollowsAndSetsTheSelection();
    void EditsTheText();
    void TellsPlaces();
    void TellsEveryChange();
};

void TextAccessibleTest::IsAnEditableText()
{
    Reader on(u"one"_s);
    QVERIFY(on.whole);
    QVERIFY(on.text);
    QVERIFY(dynamic_cast<TextAccessible *>(on.whole));
    QCOMPARE(on.whole->role(), QAccessible::EditableText);
    QCOMPARE(on.whole->text(QAccessible::Name), u"Text"_s);
    QCOMPARE(on.whole->text(QAccessible::Value), u"one"_s);
    const QAccessible::State state = on.whole->state();
    QVERIFY(state.editable && state.multiLine && state.selectableText && !state.readOnly);
}

void TextAccessibleTest::GivesTextByOffsets()
{
    Reader on(u"\u00e8\U0001f3b5x\ny"_s);
    QCOMPARE(on.text->characterCount(), 6);
    QCOMPARE(on.text->text(1, 3), u"\U0001f3b5"_s);
    QCOMPARE(on.text->text(3, 6), u"x\ny"_s);
    int start = -1;
    int end = -1;
    QCOMPARE(on.text->attributes(2, &start, &end), QString());
    QCOMPARE(start, 0);
    QCOMPARE(end, 6);
}

void TextAccessibleTest::GivesPieces()
{
    Reader on(u"one two\n\U0001f3b5 end"_s);
    const auto at = &QAccessibleTextInterface::textAtOffset;
    const auto before = &QAccessibleTextInterface::textBeforeOffset;
    const auto after = &QAccessibleTextInterface::textAfterOffset;
    QCOMPARE(on.Told(at, 5, QAccessible::CharBoundary), u"5-6 w"_s);
    QCOMPARE(on.Told(at, 8, QAccessible::CharBoundary), u"8-10 \U0001f3b5"_s);
    QCOMPARE(on.Told(at, 9, QAccessible::CharBoundary), u"8-10 \U0001f3b5"_s);
    QCOMPARE(on.Told(at, 5, QAccessible::WordBoundary), u"4-7 two"_s);
    QCOMPARE(on.Told(before, 4, QAccessible::WordBoundary), u"3-4  "_s);
    QCOMPARE(on.Told(after, 0, QAccessible::WordBoundary), u"3-4  "_s);
    QCOMPARE(on.Told(at, 5, QAccessible::LineBoundary), u"0-8 one two\n"_s);
    QCOMPARE(on.Told(after, 5, QAccessible::LineBoundary), u"8-14 \U0001f3b5 end"_s);
    QCOMPARE(on.Told(before, 9, QAccessible::LineBoundary), u"0-8 one two\n"_s);
    QCOMPARE(on.Told(at, 3, QAccessible::NoBoundary), u"0-14 one two\n\U0001f3b5 end"_s);
    QCOMPARE(on.Told(before, 0, QAccessible::LineBoundary), u"-1--1 "_s);
    QCOMPARE(on.Told(after, 13, QAccessible::CharBoundary), u"-1--1 "_s);
    QCOMPARE(on.Told(at, 15, QAccessible::CharBoundary), u"-1--1 "_s);
}

void TextAccessibleTest::FollowsAndSetsTheSelection()
{
    Reader on(u"one two"_s);
    on.control.SetSelection(4, 6);
    QCOMPARE(on.text->selectionCount(), 1);
    int start = -1;
    int end = -1;
    on.text->selection(0, &start, &end);
    QCOMPARE(start, 4);
    QCOMPARE(end, 6);
    QCOMPARE(on.text->cursorPosition(), 6);
    on.text->removeSelection(0);
    QCOMPARE(on.control.Selection(), (TextSpan{6, 6}));
    QCOMPARE(on.text->selectionCount(), 0);
    on.text->setSelection(0, 0, 3);
    QCOMPARE(on.control.SelectedText(), u"one"_s);
    on.text->setCursorPosition(0);
    QCOMPARE(on.control.Selection(), (TextSpan{0, 0}));
}

void TextAccessibleTest::EditsTheText()
{
    Reader on(u"one two"_s);
    QAccessibleEditableTextInterface *edit = on.whole->editableTextInterface();
    QVERIFY(edit);
    edit->insertText(3, u"!"_s);
    QCOMPARE(on.control.Text(), u"one! two"_s);
    edit->deleteText(0, 3);
    QCOMPARE(on.control.Text(), u"! two"_s);
    edit->replaceText(2, 5, u"three"_s);
    QCOMPARE(on.control.Text(), u"! three"_s);
    on.control.Undo();
    QCOMPARE(on.control.Text(), u"! two"_s);
}

void TextAccessibleTest::TellsPlaces()
{
    Reader on(QString(u"one two\n"_s).repeated(100));
    const QRect first = on.text->characterRect(0);
    const QRect second = on.text->characterRect(1);
    QVERIFY(first.width() > 0 && first.height() > 0);
    QVERIFY(second.left() > first.left());
    QCOMPARE(second.top(), first.top());
    QVERIFY(on.text->characterRect(8).top() > first.top());
    QCOMPARE(on.text->offsetAtPoint(second.center()), 1);
    on.text->scrollToSubstring(800 - 8, 800);
    QVERIFY(on.control.FirstVisibleLine() > 50);
}

void TextAccessibleTest::TellsEveryChange()
{
    Follower known;
    Reader on(u"one \U0001f3b5 two\n"_s.repeated(40));
    TextControl &control = on.control;
    known.text = control.Text();
    control.setFocus();
    std::mt19937 random(5);
    const auto below = [&](qsizetype limit) { return qsizetype(random() % size_t(limit)); };
    const QStringList pieces = {u"a"_s, u" "_s, u"\u00e8"_s, u"\U0001f3b5"_s, u"\n"_s};
    const auto whole = [&](qsizetype at) {
        return at < known.text.size() && known.text[at].isLowSurrogate() ? at - 1 : at;
    };
    for (int round = 0; round < 2000; ++round) {
        const qsizetype start = whole(below(known.text.size() + 1));
        const qsizetype stop = whole(std::min(start + below(6), known.text.size()));
        const QString piece = pieces[below(pieces.size())];
        switch (below(9)) {
        case 0:
            control.SetSelection(start, stop);
            break;
        case 1: {
            QInputMethodEvent typed;
            typed.setCommitString(piece);
            QApplication::sendEvent(&control, &typed);
            break;
        }
        case 2: {
            QInputMethodEvent composed(piece.trimmed(), {});
            QApplication::sendEvent(&control, &composed);
            break;
        }
        case 3:
            QTest::keyClick(&control, Qt::Key_Backspace);
            break;
        case 4:
            QTest::keyClick(&control, Qt::Key_Delete, below(4) == 0 ? Qt::ControlModifier : Qt::NoModifier);
            break;
        case 5:
            control.Undo();
            break;
        case 6:
            control.Redo();
            break;
        case 7:
            control.SetSelection(start, stop);
            control.ReplaceSelection(piece);
            break;
        default:
            QTest::keyClick(&control, Qt::Key_Return);
            break;
        }
        QCOMPARE(known.text, control.Text());
        QCOMPARE(known.caret, int(control.CaretOffset()));
        QCOMPARE(on.text->characterCount(), int(known.text.size()));
        const qsizetype some = whole(std::min(start, known.text.size()));
        QCOMPARE(on.text->text(int(some), int(known.text.size())), known.text.mid(some));
    }
}

int main(int argc, char **argv)
{
    return RunUiTest<TextAccessibleTest>(argc, argv);
}

#include "test_textaccessible.moc"
