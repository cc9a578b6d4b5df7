// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/textdecorations.h"

#include "platform/styledtext.h"
#include "platform/stylerun.h"
#include "platform/textbuffer.h"
#include "platform/ui/scintilla.h"
#include "platform/ui/scintillacolour.h"
#include "platform/ui/systemcolours.h"
#include "platform/ui/textcontrol.h"
#include "support/scripteddesktop.h"
#include "support/uitest.h"

#include <memory>
#include <QColor>
#include <QImage>
#include <QKeyEvent>
#include <QPalette>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <random>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

using Sci = QsciScintillaBase;

struct Editor {
    ScriptedDesktop desktop;
    QWidget window;
    TextControl text{desktop, &window};
    std::unique_ptr<TextDecorations> marks = std::make_unique<TextDecorations>(text);

    explicit Editor(const QString &content = {})
    {
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins({});
        layout->addWidget(&text);
        window.resize(600, 400);
        window.show();
        text.setFocus();
        static_cast<void>(QTest::qWaitForWindowExposed(&window));
        text.LoadText(content);
    }
    long Ask(unsigned message, unsigned long first = 0) { return text.SendScintilla(message, first); }
    QImage Picture() { return window.grab().toImage(); }
};

/// All that is no decoration.
struct Rest {
    QString text;
    StyleRuns runs;
    bool canUndo;
    bool canRedo;
    TextSpan selection;

    explicit Rest(const TextControl &control)
        : text(control.Text()),
          runs(control.Styled(0, control.Length()).runs),
          canUndo(control.CanUndo()),
          canRedo(control.CanRedo()),
          selection(control.Selection())
    {
    }
    bool operator==(const Rest &) const = default;
};

std::vector<FoldLevel> Levels(const std::vector<int> &depths)
{
    std::vector<FoldLevel> levels;
    for (size_t line = 0; line < depths.size(); ++line)
        levels.push_back({depths[line], line + 1 < depths.size() && depths[line + 1] > depths[line]});
    return levels;
}

using Lines = std::vector<qsizetype>;
using Spans = std::vector<TextSpan>;

} // namespace

class TextDecorationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void NothingIsAnEdit();
    void ItGoesWithoutATrace();
    void StretchesAreCountedInUnits();
    void StretchesGoWithTheText();
    void LineMarkersGoWithTheText();
    void MarkersAreFoundFromALine();
    void MarkersAreShownInTheirMarginOnly();
    void NumbersMakeRoomForThemselves();
    void AClickOnAMarginIsTold();
    void FoldsHideTheirLines();
    void TheCaretIsNeverHiddenByAnEdit();
    void AFreshTextHasNoMarks();
    void TheViewIsTold();
    void TheSameMarksAgainAreNoChange();
    void ColoursCanBeSeen_data();
    void ColoursCanBeSeen();
    void EditsAreToldOneByOne();
    void AFreshTextIsToldAsAnEdit();
};

void TextDecorationsTest::NothingIsAnEdit()
{
    Editor editor(u"instr 1\n a1 oscil 1\n out a1\nendin\n"_s);
    editor.text.ApplyStyles(0, editor.text.Length(), {{0, 5, StyleClass::Opcode}});
    editor.text.ReplaceRange(6, 7, u"22"_s);
    editor.text.ReplaceRange(6, 8, u"1"_s);
    editor.text.Undo();
    editor.text.SetSelection(3, 9);
    const Rest before(editor.text);
    QSignalSpy changed(&editor.text, &TextControl::textChanged);
    QSignalSpy edited(&editor.text, &TextControl::edited);
    QSignalSpy selection(&editor.text, &TextControl::selectionChanged);
    TextDecorations &marks = *editor.marks;
    for (int margin = 0; margin < TextMarginCount; ++margin)
        marks.ShowMargin(TextMargin(margin), true);
    marks.ShowCurrentLine(true);
    for (int indicator = 0; indicator < IndicatorCount; ++indicator)
        marks.Show(Indicator(indicator), {{indicator, indicator + 4}});
    marks.SetMarker(LineMarker::Bookmark, 2, true);
    marks.SetFoldLevels(0, Levels({0, 1, 1, 0}));
    marks.SetFolded(0, true);
    QCoreApplication::processEvents();
    QVERIFY(Rest(editor.text) == before);
    QCOMPARE(changed.count() + edited.count() + selection.count(), 0);
    QVERIFY(marks.IsLineHidden(1));
    editor.marks.reset();
    QVERIFY(Rest(editor.text) == before);
    QCOMPARE(changed.count() + edited.count() + selection.count(), 0);
}

