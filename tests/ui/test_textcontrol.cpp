// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/qtdesktop.h"
#include "platform/ui/systemcolours.h"
#include "platform/ui/textcontrol.h"
#include "support/processortime.h"
#include "support/scripteddesktop.h"
#include "support/stringbuffer.h"
#include "support/uitest.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QImage>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <random>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// A control in a window, with the hooks of the main window reduced to a list of what was asked.
struct Editor {
    ScriptedDesktop desktop;
    QWidget window;
    TextControl text{desktop, &window};
    QStringList commands;
    QStringList errors;
    bool insertsSpaces = false;
    int tabSpaces = 8;

    Editor()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins({});
        layout->addWidget(&text);
        text.SetHooks({[this] { return insertsSpaces; }, [this] { return tabSpaces; },
                       [this](bool decrease) { commands.append(decrease ? u"outdent"_s : u"indent"_s); },
                       [this](const QKeyEvent &event) { return RunCommandKey(event); },
                       [this](bool larger) { ChangeFontSize(larger); },
                       [this](const RunTimeError &error) { errors.append(error.Description()); }});
        window.resize(600, 400);
        window.show();
        text.setFocus();
        static_cast<void>(QTest::qWaitForWindowExposed(&window));
    }

    bool RunCommandKey(const QKeyEvent &event)
    {
        const QKeyCombination key = event.keyCombination();
        using Work = void (TextControl::*)();
        const std::pair<QKeyCombination, Work> keys[] = {
            {Qt::CTRL | Qt::Key_Z, &TextControl::Undo},  {Qt::CTRL | Qt::Key_Y, &TextControl::Redo},
            {Qt::CTRL | Qt::Key_X, &TextControl::Cut},   {Qt::CTRL | Qt::Key_C, &TextControl::Copy},
            {Qt::CTRL | Qt::Key_V, &TextControl::Paste},
        };
        for (const auto &[its, work] : keys) {
            if (its != key)
                continue;
            commands.append(QKeySequence(key).toString(QKeySequence::PortableText));
            try {
                (text.*work)();
            } catch (const RunTimeError &error) {
                errors.append(error.Description());
            }
            return true;
        }
        return false;
    }
    void ChangeFontSize(bool larger)
    {
        commands.append(larger ? u"larger"_s : u"smaller"_s);
        text.ChangeFontSize(larger ? 1 : -1);
    }

    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&text, key, modifiers); }
    void Type(const QString &typed)
    {
        for (const QChar c : typed) {
            if (c == u'\n')
                Key(Qt::Key_Return);
            else if (c == u' ')
                Key(Qt::Key_Space);
            else
                QTest::keyClick(&text, c.toLatin1());
        }
    }
    void Commit(const QString &string)
    {
        QInputMethodEvent event;
        event.setCommitString(string);
        QApplication::sendEvent(&text, &event);
    }
    void Preedit(const QString &string)
    {
        QInputMethodEvent event(string, {});
        QApplication::sendEvent(&text, &event);
    }
    /// One digit for each character: its style class.
    QString Styles() const
    {
        QString styles;
        for (qsizetype i = 0; i < text.Length(); ++i)
            styles.append(QChar(u'0' + int(text.StyleAt(i))));
        return styles;
    }
    /// How far the text can be scrolled sideways, when it has been shown.
    int ScrollRange()
    {
        // The control learns of wide lines when it paints them, and tells the bar a little later.
        text.viewport()->repaint();
        const QScrollBar &bar = *text.horizontalScrollBar();
        static_cast<void>(QTest::qWaitFor([&] {
            const auto width = int(text.SendScintilla(QsciScintillaBase::SCI_GETSCROLLWIDTH));
            return bar.maximum() == std::max(0, width - bar.pageStep());
        }));
        return bar.maximum();
    }
    /// The control's own style byte.
    int RawStyle(qsizetype offset) const
    {
        const qsizetype position = text.TextRange(0, offset).toUtf8().size();
        return int(
            text.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(position)));
    }
    /// How many characters in a row, of those from `start` to `end`, have the same style byte.
    qsizetype LongestRun(qsizetype start, qsizetype end) const
    {
        qsizetype position = text.TextRange(0, start).toUtf8().size();
        qsizetype longest = 0;
        qsizetype run = 0;
        int before = -1;
        for (const QChar unit : text.TextRange(start, end)) {
            const int style = int(
                text.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(position)));
            run = style == std::exchange(before, style) ? run + 1 : 1;
            longest = std::max(longest, run);
            position += QString(unit).toUtf8().size();
        }
        return longest;
    }
    QPoint PointOf(qsizetype offset)
    {
        const TextSpan before = text.Selection();
        text.SetSelection(offset, offset);
        const QPoint bottom = text.viewport()->mapFromGlobal(text.CaretPoint());
        text.SetSelection(before.start, before.end);
        return bottom - QPoint(-1, 4);
    }
};

StyleRun Run(int start, int length, StyleClass style)
{
    return {start, length, style};
}

const QString Clef = QString::fromUcs4(U"\U0001D11E"); // two UTF-16 units, four bytes

QString Described(TextSpan span)
{
    return u"%1..%2"_s.arg(span.start).arg(span.end);
}

} // namespace

class TestTextControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The text and its offsets
    void NamesItself();
    void LoadsAndReads_data();
    void LoadsAndReads();
    void MapsOffsetsOfEveryPlane();
    void TakesPairsAnywhereInALongText();
    void CutsOffsetsToTheText();
    void FollowsAStringInRandomEdits_data();
    void FollowsAStringInRandomEdits();
    void KnowsLines();
    void ScrollsAnyLineToTheTop();
    void TakesOneLineOfFiveMegabytes();
    void KeysInALongLineCostLessThanInTheBareControl();
    void LongLinesAreCutIntoShortSteps();
    void JoinedLinesAreCut();
    void LettersThatJoinAreNotCut();
    void LongLinesLookLikeOthers();
    void LongLinesKeepTheirClasses();
    void KeysCostTheSameEverywhere_data();
    void KeysCostTheSameEverywhere();
    void KeepsTheSelectionOnItsCharacters();

    // Style classes
    void AppliesRunsOverAllOffsets();
    void GivesPiecesWithTheirLook();
    void GivesTheFormatsAsShown();
    void StylesAreNoEdit();
    void TypedTextTakesTheClassBefore();
    void UndoBringsBackClasses();
    void WrapsAgainWhenBoldMakesTextWider();

    // Undo
    void TypingIsUndoneByWords();
    void EachBackspaceIsAStep();
    void MovingTheCaretEndsAStep();
    void StepsHaveKinds();
    void TypingOverASelectionIsOneStep();
    void AWordOverASelectionIsOneStep();
    void DeleteKeysInARowAreOneStep();
    void WordsAreDeletedWhole();
    void UndoRestoresTheSelection();
    void ACommandIsOneStep();
    void LoadingLeavesNothingToUndo();
    void ReplacingTheWholeTextCanBeUndone();
    void BackspaceAtTheStartKeepsRedo();
    void EmptyReplacementsMakeNoStep();

    // Keys
    void TabInsertsATab();
    void TabInsertsBlanksToTheNextStop_data();
    void TabInsertsBlanksToTheNextStop();
    void TabCountsFromTheStartOfTheDisplayLine();
    void TabIndentsSeveralLines();
    void ControlKeysRunCommands();
    void ForeignKeysPassToTheWindow_data();
    void ForeignKeysPassToTheWindow();
    void ScintillasOwnKeysAreOff();
    void NavigationKeys();
    void UpAndDownAimAtWhereTheProgramPutTheCaret();
    void ASelectionGivenBackLeavesTheAimAlone();
    void DeletesWholeCharacters();
    void TypesAstralCharacters();
    void ComposesWithAnInputMethod();
    void ComposedLettersJoinTheirWord();

    // Clipboard
    void CutsCopiesAndPastesPlainText();
    void RichClipboardGivesPlainText();
    void AFailedClipboardKeepsTheText();
    void PastedLineEndsBecomeFeeds();

    // Mouse
    void ControlDragSelectsNoRectangle();
    void DragModeDecidesAboutDrags();
    void DroppedTextIsOneStep();
    void TheMiddleButtonPastesInOneStep();
    void DroppedFilesPassToTheWindow();
    void RightClickAsksForAMenu();
    void WheelWithControlRunsTheFontSizeCommand();

    // Look
    void ChangesFontSizeByAPixel();
    void WrapsWords();
    void TheScrollRangeFollowsTheWidestLine();
    void TheScrollRangeFollowsTheFont();
    void LinesOutOfSightKeepTheScrollRange();
    void TakesTabWidthInDialogUnits();
    void ShowsClassColours();
    void FollowsThePalette();
    void FindsReadableTwins();
    void KnowsSystemColours();

    // Signals
    void TellsEachChangeOnce();
};

void TestTextControl::NamesItself()
{
    Editor editor;
    QCOMPARE(editor.text.objectName(), u"TxtEdit"_s);
    QVERIFY(!editor.text.accessibleName().isEmpty());
}

void TestTextControl::LoadsAndReads_data()
{
    QTest::addColumn<QString>("loaded");
    QTest::addColumn<QString>("read");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("ascii") << u"instr 1\n"_s << u"instr 1\n"_s;
    QTest::newRow("line ends") << u"a\r\nb\rc\n\r\r\n\r"_s << u"a\nb\nc\n\n\n\n"_s;
    QTest::newRow("latin") << u"Gr\u00FC\u00DFe"_s << u"Gr\u00FC\u00DFe"_s;
    QTest::newRow("astral") << Clef + u"x"_s + Clef << Clef + u"x"_s + Clef;
    QTest::newRow("nul") << QString(u"a\0b\0"_s) << QString(u"a\0b\0"_s);
    QTest::newRow("mark") << u"\uFEFF\uFEFFx"_s << u"\uFEFF\uFEFFx"_s;
    QTest::newRow("noncharacters") << u"\uFFFF\uFDD0x"_s << u"\uFFFF\uFDD0x"_s;
    QTest::newRow("half pair") << QString(QChar(0xD834)) + u"x"_s + QChar(0xDD1E) << u"?x?"_s;
    QTest::newRow("separators") << u"a\u2028b\u0085c\vd\fe"_s << u"a\u2028b\u0085c\vd\fe"_s;
}

void TestTextControl::LoadsAndReads()
{
    QFETCH(QString, loaded);
    QFETCH(QString, read);
    Editor editor;
    editor.text.LoadText(loaded);
    QCOMPARE(editor.text.Text(), read);
    QCOMPARE(editor.text.Length(), read.size());
    QCOMPARE(editor.text.LineCount(), read.count(u'\n') + 1);
    QVERIFY(!editor.text.CanUndo());

    editor.text.SetText(u"other"_s);
    editor.text.SetSelection(0, -1);
    editor.text.ReplaceSelection(loaded);
    QCOMPARE(editor.text.Text(), read);
    QCOMPARE(Described(editor.text.Selection()), Described({read.size(), read.size()}));
    for (qsizetype i = 0; i <= read.size(); ++i)
        QCOMPARE(editor.text.TextRange(0, i).size(), i > 0 && read[i - 1].isHighSurrogate() ? i - 1 : i);
}

