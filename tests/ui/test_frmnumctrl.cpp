// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers in the text by keys, and by the slider that a right click brings up.

#include "instruments/instrumentkeys.h"
#include "instruments/ui/frmnumctrl.h"
#include "instruments/ui/numberslider.h"
#include "shell/settings.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"

#include <functional>
#include <QApplication>
#include <QByteArray>
#include <QContextMenuEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QObject>
#include <QPoint>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>
#include <QWindow>
#include <tuple>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// What the offscreen platform puts around each window, pixels.
constexpr int Frame = 2;

/// Counts the events of a type that reach the object whose filter it is.
struct EventCounter : QObject {
    EventCounter(QEvent::Type type, int &count) : m_type(type), m_count(count) {}
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_count += event->type() == m_type;
        return false;
    }

private:
    QEvent::Type m_type;
    int &m_count;
};

/// A main window with a score, and the mouse over its text.
struct Numbers : EditorWindow {
    ModalDriver driver;

    explicit Numbers(const QByteArray &text = "i1 0 440 -2.5 x\n")
    {
        Open({WriteFile(u"song.sco"_s, text)});
        Text().setFocus();
    }

    QString TextNow() { return Text().Text(); }
    QString Status() { return Find<QLabel>(u"lblStatus"_s).text(); }
    /// The selected text, between bars, in the line of the caret.
    QString Marked()
    {
        const TextSpan selected = Text().Selection();
        QString text = TextNow();
        text.insert(selected.end, u'|').insert(selected.start, u'|');
        return text.trimmed();
    }
    void Alt(Qt::Key key, Qt::KeyboardModifiers also = {})
    {
        QTest::keyClick(&Text(), key, Qt::AltModifier | also);
    }
    /// Where the character at an offset stands in the window.
    QPoint Place(qsizetype offset)
    {
        return window->mapFromGlobal(Text().RangeOnScreen(offset, offset + 1).center());
    }
    void Press(qsizetype offset, Qt::KeyboardModifiers held = {})
    {
        QTest::mousePress(window->windowHandle(), Qt::RightButton, held, Place(offset));
    }
    void Release(qsizetype offset, Qt::KeyboardModifiers held = {})
    {
        QTest::mouseRelease(window->windowHandle(), Qt::RightButton, held, Place(offset));
        QCoreApplication::processEvents();
    }
    void RightClick(qsizetype offset, Qt::KeyboardModifiers held = {})
    {
        Press(offset, held);
        Release(offset, held);
    }
    /// A right click that brings up the slider; `script` has to close it.
    void Slide(qsizetype offset, const std::function<void(frmNumCtrl &, NumberSlider &)> &script)
    {
        bool came = false;
        driver.Expect<frmNumCtrl>([&](frmNumCtrl &shown) {
            came = true;
            script(shown, *shown.findChild<NumberSlider *>(u"slNum"_s));
        });
        RightClick(offset);
        QVERIFY(came);
    }
    /// The menu that a right click has brought up, closed again; empty when there is none.
    QString MenuOfClick()
    {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return {};
        menu->close();
        return menu->objectName();
    }
    static QPoint Handle(const NumberSlider &slider)
    {
        QStyleOptionSlider option;
        option.initFrom(&slider);
        option.orientation = Qt::Vertical;
        option.minimum = slider.minimum();
        option.maximum = slider.maximum();
        option.sliderPosition = slider.sliderPosition();
        option.tickPosition = slider.tickPosition();
        return slider.style()
            ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider)
            .center();
    }
    static void ClickHandle(NumberSlider &slider)
    {
        QTest::mouseClick(&slider, Qt::LeftButton, {}, Handle(slider));
    }
    /// Drags the handle by so many pixels, and does not let it go.
    static void Drag(NumberSlider &slider, int pixels)
    {
        const QPoint to = Handle(slider) + QPoint(0, pixels);
        QTest::mousePress(&slider, Qt::LeftButton, {}, Handle(slider));
        QMouseEvent move(QEvent::MouseMove, to, slider.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&slider, &move);
    }
    static void LetGo(NumberSlider &slider)
    {
        QTest::mouseRelease(&slider, Qt::LeftButton, {}, Handle(slider));
    }
    static void Close(frmNumCtrl &shown) { QTest::keyClick(&shown, Qt::Key_Escape); }
};

class NumCtrlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EachKeyChangesTheNumber();
    void AKeyIsOneStepOfUndo();
    void KeysWithoutANumberDoNothing();
    void OtherKeysAreOthers();
    void AKeyBeyondAllRangesIsReported();
    void ARightClickBringsUpTheSlider();
    void TheSliderHasTheRangeOfTheNumber();
    void TheSliderCoversNegativeNumbers();
    void TheStatusLineTellsTheNewValue();
    void EachReleaseIsOneStepOfUndo();
    void TheMouseDragsUpward();
    void TheWheelReleasesAtEachNotch();
    void TheNumberKeepsItsColour();
    void ControlSnaps();
    void AReleaseWithoutAMoveChangesNothing();
    void AClosedSliderChangesNothing();
    void TheSliderStaysOnTheScreen();
    void ASliderBeyondItsRangeIsReported();
    void OtherClicksBringUpTheMenus();
    void MenusMayComeOnRelease();
    void TheSliderGoesWithItsWindow();
};

void NumCtrlTest::EachKeyChangesTheNumber()
{
    Numbers on;
    on.Text().SetSelection(6, 6);
    on.Alt(Qt::Key_Up);
    QCOMPARE(on.Marked(), u"i1 0 |441| -2.5 x"_s);
    on.Alt(Qt::Key_Up);
    on.Alt(Qt::Key_Down);
    QCOMPARE(on.Marked(), u"i1 0 |441| -2.5 x"_s);
    on.Alt(Qt::Key_Right);
    QCOMPARE(on.Marked(), u"i1 0 |441.1| -2.5 x"_s);
    on.Alt(Qt::Key_Left);
    on.Alt(Qt::Key_Left);
    QCOMPARE(on.Marked(), u"i1 0 |440.9| -2.5 x"_s);
    on.Alt(Qt::Key_PageUp);
    QCOMPARE(on.Marked(), u"i1 0 |450.9| -2.5 x"_s);
    on.Alt(Qt::Key_PageDown, Qt::KeypadModifier);
    on.Alt(Qt::Key_PageDown);
    QCOMPARE(on.Marked(), u"i1 0 |430.9| -2.5 x"_s);
    on.Alt(Qt::Key_Asterisk, Qt::KeypadModifier);
    const double random = on.Text().SelectedText().toDouble();
    QVERIFY(random >= 0 && random <= 430.9 && on.Text().SelectedText() != u"430.9"_s);

    const qsizetype last = on.TextNow().lastIndexOf(u"2.5"); // the random number may hold the same
    on.Text().SetSelection(last, last);
    on.Alt(Qt::Key_Up);
    QVERIFY(on.Marked().endsWith(u"|-1.5| x"_s));
}

void NumCtrlTest::AKeyIsOneStepOfUndo()
{
    Numbers on;
    on.Text().SetSelection(6, 6);
    for (int times = 0; times < 3; ++times)
        on.Alt(Qt::Key_Up);
    QCOMPARE(on.Marked(), u"i1 0 |443| -2.5 x"_s);
    QVERIFY(on.window->Context().document.Modified);
    on.Text().Undo();
    QCOMPARE(on.Marked(), u"i1 0 |442| -2.5 x"_s);
    on.Text().Undo();
    on.Text().Undo();
    QCOMPARE(on.TextNow(), u"i1 0 440 -2.5 x\n"_s);
    QVERIFY(!on.Text().CanUndo());
    on.Text().Redo();
    QCOMPARE(on.TextNow(), u"i1 0 441 -2.5 x\n"_s);
}