void TextDecorationsTest::ItGoesWithoutATrace()
{
    Editor editor(u"instr 1\n a1 oscil 1\n out a1\nendin\n"_s);
    editor.text.SetSelection(0, 0);
    editor.marks.reset();
    const QImage before = editor.Picture();
    editor.marks = std::make_unique<TextDecorations>(editor.text);
    QVERIFY2(editor.Picture() == before, "by itself it shows nothing");
    TextDecorations &marks = *editor.marks;
    for (int margin = 0; margin < TextMarginCount; ++margin) {
        const QImage without = editor.Picture();
        marks.ShowMargin(TextMargin(margin), true);
        QVERIFY(editor.Picture() != without);
    }
    const auto shows = [&](const auto &work) {
        const QImage without = editor.Picture();
        work();
        return editor.Picture() != without;
    };
    QVERIFY(shows([&] { marks.ShowCurrentLine(true); }));
    for (int indicator = 0; indicator < IndicatorCount; ++indicator)
        QVERIFY(shows([&] { marks.Show(Indicator(indicator), {{indicator + 9, indicator + 12}}); }));
    QVERIFY(shows([&] { marks.SetMarker(LineMarker::Bookmark, 2, true); }));
    QVERIFY(shows([&] { marks.SetFoldLevels(0, Levels({0, 1, 1, 0})); }));
    QVERIFY(shows([&] { marks.SetFolded(0, true); }));
    editor.marks.reset();
    QVERIFY(editor.Picture() == before);
}

void TextDecorationsTest::StretchesAreCountedInUnits()
{
    Editor editor(u"\u00E9\U0001F3B5 ab\n\u20ACcd"_s);
    TextDecorations &marks = *editor.marks;
    const Spans spans{{1, 3}, {4, 5}, {7, 9}};
    marks.Show(Indicator::SameWord, spans);
    QVERIFY(marks.Shown(Indicator::SameWord) == spans);
    QVERIFY(marks.Shown(Indicator::Brace).empty());
    marks.Show(Indicator::Brace, {{0, 1}});
    marks.Show(Indicator::SameWord, {{4, 5}, {5, 6}, {8, 400}, {-3, 1}});
    QVERIFY(marks.Shown(Indicator::SameWord) == (Spans{{0, 1}, {4, 6}, {8, 10}}));
    marks.Clear(Indicator::SameWord);
    QVERIFY(marks.Shown(Indicator::SameWord).empty());
    QVERIFY(marks.Shown(Indicator::Brace) == (Spans{{0, 1}}));
}

void TextDecorationsTest::StretchesGoWithTheText()
{
    Editor editor(u"one two three"_s);
    TextDecorations &marks = *editor.marks;
    marks.Show(Indicator::SameWord, {{4, 7}});
    editor.text.ReplaceRange(0, 1, u"\u00E9\u00E9"_s);
    QVERIFY(marks.Shown(Indicator::SameWord) == (Spans{{5, 8}}));
    editor.text.Undo();
    QVERIFY(marks.Shown(Indicator::SameWord) == (Spans{{4, 7}}));
    editor.text.ReplaceRange(0, editor.text.Length(), {});
    QVERIFY(marks.Shown(Indicator::SameWord).empty());
}