void TestTextControl::MapsOffsetsOfEveryPlane()
{
    // Long enough for many blocks of the offset map, with characters of one to four bytes.
    QString text;
    const QStringList pieces = {u"a"_s, u"\u00E9"_s, u"\u20AC"_s, Clef, u"\n"_s, u"\uFFFE"_s};
    std::mt19937 random(7);
    while (text.size() < 60000)
        text.append(pieces[qsizetype(random() % size_t(pieces.size()))]);
    Editor editor;
    editor.text.LoadText(text);
    QCOMPARE(editor.text.Length(), text.size());
    for (int round = 0; round < 3000; ++round) {
        qsizetype start = qsizetype(random() % size_t(text.size()));
        qsizetype end = std::min<qsizetype>(text.size(), start + qsizetype(random() % 9000));
        const auto whole = [&](qsizetype at) {
            return at > 0 && at < text.size() && text[at].isLowSurrogate() ? at - 1 : at;
        };
        start = whole(start);
        end = whole(end);
        QCOMPARE(editor.text.TextRange(start, end), text.mid(start, end - start));
        editor.text.SetSelection(start, end);
        QCOMPARE(Described(editor.text.Selection()), Described({start, end}));
        const qsizetype line = QStringView(text).first(start).count(u'\n');
        QCOMPARE(editor.text.LineOfOffset(start), line);
        QCOMPARE(editor.text.LineStart(line), start == 0 ? 0 : text.lastIndexOf(u'\n', start - 1) + 1);
    }
}

void TestTextControl::TakesPairsAnywhereInALongText()
{
    Editor editor;
    for (const qsizetype before : {65534, 65535, 65536}) {
        const QString text = QString(before, u'a') + Clef + u"\u00E9"_s + QString(70000, u'b');
        editor.text.LoadText(text);
        QVERIFY(editor.text.Text() == text);
        editor.text.SetText(text + text);
        QVERIFY(editor.text.Text() == text + text);
    }
}

void TestTextControl::CutsOffsetsToTheText()
{
    Editor editor;
    editor.text.LoadText(u"ab\ncd"_s);
    editor.text.SetSelection(-5, 99);
    QCOMPARE(Described(editor.text.Selection()), Described({0, 5}));
    editor.text.SetSelection(4, 1);
    QCOMPARE(Described(editor.text.Selection()), Described({1, 4}));
    editor.text.SetSelection(2, -1);
    QCOMPARE(Described(editor.text.Selection()), Described({2, 5}));
    editor.text.SetSelection(0, -1);
    QCOMPARE(editor.text.SelectedText(), u"ab\ncd"_s);
    QCOMPARE(editor.text.TextRange(3, 99), u"cd"_s);
    QCOMPARE(editor.text.TextRange(4, 2), QString());
    QCOMPARE(editor.text.LineOfOffset(99), 1);
    QCOMPARE(editor.text.LineOfOffset(-1), 0);
    QCOMPARE(editor.text.LineStart(99), 5);
    QCOMPARE(editor.text.LineEnd(99), 5);
    editor.text.ReplaceRange(5, 2, u"x"_s);
    QCOMPARE(editor.text.Text(), u"ab\ncdx"_s);
    editor.text.ApplyStyles(2, 99, {Run(0, 3, StyleClass::Comment), Run(4, 99, StyleClass::Tag)});
    QCOMPARE(editor.Styles(), u"111066"_s);
}

void TestTextControl::FollowsAStringInRandomEdits_data()
{
    QTest::addColumn<QStringList>("pieces");
    QTest::newRow("ascii") << QStringList{u"a"_s, u"\n"_s, u"bc"_s, u"\r\n"_s, QString()};
    QTest::newRow("all planes") << QStringList{u"a"_s, u"\n"_s,     u"\u00E9"_s,      u"\u20AC"_s,
                                               Clef,   u"\uFFFF"_s, QString(u"\0"_s), QString()};
}

void TestTextControl::FollowsAStringInRandomEdits()
{
    QFETCH(QStringList, pieces);
    struct State {
        QString text, styles;
    };
    std::mt19937 random(11);
    const auto below = [&](qsizetype limit) {
        return qsizetype(random() % size_t(std::max<qsizetype>(limit, 1)));
    };
    Editor editor;
    StringBuffer model;
    std::vector<State> states;
    const auto now = [&] { return State{editor.text.Text(), editor.Styles()}; };
    const auto whole = [&](qsizetype at) {
        return at > 0 && at < model.text.size() && model.text[at].isLowSurrogate() ? at - 1 : at;
    };
    size_t current = 0;
    states.push_back(now());
    for (int round = 0; round < 4000; ++round) {
        qsizetype start = whole(below(model.text.size() + 1));
        qsizetype end = whole(start + below(std::min<qsizetype>(model.text.size() - start + 1, 12)));
        QString inserted;
        for (qsizetype n = below(4); n > 0; --n)
            inserted += pieces[below(pieces.size())];
        qsizetype action = model.text.size() > 200 ? 4 : below(6);
        if ((action == 0 && current == 0) || (action == 1 && current + 1 == states.size()))
            action = 3;
        if (action == 0) {
            editor.text.Undo();
            --current;
            QCOMPARE(editor.text.Text(), states[current].text);
            QCOMPARE(editor.Styles(), states[current].styles);
        } else if (action == 1) {
            editor.text.Redo();
            ++current;
            QCOMPARE(editor.text.Text(), states[current].text);
            QCOMPARE(editor.Styles(), states[current].styles);
        } else if (action == 2) {
            // Styles are not undone themselves: the states behind this one would show older ones.
            const StyleRuns runs = {Run(int(start), int(end - start), StyleClass(below(7)))};
            editor.text.ApplyStyles(start, end, runs);
            editor.text.EmptyUndoBuffer();
            model.ApplyStyles(start, end, runs);
            states.assign(1, now());
            current = 0;
        } else if (action == 4) {
            editor.text.SetSelection(start, end);
            editor.text.ReplaceSelection(inserted);
        } else if (action == 5) {
            // Every stretch of the text that equals one character of it, a pair counting as one.
            const bool pair = start < model.text.size() && model.text[start].isHighSurrogate();
            const QString wanted = model.TextRange(start, start + (pair ? 2 : 1));
            std::vector<qint32> starts;
            for (qsizetype at = 0; !wanted.isEmpty() && (at = model.text.indexOf(wanted, at)) >= 0;
                 at += wanted.size())
                starts.push_back(qint32(at));
            editor.text.ReplaceEach(starts, wanted.size(), inserted);
            model.ReplaceEach(starts, wanted.size(), inserted);
            if (!starts.empty()) {
                states.resize(current + 1);
                states.push_back(now());
                ++current;
                QCOMPARE(Described(editor.text.Selection()), Described(model.Selection()));
            }
        } else {
            editor.text.ReplaceRange(start, end, inserted);
        }
        if (action <= 1) {
            model.text = editor.text.Text();
            model.styles.clear();
            for (const QChar style : editor.Styles())
                model.styles.append(char(style.unicode() - u'0'));
            continue;
        }
        if (action == 3 || action == 4) {
            if (start != end || !inserted.isEmpty()) {
                model.ReplaceRange(start, end, inserted);
                states.resize(current + 1);
                states.push_back(now());
                ++current;
            }
        }
        QCOMPARE(editor.text.Text(), model.text);
        QString styles;
        for (const char style : model.styles)
            styles.append(QChar(u'0' + style));
        QCOMPARE(editor.Styles(), styles);
        QCOMPARE(editor.text.Length(), model.text.size());
        QCOMPARE(editor.text.LineCount(), model.LineCount());
        QCOMPARE(editor.text.LineOfOffset(start), model.LineOfOffset(start));
        const qsizetype line = below(model.LineCount());
        QCOMPARE(editor.text.LineStart(line), model.LineStart(line));
        QCOMPARE(editor.text.LineEnd(line), model.LineEnd(line));
    }
}

void TestTextControl::KnowsLines()
{
    Editor editor;
    QCOMPARE(editor.text.LineCount(), 1);
    editor.text.LoadText(u"\u00E9\n\nabc\n"_s);
    QCOMPARE(editor.text.LineCount(), 4);
    QCOMPARE(editor.text.LineStart(2), 3);
    QCOMPARE(editor.text.LineEnd(0), 1);
    QCOMPARE(editor.text.LineEnd(1), 2);
    QCOMPARE(editor.text.LineEnd(2), 6);
    QCOMPARE(editor.text.LineStart(3), 7);
    QCOMPARE(editor.text.LineEnd(3), 7);
    QCOMPARE(editor.text.LineStart(4), 7);
    QCOMPARE(editor.text.LineOfOffset(7), 3);
    QCOMPARE(editor.text.LineOfOffset(6), 2);
}

void TestTextControl::ScrollsAnyLineToTheTop()
{
    Editor editor;
    editor.text.LoadText(u"line\n"_s.repeated(300));
    editor.text.ScrollToLine(150);
    QCOMPARE(editor.text.FirstVisibleLine(), 150);
    editor.text.ScrollToLine(299);
    QCOMPARE(editor.text.FirstVisibleLine(), 299);
    editor.text.ScrollToLine(0);
    QCOMPARE(editor.text.FirstVisibleLine(), 0);
    editor.text.ScrollToLine(-4);
    QCOMPARE(editor.text.FirstVisibleLine(), 0);
    editor.text.ScrollToLine(5000);
    QCOMPARE(editor.text.FirstVisibleLine(), 300);
    editor.text.LoadText(u"one line"_s);
    QCOMPARE(editor.text.FirstVisibleLine(), 0);
}

void TestTextControl::TakesOneLineOfFiveMegabytes()
{
    Editor editor;
    const QString text = u"a1 oscil \u00E9 "_s.repeated(5000000 / 11);
    QElapsedTimer time;
    time.start();
    editor.text.LoadText(text);
    editor.text.ApplyStyles(0, text.size(), {Run(3, 5, StyleClass::Opcode)});
    editor.text.viewport()->repaint();
    editor.text.SetSelection(text.size() - 3, text.size());
    editor.text.viewport()->repaint();
    editor.Type(u"x"_s);
    editor.text.viewport()->repaint();
    QCOMPARE(editor.text.Length(), text.size() - 2);
    QCOMPARE(editor.text.StyleAt(5), StyleClass::Opcode);
    qInfo() << "loaded, shown, edited and shown again in" << time.elapsed() << "ms";
    QVERIFY(time.elapsed() < 30000);
}

void TestTextControl::KeysInALongLineCostLessThanInTheBareControl()
{
    std::mt19937 random(5);
    QString text;
    while (text.size() < 1'000'000)
        text += QString::number(double(random()) / random.max()) + u' ';
    QsciScintillaBase bare;
    using Sci = QsciScintillaBase;
    bare.SendScintilla(Sci::SCI_SETCODEPAGE, Sci::SC_CP_UTF8);
    bare.SendScintilla(Sci::SCI_SETLEXER, Sci::SCLEX_CONTAINER);
    bare.SendScintilla(Sci::SCI_SETLAYOUTCACHE, Sci::SC_CACHE_PAGE);
    bare.SendScintilla(Sci::SCI_SETPOSITIONCACHE, 32768);
    bare.SendScintilla(Sci::SCI_SETTEXT, text.toUtf8().constData());
    bare.resize(600, 400);
    bare.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bare));
    const double there = LeastProcessorTime(3, [&] {
        bare.SendScintilla(Sci::SCI_INSERTTEXT, 0UL, "x");
        bare.viewport()->repaint();
    });
    Editor editor;
    editor.text.LoadText(text);
    editor.text.viewport()->repaint();
    const double here = LeastProcessorTime(3, [&] {
        editor.Type(u"x"_s);
        editor.text.viewport()->repaint();
    });
    qInfo() << "a key:" << here * 1000 << "ms, in the bare control:" << there * 1000 << "ms";
    QVERIFY(here * 3 < there);
}

