// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog of a score statement, by keys and mouse.

#include "instruments/ui/frminstredit.h"
#include "instruments/ui/frminstrgui.h"
#include "support/boxes.h"
#include "support/dialogwindow.h"
#include "support/uitest.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QBrush>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPalette>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QStringList>
#include <QToolButton>
#include <QTreeView>
#include <QTreeWidget>
#include <QWheelEvent>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

constexpr auto Bell =
    "<instruments>\r\n"
    "<instr number=\"1\" name=\"Bell\">\r\n"
    "<p number=\"1\" name=\"Number\" group=\"Built-in\" format=\"1\" min=\"1\" max=\"200\"/>\r\n"
    "<p number=\"2\" name=\"Start\" group=\"Built-in\" format=\"0\" min=\"0\" max=\"100\" "
    "unit=\"Beats\"/>\r\n"
    "<p number=\"3\" name=\"Duration\" group=\"Built-in\" format=\"0\" min=\"0\" max=\"100\" unit=\"Beats\""
    " variable=\"idur\"/>\r\n"
    "<p number=\"4\" name=\"Amp\" description=\"How loud\" group=\"Sound\" format=\"0\" min=\"0\" max=\"1\""
    " unit=\"0dbfs\" variable=\"iamp\"/>\r\n"
    "<p number=\"5\" name=\"Tone\" group=\"Sound\" format=\"1\" min=\"-10\" max=\"30\"/>\r\n"
    "<p number=\"6\" name=\"Mute\" group=\"Sound\" format=\"2\"/>\r\n"
    "<p number=\"7\" name=\"File\" group=\"Sound\" format=\"3\"/>\r\n"
    "</instr>\r\n"
    "</instruments>\r\n";

constexpr auto Score = "f1 0 8 10 1\n"
                       "i1 0 2 .5 4 0 \"a b\" 9\n"
                       "i2 3 4 5\n"
                       "e\n";

/// A main window with a score whose first instrument is described, and the dialog over it.
struct Stating : DialogWindow<frmInstrGUI> {
    explicit Stating(const QByteArray &text = Score, const QByteArray &stored = Bell)
    {
        WriteFile(u"song.xml"_s, stored);
        Open({WriteFile(u"song.sco"_s, text)});
        Text().SetSelection(15, 15);
    }

    QString TextNow() { return Text().Text(); }
    template <typename Control> Control &Of(const QString &name)
    {
        auto *found = dialog->findChild<Control *>(name);
        if (!found)
            qFatal("no control named %s", qPrintable(name));
        return *found;
    }
    QSlider &Slider(int row) { return Of<QSlider>(u"slP_"_s + QString::number(row)); }
    QLineEdit &Value(int row) { return Of<QLineEdit>(u"txtPValue_"_s + QString::number(row)); }
    QLabel &Name(int row) { return Of<QLabel>(u"lblPName_"_s + QString::number(row)); }
    QLabel &Unit(int row) { return Of<QLabel>(u"lblPFormat_"_s + QString::number(row)); }
    QComboBox &Groups() { return Of<QComboBox>(u"cmbGroup"_s); }
    QTreeWidget &List() { return Of<QTreeWidget>(u"lvwP"_s); }
    QMenu &SliderMenu() { return Of<QMenu>(u"mnuSl"_s); }
    QAction &Tool(const QString &key) { return Of<QAction>(u"tlbInstrGUI_"_s + key); }
    QToolButton &Face(const QString &key) { return Of<QToolButton>(u"tlbInstrGUI_"_s + key); }
    void Press(const QString &key) { QTest::mouseClick(&Face(key), Qt::LeftButton); }
    QWidget *Focus() { return QApplication::focusWidget(); }
    void Key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier)
    {
        QTest::keyClick(Focus(), key, with);
    }
    void Type(const QString &text) { QTest::keyClicks(Focus(), text); }

    QStringList Panes()
    {
        QStringList texts;
        for (int pane = 0; pane < 4; ++pane)
            texts += Of<QLabel>(u"lblStatus_"_s + QString::number(pane)).text();
        return texts;
    }
    /// The rows that are seen: name, slider's range and value, text, unit.
    QStringList Rows()
    {
        QStringList rows;
        for (int row = 0; dialog->findChild<QSlider *>(u"slP_"_s + QString::number(row)); ++row) {
            if (!Slider(row).isVisible())
                continue;
            rows += u"%1 %2 %3 %4 %5 %6"_s.arg(Name(row).text())
                        .arg(Slider(row).minimum())
                        .arg(Slider(row).maximum())
                        .arg(Slider(row).value())
                        .arg(Value(row).text(), Unit(row).text());
        }
        return rows;
    }
    QStringList Listed()
    {
        QStringList rows;
        for (int row = 0; row < List().topLevelItemCount(); ++row) {
            QStringList columns;
            for (int column = 0; column < List().columnCount(); ++column)
                columns += List().topLevelItem(row)->text(column);
            rows += columns.join(u'|');
        }
        return rows;
    }

    /// Opens the dialog by its menu row; `script` has to end it.
    void Show(const std::function<void()> &script)
    {
        ShowBy(u"mnuInstrGUI"_s, [script] {
            // The first focus is the toolkit's, and not looked at.
            QCoreApplication::processEvents();
            script();
        });
    }
    /// Opens it with the group of the sound's p-fields.
    void ShowSound(const std::function<void()> &script)
    {
        Show([this, script] {
            Groups().setCurrentIndex(1);
            script();
        });
    }

    void ExpectCiao() { desktop.ExpectMessage({.text = u"ciao"_s}); }
    /// The general report of a failure.
    void ExpectReport(const QString &failure) { desktop.ExpectMessage(ErrorBox(failure), BoxAnswer::Cancel); }
    void Choose(int command) { Of<QAction>(u"mnuSl_"_s + QString::number(command)).trigger(); }
};

class FrmInstrGuiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheDialogHasItsControls();
    void WithoutAStatementTheUserIsTold();
    void GapsInThePFieldsAreTold();
    void AGroupHasItsRows();
    void ABareInstrumentHasItsRows();
    void TextsAndSlidersFollowEachOther();
    void KeysOfTheTextMoveTheSlider();
    void ControlSnaps();
    void TheMouseMovesTheSlider();
    void TheWheelMovesTheSliderOfTheKeyboard();
    void TabGoesThroughTheRows();
    void ARowTellsOfItself();
    void TheSliderButtonFollowsTheKeyboard();
    void TheSliderMenuMovesTheSlider();
    void TheSliderMenuNeedsASlider();
    void TheMouseOpensTheSliderMenu();
    void ANumberThatIsNoneIsReported();
    void ARangeWithoutTicksIsReported();
    void ARangeWithoutAScaleDoesNotMove();
    void BoundsThatAreTooLargeAreReported();
    void GroupsKeepWhatWasTyped();
    void TheListShowsAll();
    void TheListJumpsToAField();
    void TheListIsLeftByItsButton();
    void OkWritesTheStatement();
    void EnterWritesAndEscapeDoesNot();
    void TheLastPFieldStays();
    void ALongValueStaysWhole();
    void PastedLineEndsBecomeBlanks();
    void PropertiesCloseTheDialog();
    void RandomValuesAreAnOperation();
    void ManyRowsScroll();
    void NamesAreShownAsTheyAre();
    void TheEndOfTheSessionAsksAboutChanges();
    void ANameIsWholeInTheCaption();
    void AHeldEnterWritesNothing();
    void ALongGroupStaysInView();
    void TheRealPropertiesTakeTheDialogsPlace();
    void PanesTellOfTheKeyboardOnly();
    void LongPanesDoNotWidenTheDialog();
    void ACutTextIsToldAsItIs();
    void KeysOfAStringDoNotScroll();
    void TheKeyboardComesBackFromTheList();
};