void TextDecorationsTest::LineMarkersGoWithTheText()
{
    Editor editor(u"a\nb\nc\nd\n"_s);
    TextDecorations &marks = *editor.marks;
    marks.ShowMargin(TextMargin::Markers, true);
    marks.SetMarker(LineMarker::Bookmark, 1, true);
    marks.SetMarker(LineMarker::Bookmark, 3, true);
    marks.SetMarker(LineMarker::Bookmark, 3, true);
    marks.SetMarker(LineMarker::Bookmark, 99, true);
    marks.SetMarker(LineMarker::Bookmark, -1, true);
    QVERIFY(marks.MarkedLines(LineMarker::Bookmark) == (Lines{1, 3}));
    editor.text.ReplaceRange(0, 0, u"new\nlines\n"_s);
    QVERIFY(marks.MarkedLines(LineMarker::Bookmark) == (Lines{3, 5}));
    editor.text.Undo();
    QVERIFY(marks.MarkedLines(LineMarker::Bookmark) == (Lines{1, 3}));
    // Two that come together are one.
    editor.text.ReplaceRange(2, 6, {});
    QVERIFY(marks.MarkedLines(LineMarker::Bookmark) == (Lines{1}));
    marks.SetMarker(LineMarker::Bookmark, 1, false);
    QVERIFY(marks.MarkedLines(LineMarker::Bookmark).empty());
    QVERIFY(!marks.HasMarker(LineMarker::Bookmark, 1));
}

void TextDecorationsTest::MarkersAreFoundFromALine()
{
    Editor editor(u"\n"_s.repeated(9));
    TextDecorations &marks = *editor.marks;
    QVERIFY(!marks.NextMarked(LineMarker::Bookmark, 0));
    for (const qsizetype line : {2, 5})
        marks.SetMarker(LineMarker::Bookmark, line, true);
    QCOMPARE(marks.NextMarked(LineMarker::Bookmark, 0).value_or(-1), 2);
    QCOMPARE(marks.NextMarked(LineMarker::Bookmark, 2).value_or(-1), 2);
    QCOMPARE(marks.NextMarked(LineMarker::Bookmark, 3).value_or(-1), 5);
    QVERIFY(!marks.NextMarked(LineMarker::Bookmark, 6));
    QVERIFY(!marks.NextMarked(LineMarker::Bookmark, 600));
    QCOMPARE(marks.PreviousMarked(LineMarker::Bookmark, 600).value_or(-1), 5);
    QCOMPARE(marks.PreviousMarked(LineMarker::Bookmark, 4).value_or(-1), 2);
    QVERIFY(!marks.PreviousMarked(LineMarker::Bookmark, 1));
    QVERIFY(!marks.PreviousMarked(LineMarker::Bookmark, -1));
    marks.ClearMarkers(LineMarker::Bookmark);
    QVERIFY(!marks.NextMarked(LineMarker::Bookmark, 0));
}

void TextDecorationsTest::MarkersAreShownInTheirMarginOnly()
{
    Editor editor(u"a\nb\n"_s);
    TextDecorations &marks = *editor.marks;
    const QImage plain = editor.Picture();
    marks.SetMarker(LineMarker::Bookmark, 1, true);
    marks.SetFoldLevels(0, Levels({0, 1}));
    QVERIFY(editor.Picture() == plain);
    marks.ShowMargin(TextMargin::Markers, true);
    const int margin = int(editor.Ask(Sci::SCI_GETMARGINWIDTHN, int(TextMargin::Markers)));
    QVERIFY(margin > 0);
    const QImage marked = editor.Picture();
    marks.ClearMarkers(LineMarker::Bookmark);
    const QImage unmarked = editor.Picture();
    QVERIFY(marked != unmarked);
    const auto text = [&](const QImage &picture) {
        const int left = int(margin * picture.devicePixelRatio());
        return picture.copy(left, 0, picture.width() - left, picture.height());
    };
    QVERIFY(text(marked) == text(unmarked));
}

