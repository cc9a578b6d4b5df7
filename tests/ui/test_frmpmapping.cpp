// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog of the parameter mapping, by keys and mouse.

#include "instruments/ui/frmpmapping.h"
#include "platform/runtimeerror.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"

#include <functional>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A main window with an orchestra and its descriptions, and a script for the dialog.
struct Mapping : EditorWindow {
    ModalDriver driver;
    frmPMapping *dialog = nullptr;

    explicit Mapping(const QByteArray &orchestra = "instr 1\nendin\n")
    {
        WriteFile(u"song.xml"_s, "<instruments><instr number=\"1\">"
                                 "<p number=\"3\" name=\"Duration\" variable=\"idur\"/><p number=\"4\"/>"
                                 "</instr></instruments>");
        Open({WriteFile(u"song.orc"_s, orchestra)});
    }

    QString TextNow() { return Text().Text(); }
    QLineEdit &Number() { return *dialog->findChild<QLineEdit *>(u"txtNumber"_s); }
    QCheckBox &Box(const QString &name) { return *dialog->findChild<QCheckBox *>(name); }
    void Key(Qt::Key key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, held);
    }
    void Type(const QString &text)
    {
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_Delete);
        QTest::keyClicks(QApplication::focusWidget(), text);
    }
    /// Opens the dialog by its menu row; `script` has to end it.
    void Show(const std::function<void()> &script)
    {
        driver.Expect<frmPMapping>([this, script](frmPMapping &shown) {
            dialog = &shown;
            script();
        });
        QVERIFY(Row(u"mnuPMapping"_s).isEnabled());
        Row(u"mnuPMapping"_s).trigger();
        dialog = nullptr;
    }
    void ExpectWarning(const QString &text)
    {
        desktop.ExpectMessage({.text = text, .icon = BoxIcon::Warning});
    }
};

class PMappingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheDialogHasItsFields();
    void TheMouseMapsParameters();
    void KeysMapParameters();
    void MissingVariablesAreAskedFor();
    void ABadNumberStays();
    void AnInstrumentWithoutDataStays();
    void AFailureIsReported();
    void EscapeWritesNothing();
    void TheRowFollowsTheKind();
};

void PMappingTest::TheDialogHasItsFields()
{
    Mapping on;
    on.Show([&] {
        QVERIFY(on.dialog->isModal());
        QCOMPARE(on.dialog->windowTitle(), u"p-Fields Mapping"_s);
        QCOMPARE(on.Number().toolTip(), u"Instrument number."_s);
        QStringList labels;
        for (const QLabel *label : on.dialog->findChildren<QLabel *>())
            labels += label->text() + u'|' + label->buddy()->objectName();
        QCOMPARE(labels, QStringList{u"&Instrument #:|txtNumber"_s});
        QCOMPARE(on.Box(u"chkComment"_s).text(), u"Add descriptive &comments"_s);
        QCOMPARE(on.Box(u"chkComment"_s).toolTip(), u"Uses the parameter description field."_s);
        QCOMPARE(on.Box(u"chkAsk"_s).text(), u"Ask missing variable names"_s);
        QCOMPARE(on.Box(u"chkAsk"_s).toolTip(),
                 u"Display an input box if the variable name has not been specified."_s);
        QCOMPARE(QApplication::focusWidget(), &on.Number());
        QCOMPARE(on.Number().selectedText(), u"1"_s);

        QStringList names;
        for (int i = 0; i < 5; ++i) {
            names += QApplication::focusWidget()->objectName();
            on.Key(Qt::Key_Tab);
        }
        QCOMPARE(names, (QStringList{u"txtNumber"_s, u"chkComment"_s, u"chkAsk"_s, u"bOK"_s, u"bCancel"_s}));

        QTest::mouseClick(on.dialog->findChild<QWidget *>(u"VScroll1"_s)->findChild<QToolButton *>(u"up"_s),
                          Qt::LeftButton);
        QCOMPARE(on.Number().text(), u"2"_s);
        on.Key(Qt::Key_Down);
        on.Key(Qt::Key_Down);
        QCOMPARE(on.Number().text(), u"1"_s);
        const std::pair<QString, QString> steps[] = {
            {u"32766"_s, u"32767"_s}, {u"32767"_s, u"32767"_s}, {u"abc"_s, u"1"_s}, {QString(), u"1"_s}};
        for (const auto &[text, up] : steps) {
            on.Type(text);
            on.Key(Qt::Key_Up);
            QCOMPARE(on.Number().text(), up);
        }
        on.Key(Qt::Key_Escape);
    });
}