void NumCtrlTest::KeysWithoutANumberDoNothing()
{
    Numbers on("x 1,5 - y\n");
    on.Text().SetSelection(2, 5);
    on.Alt(Qt::Key_Up);
    QCOMPARE(on.Marked(), u"x |1,5| - y"_s);
    on.Text().SetSelection(7, 7);
    on.Alt(Qt::Key_Left);
    QCOMPARE(on.Marked(), u"x 1,5 |-| y"_s);
    on.Text().SetSelection(0, 0);
    on.Alt(Qt::Key_PageDown);
    QCOMPARE(on.Marked(), u"||x 1,5 - y"_s);
    QVERIFY(!on.Text().CanUndo());
}

void NumCtrlTest::OtherKeysAreOthers()
{
    Numbers on;
    on.Text().SetSelection(6, 6);
    on.Alt(Qt::Key_Up, Qt::ControlModifier);
    on.Alt(Qt::Key_Asterisk, Qt::ShiftModifier); // of the letters' side
    QCOMPARE(on.TextNow(), u"i1 0 440 -2.5 x\n"_s);
    QTest::keyClick(&on.Text(), Qt::Key_Right);
    QCOMPARE(on.Text().Selection(), (TextSpan{7, 7}));
}

void NumCtrlTest::AKeyBeyondAllRangesIsReported()
{
    Numbers on("1e999\n");
    on.Text().SetSelection(0, 5);
    on.desktop.ExpectMessage(ErrorBox(RunTimeError(ErrorNumber::Overflow, u"Overflow"_s)), BoxAnswer::Cancel);
    on.Alt(Qt::Key_Up);
    on.desktop.CheckAllCame();
    QCOMPARE(on.TextNow(), u"1e999\n"_s);
}

void NumCtrlTest::ARightClickBringsUpTheSlider()
{
    Numbers on;
    on.Text().SetSelection(0, 0);
    on.Slide(10, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QCOMPARE(on.Marked(), u"i1 0 440 |-2.5| x"_s);
        QVERIFY(shown.isModal());
        QCOMPARE(shown.findChildren<QWidget *>().size(), 1);
        QCOMPARE(slider.orientation(), Qt::Vertical);
        QCOMPARE(slider.property("Tag").toString(), u"-2.5"_s);
        QCOMPARE(QApplication::focusWidget(), &slider);
        QVERIFY((shown.pos() - on.window->mapToGlobal(on.Place(10))).manhattanLength() <= 2 * Frame);
        QVERIFY(!on.Find<QMenu>(u"mnuEdit"_s).isVisible());
        Numbers::Close(shown);
        QVERIFY(!shown.isVisible());
    });
    QCOMPARE(on.MenuOfClick(), QString());
    QCOMPARE(on.Marked(), u"i1 0 440 |-2.5| x"_s);
}

void NumCtrlTest::TheSliderHasTheRangeOfTheNumber()
{
    Numbers on;
    on.Text().SetSelection(0, 0);
    on.Slide(6, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QCOMPARE(slider.minimum(), -512);
        QCOMPARE(slider.maximum(), 0);
        QCOMPARE(slider.value(), -440);
        QCOMPARE(slider.tickInterval(), 100);
        QCOMPARE(slider.pageStep(), 10);
        QCOMPARE(slider.singleStep(), 1);
        Numbers::Close(shown);
    });
    on.Text().SetSelection(0, 0);
    on.Slide(11, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QCOMPARE(slider.minimum(), -4000);
        QCOMPARE(slider.maximum(), 0);
        QCOMPARE(slider.value(), 0); // -2.5 lies beyond
        QCOMPARE(slider.tickInterval(), 1000);
        QCOMPARE(slider.pageStep(), 1000);
        QCOMPARE(slider.singleStep(), 100);
        Numbers::Close(shown);
    });
}

void NumCtrlTest::TheSliderCoversNegativeNumbers()
{
    Numbers on;
    on.settings.SaveFlag(Keys::SliderNegative, true);
    on.Slide(10, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QCOMPARE(slider.maximum(), 4000);
        QCOMPARE(slider.value(), 2500);
        QTest::keyClick(&slider, Qt::Key_Down);
        Numbers::Close(shown);
    });
    QCOMPARE(on.Marked(), u"i1 0 440 |-2.6| x"_s);
}