void TextDecorationsTest::NumbersMakeRoomForThemselves()
{
    Editor editor(u"a\n"_s.repeated(998));
    TextDecorations &marks = *editor.marks;
    const auto width = [&] { return editor.Ask(Sci::SCI_GETMARGINWIDTHN, int(TextMargin::Numbers)); };
    QCOMPARE(width(), 0);
    marks.ShowMargin(TextMargin::Numbers, true);
    const long three = width();
    QVERIFY(three > 0);
    editor.text.ReplaceRange(0, 0, u"\n"_s);
    QVERIFY(width() > three);
    editor.text.Undo();
    QCOMPARE(width(), three);
    editor.text.ChangeFontSize(10);
    QVERIFY(width() > three);
    marks.ShowMargin(TextMargin::Numbers, false);
    QCOMPARE(width(), 0);
}

void TextDecorationsTest::AClickOnAMarginIsTold()
{
    Editor editor(u"a\nb\nc\n"_s);
    TextDecorations &marks = *editor.marks;
    marks.ShowMargin(TextMargin::Markers, true);
    marks.ShowMargin(TextMargin::Folds, true);
    std::vector<std::pair<TextMargin, qsizetype>> clicks;
    Qt::KeyboardModifiers modifiers;
    connect(&marks, &TextDecorations::marginClicked, this,
            [&](TextMargin margin, qsizetype line, Qt::KeyboardModifiers held) {
                clicks.emplace_back(margin, line);
                modifiers = held;
            });
    const int height = int(editor.Ask(Sci::SCI_TEXTHEIGHT));
    const int first = int(editor.Ask(Sci::SCI_GETMARGINWIDTHN, int(TextMargin::Markers)));
    QTest::mouseClick(editor.text.viewport(), Qt::LeftButton, {}, QPoint(first / 2, height * 3 / 2));
    QTest::mouseClick(editor.text.viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      QPoint(first + 3, height * 5 / 2));
    QCOMPARE(clicks.size(), size_t(2));
    QCOMPARE(clicks[0], (std::pair<TextMargin, qsizetype>(TextMargin::Markers, 1)));
    QCOMPARE(clicks[1], (std::pair<TextMargin, qsizetype>(TextMargin::Folds, 2)));
    QCOMPARE(modifiers, Qt::ShiftModifier);
}

void TextDecorationsTest::FoldsHideTheirLines()
{
    Editor editor(u"0\n1\n2\n3\n4\n5\n6"_s);
    TextDecorations &marks = *editor.marks;
    marks.ShowMargin(TextMargin::Folds, true);
    marks.SetFoldLevels(0, Levels({0, 1, 1, 2, 1, 0, 0}));
    QCOMPARE(marks.FoldLevelOf(0), (FoldLevel{0, true}));
    QCOMPARE(marks.FoldLevelOf(3), (FoldLevel{2, false}));
    QCOMPARE(marks.FoldHeaderOf(3).value_or(-1), 2);
    QCOMPARE(marks.FoldHeaderOf(4).value_or(-1), 0);
    QVERIFY(!marks.FoldHeaderOf(5));
    marks.SetFolded(1, true); // no header
    QVERIFY(marks.FoldedLines().empty());
    marks.SetFolded(2, true);
    marks.SetFolded(0, true);
    QVERIFY(marks.FoldedLines() == (Lines{0, 2}));
    QVERIFY(!marks.IsLineHidden(0) && marks.IsLineHidden(1) && marks.IsLineHidden(4));
    QVERIFY(!marks.IsLineHidden(5));
    QCOMPARE(marks.VisibleLines(), (LineSpan{0, 7}));
    marks.RevealLine(3);
    QVERIFY(!marks.IsLineHidden(3) && !marks.IsLineHidden(1));
    marks.FoldAll(true);
    QVERIFY(marks.FoldedLines() == (Lines{0}));
    marks.SetFolded(2, true);
    // A header that is none any more hides nothing.
    marks.SetFoldLevels(0, Levels({0, 0, 0, 1, 0, 0, 0}));
    for (qsizetype line = 0; line < 3; ++line)
        QVERIFY(!marks.IsLineHidden(line));
    marks.FoldAll(false);
    QVERIFY(marks.FoldedLines().empty());
    marks.SetFoldLevels(0, Levels({0, 1, 1, 1, 1, 1, 1}));
    marks.SetFolded(0, true);
    marks.ClearFolds();
    for (qsizetype line = 0; line < 7; ++line)
        QVERIFY(!marks.IsLineHidden(line));
    QCOMPARE(marks.FoldLevelOf(0), FoldLevel());
}