void TestTextControl::LongLinesAreCutIntoShortSteps()
{
    Editor editor;
    editor.text.LoadText(u"short\n"_s + u"a1 oscil 10000 "_s.repeated(1000) + u"\nshort again\n"_s);
    QCOMPARE(editor.LongestRun(0, 6), 6);
    QVERIFY(editor.LongestRun(6, 15006) <= 2);
    editor.text.ApplyStyles(0, editor.text.Length(),
                            {Run(9, 5, StyleClass::Opcode), Run(30, 14000, StyleClass::Comment)});
    QVERIFY(editor.LongestRun(6, 15006) <= 2);
    QCOMPARE(editor.LongestRun(15010, 15018), 8);
    editor.text.SetSelection(8000, 8000);
    editor.Type(u"typed letter by letter"_s);
    QVERIFY(editor.LongestRun(6, 15028) <= 3);
    editor.desktop.clipboard = u"12345678 "_s.repeated(100);
    editor.text.Paste();
    QVERIFY(editor.LongestRun(6, 15928) <= 3);
    editor.text.SetSelection(7000, 10000);
    editor.text.DeleteSelection();
    editor.text.Undo();
    QVERIFY(editor.LongestRun(6, 15928) <= 3);
    editor.text.ReplaceEach({20, 50}, 2, u"longer than before"_s);
    QVERIFY(editor.LongestRun(6, 15960) <= 3);
    editor.text.SetText(u"x"_s.repeated(9000));
    QVERIFY(editor.LongestRun(0, 9000) <= 2);
}

void TestTextControl::JoinedLinesAreCut()
{
    Editor editor;
    const QString line = u"f1 0 1024 10 1 "_s.repeated(200);
    editor.text.LoadText(line + u'\n' + line);
    QCOMPARE(editor.LongestRun(0, line.size()), line.size());
    editor.text.SetSelection(line.size(), line.size());
    editor.Key(Qt::Key_Delete);
    QVERIFY(editor.LongestRun(0, 2 * line.size()) <= 2);
}

void TestTextControl::LettersThatJoinAreNotCut()
{
    Editor editor;
    // A letter with a mark over it, and letters that are joined in writing.
    const QString accents = u"ae\u0301io\u0308"_s.repeated(2000);
    const QString arabic = u"\u0633\u0644\u0627\u0645"_s.repeated(2000);
    editor.text.LoadText(accents + u'\n' + arabic);
    for (qsizetype i = 1; i < accents.size(); ++i)
        QVERIFY(!accents[i].isMark() || editor.RawStyle(i) == editor.RawStyle(i - 1));
    QVERIFY(editor.LongestRun(0, accents.size()) <= 4);
    QCOMPARE(editor.LongestRun(accents.size() + 1, accents.size() + 1 + arabic.size()), arabic.size());
    const QString cyrillic = u"\u0442\u0435\u043A\u0441\u0442"_s.repeated(2000);
    editor.text.LoadText(cyrillic);
    QVERIFY(editor.LongestRun(0, cyrillic.size()) <= 2);
}

void TestTextControl::LongLinesLookLikeOthers()
{
    const auto picture = [](int repeats, const StyleRuns &runs) {
        Editor editor;
        editor.text.SetStyleFormats(
            {StyleFormat{}, StyleFormat{0x00FF00, false}, StyleFormat{0x0000FF, true}});
        editor.text.LoadText(u"a1 oscil 10000, 440 ; "_s.repeated(repeats));
        editor.text.ApplyStyles(0, editor.text.Length(), runs);
        const QImage image = editor.text.viewport()->grab().toImage();
        return image.copy(0, 0, image.width(), image.height() / 2); // without the scroll bar's place
    };
    const StyleRuns runs = {Run(3, 5, StyleClass::Opcode), Run(20, 80, StyleClass::Comment)};
    QCOMPARE(picture(1000, runs), picture(100, runs));
    QVERIFY(picture(1000, runs) != picture(1000, {}));
}

void TestTextControl::LongLinesKeepTheirClasses()
{
    Editor editor;
    editor.text.LoadText(u"a1 oscil 10000 ; a note \u00E9 "_s.repeated(300));
    const auto size = int(editor.text.Length());
    std::mt19937 random(7);
    StyleRuns runs;
    for (int i = 0; i < 200; ++i)
        runs.push_back(Run(int(random() % size), int(random() % 40), StyleClass(random() % StyleClassCount)));
    editor.text.ApplyStyles(0, size, runs);
    QString model(size, u'0');
    for (const StyleRun &run : runs) {
        for (int i = run.start; i < std::min(run.start + run.length, size); ++i)
            model[i] = QChar(u'0' + int(run.style));
    }
    QCOMPARE(editor.Styles(), model);
    editor.text.SetSelection(100, 6000);
    editor.text.DeleteSelection();
    QCOMPARE(editor.Styles(), QString(model).remove(100, 5900));
    editor.text.Undo();
    QCOMPARE(editor.Styles(), model);
    editor.text.SetSelection(500, 500);
    editor.Type(u"typed"_s);
    QCOMPARE(editor.Styles(), QString(model).insert(500, QString(5, model[499])));
}

void TestTextControl::KeysCostTheSameEverywhere_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("ascii") << u"  a1 oscil 10000, 440, 1 ; the sound of this line\n"_s;
    QTest::newRow("all planes") << u"  a1 oscil 10000, 440, 1 ; le son \u00E9tir\u00E9 "_s + Clef + u'\n';
}

void TestTextControl::KeysCostTheSameEverywhere()
{
    QFETCH(QString, line);
    Editor editor;
    editor.text.LoadText(line.repeated(10'000'000 / line.size()));
    editor.text.ApplyStyles(0, 20, {Run(5, 5, StyleClass::Opcode)});
    // Processor time, the less of two runs: other programs must not count.
    const auto keys = [&](qsizetype place) {
        std::clock_t least = std::numeric_limits<std::clock_t>::max();
        for (int run = 0; run < 2; ++run) {
            editor.text.SetSelection(place, place);
            editor.text.viewport()->repaint();
            const std::clock_t start = std::clock();
            for (int i = 0; i < 20; ++i) {
                editor.Type(u"ab \n"_s);
                editor.Key(Qt::Key_Backspace);
                editor.Key(Qt::Key_Left);
                editor.Key(Qt::Key_Delete);
                editor.text.Undo();
                editor.text.Redo();
                editor.text.viewport()->repaint();
            }
            least = std::min(least, std::clock() - start);
        }
        return least;
    };
    const std::clock_t beginning = keys(0);
    const std::clock_t end = keys(editor.text.Length());
    // When something counts all characters before the caret at each change, it is a hundred times as much.
    QVERIFY2(end < 8 * beginning,
             qPrintable(u"%1 at the end, %2 at the beginning"_s.arg(end).arg(beginning)));
}

void TestTextControl::KeepsTheSelectionOnItsCharacters()
{
    Editor editor;
    editor.text.LoadText(u"one two three"_s);
    editor.text.SetSelection(4, 7);
    editor.text.ReplaceRange(0, 3, u"seven"_s);
    QCOMPARE(editor.text.SelectedText(), u"two"_s);
    editor.text.ReplaceRange(10, 15, QString());
    QCOMPARE(editor.text.SelectedText(), u"two"_s);
    editor.text.ReplaceRange(0, 10, u"x"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({0, 0}));
}

void TestTextControl::AppliesRunsOverAllOffsets()
{
    Editor editor;
    editor.text.LoadText(u"\u00E9;"_s + Clef + u"\n oscil "_s);
    editor.text.ApplyStyles(0, editor.text.Length(),
                            {Run(1, 4, StyleClass::Comment), Run(6, 5, StyleClass::Opcode)});
    QCOMPARE(editor.Styles(), u"011110222220"_s);
    // The later run holds, and a run may reach out of the range.
    editor.text.ApplyStyles(2, 8, {Run(2, 7, StyleClass::Macro), Run(4, 2, StyleClass::Tag)});
    QCOMPARE(editor.Styles(), u"014466444220"_s);
    editor.text.ApplyStyles(3, 3, {Run(0, 2, StyleClass::Comment), Run(11, 20, StyleClass::Tag)});
    QCOMPARE(editor.Styles(), u"114466444226"_s);
    editor.text.ApplyStyles(4, 6, {Run(-3, 2, StyleClass::Tag), Run(8, -2, StyleClass::Tag)});
    QCOMPARE(editor.Styles(), u"114400444226"_s);

    // More bytes than one block, the styles changing in every character.
    const QString many = (u"a\u00E9\u20AC"_s + Clef + u"bcdefghijklm"_s).repeated(20000);
    editor.text.LoadText(many);
    StyleRuns runs;
    for (qsizetype i = 0; i < many.size(); ++i) {
        if (!many[i].isLowSurrogate())
            runs.push_back(Run(int(i), many[i].isHighSurrogate() ? 2 : 1, StyleClass(i % 7)));
    }
    editor.text.ApplyStyles(0, many.size(), runs);
    for (const StyleRun &run : runs) {
        if (editor.text.StyleAt(run.start) != run.style)
            QFAIL(qPrintable(u"style at %1"_s.arg(run.start)));
    }
}