void NumCtrlTest::TheStatusLineTellsTheNewValue()
{
    Numbers on;
    on.Slide(5, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QTest::keyPress(&slider, Qt::Key_Up);
        QCOMPARE(on.Status(), u"Original value: 440 - New value: 441"_s);
        QTest::keyPress(&slider, Qt::Key_PageUp);
        QCOMPARE(on.Status(), u"Original value: 440 - New value: 451"_s);
        QCOMPARE(slider.accessibleDescription(), on.Status());
        QCOMPARE(on.Marked(), u"i1 0 |440| -2.5 x"_s);
        QTest::keyRelease(&slider, Qt::Key_PageUp);
        QCOMPARE(on.Marked(), u"i1 0 |451| -2.5 x"_s);
        QCOMPARE(on.Status(), u"Original value: 440 - New value: 451"_s);
        QTest::keyClick(&slider, Qt::Key_Home);
        QCOMPARE(on.Marked(), u"i1 0 |512| -2.5 x"_s);
        Numbers::Close(shown);
    });
}

void NumCtrlTest::EachReleaseIsOneStepOfUndo()
{
    Numbers on;
    on.Slide(5, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QTest::keyClick(&slider, Qt::Key_Up);
        QTest::keyPress(&slider, Qt::Key_Up);
        for (int repeat = 0; repeat < 5; ++repeat) {
            QKeyEvent again(QEvent::KeyPress, Qt::Key_Up, {}, {}, true);
            QKeyEvent up(QEvent::KeyRelease, Qt::Key_Up, {}, {}, true);
            QCoreApplication::sendEvent(&slider, &up);
            QCoreApplication::sendEvent(&slider, &again);
        }
        QTest::keyRelease(&slider, Qt::Key_Up);
        Numbers::Close(shown);
    });
    QCOMPARE(on.Marked(), u"i1 0 |447| -2.5 x"_s);
    on.Text().Undo();
    QCOMPARE(on.Marked(), u"i1 0 |441| -2.5 x"_s);
    on.Text().Undo();
    QCOMPARE(on.Marked(), u"i1 0 |440| -2.5 x"_s);
    QVERIFY(!on.Text().CanUndo());
}

void NumCtrlTest::TheMouseDragsUpward()
{
    Numbers on;
    on.Slide(5, [&](frmNumCtrl &shown, NumberSlider &slider) {
        Numbers::Drag(slider, 60);
        QVERIFY(slider.value() > -440);
        QCOMPARE(on.Marked(), u"i1 0 |440| -2.5 x"_s);
        QCOMPARE(on.Status(), u"Original value: 440 - New value: %1"_s.arg(-slider.value()));
        Numbers::LetGo(slider);
        QCOMPARE(on.Marked(), u"i1 0 |%1| -2.5 x"_s.arg(-slider.value()));
        Numbers::Drag(slider, -1000);
        Numbers::LetGo(slider);
        QCOMPARE(on.Marked(), u"i1 0 |512| -2.5 x"_s);
        Numbers::Close(shown);
    });
    on.Text().Undo();
    on.Text().Undo();
    QCOMPARE(on.Marked(), u"i1 0 |440| -2.5 x"_s);
    QVERIFY(!on.Text().CanUndo());
}

void NumCtrlTest::TheWheelReleasesAtEachNotch()
{
    Numbers on;
    on.Slide(5, [&](frmNumCtrl &shown, NumberSlider &slider) {
        const QPoint at = slider.rect().center();
        QWheelEvent wheel(at, slider.mapToGlobal(at), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&slider, &wheel);
        QCOMPARE(on.Marked(), u"i1 0 |443| -2.5 x"_s);
        QCOMPARE(on.Status(), u"Original value: 440 - New value: 443"_s);
        QCOMPARE(slider.accessibleDescription(), on.Status());
        Numbers::Close(shown);
    });
}