void TextDecorationsTest::TheCaretIsNeverHiddenByAnEdit()
{
    Editor editor(u"0\n1\n2\n3\n4"_s);
    TextDecorations &marks = *editor.marks;
    marks.SetFoldLevels(0, Levels({0, 1, 1, 1, 0}));
    marks.SetFolded(0, true);
    QVERIFY(marks.IsLineHidden(2));
    editor.text.ReplaceRange(4, 5, u"x"_s);
    QVERIFY(!marks.IsLineHidden(2));
    marks.SetFolded(0, true);
    editor.text.Undo();
    QVERIFY(!marks.IsLineHidden(2));
    QCOMPARE(editor.text.Text(), u"0\n1\n2\n3\n4"_s);
}

void TextDecorationsTest::AFreshTextHasNoMarks()
{
    Editor editor(u"0\n1\n2\n3\n4"_s);
    TextDecorations &marks = *editor.marks;
    marks.SetFoldLevels(0, Levels({0, 1, 1, 1, 0}));
    marks.SetFolded(0, true);
    marks.SetMarker(LineMarker::Bookmark, 4, true);
    marks.Show(Indicator::Brace, {{0, 3}});
    QStringList told;
    connect(&marks, &TextDecorations::loading, this, [&] {
        told.append(u"loading"_s);
        QVERIFY(marks.MarkedLines(LineMarker::Bookmark) == (Lines{4}));
        QVERIFY(marks.FoldedLines() == (Lines{0}));
        QCOMPARE(editor.text.Text().size(), 9);
    });
    connect(&marks, &TextDecorations::loaded, this, [&] {
        told.append(u"loaded"_s);
        QCOMPARE(editor.text.Text(), u"a\nb\nc"_s);
    });
    editor.text.LoadText(u"a\nb\nc"_s);
    QCOMPARE(told, QStringList({u"loading"_s, u"loaded"_s}));
    QVERIFY(marks.MarkedLines(LineMarker::Bookmark).empty());
    QVERIFY(marks.FoldedLines().empty());
    QVERIFY(marks.Shown(Indicator::Brace).empty());
    for (qsizetype line = 0; line < 3; ++line) {
        QVERIFY(!marks.IsLineHidden(line));
        QCOMPARE(marks.FoldLevelOf(line), FoldLevel());
    }
}

void TextDecorationsTest::TheViewIsTold()
{
    Editor editor(u"line\n"_s.repeated(400));
    TextDecorations &marks = *editor.marks;
    QSignalSpy told(&marks, &TextDecorations::viewChanged);
    const auto rest = [&] {
        do {
            told.clear();
            for (int i = 0; i < 5; ++i)
                QCoreApplication::processEvents();
        } while (told.count() > 0);
    };
    rest();
    editor.text.ScrollToLine(100);
    QVERIFY(Eventually([&] { return told.count() > 0; }));
    QCOMPARE(marks.VisibleLines().first, 100);
    QVERIFY(marks.VisibleLines().end > 105 && marks.VisibleLines().end < 200);
    rest();
    const qsizetype end = marks.VisibleLines().end;
    editor.window.resize(600, 200);
    QVERIFY(Eventually([&] { return told.count() > 0 && marks.VisibleLines().end < end; }));
    rest();
    editor.text.ReplaceRange(0, 0, u"a"_s);
    QVERIFY(Eventually([&] { return told.count() > 0; }));
}