void FrmInstrGuiTest::TheDialogHasItsControls()
{
    Stating on;
    on.Show([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Instrument 1 - Bell"_s);
        QCOMPARE(on.Panes(), (QStringList{QString(), u"p-Field"_s, u"Variable"_s, u"Format"_s}));
        QCOMPARE(on.Groups().toolTip(), u"Parameters Groups"_s);
        QCOMPARE(on.Groups().count(), 3);
        QCOMPARE(on.Groups().currentText(), u"Built-in"_s);
        QCOMPARE(on.Groups().itemText(2), u"No Group"_s);
        QStringList commands;
        for (const QAction *action : on.SliderMenu().actions())
            commands += action->isSeparator() ? u"-"_s : action->text();
        QCOMPARE(commands, (QStringList{u"Reset to 0"_s, u"Reset to center"_s, u"-"_s, u"Randomize"_s}));
        // The first text that can be changed waits for a value.
        QCOMPARE(on.Focus(), &on.Value(1));
        QCOMPARE(on.Value(1).selectedText(), u"0"_s);
        QVERIFY(!on.Tool(u"slider"_s).isEnabled());
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::WithoutAStatementTheUserIsTold()
{
    Stating on;
    on.Text().SetSelection(0, 0);
    on.desktop.ExpectMessage({.text = u"Score i statement not found.\n\nPosition the cursor on the first "
                                      "line of a score i statement."_s,
                              .icon = BoxIcon::Warning});
    on.Row(u"mnuInstrGUI"_s).trigger();
    on.desktop.CheckAllCame();
}

void FrmInstrGuiTest::GapsInThePFieldsAreTold()
{
    Stating on(Score, "<instruments><instr number=\"1\"><p number=\"2\" format=\"0\" min=\"0\" max=\"0\"/>"
                      "</instr></instruments>");
    on.desktop.ExpectMessage(
        {.text = u"Error while sorting p-fields: non-consecutive items."_s, .icon = BoxIcon::Critical});
    on.Row(u"mnuInstrGUI"_s).trigger();
    on.desktop.CheckAllCame();
}

void FrmInstrGuiTest::AGroupHasItsRows()
{
    Stating on;
    on.Show([&] {
        QCOMPARE(on.Rows(), (QStringList{u"&Number: 1 200 1 1 "_s, u"&Start: 0 10000 0 0 Beats"_s,
                                         u"&Duration: 0 10000 200 2 Beats"_s}));
        QVERIFY(!on.Slider(0).isEnabled());
        QVERIFY(!on.Value(0).isEnabled());
        QVERIFY(on.Slider(1).isEnabled());
        QCOMPARE(on.Slider(1).toolTip(), u"Min 0 Max 100"_s);
        QCOMPARE(on.Name(1).toolTip(), u"p2"_s);
        QCOMPARE(on.Slider(0).tickInterval(), 10);
        QCOMPARE(on.Slider(1).tickInterval(), 1000);
        const int three = on.dialog->height();

        on.Groups().setCurrentIndex(1);
        QCOMPARE(on.Rows(), (QStringList{u"&Amp: 0 1000 500 .5 0dbfs"_s, u"&Tone: -10 30 4 4 "_s,
                                         u"&Mute: 0 1 0 0 "_s, u"&File: 0 1 0 \"a b\" "_s}));
        QCOMPARE(on.Name(0).toolTip(), u"p4 - How loud"_s);
        QVERIFY(on.Slider(0).isEnabled());
        QVERIFY(on.Value(0).isEnabled());
        QVERIFY(!on.Slider(3).isEnabled());
        QVERIFY(on.Value(3).isEnabled());
        QVERIFY(on.dialog->height() > three);

        on.Groups().setCurrentIndex(2);
        QCOMPARE(on.Rows(), QStringList{u"p8: 0 0 0 9 "_s});
        QVERIFY(on.dialog->height() < three);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ABareInstrumentHasItsRows()
{
    Stating on;
    on.Text().SetSelection(36, 36);
    on.Show([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Instrument 2 - "_s);
        QCOMPARE(on.Groups().count(), 1);
        QCOMPARE(on.Rows(),
                 (QStringList{u"p1: 0 0 0 2 "_s, u"p2: 0 0 0 3 "_s, u"p3: 0 0 0 4 "_s, u"p4: 0 0 0 5 "_s}));
        QVERIFY(!on.Slider(0).isEnabled());
        on.Type(u"3.5"_s);
        on.Press(u"ok"_s);
    });
    QVERIFY(on.TextNow().contains(u"\ni2 3.5 4 5\n"_s));
}

void FrmInstrGuiTest::TextsAndSlidersFollowEachOther()
{
    Stating on;
    on.ShowSound([&] {
        on.Slider(0).setFocus();
        on.Key(Qt::Key_Right);
        QCOMPARE(on.Value(0).text(), u".501"_s);
        on.Key(Qt::Key_End);
        QCOMPARE(on.Value(0).text(), u"1"_s);
        on.Value(0).setFocus();
        on.Type(u".25"_s);
        QCOMPARE(on.Slider(0).value(), 250);
        QCOMPARE(on.Value(0).text(), u".25"_s);
        // Finer than the slider, which does not put its own number in its place.
        on.Type(u"04"_s);
        QCOMPARE(on.Slider(0).value(), 250);
        QCOMPARE(on.Value(0).text(), u".2504"_s);
        // Out of the range: it stays.
        on.Value(0).selectAll();
        on.Type(u"7"_s);
        QCOMPARE(on.Slider(0).value(), 250);

        on.Slider(1).setFocus();
        on.Key(Qt::Key_Home);
        QCOMPARE(on.Value(1).text(), u"-10"_s);
        on.Slider(2).setFocus();
        on.Key(Qt::Key_Right);
        QCOMPARE(on.Value(2).text(), u"1"_s);
        on.Value(2).setFocus();
        on.Type(u"0"_s);
        QCOMPARE(on.Slider(2).value(), 0);
        on.Value(2).selectAll();
        on.Type(u"-4"_s);
        QCOMPARE(on.Slider(2).value(), 1);
        QCOMPARE(on.Value(2).text(), u"-4"_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::KeysOfTheTextMoveTheSlider()
{
    Stating on;
    on.ShowSound([&] {
        on.Value(0).setFocus();
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Value(0).text(), u".501"_s);
        on.Key(Qt::Key_Down);
        on.Key(Qt::Key_Down);
        QCOMPARE(on.Value(0).text(), u".499"_s);
        on.Key(Qt::Key_PageUp);
        QCOMPARE(on.Value(0).text(), u".599"_s);
        on.Key(Qt::Key_PageDown);
        QCOMPARE(on.Value(0).text(), u".499"_s);
        QCOMPARE(on.Focus(), &on.Value(0));
        // What is typed next still takes the number's place.
        on.Type(u"1"_s);
        QCOMPARE(on.Value(0).text(), u"1"_s);
        // A string has no slider to move.
        on.Value(3).setFocus();
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Value(3).text(), u"\"a b\""_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ControlSnaps()
{
    Stating on;
    on.Show([&] {
        on.Value(2).setFocus();
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Value(2).text(), u"2.01"_s);
        on.desktop.keysDown.insert(KeyCode::Ctrl);
        on.Key(Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(on.Value(2).text(), u"12"_s);
        QCOMPARE(on.Slider(2).value(), 1200);
        on.desktop.keysDown.clear();
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheMouseMovesTheSlider()
{
    Stating on;
    on.ShowSound([&] {
        // The handle stands in the middle, above the ticks.
        QSlider &slider = on.Slider(0);
        const QPoint handle(slider.width() / 2, slider.height() / 3);
        Drag(slider, handle, QPoint(slider.width() + 50, handle.y()));
        QCOMPARE(slider.value(), 1000);
        QCOMPARE(on.Value(0).text(), u"1"_s);
        QCOMPARE(on.Focus(), &slider);
        QCOMPARE(on.Panes()[1], u"p4"_s);
        on.desktop.keysDown.insert(KeyCode::Ctrl);
        Drag(slider, QPoint(slider.width() - handle.y(), handle.y()), handle);
        on.desktop.keysDown.clear();
        QCOMPARE(on.Value(0).text(), u"0"_s);
        QCOMPARE(slider.value(), 0);

        QTest::mouseClick(&on.Value(1), Qt::LeftButton);
        QVERIFY(Eventually([&] { return on.Value(1).selectedText() == u"4"_s; }));
        QCOMPARE(on.Panes()[1], u"p5"_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheWheelMovesTheSliderOfTheKeyboard()
{
    Stating on;
    on.ShowSound([&] {
        QSlider &slider = on.Slider(1);
        const auto turn = [&] {
            const QPointF place = slider.rect().center();
            QWheelEvent wheel(place, slider.mapToGlobal(place), {}, QPoint(0, 120), Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&slider, &wheel);
        };
        turn();
        QCOMPARE(on.Value(1).text(), u"4"_s);
        slider.setFocus();
        turn();
        QVERIFY(slider.value() > 4);
        QCOMPARE(on.Value(1).text(), QString::number(slider.value()));
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TabGoesThroughTheRows()
{
    Stating on;
    on.ShowSound([&] {
        on.Groups().setFocus();
        QStringList names;
        do {
            names += on.Focus()->objectName();
            on.Key(Qt::Key_Tab);
        } while (on.Focus() != &on.Groups() && names.size() < 20);
        QCOMPARE(names, (QStringList{u"cmbGroup"_s, u"slP_0"_s, u"txtPValue_0"_s, u"slP_1"_s,
                                     u"txtPValue_1"_s, u"slP_2"_s, u"txtPValue_2"_s, u"txtPValue_3"_s}));
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ARowTellsOfItself()
{
    Stating on;
    on.ShowSound([&] {
        on.Groups().setFocus(Qt::TabFocusReason);
        QCOMPARE(on.Panes(), (QStringList{u"3 Parameters groups"_s, u"p8"_s, QString(), QString()}));
        on.Value(0).setFocus(Qt::TabFocusReason);
        QCOMPARE(on.Panes(), (QStringList{u"How loud"_s, u"p4"_s, u"iamp"_s, u"Real"_s}));
        QCOMPARE(on.Value(0).selectedText(), u".5"_s);
        on.Slider(1).setFocus(Qt::TabFocusReason);
        QCOMPARE(on.Panes(), (QStringList{QString(), u"p5"_s, QString(), u"Integer"_s}));
        QCOMPARE(on.Value(1).selectedText(), u"4"_s);
        on.Slider(2).setFocus(Qt::TabFocusReason);
        QCOMPARE(on.Value(1).selectedText(), QString());
        QCOMPARE(on.Panes().last(), u"Boolean"_s);
        on.Value(3).setFocus(Qt::TabFocusReason);
        QCOMPARE(on.Panes().last(), u"String"_s);
        // By keys: from a slider to its text, by the name's key to any text.
        on.Slider(0).setFocus();
        on.Key(Qt::Key_Tab);
        QCOMPARE(on.Focus(), &on.Value(0));
        on.Key(Qt::Key_T, Qt::AltModifier);
        QCOMPARE(on.Focus(), &on.Value(1));
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheSliderButtonFollowsTheKeyboard()
{
    Stating on;
    on.ShowSound([&] {
        QVERIFY(!on.Tool(u"slider"_s).isEnabled());
        on.Slider(1).setFocus();
        QVERIFY(on.Tool(u"slider"_s).isEnabled());
        QCOMPARE(on.Face(u"slider"_s).popupMode(), QToolButton::MenuButtonPopup);
        on.ExpectCiao();
        on.Press(u"slider"_s);
        on.desktop.CheckAllCame();
        QCOMPARE(on.Value(1).text(), u"0"_s);
        QCOMPARE(on.Focus(), &on.Slider(1));
        QVERIFY(on.Tool(u"slider"_s).isEnabled());
        on.Value(1).setFocus();
        QVERIFY(!on.Tool(u"slider"_s).isEnabled());
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheSliderMenuMovesTheSlider()
{
    Stating on;
    on.ShowSound([&] {
        on.Slider(1).setFocus();
        on.ExpectCiao();
        on.Choose(1);
        QCOMPARE(on.Slider(1).value(), 10);
        QCOMPARE(on.Value(1).text(), u"10"_s);
        on.ExpectCiao();
        on.Choose(0);
        QCOMPARE(on.Slider(1).value(), 0);
        QCOMPARE(on.Value(1).text(), u"0"_s);
        // The text follows even when the slider is there already.
        on.Value(1).setText(u"99"_s);
        on.Slider(1).setFocus();
        on.ExpectCiao();
        on.Choose(0);
        QCOMPARE(on.Value(1).text(), u"0"_s);
        QStringList seen;
        for (int i = 0; i < 12; ++i) {
            on.ExpectCiao();
            on.Choose(3);
            QCOMPARE(on.Value(1).text(), QString::number(on.Slider(1).value()));
            seen += on.Value(1).text();
        }
        seen.removeDuplicates();
        QVERIFY(seen.size() > 1);
        on.desktop.CheckAllCame();
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheSliderMenuNeedsASlider()
{
    Stating on;
    on.ShowSound([&] {
        on.Value(1).setFocus();
        on.ExpectCiao();
        on.Choose(0);
        QCOMPARE(on.Value(1).text(), u"4"_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheMouseOpensTheSliderMenu()
{
    Stating on;
    on.ShowSound([&] {
        QSlider &slider = on.Slider(1);
        QContextMenuEvent press(QContextMenuEvent::Mouse, slider.rect().center(),
                                slider.mapToGlobal(slider.rect().center()));
        QCoreApplication::sendEvent(&slider, &press);
        QCOMPARE(QApplication::activePopupWidget(), &on.SliderMenu());
        QCOMPARE(on.dialog->focusWidget(), &slider);
        QCOMPARE(on.Panes()[1], u"p5"_s);
        on.ExpectCiao();
        QTest::keyClick(&on.SliderMenu(), Qt::Key_Down);
        QTest::keyClick(&on.SliderMenu(), Qt::Key_Return);
        on.desktop.CheckAllCame();
        QCOMPARE(on.Value(1).text(), u"0"_s);
        QVERIFY(on.Tool(u"slider"_s).isEnabled());
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ANumberThatIsNoneIsReported()
{
    Stating on;
    on.Show([&] {
        on.ExpectReport(u"Overflow (6)"_s);
        on.Value(1).setText(u"1e999"_s);
        on.desktop.CheckAllCame();
        QCOMPARE(on.Value(1).text(), u"1e999"_s);
        on.Press(u"ok"_s);
    });
    QVERIFY(on.TextNow().contains(u"i1 1e999 2 .5"_s));
}

QByteArray OneField(const QByteArray &attributes)
{
    return "<instruments><instr number=\"1\"><p number=\"1\" format=\"1\" min=\"1\" max=\"9\"/>"
           "<p number=\"2\" name=\"Wide\" " +
           attributes + "/><p number=\"3\" format=\"1\" min=\"0\" max=\"20\"/></instr></instruments>";
}

void FrmInstrGuiTest::ARangeWithoutTicksIsReported()
{
    Stating on(Score, OneField("format=\"0\" min=\"0\" max=\"50\""));
    // The rows are there when the report comes.
    on.desktop.ExpectMessage(ErrorBox(u"Overflow (6)"_s), BoxAnswer::Cancel, [&] {
        on.dialog = on.window->findChild<frmInstrGUI *>();
        QCOMPARE(on.Rows().size(), 8);
    });
    on.Show([&] {
        on.desktop.CheckAllCame();
        QCOMPARE(on.Rows()[1], u"&Wide: 0 50000 0 0 "_s);
        QCOMPARE(on.Slider(2).tickInterval(), 1);
        on.Value(1).setFocus();
        on.Key(Qt::Key_PageUp);
        QCOMPARE(on.Value(1).text(), u"5"_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ARangeWithoutAScaleDoesNotMove()
{
    Stating on(Score, OneField("format=\"0\" min=\"0\" max=\"7000\""));
    on.Show([&] {
        QCOMPARE(on.Rows()[1], u"&Wide: 0 0 0 0 "_s);
        on.Value(1).setFocus();
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Value(1).text(), u"0"_s);
        on.Slider(1).setFocus();
        on.ExpectCiao();
        on.ExpectReport(u"Division by zero (11)"_s);
        on.Choose(0);
        on.desktop.CheckAllCame();
        QCOMPARE(on.Value(1).text(), u"0"_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::BoundsThatAreTooLargeAreReported()
{
    Stating on(Score, OneField("format=\"1\" min=\"0\" max=\"1E+20\""));
    on.ExpectReport(u"Overflow (6)"_s);
    on.Show([&] {
        on.desktop.CheckAllCame();
        QCOMPARE(on.Rows()[1], u"&Wide: 0 0 0 0 "_s);
        QCOMPARE(on.Rows()[2], u"p3: 0 20 2 2 "_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::GroupsKeepWhatWasTyped()
{
    Stating on;
    on.Show([&] {
        on.Type(u"1.5"_s);
        on.Groups().setCurrentIndex(1);
        on.Value(0).setText(u".75"_s);
        on.Groups().setCurrentIndex(0);
        QCOMPARE(on.Value(1).text(), u"1.5"_s);
        QCOMPARE(on.Slider(1).value(), 150);
        on.Groups().setCurrentIndex(1);
        QCOMPARE(on.Value(0).text(), u".75"_s);
        on.Press(u"ok"_s);
    });
    QVERIFY(on.TextNow().contains(u"\ni1 1.5 2 .75 4 0 \"a b\" 9\n"_s));
}

void FrmInstrGuiTest::TheListShowsAll()
{
    Stating on;
    on.ShowSound([&] {
        on.Value(1).setFocus();
        on.Type(u"12"_s);
        on.Press(u"sort"_s);
        QVERIFY(on.Tool(u"sort"_s).isChecked());
        QVERIFY(on.List().isVisible());
        QVERIFY(!on.Groups().isEnabled());
        QCOMPARE(on.Rows(), QStringList());
        const QTreeWidgetItem &header = *on.List().headerItem();
        QCOMPARE(
            (QStringList{header.text(0), header.text(1), header.text(2), header.text(3), header.text(4)}),
            (QStringList{u"Name"_s, u"p-Field"_s, u"Value"_s, u"Unit"_s, u"Group"_s}));
        QCOMPARE(on.Listed(), (QStringList{u"Number|p1|1||Built-in"_s, u"Start|p2|0|Beats|Built-in"_s,
                                           u"Duration|p3|2|Beats|Built-in"_s, u"Amp|p4|.5|0dbfs|Sound"_s,
                                           u"Tone|p5|12||Sound"_s, u"Mute|p6|0||Sound"_s,
                                           u"File|p7|\"a b\"||Sound"_s, u"|p8|9||"_s}));
        const QBrush grey = on.dialog->palette().brush(QPalette::Disabled, QPalette::Text);
        QCOMPARE(on.List().topLevelItem(2)->foreground(0), grey);
        QVERIFY(on.List().topLevelItem(3)->foreground(0) != grey);
        // The field that had the keyboard.
        QCOMPARE(on.List().selectedItems(), QList<QTreeWidgetItem *>{on.List().topLevelItem(4)});
        QCOMPARE(on.List().topLevelItem(4)->toolTip(1), u"Double-click to jump to selected item."_s);
        QCOMPARE(on.List().topLevelItem(3)->toolTip(1), QString());

        const QRect third = on.List().visualItemRect(on.List().topLevelItem(3));
        QTest::mouseClick(on.List().viewport(), Qt::LeftButton, {}, third.center());
        QCOMPARE(on.Panes(), (QStringList{u"How loud"_s, u"p4"_s, u"iamp"_s, u"Real"_s}));
        QCOMPARE(on.List().topLevelItem(3)->toolTip(0), u"Double-click to jump to selected item."_s);
        QCOMPARE(on.List().topLevelItem(4)->toolTip(0), QString());
        on.Press(u"ok"_s);
    });
    QVERIFY(on.TextNow().contains(u"\ni1 0 2 .5 12 0 \"a b\" 9\n"_s));
}

void FrmInstrGuiTest::TheListJumpsToAField()
{
    Stating on;
    on.Show([&] {
        on.Press(u"sort"_s);
        const QPoint place = on.List().visualItemRect(on.List().topLevelItem(4)).center();
        QTest::mouseClick(on.List().viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(on.List().viewport(), Qt::LeftButton, {}, place);
        QVERIFY(!on.Tool(u"sort"_s).isChecked());
        QVERIFY(!on.List().isVisible());
        QVERIFY(on.Groups().isEnabled());
        QCOMPARE(on.Groups().currentText(), u"Sound"_s);
        QCOMPARE(on.Focus(), &on.Value(1));
        QCOMPARE(on.Value(1).selectedText(), u"4"_s);
        QCOMPARE(on.Panes()[1], u"p5"_s);
        // By keys, to one without a group.
        on.Key(Qt::Key_L, Qt::ControlModifier);
        QCOMPARE(on.Focus(), &on.List());
        on.Key(Qt::Key_End);
        QCOMPARE(on.Panes()[1], u"p8"_s);
        on.Key(Qt::Key_Return);
        QCOMPARE(on.Groups().currentText(), u"No Group"_s);
        QCOMPARE(on.Focus(), &on.Value(0));
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheListIsLeftByItsButton()
{
    Stating on;
    on.ShowSound([&] {
        on.Press(u"sort"_s);
        on.Press(u"sort"_s);
        QVERIFY(!on.List().isVisible());
        QCOMPARE(on.List().topLevelItemCount(), 0);
        QVERIFY(on.Groups().isEnabled());
        QCOMPARE(on.Rows().size(), 4);
        on.Press(u"delete"_s);
    });
}

void FrmInstrGuiTest::OkWritesTheStatement()
{
    Stating on;
    const QString before = on.TextNow();
    on.ShowSound([&] {
        on.Value(0).setText(u".25"_s);
        on.Value(3).setText(u"\"other name\""_s);
        on.Press(u"ok"_s);
    });
    QVERIFY(on.TextNow().contains(u"\ni1 0 2 .25 4 0 \"other name\" 9\ni2"_s));
    QVERIFY(on.Row(u"mnuUndo"_s).isEnabled());
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), before);
}

void FrmInstrGuiTest::EnterWritesAndEscapeDoesNot()
{
    Stating on;
    const QString before = on.TextNow();
    on.Show([&] {
        on.Type(u"7"_s);
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.TextNow(), before);
    on.Show([&] {
        on.Type(u"7"_s);
        on.Press(u"delete"_s);
    });
    QCOMPARE(on.TextNow(), before);
    on.Show([&] {
        on.Type(u"7"_s);
        on.Key(Qt::Key_Return);
    });
    QVERIFY(on.TextNow().contains(u"\ni1 7 2 .5"_s));
}

void FrmInstrGuiTest::TheLastPFieldStays()
{
    Stating on;
    const QString before = on.TextNow();
    on.Show([&] {
        on.Groups().setCurrentIndex(2);
        on.Value(0).setText(u"100"_s);
        on.Press(u"ok"_s);
    });
    QCOMPARE(on.TextNow(), before);
}

void FrmInstrGuiTest::ALongValueStaysWhole()
{
    const QByteArray word = '"' + QByteArray(100000, 'x') + "\n \"";
    Stating on("i1 0 2 " + word + " 9\n");
    on.Text().SetSelection(0, 0);
    const QString before = on.TextNow();
    on.Show([&] {
        on.Groups().setCurrentIndex(1);
        QCOMPARE(on.Value(0).text(), QString::fromLatin1(word));
        on.Press(u"ok"_s);
    });
    QCOMPARE(on.TextNow(), before);
}

void FrmInstrGuiTest::PastedLineEndsBecomeBlanks()
{
    Stating on("i1 0 2 .5 4 0 \"a\n b\" 9\n");
    on.Text().SetSelection(0, 0);
    QGuiApplication::clipboard()->setText(u"440\ni9 0\u20281"_s);
    on.ShowSound([&] {
        on.Value(0).setFocus();
        on.Key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(on.Value(0).text(), u"440 i9 0 1"_s);
        // A value's own line end stays, also where the value is edited.
        on.Value(3).setFocus();
        on.Key(Qt::Key_Home);
        on.Key(Qt::Key_Right);
        on.Key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(on.Value(3).text(), u"\"440 i9 0 1a\n b\""_s);
        on.Key(Qt::Key_End);
        on.Key(Qt::Key_Backspace);
        on.Key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(on.Value(3).text(), u"\"440 i9 0 1a\n b440 i9 0 1"_s);
        on.Type(u"\""_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"i1 0 2 440 i9 0 1 4 0 \"440 i9 0 1a\n b440 i9 0 1\" 9\n"_s);
}

void FrmInstrGuiTest::PropertiesCloseTheDialog()
{
    Stating on;
    bool shown = false;
    on.window->CommandTable().Bind(Cmd::mnuInstrEdit, [&] {
        shown = true;
        QVERIFY(!on.dialog->isVisible());
    });
    const QString before = on.TextNow();
    on.Show([&] {
        on.Type(u"7"_s);
        on.Press(u"instr"_s);
    });
    QVERIFY(shown);
    QCOMPARE(on.TextNow(), before);
}

void FrmInstrGuiTest::RandomValuesAreAnOperation()
{
    Stating on;
    on.Show([&] {
        on.dialog->GetPValues();
        on.Press(u"sort"_s);
        const double tone = on.List().topLevelItem(4)->text(2).toDouble();
        QVERIFY(tone >= -10 && tone < 30);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ManyRowsScroll()
{
    Stating on("i5 0 1 " + QByteArray("2 ").repeated(996) + "3\n");
    on.Text().SetSelection(0, 0);
    on.Show([&] {
        QCOMPARE(on.Rows().size(), 1000);
        QVERIFY(on.dialog->height() <= on.dialog->screen()->availableSize().height());
        // Toolbar and panes stay in view, and the row of the keyboard comes into it.
        QVERIFY(on.dialog->rect().contains(on.Face(u"ok"_s).geometry()));
        const QWidget &panes = on.Of<QWidget>(u"picStatus"_s);
        QVERIFY(on.dialog->rect().contains(panes.geometry()));
        on.Value(999).setFocus(Qt::TabFocusReason);
        QVERIFY(!on.Value(999).visibleRegion().isEmpty());
        QVERIFY(on.Value(0).visibleRegion().isEmpty());
        on.Value(998).setText(u"44"_s);
        on.Press(u"ok"_s);
    });
    QVERIFY(on.TextNow().endsWith(u" 2 44 3\n"_s));
}

void FrmInstrGuiTest::NamesAreShownAsTheyAre()
{
    Stating on(Score,
               OneField("description=\"&lt;b>bold&lt;/b>\" group=\"&lt;i>\" unit=\"&lt;u>x\" format=\"0\""));
    on.Show([&] {
        QVERIFY(on.Groups().findText(u"<i>"_s) > 0);
        on.Groups().setCurrentIndex(1);
        QVERIFY(on.Name(0).toolTip().contains(u"&lt;b&gt;bold"_s));
        QCOMPARE(on.Unit(0).textFormat(), Qt::PlainText);
        QCOMPARE(on.Name(0).textFormat(), Qt::PlainText);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheEndOfTheSessionAsksAboutChanges()
{
    Stating on;
    const QString before = on.TextNow();
    const auto expectQuestion = [&](BoxAnswer answer) {
        on.desktop.ExpectMessage({.text = u"The changes to the statement are not written. Discard them?"_s,
                                  .icon = BoxIcon::Warning,
                                  .buttons = BoxButtons::YesNo,
                                  .defaultAnswer = BoxAnswer::No},
                                 answer);
    };
    on.Show([&] {
        on.Type(u"7"_s);
        expectQuestion(BoxAnswer::No);
        QVERIFY(!on.window->MayEndSession());
        QVERIFY(on.dialog->isVisible());
        expectQuestion(BoxAnswer::Yes);
        QVERIFY(on.window->MayEndSession());
        QVERIFY(!on.dialog->isVisible());
    });
    on.ShowSound([&] { QVERIFY(on.window->MayEndSession()); });
    on.desktop.CheckAllCame();
    QCOMPARE(on.TextNow(), before);
}

void FrmInstrGuiTest::ANameIsWholeInTheCaption()
{
    Stating on(Score,
               "<instruments><instr number=\"1\" name=\"a[*]b\"><p number=\"1\"/></instr></instruments>");
    on.Show([&] {
        QCOMPARE(on.dialog->windowHandle()->title(), u"Instrument 1 - a[*]b"_s);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::AHeldEnterWritesNothing()
{
    Stating on;
    on.Show([&] {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &held);
        QVERIFY(on.dialog->isVisible());
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ALongGroupStaysInView()
{
    Stating on(Score, OneField("group=\"" + QByteArray(2000, 'g') + "\" format=\"0\""));
    on.Show([&] {
        on.Groups().setCurrentIndex(1);
        QVERIFY(on.dialog->width() <= on.dialog->screen()->availableSize().width());
        QCOMPARE(on.Groups().currentText(), QString(2000, u'g'));
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheKeyboardComesBackFromTheList()
{
    Stating on;
    on.ShowSound([&] {
        on.Slider(1).setFocus();
        on.Key(Qt::Key_L, Qt::ControlModifier);
        QCOMPARE(on.Focus(), &on.List());
        on.Key(Qt::Key_Home);
        on.Key(Qt::Key_L, Qt::ControlModifier);
        QCOMPARE(on.Focus(), &on.Value(1));
        QCOMPARE(on.Panes()[1], u"p5"_s);
        QCOMPARE(on.Value(1).selectedText(), u"4"_s);
        // To a row whose text cannot be changed: the first that can.
        on.Groups().setCurrentIndex(0);
        on.Key(Qt::Key_L, Qt::ControlModifier);
        on.Key(Qt::Key_Home);
        on.Key(Qt::Key_Return);
        QVERIFY(!on.List().isVisible());
        QCOMPARE(on.Focus(), &on.Value(1));
        QCOMPARE(on.Panes()[1], u"p2"_s);
        on.Type(u"6"_s);
        on.Key(Qt::Key_Return);
    });
    QVERIFY(on.TextNow().contains(u"\ni1 6 2 .5 4 0"_s));
}

void FrmInstrGuiTest::KeysOfAStringDoNotScroll()
{
    QByteArray fields;
    for (int number = 1; number <= 200; ++number)
        fields += "<p number=\"" + QByteArray::number(number) + "\" format=\"3\"/>";
    Stating on(Score, "<instruments><instr number=\"1\">" + fields + "</instr></instruments>");
    on.Show([&] {
        QCOMPARE(on.Rows().size(), 200);
        on.Value(150).setFocus(Qt::TabFocusReason);
        QScrollBar &bar = *on.Of<QScrollArea>(u"picRows"_s).verticalScrollBar();
        const int place = bar.value();
        QVERIFY(place > 0);
        on.Key(Qt::Key_Up);
        on.Key(Qt::Key_PageUp);
        QCOMPARE(bar.value(), place);
        QCOMPARE(on.Focus(), &on.Value(150));
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::ACutTextIsToldAsItIs()
{
    const QByteArray text = "&lt;b>bold&lt;/b>" + QByteArray(500, 'x');
    Stating on(Score,
               OneField("description=\"" + text + "\" group=\"G\" unit=\"" + text + "\" format=\"0\""));
    on.Show([&] {
        on.Groups().setCurrentIndex(1);
        on.Value(0).setFocus(Qt::TabFocusReason);
        QLabel &pane = on.Of<QLabel>(u"lblStatus_0"_s);
        for (QLabel *label : {&on.Unit(0), &pane}) {
            QVERIFY(label->text().startsWith(u"<b>bold</b>x"_s));
            label->grab();
            QVERIFY(label->toolTip().contains(u"&lt;b&gt;bold&lt;/b&gt;x"_s));
        }
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::LongPanesDoNotWidenTheDialog()
{
    const QByteArray text(2000, 'x');
    Stating on(Score, OneField("description=\"" + text + "\" variable=\"" + text + "\" format=\"0\""));
    on.Show([&] {
        const int width = on.dialog->width();
        on.Slider(1).setFocus(Qt::TabFocusReason);
        QCOMPARE(on.Panes()[0], QString(2000, u'x'));
        QCOMPARE(on.Panes()[2], QString(2000, u'x'));
        on.Groups().setCurrentIndex(1);
        on.Groups().setCurrentIndex(0);
        on.Press(u"sort"_s);
        on.Press(u"sort"_s);
        QCOMPARE(on.dialog->width(), width);
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::PanesTellOfTheKeyboardOnly()
{
    Stating on;
    on.ShowSound([&] {
        on.Value(0).setFocus(Qt::TabFocusReason);
        QCOMPARE(on.Panes()[1], u"p4"_s);
        // Its place is taken by the instrument's number, which cannot be changed.
        on.Groups().setCurrentIndex(0);
        QVERIFY(!on.Value(0).hasFocus());
        QVERIFY(on.Panes()[1] != u"p1"_s);
        QVERIFY(on.Focus() && on.Focus()->isEnabled() && on.Focus()->isVisible());
        on.Key(Qt::Key_Escape);
    });
}

void FrmInstrGuiTest::TheRealPropertiesTakeTheDialogsPlace()
{
    Stating on;
    const QString before = on.TextNow();
    on.Show([&] {
        on.driver.Expect<frmInstrEdit>([&](frmInstrEdit &properties) {
            QVERIFY(!on.dialog->isVisible());
            QVERIFY(properties.isModal());
            auto &tree = *properties.findChild<QTreeView *>(u"tvwInstrEdit"_s);
            QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                              tree.visualRect(tree.model()->index(0, 0)).center());
            auto &name = *properties.findChild<QLineEdit *>(u"TxtInsName"_s);
            QCOMPARE(name.text(), u"Bell"_s);
            name.setFocus();
            name.selectAll();
            on.Type(u"Gong"_s);
            on.Key(Qt::Key_Return);
        });
        on.Type(u"7"_s);
        on.Press(u"instr"_s);
        QVERIFY(!on.dialog->isVisible());
    });
    QCOMPARE(on.TextNow(), before);
    QVERIFY(on.Row(u"mnuInstrGUI"_s).isEnabled());
    on.Show([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Instrument 1 - Gong"_s);
        QCOMPARE(on.Rows()[1], u"&Start: 0 10000 0 0 Beats"_s);
        on.Key(Qt::Key_Escape);
    });
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<FrmInstrGuiTest>(argc, argv);
}

#include "test_frminstrgui.moc"