void NumCtrlTest::TheNumberKeepsItsColour()
{
    const QByteArray score = "; amp 440\n/*\n550 */\ni1 0 660\n";
    for (const auto &[name, text] : {std::pair(u"song.sco"_s, score),
                                     {u"song.orc"_s, score},
                                     {u"song.csd"_s, "<CsScore>\n" + score + "</CsScore>\n"}}) {
        Numbers on;
        on.Open({on.WriteFile(name, text)});
        on.Text().setFocus();
        for (const auto &[number, slid, style] : {std::tuple(u"440"_s, u"441"_s, StyleClass::Comment),
                                                  {u"550"_s, u"551"_s, StyleClass::Comment},
                                                  {u"660"_s, u"661"_s, StyleClass::Text}}) {
            const qsizetype at = on.TextNow().indexOf(number);
            on.Text().SetSelection(at, at);
            on.Slide(at, [&](frmNumCtrl &shown, NumberSlider &slider) {
                QTest::keyClick(&slider, Qt::Key_Up);
                Numbers::Close(shown);
            });
            QCOMPARE(on.Text().SelectedText(), slid);
            QCOMPARE(on.Text().StyleAt(at), style);
            QCOMPARE(on.Text().StyleAt(at + 2), style);
            on.Alt(Qt::Key_Up);
            QCOMPARE(on.Text().StyleAt(at), style);
        }
    }
}

void NumCtrlTest::ControlSnaps()
{
    Numbers on("i1 0 3.25\n");
    on.Slide(6, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QTest::keyClick(&slider, Qt::Key_Up);
        QCOMPARE(on.Marked(), u"i1 0 |3.35|"_s);
        on.desktop.keysDown.insert(KeyCode::Ctrl);
        QTest::keyPress(&slider, Qt::Key_Down);
        QCOMPARE(on.Status(), u"Original value: 3.35 - New value: 3"_s);
        QCOMPARE(slider.value(), -3250);
        QTest::keyRelease(&slider, Qt::Key_Down);
        QCOMPARE(on.Marked(), u"i1 0 |3|"_s);
        QCOMPARE(slider.value(), -3000);
        QCOMPARE(on.Status(), u"Original value: 3.35 - New value: 3"_s);
        Numbers::Close(shown);
    });
}

void NumCtrlTest::AReleaseWithoutAMoveChangesNothing()
{
    Numbers on("i1 0 3.14159\n");
    on.Slide(6, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QTest::keyClick(&slider, Qt::Key_F2);
        Numbers::ClickHandle(slider);
        Numbers::Close(shown);
    });
    QCOMPARE(on.Marked(), u"i1 0 |3.14159|"_s);
    QVERIFY(!on.Text().CanUndo());
}

void NumCtrlTest::AClosedSliderChangesNothing()
{
    Numbers on;
    on.Slide(5, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QTest::keyPress(&slider, Qt::Key_Up);
        Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
        QVERIFY(!shown.isVisible());
    });
    on.Text().SetSelection(0, 0);
    on.Slide(6, [&](frmNumCtrl &shown, NumberSlider &) {
        // A click elsewhere.
        QTest::mouseClick(shown.windowHandle(), Qt::LeftButton, {}, QPoint(-40, -40));
        QVERIFY(!shown.isVisible());
    });
    QCOMPARE(on.TextNow(), u"i1 0 440 -2.5 x\n"_s);
}

void NumCtrlTest::TheSliderStaysOnTheScreen()
{
    Numbers on("7\n");
    const QRect screen = on.window->screen()->availableGeometry();
    on.window->move(screen.bottomRight() - QPoint(200, 200));
    QCoreApplication::processEvents();
    on.Slide(0, [&](frmNumCtrl &shown, NumberSlider &) {
        QVERIFY(screen.adjusted(0, 0, Frame, Frame).contains(shown.frameGeometry()));
        Numbers::Close(shown);
    });
}