void TextDecorationsTest::TheSameMarksAgainAreNoChange()
{
    Editor editor(u"one two\u00E9 three\n"_s);
    TextDecorations &marks = *editor.marks;
    const Spans spans{{9, 14}, {4, 6}, {6, 8}, {-2, 1}, {13, 400}};
    int told = 0, shown = 0;
    // Who follows the view marks anew whenever it is told.
    QObject::connect(&marks, &TextDecorations::viewChanged, &editor.window, [&] {
        ++told;
        marks.Show(Indicator::SameWord, spans);
    });
    marks.Show(Indicator::SameWord, spans);
    QVERIFY(Eventually([&] { return told > 0; }));
    // Each round of events draws, and tells what the drawing has changed.
    for (int quiet = 0; quiet < 5 && shown < 200; ++shown) {
        const int before = told;
        editor.Picture();
        QCoreApplication::processEvents();
        quiet = told == before ? quiet + 1 : 0;
    }
    QVERIFY2(shown < 200, qPrintable(QString::number(told)));
    QVERIFY(marks.Shown(Indicator::SameWord) == (Spans{{0, 1}, {4, 8}, {9, 15}}));
}

void TextDecorationsTest::ColoursCanBeSeen_data()
{
    QTest::addColumn<QColor>("ink");
    QTest::addColumn<QColor>("back");
    QTest::newRow("light") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("dark") << QColor(220, 220, 220) << QColor(24, 24, 24);
    QTest::newRow("blue") << QColor(255, 255, 0) << QColor(0, 0, 96);
}

void TextDecorationsTest::ColoursCanBeSeen()
{
    QFETCH(QColor, ink);
    QFETCH(QColor, back);
    Editor editor(u"text\n"_s);
    QPalette palette = editor.text.palette();
    palette.setColor(QPalette::Text, ink);
    palette.setColor(QPalette::Base, back);
    editor.text.setPalette(palette);
    TextDecorations &marks = *editor.marks;
    for (int margin = 0; margin < TextMarginCount; ++margin)
        marks.ShowMargin(TextMargin(margin), true);
    QCOMPARE(FromScintilla(editor.Ask(Sci::SCI_STYLEGETBACK, Sci::STYLE_DEFAULT)), back);
    const QColor margin = FromScintilla(editor.Ask(Sci::SCI_STYLEGETBACK, Sci::STYLE_LINENUMBER));
    QVERIFY(margin != back);
    QVERIFY(Contrast(FromScintilla(editor.Ask(Sci::SCI_STYLEGETFORE, Sci::STYLE_LINENUMBER)), margin) >= 4.5);
    const QColor line = FromScintilla(editor.Ask(Sci::SCI_GETCARETLINEBACK));
    QVERIFY(line != back);
    QVERIFY(Contrast(ink, line) >= 0.8 * Contrast(ink, back));
    for (int indicator = 0; indicator < IndicatorCount; ++indicator) {
        const auto number = unsigned(Sci::INDIC_CONTAINER + indicator);
        QVERIFY(Contrast(FromScintilla(editor.Ask(Sci::SCI_INDICGETFORE, number)), back) >= 3);
    }
    // One character without its other half is framed from top to bottom.
    const QImage plain = editor.Picture();
    marks.Show(Indicator::BraceUnmatched, {{1, 2}});
    const QImage marked = editor.Picture();
    QCOMPARE(marked.size(), plain.size());
    int frame = 0;
    for (int y = 0; y < marked.height(); ++y) {
        for (int x = 0; x < marked.width(); ++x) {
            const QColor pixel = marked.pixelColor(x, y);
            frame += pixel != plain.pixelColor(x, y) && Contrast(pixel, back) >= 2.5;
        }
    }
    const long height = editor.Ask(Sci::SCI_TEXTHEIGHT);
    QVERIFY2(frame >= height * 3 / 2, qPrintable(u"%1 of %2"_s.arg(frame).arg(height)));
}