void TestTextControl::GivesPiecesWithTheirLook()
{
    Editor editor;
    std::mt19937 random(5);
    for (const int length : {0, 1, 40, 3000, 200'000}) {
        // Characters of one to four bytes, in lines short and long.
        const QString pieces[] = {u"a"_s, u"\u00E9"_s, u"\u20AC"_s, Clef, u"\n"_s};
        QString text;
        QByteArray classes;
        while (text.size() < length) {
            const QString piece = pieces[random() % (random() % 50 ? 4 : 5)];
            const char style = random() % 4 || classes.isEmpty() ? char(random() % 3) : classes.back();
            text += piece;
            classes += QByteArray(piece.size(), style);
        }
        StyleRuns runs;
        for (qsizetype i = 0; i < text.size(); i += text[i].isHighSurrogate() ? 2 : 1)
            runs.push_back(Run(int(i), text[i].isHighSurrogate() ? 2 : 1, StyleClass(classes[i])));
        editor.text.LoadText(text);
        editor.text.ApplyStyles(0, text.size(), runs);
        const auto check = [&](qsizetype start, qsizetype end) {
            const StyledText piece = editor.text.Styled(start, end);
            QCOMPARE(piece.text, text.sliced(start, end - start));
            for (const StyleRun &run : CoveringRuns(piece.runs, piece.text.size())) {
                for (qsizetype i = run.start; i < run.start + run.length; ++i) {
                    if (classes[start + i] != char(run.style))
                        QFAIL(qPrintable(u"class at %1 of %2 from %3"_s.arg(i).arg(length).arg(start)));
                }
            }
        };
        check(0, text.size());
        for (int i = 0; i < 20 && text.size() > 1; ++i) {
            const auto cut = [&] {
                const auto at = qsizetype(random() % size_t(text.size() - 1));
                return text[at].isLowSurrogate() ? at - 1 : at;
            };
            const qsizetype one = cut();
            const qsizetype other = cut();
            check(std::min(one, other), std::max(one, other));
        }
        QCOMPARE(editor.text.Styled(-5, text.size() + 5).text, text);
        QCOMPARE(editor.text.Styled(text.size() + 1, 0).text, QString());
    }
}

void TestTextControl::GivesTheFormatsAsShown()
{
    Editor editor;
    std::array<StyleFormat, StyleClassCount> formats;
    formats[size_t(StyleClass::Comment)] = {0x008000, false, true};
    formats[size_t(StyleClass::Opcode)] = {0xFF0000, true};
    editor.text.SetStyleFormats(formats);
    editor.text.SetTextColours(0x123456, 0xFFFFFF);
    const TextFont font{u"DejaVu Sans Mono"_s, 12.5, true, true};
    editor.text.ApplyFont(font);
    editor.text.LoadText(u"a"_s);
    // A fresh text shows its own colour, and the font as it is.
    StyledText piece = editor.text.Styled(0, 1);
    QCOMPARE(piece.formats[size_t(StyleClass::Text)], (StyleFormat{0x123456, true}));
    QCOMPARE(piece.formats[size_t(StyleClass::Comment)], (StyleFormat{0x008000, true, true}));
    QCOMPARE(piece.font, font);
    QCOMPARE(piece.tabColumns, 8);
    QVERIFY(piece.runs.empty());
    editor.text.ApplyStyles(0, 1, {});
    QVERIFY(editor.text.Styled(0, 1).formats == formats);
}

void TestTextControl::StylesAreNoEdit()
{
    Editor editor;
    editor.text.LoadText(u"instr 1\n"_s.repeated(200));
    editor.Type(u"x"_s);
    editor.text.ScrollToLine(100);
    editor.text.SetSelection(805, 810);
    const qsizetype top = editor.text.FirstVisibleLine();
    QSignalSpy text(&editor.text, &TextControl::textChanged);
    QSignalSpy selection(&editor.text, &TextControl::selectionChanged);
    editor.text.ApplyStyles(0, editor.text.Length(), {Run(0, 1601, StyleClass::Opcode)});
    QCOMPARE(text.count(), 0);
    QCOMPARE(selection.count(), 0);
    QCOMPARE(Described(editor.text.Selection()), Described({805, 810}));
    QCOMPARE(editor.text.FirstVisibleLine(), top);
    QCOMPARE(editor.text.UndoType(), u" Typing"_s);
    editor.text.Undo();
    QVERIFY(!editor.text.CanUndo());
    QCOMPARE(editor.text.Length(), 1600);
}

void TestTextControl::TypedTextTakesTheClassBefore()
{
    Editor editor;
    editor.text.LoadText(u"ab"_s);
    editor.text.ApplyStyles(0, 2, {Run(1, 1, StyleClass::Literal)});
    editor.text.SetSelection(2, 2);
    editor.Type(u"c d\n"_s);
    QCOMPARE(editor.Styles(), u"055555"_s);
    editor.text.SetSelection(0, 0);
    editor.Type(u"x"_s);
    QCOMPARE(editor.Styles(), u"0055555"_s);
    editor.desktop.clipboard = u"\u00E9"_s;
    editor.text.SetSelection(3, 4);
    editor.text.Paste();
    QCOMPARE(editor.text.Text(), u"xab\u00E9 d\n"_s);
    QCOMPARE(editor.Styles(), u"0055555"_s);
    editor.text.SetText(u"new"_s);
    QCOMPARE(editor.Styles(), u"000"_s);
}

void TestTextControl::UndoBringsBackClasses()
{
    Editor editor;
    editor.text.LoadText(u"a1 oscil 1 ;\u00E9 note\n"_s);
    editor.text.ApplyStyles(0, 19, {Run(3, 5, StyleClass::Opcode), Run(11, 8, StyleClass::Comment)});
    const QString text = editor.text.Text();
    const QString styles = editor.Styles();
    editor.text.SetSelection(2, 15);
    editor.Type(u"xyz"_s);
    editor.text.SetSelection(0, 0);
    editor.Key(Qt::Key_Delete);
    editor.text.SetText(u"gone"_s);
    editor.text.SetSelection(1, 3);
    editor.text.ReplaceSelection(u"GO"_s);
    const QString lastText = editor.text.Text();
    while (editor.text.CanUndo())
        editor.text.Undo();
    QCOMPARE(editor.text.Text(), text);
    QCOMPARE(editor.Styles(), styles);
    while (editor.text.CanRedo())
        editor.text.Redo();
    QCOMPARE(editor.text.Text(), lastText);
    QCOMPARE(editor.Styles(), u"0000"_s);
    while (editor.text.CanUndo())
        editor.text.Undo();
    QCOMPARE(editor.text.Text(), text);
    QCOMPARE(editor.Styles(), styles);
}

void TestTextControl::WrapsAgainWhenBoldMakesTextWider()
{
    Editor editor;
    QFont proportional = QApplication::font();
    editor.text.ApplyFont({proportional.family(), 12, false, false});
    std::array<StyleFormat, StyleClassCount> formats;
    formats[size_t(StyleClass::Opcode)].bold = true;
    editor.text.SetStyleFormats(formats);
    editor.text.SetWordWrap(true);
    editor.text.LoadText(u"wwww mmmm "_s.repeated(400));
    editor.text.viewport()->repaint();
    const auto rows = [&] { return editor.text.SendScintilla(QsciScintillaBase::SCI_WRAPCOUNT, 0UL); };
    const long thin = rows();
    QVERIFY(thin > 1);
    editor.text.ApplyStyles(0, 4000, {Run(0, 4000, StyleClass::Opcode)});
    editor.text.viewport()->repaint();
    const long bold = rows();
    editor.text.SetWordWrap(false);
    editor.text.SetWordWrap(true);
    editor.text.viewport()->repaint();
    QCOMPARE(bold, rows());
}

void TestTextControl::TypingIsUndoneByWords()
{
    Editor editor;
    editor.Type(u"one two"_s);
    editor.Key(Qt::Key_Return);
    editor.Type(u"x"_s);
    editor.Key(Qt::Key_Tab);
    editor.Type(u"y"_s);
    QStringList seen;
    while (editor.text.CanUndo()) {
        editor.text.Undo();
        seen.append(editor.text.Text());
    }
    QCOMPARE(seen, (QStringList{u"one two\nx"_s, u"one two"_s, u"one"_s, QString()}));
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"one"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({3, 3}));
}

void TestTextControl::EachBackspaceIsAStep()
{
    Editor editor;
    editor.Type(u"abc"_s);
    editor.Key(Qt::Key_Backspace);
    editor.Key(Qt::Key_Backspace);
    QCOMPARE(editor.text.Text(), u"a"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"ab"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"abc"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), QString());
}

void TestTextControl::MovingTheCaretEndsAStep()
{
    Editor editor;
    editor.Type(u"ab"_s);
    editor.Key(Qt::Key_Left);
    editor.Key(Qt::Key_Right);
    editor.Type(u"cd"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"ab"_s);
    // What is typed behind an undone step does not grow into the step before it.
    editor.Type(u"x"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"ab"_s);
}

void TestTextControl::StepsHaveKinds()
{
    Editor editor;
    QCOMPARE(editor.text.NextUndo(), UndoKind::None);
    QCOMPARE(editor.text.UndoType(), QString());
    editor.Type(u"word more"_s);
    QCOMPARE(editor.text.NextUndo(), UndoKind::Typing);
    QCOMPARE(editor.text.UndoType(), u" Typing"_s);
    editor.text.SetSelection(0, 2);
    editor.text.Cut();
    QCOMPARE(editor.text.UndoType(), u" Cut"_s);
    editor.text.Paste();
    QCOMPARE(editor.text.UndoType(), u" Paste"_s);
    editor.Key(Qt::Key_Delete);
    QCOMPARE(editor.text.UndoType(), u" Delete"_s);
    editor.Key(Qt::Key_Backspace);
    QCOMPARE(editor.text.UndoType(), u" Delete"_s);
    editor.text.ReplaceRange(0, 0, u"program"_s);
    QCOMPARE(editor.text.UndoType(), QString());
    QVERIFY(editor.text.CanUndo());
    QStringList redo;
    while (editor.text.CanUndo()) {
        editor.text.Undo();
        redo.append(editor.text.RedoType());
    }
    QCOMPARE(redo, (QStringList{QString(), u" Delete"_s, u" Delete"_s, u" Paste"_s, u" Cut"_s, u" Typing"_s,
                                u" Typing"_s}));
    editor.text.Redo();
    editor.Type(u"x"_s);
    QCOMPARE(editor.text.NextRedo(), UndoKind::None);
    editor.text.EmptyUndoBuffer();
    QCOMPARE(editor.text.NextUndo(), UndoKind::None);
    QVERIFY(!editor.text.CanUndo());
}

void TestTextControl::TypingOverASelectionIsOneStep()
{
    Editor editor;
    editor.text.LoadText(u"old text"_s);
    editor.text.SetSelection(0, 3);
    editor.Type(u"n"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"old text"_s);
    QCOMPARE(editor.text.SelectedText(), u"old"_s);
    QVERIFY(!editor.text.CanUndo());
}

void TestTextControl::AWordOverASelectionIsOneStep()
{
    Editor editor;
    editor.text.LoadText(u"old text"_s);
    editor.text.SetSelection(0, 3);
    editor.Type(u"new one"_s);
    QCOMPARE(editor.text.UndoType(), u" Typing"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"new text"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"old text"_s);
    QCOMPARE(editor.text.SelectedText(), u"old"_s);
    QVERIFY(!editor.text.CanUndo());
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"new text"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({3, 3}));
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"new one text"_s);
    QVERIFY(!editor.text.CanRedo());
    // Redone text is a word of its own to what follows.
    editor.Type(u"x"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"new one text"_s);
    // Line ends and pasted text in the selection's place.
    editor.text.SetSelection(0, 3);
    editor.Key(Qt::Key_Return);
    editor.Type(u"ab"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"new one text"_s);
    editor.desktop.clipboard = u"paste"_s;
    editor.text.SetSelection(0, 3);
    editor.text.Paste();
    editor.Type(u"d"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"paste one text"_s);
}

void TestTextControl::DeleteKeysInARowAreOneStep()
{
    Editor editor;
    editor.text.LoadText(u"a"_s + Clef + u"\u20ACbcd"_s);
    for (int i = 0; i < 3; ++i)
        editor.Key(Qt::Key_Delete);
    QCOMPARE(editor.text.Text(), u"bcd"_s);
    editor.Key(Qt::Key_Right);
    editor.Key(Qt::Key_Delete);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"bcd"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"a"_s + Clef + u"\u20ACbcd"_s);
    QVERIFY(!editor.text.CanUndo());
    // At the end nothing goes, and the word goes on.
    editor.text.SetSelection(editor.text.Length(), editor.text.Length());
    editor.Type(u"e"_s);
    editor.Key(Qt::Key_Delete);
    editor.Type(u"f"_s);
    editor.text.Undo();
    QVERIFY(!editor.text.CanUndo());
}