void NumCtrlTest::ASliderBeyondItsRangeIsReported()
{
    Numbers on("99999999999\n");
    on.desktop.ExpectMessage(ErrorBox(RunTimeError(ErrorNumber::Overflow, u"Overflow"_s)), BoxAnswer::Cancel);
    on.RightClick(3);
    on.desktop.CheckAllCame();
    QCOMPARE(on.TextNow(), u"99999999999\n"_s);
    QCOMPARE(on.MenuOfClick(), QString());
}

void NumCtrlTest::OtherClicksBringUpTheMenus()
{
    Numbers on;
    on.RightClick(14); // a letter
    QCOMPARE(on.MenuOfClick(), u"mnuEdit"_s);
    on.RightClick(9); // a minus sign
    QCOMPARE(on.MenuOfClick(), u"mnuEdit"_s);
    on.RightClick(6, Qt::ControlModifier);
    QCOMPARE(on.MenuOfClick(), u"mnuInsert"_s);
    on.Text().SetSelection(0, 8);
    on.RightClick(6);
    QCOMPARE(on.MenuOfClick(), u"mnuEdit"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 8}));
    on.Text().SetSelection(6, 6);
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {}, on.Text().CaretPoint());
    QCoreApplication::sendEvent(&on.Text(), &key);
    QCOMPARE(on.MenuOfClick(), u"mnuEdit"_s);

    // Pressed on a number, let go elsewhere or with Ctrl.
    on.Press(6);
    QCOMPARE(on.MenuOfClick(), QString());
    on.Release(14);
    QCOMPARE(on.MenuOfClick(), u"mnuEdit"_s);
    on.Press(6);
    on.Release(6, Qt::ControlModifier);
    QCOMPARE(on.MenuOfClick(), u"mnuInsert"_s);
    QCOMPARE(on.TextNow(), u"i1 0 440 -2.5 x\n"_s);
}

void NumCtrlTest::MenusMayComeOnRelease()
{
    Numbers on;
    QWidget &viewport = *on.Text().viewport();
    int menus = 0;
    EventCounter counter(QEvent::ContextMenu, menus);
    viewport.installEventFilter(&counter);
    const auto click = [&](qsizetype offset) {
        const QPoint screen = on.window->mapToGlobal(on.Place(offset));
        const QPoint at = viewport.mapFromGlobal(screen);
        QMouseEvent press(QEvent::MouseButtonPress, at, screen, Qt::RightButton, Qt::RightButton, {});
        QMouseEvent release(QEvent::MouseButtonRelease, at, screen, Qt::RightButton, Qt::NoButton, {});
        QContextMenuEvent menu(QContextMenuEvent::Mouse, at, screen);
        for (QEvent *event :
             {static_cast<QEvent *>(&press), static_cast<QEvent *>(&release), static_cast<QEvent *>(&menu)})
            QCoreApplication::sendEvent(&viewport, event);
        QCoreApplication::processEvents();
    };
    bool came = false;
    on.driver.Expect<frmNumCtrl>([&](frmNumCtrl &shown) {
        came = true;
        QCOMPARE(on.MenuOfClick(), QString());
        Numbers::Close(shown);
    });
    click(6);
    QVERIFY(came);
    on.Text().SetSelection(0, 0);
    menus = 0;
    click(14); // a letter
    QCOMPARE(menus, 1);
    QCOMPARE(on.MenuOfClick(), u"mnuEdit"_s);
}

void NumCtrlTest::TheSliderGoesWithItsWindow()
{
    Numbers on;
    on.Slide(5, [&](frmNumCtrl &shown, NumberSlider &slider) {
        QTest::keyPress(&slider, Qt::Key_Up);
        on.window->close();
        QVERIFY(!shown.isVisible());
    });
    QCOMPARE(on.TextNow(), u"i1 0 440 -2.5 x\n"_s);
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<NumCtrlTest>(argc, argv);
}

#include "test_frmnumctrl.moc"