void TextDecorationsTest::EditsAreToldOneByOne()
{
    Editor editor;
    // Each character of the old text that is left stands where the edits say.
    std::vector<qsizetype> places;
    QString before;
    qsizetype edits = 0;
    connect(&editor.text, &TextControl::edited, this, [&](const TextEdit &edit) {
        ++edits;
        QVERIFY(edit.offset >= 0 && edit.offset + edit.removed <= qsizetype(places.size()));
        const auto from = places.begin() + edit.offset;
        places.insert(places.erase(from, from + edit.removed), size_t(edit.added), -1);
    });
    const auto begin = [&] {
        before = editor.text.Text();
        places.clear();
        for (qsizetype at = 0; at < before.size(); ++at)
            places.push_back(at);
    };
    const auto isRight = [&] {
        const QString now = editor.text.Text();
        if (now.size() != qsizetype(places.size()))
            return false;
        for (qsizetype at = 0; at < now.size(); ++at) {
            if (places[size_t(at)] >= 0 && before[places[size_t(at)]] != now[at])
                return false;
        }
        return true;
    };
    std::mt19937 random(4711);
    const auto upTo = [&](qsizetype most) { return qsizetype(random() % unsigned(most + 1)); };
    const QString pieces[] = {u""_s, u"a"_s, u"\u00E9"_s, u"\U0001F3B5"_s, u"b\nc\n"_s, u"word "_s};
    for (int round = 0; round < 3000; ++round) {
        begin();
        const qsizetype length = editor.text.Length();
        const QString &piece = pieces[upTo(5)];
        const qsizetype start = upTo(length);
        switch (upTo(8)) {
        case 0:
            editor.text.Undo();
            break;
        case 1:
            editor.text.Redo();
            break;
        case 2:
            editor.text.SetSelection(start, std::min(start + upTo(9), length));
            editor.text.ReplaceSelection(piece);
            break;
        case 3:
            editor.text.SetSelection(start, start);
            QTest::keyClick(&editor.text, Qt::Key_Delete, upTo(1) ? Qt::ControlModifier : Qt::NoModifier);
            break;
        case 4:
            editor.text.SetSelection(start, start);
            QTest::keyClick(&editor.text, Qt::Key_Backspace);
            break;
        case 5:
            editor.text.SetSelection(start, start);
            QTest::keyClick(&editor.text, 'x');
            break;
        case 6:
            editor.text.BeginCommand();
            editor.text.ReplaceRange(start, std::min(start + 3, length), piece);
            editor.text.ReplaceRange(0, 0, piece);
            editor.text.EndCommand();
            break;
        default:
            editor.text.ReplaceRange(start, std::min(start + upTo(4), length), piece + pieces[upTo(5)]);
            break;
        }
        if (!isRight())
            QFAIL(qPrintable(u"round %1"_s.arg(round)));
        if (editor.text.Length() > 400)
            editor.text.SetText({});
    }
    QVERIFY(edits > 2000);
}

void TextDecorationsTest::AFreshTextIsToldAsAnEdit()
{
    Editor editor(u"old \u00E9"_s);
    QSignalSpy edited(&editor.text, &TextControl::edited);
    QSignalSpy changed(&editor.text, &TextControl::textChanged);
    editor.text.LoadText(u"fresh \U0001F3B5"_s);
    QCOMPARE(edited.count(), 1);
    QCOMPARE(edited[0].value(0).value<TextEdit>(), (TextEdit{0, 5, 8}));
    QCOMPARE(changed.count(), 1);
}

} // namespace zelvane::test

int main(int argc, char **argv)
{
    return zelvane::test::RunUiTest<zelvane::test::TextDecorationsTest>(argc, argv);
}

#include "test_textdecorations.moc"