void TestTextControl::WordsAreDeletedWhole()
{
    Editor editor;
    editor.text.LoadText(u"one two three"_s);
    editor.text.ApplyStyles(0, 13, {Run(4, 3, StyleClass::Opcode)});
    editor.text.SetSelection(8, 8);
    editor.Key(Qt::Key_Backspace, Qt::ControlModifier);
    QCOMPARE(editor.text.Text(), u"one three"_s);
    QCOMPARE(editor.text.UndoType(), u" Delete"_s);
    editor.Key(Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(editor.text.Text(), u"one "_s);
    editor.Key(Qt::Key_Delete, Qt::ControlModifier);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"one three"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"one two three"_s);
    QCOMPARE(editor.Styles(), u"0000222000000"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({8, 8}));
    QVERIFY(!editor.text.CanUndo());
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"one three"_s);
}

void TestTextControl::UndoRestoresTheSelection()
{
    Editor editor;
    editor.text.LoadText(u"one\ntwo\nthree\n"_s);
    editor.text.SetSelection(1, 6);
    // As a command does it: widen, replace, select the result.
    editor.text.BeginCommand();
    editor.text.SetSelection(0, 7);
    editor.text.ReplaceSelection(u";one\n;two"_s);
    editor.text.SetSelection(0, 9);
    editor.text.EndCommand();
    editor.text.SetSelection(12, 12);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"one\ntwo\nthree\n"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({1, 6}));
    editor.text.SetSelection(0, 0);
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u";one\n;two\nthree\n"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({0, 9}));

    // Without a command it is the selection that stood at the edit.
    editor.text.LoadText(u"abc"_s);
    editor.text.SetSelection(1, 2);
    editor.text.ReplaceSelection(u"xyz"_s);
    editor.text.SetSelection(0, 0);
    editor.text.Undo();
    QCOMPARE(Described(editor.text.Selection()), Described({1, 2}));
}

void TestTextControl::ACommandIsOneStep()
{
    Editor editor;
    editor.text.LoadText(u"abcdef"_s);
    editor.text.ApplyStyles(0, 6, {Run(2, 3, StyleClass::Macro)});
    editor.text.SetSelection(5, 5);
    editor.text.BeginCommand();
    editor.text.BeginCommand();
    editor.text.ReplaceRange(0, 1, u"xx"_s);
    editor.text.EndCommand();
    editor.text.ReplaceRange(3, 6, QString());
    editor.text.EndCommand();
    QCOMPARE(editor.text.Text(), u"xxbf"_s);
    editor.Type(u"!"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"xxbf"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"abcdef"_s);
    QCOMPARE(editor.Styles(), u"004440"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({5, 5}));
    QVERIFY(!editor.text.CanUndo());

    // A command that loads another text leaves nothing to undo, and one that undoes is none itself.
    editor.text.BeginCommand();
    editor.text.ReplaceRange(0, 0, u"x"_s);
    editor.text.LoadText(u"fresh"_s);
    editor.text.EndCommand();
    QVERIFY(!editor.text.CanUndo());
    editor.text.SetSelection(5, 5);
    editor.Type(u"a"_s);
    editor.text.BeginCommand();
    editor.text.Undo();
    editor.text.EndCommand();
    QCOMPARE(editor.text.Text(), u"fresh"_s);
    QVERIFY(editor.text.CanRedo());
    editor.text.EndCommand();
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"fresha"_s);
}

void TestTextControl::LoadingLeavesNothingToUndo()
{
    Editor editor;
    editor.Type(u"abc"_s);
    QSignalSpy emptied(&editor.text, &TextControl::undoBufferEmptied);
    editor.text.LoadText(u"new"_s);
    QCOMPARE(emptied.count(), 1);
    QVERIFY(!editor.text.CanUndo());
    QVERIFY(!editor.text.CanRedo());
    QCOMPARE(Described(editor.text.Selection()), Described({0, 0}));
    editor.Type(u"x"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"new"_s);
}

void TestTextControl::ReplacingTheWholeTextCanBeUndone()
{
    Editor editor;
    editor.text.LoadText(u"first\n"_s);
    editor.text.ApplyStyles(0, 6, {Run(0, 5, StyleClass::Tag)});
    editor.text.SetSelection(2, 4);
    editor.text.SetText(u"second"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({0, 0}));
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"first\n"_s);
    QCOMPARE(editor.Styles(), u"666660"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({2, 4}));
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"second"_s);
}

void TestTextControl::BackspaceAtTheStartKeepsRedo()
{
    Editor editor;
    editor.Type(u"a"_s);
    editor.text.Undo();
    editor.Key(Qt::Key_Backspace);
    editor.Key(Qt::Key_Delete);
    QVERIFY(editor.text.CanRedo());
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"a"_s);
}

void TestTextControl::EmptyReplacementsMakeNoStep()
{
    Editor editor;
    editor.text.LoadText(u"ab"_s);
    editor.text.SetSelection(1, 1);
    editor.text.ReplaceSelection(QString());
    editor.text.DeleteSelection();
    editor.text.ReplaceRange(2, 2, QString());
    editor.text.Cut();
    editor.text.Copy();
    QVERIFY(!editor.text.CanUndo());
    QCOMPARE(Described(editor.text.Selection()), Described({1, 1}));
}

void TestTextControl::TabInsertsATab()
{
    Editor editor;
    editor.text.LoadText(u"ab\ncd"_s);
    editor.text.SetSelection(1, 1);
    editor.Key(Qt::Key_Tab);
    QCOMPARE(editor.text.Text(), u"a\tb\ncd"_s);
    editor.Key(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(editor.text.Text(), u"a\t\tb\ncd"_s);
    // A selection on one line is replaced, also one that ends with its only line end.
    editor.text.SetSelection(0, 5);
    QCOMPARE(editor.text.SelectedText(), u"a\t\tb\n"_s);
    editor.Key(Qt::Key_Tab);
    QCOMPARE(editor.text.Text(), u"\tcd"_s);
    QVERIFY(editor.commands.isEmpty());
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"a\t\tb\ncd"_s);
}

void TestTextControl::TabInsertsBlanksToTheNextStop_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("spaces");
    QTest::addColumn<int>("inserted");
    QTest::newRow("five in front") << u"\n12345"_s << 8 << 3;
    QTest::newRow("eight in front") << u"\n12345678"_s << 8 << 8;
    QTest::newRow("none in front") << u"12\n"_s << 4 << 4;
    QTest::newRow("a tab counts one") << u"\t"_s << 4 << 3;
    QTest::newRow("two-unit character") << Clef << 4 << 2;
    QTest::newRow("stops of one") << u"abc"_s << 1 << 1;
    QTest::newRow("no stops") << u"abc"_s << 0 << 1;
}

void TestTextControl::TabInsertsBlanksToTheNextStop()
{
    QFETCH(QString, line);
    QFETCH(int, spaces);
    QFETCH(int, inserted);
    Editor editor;
    editor.insertsSpaces = true;
    editor.tabSpaces = spaces;
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        editor.text.LoadText(line);
        editor.text.SetSelection(line.size(), line.size());
        editor.Key(key);
        QCOMPARE(editor.text.Text(), line + QString(inserted, u' '));
        QCOMPARE(Described(editor.text.Selection()),
                 Described({line.size() + inserted, line.size() + inserted}));
        QCOMPARE(editor.text.UndoType(), u" Typing"_s);
    }
}

void TestTextControl::TabCountsFromTheStartOfTheDisplayLine()
{
    const QString text = u"first\n"_s + u"asig oscil \u00E9tir\u00E9 "_s.repeated(40) + u"\nlast"_s;
    int wrapped = 0;
    for (qsizetype at = 6; at < 400; at += 7) {
        Editor editor;
        editor.insertsSpaces = true;
        editor.tabSpaces = 8;
        editor.text.LoadText(text);
        editor.text.SetWordWrap(true);
        editor.text.viewport()->repaint();
        const auto row = [&](qsizetype offset) {
            editor.text.SetSelection(offset, offset);
            return editor.text.CaretPoint().y();
        };
        qsizetype start = at;
        while (start > 0 && row(start - 1) == row(at))
            --start;
        wrapped += start > 6 ? 1 : 0;
        editor.text.SetSelection(at, at);
        editor.Key(Qt::Key_Tab);
        const qsizetype blanks = 8 - (at - start) % 8;
        QCOMPARE(editor.text.Text(), QString(text).insert(at, QString(blanks, u' ')));
    }
    QVERIFY(wrapped > 20);
}

void TestTextControl::TabIndentsSeveralLines()
{
    Editor editor;
    editor.text.LoadText(u"ab\ncd\n"_s);
    editor.text.SetSelection(0, 4);
    editor.Key(Qt::Key_Tab);
    editor.Key(Qt::Key_Backtab, Qt::ShiftModifier);
    editor.Key(Qt::Key_Tab, Qt::ShiftModifier);
    editor.text.SetSelection(2, 4);
    editor.Key(Qt::Key_Tab);
    QCOMPARE(editor.commands, (QStringList{u"indent"_s, u"outdent"_s, u"outdent"_s, u"indent"_s}));
    QCOMPARE(editor.text.Text(), u"ab\ncd\n"_s);
}

void TestTextControl::ControlKeysRunCommands()
{
    Editor editor;
    editor.Type(u"ab"_s);
    editor.text.SetSelection(0, -1);
    for (const Qt::Key key : {Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_Z, Qt::Key_Y})
        editor.Key(key, Qt::ControlModifier);
    QCOMPARE(editor.commands, (QStringList{u"Ctrl+C"_s, u"Ctrl+X"_s, u"Ctrl+V"_s, u"Ctrl+Z"_s, u"Ctrl+Y"_s}));
    QCOMPARE(editor.text.Text(), u"ab"_s);
    QVERIFY(editor.errors.isEmpty());
}

void TestTextControl::ForeignKeysPassToTheWindow_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::newRow("Alt+Up") << int(Qt::Key_Up) << int(Qt::AltModifier) << QString();
    QTest::newRow("Alt+PageDown") << int(Qt::Key_PageDown) << int(Qt::AltModifier) << QString();
    QTest::newRow("Alt+*") << int(Qt::Key_Asterisk) << int(Qt::AltModifier | Qt::KeypadModifier) << u"*"_s;
    QTest::newRow("Alt+x") << int(Qt::Key_X) << int(Qt::AltModifier) << u"x"_s;
    QTest::newRow("Ctrl+D") << int(Qt::Key_D) << int(Qt::ControlModifier) << u"\u0004"_s;
    QTest::newRow("Ctrl+1") << int(Qt::Key_1) << int(Qt::ControlModifier) << u"1"_s;
    QTest::newRow("Ctrl++") << int(Qt::Key_Plus) << int(Qt::ControlModifier | Qt::KeypadModifier) << u"+"_s;
    QTest::newRow("Escape") << int(Qt::Key_Escape) << 0 << u"\u001B"_s;
    QTest::newRow("F3") << int(Qt::Key_F3) << 0 << QString();
    QTest::newRow("Ctrl+Tab") << int(Qt::Key_Tab) << int(Qt::ControlModifier) << u"\t"_s;
}