void PMappingTest::TheMouseMapsParameters()
{
    Mapping on;
    on.Show([&] {
        QTest::mouseClick(on.dialog->findChild<QPushButton *>(u"bOK"_s), Qt::LeftButton);
        QVERIFY(!on.dialog->isVisible());
    });
    const QString mapped =
        u"instr 1\n;<ZelvaneParameterMapping>\nidur = p3\n;</ZelvaneParameterMapping>\nendin\n"_s;
    QCOMPARE(on.TextNow(), mapped);
    // The block is coloured for what it is.
    QCOMPARE(on.Text().StyleAt(mapped.indexOf(u";<"_s)), StyleClass::Comment);
    QCOMPARE(on.Text().StyleAt(mapped.indexOf(u"idur"_s)), StyleClass::Text);
    QCOMPARE(on.Text().StyleAt(mapped.indexOf(u";</"_s)), StyleClass::Comment);
    on.Text().Undo();
    QCOMPARE(on.TextNow(), u"instr 1\nendin\n"_s);
    QVERIFY(!on.Text().CanUndo());
}

void PMappingTest::KeysMapParameters()
{
    Mapping on("instr 1\n;<ZelvaneParameterMapping>\nx\n;</ZelvaneParameterMapping>\nendin\n");
    on.Show([&] {
        on.Key(Qt::Key_C, Qt::AltModifier);
        QTRY_VERIFY(on.Box(u"chkComment"_s).isChecked()); // a moment after its key
        on.Key(Qt::Key_I, Qt::AltModifier);
        QCOMPARE(QApplication::focusWidget(), &on.Number());
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"instr 1\n;<ZelvaneParameterMapping>\nidur = p3   ; Duration.\n"
                           ";</ZelvaneParameterMapping>\nendin\n"_s);
}

void PMappingTest::MissingVariablesAreAskedFor()
{
    Mapping on;
    on.desktop.ExpectInput(u"Missing variable name"_s,
                           u"Specify a variable name for p4.\n(must begin with letter i)"_s, u"ipch"_s);
    on.Show([&] {
        QTest::mouseClick(&on.Box(u"chkAsk"_s), Qt::LeftButton, {},
                          QPoint(8, on.Box(u"chkAsk"_s).height() / 2));
        QVERIFY(on.Box(u"chkAsk"_s).isChecked());
        on.Key(Qt::Key_Return);
    });
    on.desktop.CheckAllCame();
    QVERIFY(on.TextNow().contains(u"\nidur = p3\nipch = p4\n;"_s));
}

void PMappingTest::ABadNumberStays()
{
    Mapping on;
    on.Show([&] {
        for (const QString &number : {u"abc"_s, QString()}) {
            on.Type(number);
            on.Key(Qt::Key_Tab);
            on.ExpectWarning(u"Specify an instrument number or press Cancel."_s);
            on.Key(Qt::Key_Return);
            on.desktop.CheckAllCame();
            QVERIFY(on.dialog->isVisible());
            QCOMPARE(QApplication::focusWidget(), &on.Number());
            QCOMPARE(on.Number().selectedText(), number);
        }
        QTest::mouseClick(on.dialog->findChild<QPushButton *>(u"bCancel"_s), Qt::LeftButton);
    });
    QCOMPARE(on.TextNow(), u"instr 1\nendin\n"_s);
}

void PMappingTest::AnInstrumentWithoutDataStays()
{
    Mapping on;
    on.Show([&] {
        on.Type(u"7"_s);
        on.ExpectWarning(u"Cannot find instrument data. Use the Instrument Properties dialog box before "
                         "running this command."_s);
        on.Key(Qt::Key_Return);
        on.desktop.CheckAllCame();
        QVERIFY(on.dialog->isVisible());
        on.Key(Qt::Key_Escape);
    });
}

void PMappingTest::AFailureIsReported()
{
    Mapping on("instr 5\nendin\n");
    on.Show([&] {
        on.desktop.ExpectMessage(
            ErrorBox(RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s)),
            BoxAnswer::Cancel);
        on.Key(Qt::Key_Return);
        on.desktop.CheckAllCame();
        QVERIFY(on.dialog->isVisible());
        on.Type(u"99999"_s);
        on.desktop.ExpectMessage(ErrorBox(RunTimeError(ErrorNumber::Overflow, u"Overflow"_s)),
                                 BoxAnswer::Cancel);
        on.Key(Qt::Key_Return);
        on.desktop.CheckAllCame();
        QVERIFY(on.dialog->isVisible());
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.TextNow(), u"instr 5\nendin\n"_s);
    QVERIFY(!on.Text().CanUndo());
}

void PMappingTest::EscapeWritesNothing()
{
    Mapping on;
    on.Show([&] { on.Key(Qt::Key_Escape); });
    QCOMPARE(on.TextNow(), u"instr 1\nendin\n"_s);
}

void PMappingTest::TheRowFollowsTheKind()
{
    Mapping on;
    for (const auto &[name, enabled] :
         {std::pair(u"a.csd"_s, true), {u"a.sco"_s, false}, {u"a.txt"_s, false}, {u"a.orc"_s, true}}) {
        on.Open({on.WriteFile(name, "x\n")});
        QCOMPARE(on.Row(u"mnuPMapping"_s).isEnabled(), enabled);
    }
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<PMappingTest>(argc, argv);
}

#include "test_frmpmapping.moc"