void TestTextControl::ForeignKeysPassToTheWindow()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, text);
    Editor editor;
    editor.text.LoadText(u"one\ntwo\n"_s.repeated(100));
    editor.text.SetSelection(4, 5);
    editor.text.ScrollToLine(50);
    QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers), text);
    event.setAccepted(true);
    QApplication::sendEvent(&editor.text, &event);
    QVERIFY(!event.isAccepted());
    QCOMPARE(Described(editor.text.Selection()), Described({4, 5}));
    QCOMPARE(editor.text.FirstVisibleLine(), 50);
    QVERIFY(!editor.text.CanUndo());
    QVERIFY(editor.commands.isEmpty());
}

void TestTextControl::ScintillasOwnKeysAreOff()
{
    Editor editor;
    const QString text = u"one\ntwo\nthree\n"_s;
    editor.text.LoadText(text);
    editor.text.SetSelection(5, 5);
    for (const int key : {Qt::Key_D, Qt::Key_L, Qt::Key_T, Qt::Key_U, Qt::Key_BracketLeft, Qt::Key_Backslash,
                          Qt::Key_Slash, Qt::Key_Minus, Qt::Key_Plus}) {
        editor.Key(Qt::Key(key), Qt::ControlModifier);
        editor.Key(Qt::Key(key), Qt::ControlModifier | Qt::ShiftModifier);
    }
    editor.Key(Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
    editor.Key(Qt::Key_Insert);
    QCOMPARE(editor.text.Text(), text);
    QCOMPARE(Described(editor.text.Selection()), Described({5, 5}));
    editor.Type(u"x"_s);
    QCOMPARE(editor.text.Text(), u"one\ntxwo\nthree\n"_s);
}

void TestTextControl::NavigationKeys()
{
    Editor editor;
    editor.text.LoadText(u"one two\nthree four\n"_s);
    const auto at = [&] { return Described(editor.text.Selection()); };
    editor.Key(Qt::Key_Right);
    QCOMPARE(at(), u"1..1"_s);
    editor.Key(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(at(), u"4..4"_s);
    editor.Key(Qt::Key_End, Qt::ShiftModifier);
    QCOMPARE(at(), u"4..7"_s);
    editor.Key(Qt::Key_Down);
    QCOMPARE(at(), u"15..15"_s);
    editor.Key(Qt::Key_Home);
    QCOMPARE(at(), u"8..8"_s);
    editor.Key(Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(at(), u"19..19"_s);
    editor.Key(Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(at(), u"0..19"_s);
    editor.Key(Qt::Key_Left);
    QCOMPARE(at(), u"0..0"_s);
    editor.Key(Qt::Key_Home, Qt::ControlModifier);
    editor.Key(Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(editor.text.Text(), u"two\nthree four\n"_s);
    editor.Key(Qt::Key_End, Qt::ControlModifier);
    editor.Key(Qt::Key_Left);
    editor.Key(Qt::Key_Backspace, Qt::ControlModifier);
    QCOMPARE(editor.text.Text(), u"two\nthree \n"_s);
}

void TestTextControl::UpAndDownAimAtWhereTheProgramPutTheCaret()
{
    Editor editor;
    const auto at = [&] { return Described(editor.text.Selection()); };
    editor.text.LoadText(u"0123456789\n0123456789\n0123456789"_s);
    editor.text.SetSelection(0, 0);
    editor.Key(Qt::Key_End);
    editor.text.SetSelection(12, 14);
    editor.Key(Qt::Key_Down);
    QCOMPARE(at(), u"25..25"_s);
    editor.Key(Qt::Key_End);
    editor.text.SetSelection(11, 11);
    editor.Key(Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(at(), u"11..22"_s);
    editor.Key(Qt::Key_Up);
    editor.Key(Qt::Key_End);
    editor.text.SetSelection(15, 15);
    editor.text.ReplaceSelection(u"xy"_s);
    editor.Key(Qt::Key_Up);
    QCOMPARE(at(), u"6..6"_s);

    editor.Key(Qt::Key_End);
    editor.text.LoadText(u"0123456789\n0123456789"_s);
    editor.Key(Qt::Key_Down);
    QCOMPARE(at(), u"11..11"_s);
}

void TestTextControl::ASelectionGivenBackLeavesTheAimAlone()
{
    Editor editor;
    const auto at = [&] { return Described(editor.text.Selection()); };
    editor.text.LoadText(u"0123456789\nab\n0123456789"_s);
    editor.text.SetSelection(8, 8);
    editor.Key(Qt::Key_Down);
    QCOMPARE(at(), u"13..13"_s);
    editor.text.SetSelection(13, 13);
    editor.Key(Qt::Key_Down);
    QCOMPARE(at(), u"22..22"_s);
}

void TestTextControl::DeletesWholeCharacters()
{
    Editor editor;
    for (const QString &character : {u"a"_s, u"\u00E9"_s, u"\u20AC"_s, Clef, u"\uFFFF"_s, u"\uFDD0"_s,
                                     QString(QChar(u'\0')), u"\uFFFD"_s}) {
        editor.text.LoadText(u"<"_s + character + u">\u00E9"_s);
        const qsizetype behind = 1 + character.size();
        editor.text.SetSelection(0, 0);
        editor.Key(Qt::Key_Right);
        editor.Key(Qt::Key_Right);
        QCOMPARE(Described(editor.text.Selection()), Described({behind, behind}));
        editor.Key(Qt::Key_Left);
        QCOMPARE(Described(editor.text.Selection()), Described({1, 1}));
        editor.Key(Qt::Key_Delete);
        QCOMPARE(editor.text.Text(), u"<>\u00E9"_s);
        editor.text.Undo();
        QCOMPARE(editor.text.Text(), u"<"_s + character + u">\u00E9"_s);
        editor.text.SetSelection(behind, behind);
        editor.Key(Qt::Key_Backspace);
        QCOMPARE(editor.text.Text(), u"<>\u00E9"_s);
        QCOMPARE(editor.text.Length(), 3);
    }
}

void TestTextControl::TypesAstralCharacters()
{
    Editor editor;
    QKeyEvent event(QEvent::KeyPress, 0, {}, Clef);
    QApplication::sendEvent(&editor.text, &event);
    editor.Type(u"x"_s);
    QCOMPARE(editor.text.Text(), Clef + u"x"_s);
    QCOMPARE(editor.text.Length(), 3);
    QCOMPARE(Described(editor.text.Selection()), Described({3, 3}));
    // AltGr comes as Ctrl with Alt on some desktops, and as a group switch on others.
    QKeyEvent altGr(QEvent::KeyPress, Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, u"@"_s);
    QApplication::sendEvent(&editor.text, &altGr);
    QKeyEvent group(QEvent::KeyPress, Qt::Key_E, Qt::GroupSwitchModifier, u"\u20AC"_s);
    QApplication::sendEvent(&editor.text, &group);
    QCOMPARE(editor.text.Text(), Clef + u"x@\u20AC"_s);
}

void TestTextControl::ComposesWithAnInputMethod()
{
    Editor editor;
    editor.text.LoadText(u"ab"_s);
    editor.text.ApplyStyles(0, 2, {Run(0, 1, StyleClass::Literal)});
    editor.text.SetSelection(1, 1);
    editor.Preedit(u"n"_s);
    editor.Preedit(u"ni"_s);
    editor.Commit(u"\u4F60\u597D"_s);
    QCOMPARE(editor.text.Text(), u"a\u4F60\u597Db"_s);
    QCOMPARE(editor.Styles(), u"5550"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({3, 3}));
    QCOMPARE(editor.text.UndoType(), u" Typing"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"ab"_s);
    QVERIFY(!editor.text.CanUndo());
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"a\u4F60\u597Db"_s);
    // A composition that is given up leaves no trace.
    editor.Preedit(u"x"_s);
    editor.Preedit(QString());
    QCOMPARE(editor.text.Text(), u"a\u4F60\u597Db"_s);
    QCOMPARE(editor.Styles(), u"5550"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"ab"_s);
    // Over a selection: one step back brings it again.
    editor.text.SetSelection(0, 1);
    editor.Preedit(u"^"_s);
    editor.Commit(u"\u00EA"_s);
    QCOMPARE(editor.text.Text(), u"\u00EAb"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"ab"_s);
    QVERIFY(!editor.text.CanUndo());
    // Undo while something is being composed takes that away first.
    editor.text.SetSelection(2, 2);
    editor.Type(u"c"_s);
    editor.Preedit(u"^"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"ab"_s);
    QVERIFY(!editor.text.CanUndo());
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"abc"_s);
    // A text that is loaded meanwhile is whole.
    editor.Preedit(u"^"_s);
    editor.text.LoadText(u"fresh"_s);
    editor.Commit(u"\u00EA"_s);
    QCOMPARE(editor.text.Text(), u"\u00EAfresh"_s);
}

void TestTextControl::ComposedLettersJoinTheirWord()
{
    Editor editor;
    const auto compose = [&](const QString &letter) {
        editor.Preedit(u"\u00B4"_s);
        editor.Commit(letter);
    };
    editor.Type(u"un r"_s);
    compose(u"\u00E9"_s);
    editor.Type(u"sum"_s);
    compose(u"\u00E9"_s);
    QCOMPARE(editor.text.Text(), u"un r\u00E9sum\u00E9"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"un"_s);
    editor.text.Redo();
    QCOMPARE(editor.text.Text(), u"un r\u00E9sum\u00E9"_s);
    editor.text.Undo();
    // What is composed behind an undone step does not grow into the step before it.
    compose(u"\u00E9"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"un"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), QString());
    QVERIFY(!editor.text.CanUndo());
}

void TestTextControl::CutsCopiesAndPastesPlainText()
{
    Editor editor;
    editor.text.LoadText(u"one\n"_s + Clef + QString(QChar(u'\0')) + u"two"_s);
    QSignalSpy filled(&editor.text, &TextControl::clipboardFilled);
    editor.desktop.clipboard = u"before"_s;
    editor.text.Copy();
    QCOMPARE(editor.desktop.clipboard, u"before"_s);
    QCOMPARE(filled.count(), 0);
    editor.text.SetSelection(2, 8);
    editor.text.Copy();
    QCOMPARE(editor.desktop.clipboard, u"e\n"_s + Clef + QString(QChar(u'\0')) + u"t"_s);
    QCOMPARE(filled.count(), 1);
    editor.text.Cut();
    QCOMPARE(editor.text.Text(), u"onwo"_s);
    QCOMPARE(filled.count(), 2);
    editor.text.SetSelection(3, 4);
    editor.text.Paste();
    QCOMPARE(editor.text.Text(), u"onwe\n"_s + Clef + QString(QChar(u'\0')) + u"t"_s);
    editor.text.Undo();
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"one\n"_s + Clef + QString(QChar(u'\0')) + u"two"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({2, 8}));
}

void TestTextControl::RichClipboardGivesPlainText()
{
    QtDesktop desktop;
    TextControl text(desktop);
    auto *rich = new QMimeData;
    rich->setHtml(u"<b>bold</b> text"_s);
    rich->setText(u"bold text"_s);
    QApplication::clipboard()->setMimeData(rich);
    text.LoadText(u"[]"_s);
    text.SetSelection(1, 1);
    text.Paste();
    QCOMPARE(text.Text(), u"[bold text]"_s);
    text.ApplyStyles(0, 11, {Run(0, 11, StyleClass::Opcode)});
    text.SetSelection(1, 5);
    text.Copy();
    QCOMPARE(QApplication::clipboard()->text(), u"bold"_s);
    QVERIFY(!QApplication::clipboard()->mimeData()->hasHtml());
    QApplication::clipboard()->clear();
    text.Paste();
    QCOMPARE(text.Text(), u"[bold text]"_s);
    auto *nothing = new QMimeData;
    nothing->setText(u""_s);
    QApplication::clipboard()->setMimeData(nothing);
    text.Paste();
    QCOMPARE(text.Text(), u"[bold text]"_s);
    QCOMPARE(text.SelectedText(), u"bold"_s);
}

void TestTextControl::AFailedClipboardKeepsTheText()
{
    Editor editor;
    editor.text.LoadText(u"precious"_s);
    editor.text.SetSelection(0, 4);
    editor.desktop.clipboardFails = true;
    editor.Key(Qt::Key_X, Qt::ControlModifier);
    editor.Key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(editor.errors.size(), 2);
    QCOMPARE(editor.text.Text(), u"precious"_s);
    QCOMPARE(editor.text.SelectedText(), u"prec"_s);
    QVERIFY(!editor.text.CanUndo());
}

void TestTextControl::PastedLineEndsBecomeFeeds()
{
    Editor editor;
    editor.desktop.clipboard = u"a\r\nb\rc\n"_s;
    editor.Key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(editor.text.Text(), u"a\nb\nc\n"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({6, 6}));
}

void TestTextControl::ControlDragSelectsNoRectangle()
{
    Editor editor;
    editor.text.LoadText(u"abcdef\nabcdef\nabcdef\n"_s);
    const QPoint from = editor.PointOf(1);
    const QPoint to = editor.PointOf(18);
    for (const auto modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::NoModifier}) {
        editor.text.SetSelection(0, 0);
        QTest::mousePress(editor.text.viewport(), Qt::LeftButton, modifier, from);
        QMouseEvent move(QEvent::MouseMove, to, editor.text.viewport()->mapToGlobal(to), Qt::NoButton,
                         Qt::LeftButton, modifier);
        QApplication::sendEvent(editor.text.viewport(), &move);
        QTest::mouseRelease(editor.text.viewport(), Qt::LeftButton, modifier, to);
        QCOMPARE(editor.text.SelectedText(), u"bcdef\nabcdef\nabcd"_s);
    }
}

void TestTextControl::DragModeDecidesAboutDrags()
{
    Editor editor;
    editor.text.LoadText(u"abcdefghijkl"_s);
    QVERIFY(editor.text.DragMode());
    QVERIFY(editor.text.viewport()->acceptDrops());
    const QPoint inside = editor.PointOf(4);
    editor.text.SetSelection(2, 8);
    // With the drag mode a press on the selection keeps it: it may become a drag.
    QTest::mousePress(editor.text.viewport(), Qt::LeftButton, {}, inside);
    QCOMPARE(Described(editor.text.Selection()), Described({2, 8}));
    QTest::mouseRelease(editor.text.viewport(), Qt::LeftButton, {}, inside);
    QCOMPARE(Described(editor.text.Selection()), Described({4, 4}));

    editor.text.SetDragMode(false);
    QVERIFY(!editor.text.viewport()->acceptDrops());
    editor.text.SetSelection(2, 8);
    QTest::mousePress(editor.text.viewport(), Qt::LeftButton, {}, inside,
                      QApplication::doubleClickInterval() * 2);
    const QPoint to = editor.PointOf(10);
    QMouseEvent move(QEvent::MouseMove, to, editor.text.viewport()->mapToGlobal(to), Qt::NoButton,
                     Qt::LeftButton, {});
    QApplication::sendEvent(editor.text.viewport(), &move);
    QTest::mouseRelease(editor.text.viewport(), Qt::LeftButton, {}, to);
    QCOMPARE(Described(editor.text.Selection()), Described({4, 10}));
}

void TestTextControl::DroppedTextIsOneStep()
{
    Editor editor;
    editor.text.LoadText(u"abcdef"_s);
    editor.text.ApplyStyles(0, 6, {Run(0, 3, StyleClass::Tag)});
    QMimeData data;
    data.setText(u"x\r\ny"_s);
    data.setHtml(u"<b>x</b>"_s);
    const QPoint point = editor.PointOf(3);
    QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(editor.text.viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(editor.text.viewport(), &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(editor.text.Text(), u"abcx\nydef"_s);
    QCOMPARE(editor.Styles(), u"666666000"_s);
    QCOMPARE(editor.text.UndoType(), u" Drag Drop"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"abcdef"_s);
    QVERIFY(!editor.text.CanUndo());

    // A link from a browser is text.
    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/"_s)});
    link.setText(u"https://example.org/"_s);
    QDragEnterEvent linkEnter(point, Qt::CopyAction, &link, Qt::LeftButton, {});
    QApplication::sendEvent(editor.text.viewport(), &linkEnter);
    QVERIFY(linkEnter.isAccepted());
    QDropEvent linkDrop(point, Qt::CopyAction, &link, Qt::LeftButton, {});
    QApplication::sendEvent(editor.text.viewport(), &linkDrop);
    QCOMPARE(editor.text.Text(), u"abchttps://example.org/def"_s);
}

void TestTextControl::TheMiddleButtonPastesInOneStep()
{
    QClipboard *clipboard = QApplication::clipboard();
    if (!clipboard->supportsSelection())
        QSKIP("this platform has no selection to paste");
    Editor editor;
    editor.text.LoadText(u"abcdef"_s);
    editor.text.ApplyStyles(0, 6, {Run(0, 3, StyleClass::Tag)});
    clipboard->setText(u"x\ny"_s, QClipboard::Selection);
    QTest::mouseClick(editor.text.viewport(), Qt::MiddleButton, {}, editor.PointOf(3));
    QCOMPARE(editor.text.Text(), u"abcx\nydef"_s);
    QCOMPARE(editor.Styles(), u"666666000"_s);
    QCOMPARE(editor.text.UndoType(), u" Paste"_s);
    editor.text.Undo();
    QCOMPARE(editor.text.Text(), u"abcdef"_s);
    QVERIFY(!editor.text.CanUndo());
}

void TestTextControl::DroppedFilesPassToTheWindow()
{
    Editor editor;
    editor.text.LoadText(u"abc"_s);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(u"/tmp/a.orc"_s)});
    data.setText(u"/tmp/a.orc"_s);
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(editor.text.viewport(), &enter);
    QVERIFY(!enter.isAccepted());
    QDropEvent drop(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(editor.text.viewport(), &drop);
    QVERIFY(!drop.isAccepted());
    QCOMPARE(editor.text.Text(), u"abc"_s);
}

void TestTextControl::RightClickAsksForAMenu()
{
    Editor editor;
    editor.text.LoadText(u"ab 440 cd"_s);
    editor.text.SetSelection(0, 2);
    QSignalSpy asked(&editor.text, &TextControl::contextMenuRequested);
    const QPoint point = editor.PointOf(4);
    const QPoint screen = editor.text.viewport()->mapToGlobal(point);
    QContextMenuEvent plain(QContextMenuEvent::Mouse, point, screen, {});
    QApplication::sendEvent(editor.text.viewport(), &plain);
    QContextMenuEvent ctrl(QContextMenuEvent::Mouse, point, screen, Qt::ControlModifier);
    QApplication::sendEvent(editor.text.viewport(), &ctrl);
    QCOMPARE(asked.count(), 2);
    QCOMPARE(asked[0][0].toPoint(), screen);
    QCOMPARE(asked[0][1].toBool(), false);
    QCOMPARE(asked[1][1].toBool(), true);
    QCOMPARE(editor.text.SelectedText(), u"ab"_s);
    QCOMPARE(editor.text.OffsetAt(screen), 4);
    QCOMPARE(editor.text.OffsetAt(screen + QPoint(0, 300)), -1);
    QVERIFY(!QApplication::activePopupWidget());
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint(), {});
    QApplication::sendEvent(&editor.text, &key);
    QCOMPARE(asked[2][0].toPoint(), editor.text.CaretPoint());
}

void TestTextControl::WheelWithControlRunsTheFontSizeCommand()
{
    Editor editor;
    editor.text.LoadText(u"line\n"_s.repeated(200));
    const auto wheel = [&](int delta, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(QPointF(50, 50), editor.text.viewport()->mapToGlobal(QPointF(50, 50)), {},
                          QPoint(0, delta), Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(editor.text.viewport(), &event);
    };
    wheel(120, Qt::ControlModifier);
    wheel(-60, Qt::ControlModifier);
    wheel(-60, Qt::ControlModifier);
    QCOMPARE(editor.commands, (QStringList{u"larger"_s, u"smaller"_s}));
    QCOMPARE(editor.text.FirstVisibleLine(), 0);
    QCOMPARE(editor.text.SendScintilla(QsciScintillaBase::SCI_GETZOOM), 0L);
    wheel(-240, {});
    QVERIFY(editor.text.FirstVisibleLine() > 0);
}

void TestTextControl::ChangesFontSizeByAPixel()
{
    Editor editor;
    editor.text.LoadText(u"text"_s);
    editor.text.ApplyFont({u"DejaVu Sans Mono"_s, 10, false, true});
    QSignalSpy changed(&editor.text, &TextControl::textChanged);
    const double pixel = 72.0 / editor.text.logicalDpiY();
    const int height = int(editor.text.SendScintilla(QsciScintillaBase::SCI_TEXTHEIGHT, 0UL));
    editor.text.ChangeFontSize(1);
    QCOMPARE(editor.text.CurrentFont().points, std::round((10 + pixel) * 20) / 20);
    for (int i = 0; i < 5; ++i)
        editor.text.ChangeFontSize(1);
    QVERIFY(int(editor.text.SendScintilla(QsciScintillaBase::SCI_TEXTHEIGHT, 0UL)) > height);
    for (int i = 0; i < 6; ++i)
        editor.text.ChangeFontSize(-1);
    QCOMPARE(editor.text.CurrentFont(), (TextFont{u"DejaVu Sans Mono"_s, 10, false, true}));
    for (int i = 0; i < 100; ++i)
        editor.text.ChangeFontSize(-1);
    QVERIFY(editor.text.CurrentFont().points >= pixel);
    QCOMPARE(changed.count(), 0);
    QVERIFY(!editor.text.CanUndo());
}

void TestTextControl::WrapsWords()
{
    Editor editor;
    QSignalSpy changed(&editor.text, &TextControl::textChanged);
    const QString text = u"word "_s.repeated(500) + u"\nlast"_s;
    editor.text.LoadText(text);
    changed.clear();
    const auto rows = [&] { return editor.text.SendScintilla(QsciScintillaBase::SCI_WRAPCOUNT, 0UL); };
    QVERIFY(!editor.text.WordWrap());
    QCOMPARE(rows(), 1L);
    editor.text.SetWordWrap(true);
    QVERIFY(editor.text.WordWrap());
    editor.text.viewport()->repaint();
    const long wide = rows();
    QVERIFY(wide > 10);
    editor.window.resize(300, 400);
    editor.text.viewport()->repaint();
    QVERIFY(rows() > wide);
    // Lines are those of the text, not of the screen.
    QCOMPARE(editor.text.LineCount(), 2);
    QCOMPARE(editor.text.LineOfOffset(text.size()), 1);
    editor.text.SetWordWrap(false);
    editor.text.viewport()->repaint();
    QCOMPARE(rows(), 1L);
    QCOMPARE(changed.count(), 0);
}

void TestTextControl::TheScrollRangeFollowsTheWidestLine()
{
    Editor editor;
    const auto range = [&] { return editor.ScrollRange(); };
    const QString wide = u"0123456789"_s.repeated(100);
    editor.text.LoadText(u"short\n"_s + wide + u"\nshort\n"_s);
    const int whole = range();
    QVERIFY(whole > 0);
    editor.text.SetSelection(6, 6 + wide.size() + 1);
    editor.text.DeleteSelection();
    QCOMPARE(range(), 0);
    editor.text.Undo();
    QCOMPARE(range(), whole);
    editor.text.Redo();
    QCOMPARE(range(), 0);
    editor.text.Undo();
    range();

    // A line end in its middle, and its letters going one by one.
    editor.text.SetSelection(506, 506);
    editor.Key(Qt::Key_Return);
    QVERIFY(range() < whole * 6 / 10);
    editor.text.Undo();
    QCOMPARE(range(), whole);
    editor.text.SetSelection(1006, 1006);
    for (int i = 0; i < 500; ++i)
        editor.Key(Qt::Key_Backspace);
    QVERIFY(range() < whole * 6 / 10);
    QVERIFY(range() > 0);

    // The view never stands to the right of the text.
    editor.text.LoadText(u"short\n"_s + wide);
    editor.text.SetSelection(1006, 1006);
    range();
    QVERIFY(editor.text.horizontalScrollBar()->value() > 0);
    editor.text.SetText(u"short"_s);
    QCOMPARE(range(), 0);
    QCOMPARE(editor.text.SendScintilla(QsciScintillaBase::SCI_GETXOFFSET), 0L);
}

void TestTextControl::TheScrollRangeFollowsTheFont()
{
    Editor editor;
    editor.text.LoadText(u"short\n"_s + u"0123456789"_s.repeated(30));
    editor.text.ApplyFont({u"DejaVu Sans Mono"_s, 30, false, false});
    const int large = editor.ScrollRange();
    editor.text.ApplyFont({u"DejaVu Sans Mono"_s, 20, false, false});
    const int middle = editor.ScrollRange();
    editor.text.ChangeFontSize(-2);
    QVERIFY(middle < large * 8 / 10);
    QVERIFY(editor.ScrollRange() < middle);
    QVERIFY(editor.ScrollRange() > 0);
    editor.text.ApplyFont({u"DejaVu Sans Mono"_s, 1, false, false});
    QCOMPARE(editor.ScrollRange(), 0);
    // What was deleted while it was wrapped counts too.
    editor.text.ApplyFont({u"DejaVu Sans Mono"_s, 20, false, false});
    QVERIFY(editor.ScrollRange() > 0);
    editor.text.SetWordWrap(true);
    editor.text.SetText(u"short"_s);
    editor.text.SetWordWrap(false);
    QCOMPARE(editor.ScrollRange(), 0);
}

void TestTextControl::LinesOutOfSightKeepTheScrollRange()
{
    Editor editor;
    editor.text.LoadText(u"a line\n"_s.repeated(200) + u"0123456789"_s.repeated(100));
    editor.text.SetSelection(editor.text.Length(), editor.text.Length());
    const int range = editor.ScrollRange();
    QVERIFY(range > 0);
    editor.text.SetSelection(0, 0);
    editor.Type(u"x y\n"_s);
    editor.Key(Qt::Key_Backspace);
    editor.text.SetSelection(0, 50);
    editor.text.DeleteSelection();
    editor.text.ReplaceRange(0, 700, u"other"_s);
    editor.text.Undo();
    const int after = editor.ScrollRange();
    QVERIFY2(std::abs(after - range) <= 4, qPrintable(u"%1, it was %2"_s.arg(after).arg(range)));
}

void TestTextControl::TakesTabWidthInDialogUnits()
{
    Editor editor;
    const auto columns = [&] { return editor.text.SendScintilla(QsciScintillaBase::SCI_GETTABWIDTH); };
    QCOMPARE(columns(), 8L);
    editor.text.SetTabWidth(16);
    const long narrow = columns();
    editor.text.SetTabWidth(64);
    const long wide = columns();
    QVERIFY(narrow >= 1);
    QVERIFY(wide > 2 * narrow);
    QVERIFY(wide < 8 * narrow);
    editor.text.SetTabWidth(1);
    QCOMPARE(columns(), 1L);
    editor.text.SetTabWidth(2000000000);
    QVERIFY(columns() > wide);
    editor.text.SetTabWidth(0);
    QCOMPARE(columns(), 8L);
    editor.text.SetTabWidth(-3);
    QCOMPARE(columns(), 8L);
}

void TestTextControl::ShowsClassColours()
{
    Editor editor;
    const auto fore = [&](int style) {
        return editor.text.SendScintilla(QsciScintillaBase::SCI_STYLEGETFORE,
                                         static_cast<unsigned long>(style));
    };
    const auto bold = [&](int style) {
        return editor.text.SendScintilla(QsciScintillaBase::SCI_STYLEGETBOLD,
                                         static_cast<unsigned long>(style)) != 0;
    };
    std::array<StyleFormat, StyleClassCount> formats;
    formats[0] = {0x102030, false, false};
    formats[size_t(StyleClass::Comment)] = {0x008000, false, true};
    formats[size_t(StyleClass::Opcode)] = {0xFF0000, true, true};
    editor.text.SetTextColours(0x0000AA, 0xFFFFFF);
    editor.text.SetStyleFormats(formats);
    editor.text.ApplyFont({u"DejaVu Sans Mono"_s, 10, true, false});
    editor.text.LoadText(u"abc"_s);
    // Fresh text: the control's own colour and font.
    QCOMPARE(fore(0), 0x0000AAL);
    QVERIFY(bold(0));
    QCOMPARE(fore(1), 0x008000L);
    editor.text.ApplyStyles(0, 3, {});
    QCOMPARE(fore(0), 0x102030L);
    QVERIFY(!bold(0));
    QVERIFY(!bold(1));
    QCOMPARE(fore(2), 0xFF0000L);
    QVERIFY(bold(2));
    // On a dark background default colours get their light twins, stored ones stay.
    formats[size_t(StyleClass::Literal)] = {0x808000, false, false};
    editor.text.SetStyleFormats(formats);
    editor.text.SetTextColours(0x0000AA, 0x202020);
    QVERIFY(fore(2) != 0xFF0000L);
    QCOMPARE(fore(5), 0x808000L);
    QCOMPARE(fore(0), 0x102030L);
}

void TestTextControl::FollowsThePalette()
{
    Editor editor;
    const auto back = [&] {
        return editor.text.SendScintilla(QsciScintillaBase::SCI_STYLEGETBACK,
                                         static_cast<unsigned long>(QsciScintillaBase::STYLE_DEFAULT));
    };
    QPalette dark = editor.text.palette();
    dark.setColor(QPalette::Base, QColor(0x20, 0x21, 0x22));
    dark.setColor(QPalette::Text, Qt::white);
    editor.window.setPalette(dark);
    QCOMPARE(back(), 0x222120L);
    QCOMPARE(editor.text.SendScintilla(QsciScintillaBase::SCI_GETCARETFORE), 0xFFFFFFL);
}

void TestTextControl::FindsReadableTwins()
{
    const QColor dark(0x1E, 0x1E, 0x1E);
    for (const QColor &colour : {QColor(0, 128, 0), QColor(0, 0, 255), QColor(0, 0, 128), QColor(128, 0, 128),
                                 QColor(0, 128, 128), QColor(128, 0, 0), QColor(0, 0, 0)}) {
        QCOMPARE(ReadableTwin(colour, Qt::white), colour);
        const QColor twin = ReadableTwin(colour, dark);
        QVERIFY(Contrast(twin, dark) >= 4.5);
        if (colour.hslHue() >= 0)
            QVERIFY(std::abs(twin.hslHue() - colour.hslHue()) <= 2);
    }
    QCOMPARE(ReadableTwin(QColor(240, 240, 240), dark), QColor(240, 240, 240));
    QVERIFY(Contrast(ReadableTwin(Qt::white, Qt::white), Qt::white) >= 4.5);
    QCOMPARE(qRound(Contrast(Qt::black, Qt::white)), 21);
    QCOMPARE(Contrast(Qt::red, Qt::red), 1.0);
}

void TestTextControl::KnowsSystemColours()
{
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::yellow);
    palette.setColor(QPalette::Text, Qt::blue);
    palette.setColor(QPalette::Highlight, Qt::red);
    QCOMPARE(ResolveColour(0x80000005, palette), QColor(Qt::yellow));
    QCOMPARE(ResolveColour(0x80000008, palette), QColor(Qt::blue));
    QCOMPARE(ResolveColour(0x8000000D, palette), QColor(Qt::red));
    QCOMPARE(ResolveColour(0x00332211, palette), QColor(0x11, 0x22, 0x33));
    QCOMPARE(ResolveColour(0xFFFFFF05, palette), QColor(Qt::yellow));
    for (int index = 0; index < 256; ++index)
        QVERIFY(SystemColour(index, palette).isValid());
}

void TestTextControl::TellsEachChangeOnce()
{
    Editor editor;
    QSignalSpy text(&editor.text, &TextControl::textChanged);
    QSignalSpy selection(&editor.text, &TextControl::selectionChanged);
    const auto told = [&] {
        QApplication::processEvents();
        const QString counts = u"%1 %2"_s.arg(text.count()).arg(selection.count());
        text.clear();
        selection.clear();
        return counts;
    };
    editor.text.LoadText(u"one two"_s);
    QCOMPARE(told(), u"1 0"_s);
    editor.text.SetSelection(0, 3);
    QCOMPARE(told(), u"0 1"_s);
    editor.text.SetSelection(0, 3);
    QCOMPARE(told(), u"0 0"_s);
    editor.text.ReplaceSelection(u"1"_s);
    QCOMPARE(told(), u"1 1"_s);
    editor.Type(u"x"_s);
    QCOMPARE(told(), u"1 1"_s);
    editor.Key(Qt::Key_Delete);
    QCOMPARE(told(), u"1 0"_s);
    editor.Key(Qt::Key_Left);
    QCOMPARE(told(), u"0 1"_s);
    editor.text.Undo();
    QCOMPARE(text.count(), 1);
    told();
    editor.text.ReplaceRange(5, 5, u"!"_s);
    QCOMPARE(told(), u"1 0"_s);
    editor.text.SetWordWrap(true);
    editor.text.SetTabWidth(20);
    editor.text.ChangeFontSize(1);
    editor.text.CloseUndoGroup();
    editor.text.EmptyUndoBuffer();
    QCOMPARE(told(), u"0 0"_s);
    editor.text.SetSelection(0, 0);
    const QPoint point = editor.PointOf(4);
    told();
    QTest::mouseClick(editor.text.viewport(), Qt::LeftButton, {}, point);
    QCOMPARE(told(), u"0 1"_s);
    QCOMPARE(Described(editor.text.Selection()), Described({4, 4}));
}

} // namespace zelvane::test

int main(int argc, char **argv)
{
    return zelvane::test::RunUiTest<zelvane::test::TestTextControl>(argc, argv);
}

#include "test_textcontrol.moc"
