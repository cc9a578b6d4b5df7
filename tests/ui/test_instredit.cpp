// SPDX-License-Identifier: GPL-3.0-or-later
// The Instrument Properties dialog, by keys and by the mouse.

#include "instruments/ui/frminstredit.h"
#include "platform/desktop.h"
#include "platform/textbuffer.h"
#include "support/boxes.h"
#include "support/dialogwindow.h"
#include "support/filebytes.h"
#include "support/largefont.h"
#include "support/uitest.h"

#include <functional>
#include <optional>
#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDebug>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRect>
#include <QScreen>
#include <QSet>
#include <QStackedWidget>
#include <QStringList>
#include <QToolButton>
#include <QTreeView>
#include <tuple>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const QByteArray TwoInstruments =
    "<instruments>\n<instr number=\"1\" name=\"Pad\" description=\"slow\">\n"
    "<p number=\"1\" name=\"Number\" group=\"Built-in\" format=\"1\" min=\"1\" max=\"200\"/>\n"
    "<p number=\"2\" format=\"0\" min=\".5\" max=\"0\"/>\n"
    "<p number=\"3\" name=\"Amp\" description=\"loudness\" group=\"Tone\" format=\"2\" min=\"0\" max=\"1\" "
    "unit=\"Db\" variable=\"iamp\"/>\n</instr>\n<instr number=\"7\"/>\n</instruments>\n";

/// A main window with a unified file whose tag holds a store, and a script for the dialog.
struct Editing : DialogWindow<frmInstrEdit> {
    explicit Editing(const QByteArray &store = TwoInstruments)
    {
        Open({WriteFile(u"song.csd"_s,
                        "<CsoundSynthesizer>\n</CsoundSynthesizer>\n<Zelvane>\n" + store + "</Zelvane>\n")});
    }

    /// Opens the dialog by its menu row; `script` has to end it.
    void Show(const std::function<void()> &script) { ShowBy(u"mnuInstrEdit"_s, script); }
    QTreeView &Tree() { return *dialog->findChild<QTreeView *>(u"tvwInstrEdit"_s); }
    QLineEdit &Field(const QString &name) { return *dialog->findChild<QLineEdit *>(name); }
    QComboBox &List(const QString &name) { return *dialog->findChild<QComboBox *>(name); }
    QAction &Tool(const QString &key) { return *dialog->findChild<QAction *>(u"tlbInstrEdit_"_s + key); }
    QWidget *Focus() { return QApplication::focusWidget(); }

    /// All rows that are seen, each p-field behind two blanks; the chosen one is marked.
    QStringList Rows()
    {
        QStringList rows;
        for (QModelIndex row = Tree().model()->index(0, 0); row.isValid(); row = Tree().indexBelow(row))
            rows += (row.parent().isValid() ? u"  "_s : QString()) + row.data().toString() +
                    (Tree().selectionModel()->isSelected(row) && Tree().currentIndex() == row ? u" <"_s
                                                                                              : QString());
        return rows;
    }
    QModelIndex Node(int instrument, int field = -1)
    {
        const QModelIndex root = Tree().model()->index(instrument, 0);
        return field < 0 ? root : Tree().model()->index(field, 0, root);
    }
    void Click(const QModelIndex &node)
    {
        QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(node).center());
    }
    void Press(const QString &key)
    {
        auto *button = dialog->findChild<QToolButton *>(u"tlbInstrEdit_"_s + key);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    void Put(const QString &name, const QString &text)
    {
        Field(name).setFocus();
        QTest::keyClick(Focus(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(Focus(), Qt::Key_Delete);
        QTest::keyClicks(Focus(), text);
    }
    void Ok() { QTest::keyClick(Focus(), Qt::Key_Return); }
    void Cancel() { QTest::keyClick(Focus(), Qt::Key_Escape); }
    void ExpectReport(const QString &error)
    {
        desktop.ExpectMessage({.text = u"An error has occurred:\n\n"_s + error +
                                       u"\nError source: Zelvane\n\nDo you want to report this bug via "
                                       "email?"_s,
                               .icon = BoxIcon::Critical,
                               .buttons = BoxButtons::OkCancel},
                              BoxAnswer::Cancel);
    }
    void ExpectWarning(const QString &text)
    {
        desktop.ExpectMessage({.text = text, .icon = BoxIcon::Warning});
    }
    void ExpectNumber(const std::optional<QString> &answer)
    {
        desktop.ExpectInput(u"New instrument"_s, u"Type instrument number."_s, answer);
    }
    QString Store()
    {
        const QString text = Text().Text();
        return text.section(u"<Zelvane>\n"_s, 1).section(u"</Zelvane>"_s, 0, 0);
    }
    /// The page that is shown: its fields in their order.
    QStringList Page()
    {
        QStringList values;
        auto *pages = dialog->findChild<QStackedWidget *>(u"fraP"_s);
        for (const QLabel *label : pages->currentWidget()->findChildren<QLabel *>()) {
            QWidget *field = label->buddy();
            auto *list = qobject_cast<QComboBox *>(field);
            values += list ? list->currentText() : qobject_cast<QLineEdit *>(field)->text();
        }
        return values;
    }
};

class InstrEditTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FieldsHaveTheirWords();
    void TheDialogFitsTheScreen();
    void TheTreeShowsTheStore();
    void AnEmptyStoreHasEmptyPages();
    void ANodeShowsItsPage();
    void ListsGoOnFromWhatIsShown();
    void APageIsKeptWhenItsNodeIsLeft();
    void APageThatIsNotValidKeepsItsNode();
    void KeysWalkThroughTheTree();
    void TabGoesThroughThePage();
    void LabelsHaveTheirKeys();
    void AnInstrumentIsAdded();
    void AFieldIsAdded();
    void AFieldWhoseKeyIsTakenIsReported();
    void AFieldIsMoved();
    void CommandsLeaveTheKeyboardInItsField();
    void TheKeyboardGoesToTheTreeWithTheLastInstrument();
    void AFieldIsRemoved();
    void AnInstrumentIsRemovedOnRequest();
    void NothingIsStoredBeforeOk();
    void OkThatFailsKeepsTheDialog();
    void TheEndOfTheSessionAsksAboutChanges();
    void ALongTextIsShownWhole();
    void WhatWasNotLoadedIsCopied();
    void WhatWasNotLoadedFromTheTagComesBackByUndo();
    void OkIsOneStepOfUndo();
    void OkLeavesTheViewWhereItIs();
    void OkThatCannotStoreTellsSo();
    void PastedLineEndsBecomeBlanks();
    void ThousandsOfInstrumentsAreQuick();
};

} // namespace

void InstrEditTest::FieldsHaveTheirWords()
{
    Editing editor;
    editor.Show([&] {
        QCOMPARE(editor.dialog->windowTitle(), u"Instrument Properties"_s);
        QStringList fields;
        const auto *pages = editor.dialog->findChild<QStackedWidget *>(u"fraP"_s);
        for (const QLabel *label :
             pages->widget(0)->findChildren<QLabel *>() + pages->widget(1)->findChildren<QLabel *>())
            fields += label->text() + u'|' + label->buddy()->objectName() + u'|' + label->buddy()->toolTip();
        QCOMPARE(
            fields,
            (QStringList{
                u"&Name:|TxtInsName|Instrument name."_s,
                u"&Description:|TxtInsDesc|Instrument description."_s,
                u"&Number:|TxtInsNumber|Instrument number."_s, u"&Name:|txtName|Parameter name."_s,
                u"&Description:|txtDescription|Parameter description."_s,
                u"Group:|cmbGroup|Use this property to organize parameters in different groups. Case "
                "insensitive."_s,
                u"&Min:|txtMin|Minimum value for the parameter."_s,
                u"Ma&x:|txtMax|Maximum value for the parameter."_s,
                u"&Format:|cmbFormat|Specify if the parameter is a real number, an integer, a boolean value "
                "or a string."_s,
                u"Measure &unit:|cmbUnit|Specify the measure unit for the parameter. This is only a "
                "\"cosmetic\" property."_s,
                u"&Variable name:|txtVar|This field is required for automatic p-fields mapping."_s}));
        QStringList formats;
        for (int row = 0; row < editor.List(u"cmbFormat"_s).count(); ++row)
            formats += editor.List(u"cmbFormat"_s).itemText(row);
        QCOMPARE(formats, (QStringList{u"Real"_s, u"Integer"_s, u"Boolean"_s, u"String"_s}));
        QVERIFY(!editor.List(u"cmbFormat"_s).isEditable());
        QStringList units;
        for (int row = 0; row < editor.List(u"cmbUnit"_s).count(); ++row)
            units += editor.List(u"cmbUnit"_s).itemText(row);
        QCOMPARE(units, (QStringList{u"sec"_s, u"ms"_s, u"Hz"_s, u"pch"_s, u"oct"_s, u"Db"_s, u"%"_s, u"‰"_s,
                                     u"°"_s}));
        editor.Cancel();
    });
}

void InstrEditTest::TheDialogFitsTheScreen()
{
    const LargeFont font(1.25);
    Editing on;
    on.Show([&on] {
        const QRect place = on.dialog->frameGeometry();
        QVERIFY2(on.dialog->screen()->availableGeometry().contains(place),
                 qPrintable(QDebug::toString(place)));
        on.dialog->reject();
    });
}

void InstrEditTest::TheTreeShowsTheStore()
{
    Editing editor;
    editor.Show([&] {
        QCOMPARE(editor.Rows(), (QStringList{u"[instr 1] Pad <"_s, u"  [p1] Number"_s, u"  [p2] "_s,
                                             u"  [p3] Amp"_s, u"[instr 7]"_s}));
        QCOMPARE(editor.Page(), (QStringList{u"Pad"_s, u"slow"_s, u"1"_s}));
        QCOMPARE(editor.Focus(), &editor.Tree());
        QStringList groups;
        for (int row = 0; row < editor.List(u"cmbGroup"_s).count(); ++row)
            groups += editor.List(u"cmbGroup"_s).itemText(row);
        QCOMPARE(groups, (QStringList{u"Built-in"_s, u"Tone"_s}));
        editor.Cancel();
    });
}

void InstrEditTest::AnEmptyStoreHasEmptyPages()
{
    Editing editor("");
    editor.Show([&] {
        QCOMPARE(editor.Rows(), QStringList());
        QCOMPARE(editor.Page(), (QStringList{{}, {}, {}}));
        QVERIFY(editor.Tool(u"instr"_s).isEnabled());
        for (const QString &key : {u"label"_s, u"delete"_s, u"up"_s, u"down"_s})
            QVERIFY2(!editor.Tool(key).isEnabled(), qPrintable(key));
        QTest::keyClick(&editor.Tree(), Qt::Key_Delete);
        editor.Ok();
    });
    QCOMPARE(editor.Store(), u"<instruments/>\n"_s);
}

void InstrEditTest::ANodeShowsItsPage()
{
    Editing editor;
    editor.Show([&] {
        QVERIFY(!editor.Tool(u"up"_s).isEnabled() && !editor.Tool(u"down"_s).isEnabled());
        editor.Click(editor.Node(0, 2));
        QCOMPARE(editor.Page(), (QStringList{u"Amp"_s, u"loudness"_s, u"Tone"_s, u"0"_s, u"1"_s, u"Boolean"_s,
                                             u"Db"_s, u"iamp"_s}));
        QVERIFY(editor.Tool(u"up"_s).isEnabled() && !editor.Tool(u"down"_s).isEnabled());
        editor.Click(editor.Node(0, 0));
        QVERIFY(!editor.Tool(u"up"_s).isEnabled() && editor.Tool(u"down"_s).isEnabled());
        editor.Click(editor.Node(0, 1));
        QCOMPARE(editor.Page(), (QStringList{{}, {}, {}, u".5"_s, u"0"_s, u"Real"_s, {}, {}}));
        QVERIFY(editor.Tool(u"up"_s).isEnabled() && editor.Tool(u"down"_s).isEnabled());
        editor.Click(editor.Node(1));
        QCOMPARE(editor.Page(), (QStringList{{}, {}, u"7"_s}));
        editor.Cancel();
    });
}

void InstrEditTest::ListsGoOnFromWhatIsShown()
{
    Editing editor;
    editor.Show([&] {
        editor.Click(editor.Node(0, 2));
        for (const auto &[name, shown, next] :
             {std::tuple{u"cmbUnit"_s, u"Db"_s, u"%"_s}, std::tuple{u"cmbGroup"_s, u"Tone"_s, u"Tone"_s}}) {
            QComboBox &list = editor.List(name);
            QCOMPARE(list.currentText(), shown);
            list.setFocus();
            QTest::keyClick(&list, Qt::Key_Down);
            QCOMPARE(list.currentText(), next);
        }
        // What is in no list begins at its first row.
        editor.Click(editor.Node(0, 1));
        QComboBox &units = editor.List(u"cmbUnit"_s);
        QCOMPARE(units.currentText(), QString());
        units.setFocus();
        QTest::keyClick(&units, Qt::Key_Down);
        QCOMPARE(units.currentText(), u"sec"_s);
        editor.Cancel();
    });
}

void InstrEditTest::APageIsKeptWhenItsNodeIsLeft()
{
    Editing editor;
    editor.Show([&] {
        editor.Put(u"TxtInsName"_s, u"Lead"_s);
        editor.Put(u"TxtInsNumber"_s, u"3"_s);
        editor.Click(editor.Node(0, 1));
        QCOMPARE(editor.Rows().first(), u"[instr 3] Lead"_s);
        editor.Put(u"txtName"_s, u"Start <&\"'?>"_s);
        editor.Put(u"txtMin"_s, u"text"_s);
        editor.List(u"cmbFormat"_s).setFocus();
        QTest::keyClick(editor.Focus(), Qt::Key_Down);
        editor.Ok();
    });
    QVERIFY(editor.Store().startsWith(
        u"<instruments>\n<instr number=\"3\" name=\"Lead\" description=\"slow\">\n"_s));
    QVERIFY(editor.Store().contains(
        u"<p number=\"2\" name=\"Start &lt;&amp;&quot;&#39;&#63;&gt;\" format=\"1\" min=\"0\" max=\"0\"/>\n"_s));
    // Read again it is what was typed.
    editor.Show([&] {
        QCOMPARE(editor.Rows().at(2), u"  [p2] Start <&\"'?>"_s);
        editor.Cancel();
    });
}

void InstrEditTest::APageThatIsNotValidKeepsItsNode()
{
    Editing editor;
    editor.Show([&] {
        editor.Click(editor.Node(0, 2));
        editor.Put(u"txtVar"_s, u"Ifreq"_s);
        const QString wrong = u"Invalid variable name. Must begin with letter 'i'."_s;
        editor.ExpectWarning(wrong);
        editor.Click(editor.Node(0));
        QVERIFY(editor.Rows().contains(u"  [p3] Amp <"_s));
        QCOMPARE(editor.Page().last(), u"Ifreq"_s);
        editor.ExpectWarning(wrong);
        editor.Press(u"up"_s);
        editor.ExpectWarning(wrong);
        editor.Press(u"instr"_s);
        editor.ExpectWarning(wrong);
        editor.Ok();
        QVERIFY(editor.dialog->isVisible());
        editor.Put(u"txtVar"_s, u"ifreq"_s);
        editor.Click(editor.Node(0));
        editor.Put(u"TxtInsNumber"_s, u"0"_s);
        editor.ExpectWarning(u"Invalid instrument number."_s);
        editor.Tree().setFocus();
        QTest::keyClick(&editor.Tree(), Qt::Key_End);
        QVERIFY(editor.Rows().first().endsWith(u"<"));
        editor.Put(u"TxtInsNumber"_s, u"70000"_s);
        editor.desktop.ExpectMessage(ErrorBox(u"Overflow (6)"_s), BoxAnswer::Cancel);
        editor.Click(editor.Node(1));
        QVERIFY(editor.Rows().first().endsWith(u"<"));
        editor.Cancel();
    });
    QVERIFY(!editor.Text().CanUndo());
}

void InstrEditTest::KeysWalkThroughTheTree()
{
    Editing editor;
    editor.Show([&] {
        QTest::keyClick(editor.Focus(), Qt::Key_Down);
        QTest::keyClick(editor.Focus(), Qt::Key_Down);
        QCOMPARE(editor.Page().at(3), u".5"_s);
        QTest::keyClick(editor.Focus(), Qt::Key_End);
        QCOMPARE(editor.Page(), (QStringList{{}, {}, u"7"_s}));
        // A click beside the rows, or on the chosen one with Ctrl, leaves a node chosen.
        QTest::mouseClick(editor.Tree().viewport(), Qt::LeftButton, {},
                          QPoint(5, editor.Tree().viewport()->height() - 3));
        QVERIFY(editor.Rows().last().endsWith(u"<"));
        QTest::mouseClick(editor.Tree().viewport(), Qt::LeftButton, Qt::ControlModifier,
                          editor.Tree().visualRect(editor.Node(1)).center());
        QVERIFY(editor.Rows().last().endsWith(u"<"));
        editor.Cancel();
    });
}

void InstrEditTest::TabGoesThroughThePage()
{
    Editing editor;
    editor.Show([&] {
        const auto order = [&] {
            QStringList names;
            editor.Tree().setFocus();
            do {
                names += editor.Focus()->objectName();
                QTest::keyClick(editor.Focus(), Qt::Key_Tab);
            } while (editor.Focus() != &editor.Tree() && names.size() < 20);
            return names;
        };
        QCOMPARE(order(), (QStringList{u"tvwInstrEdit"_s, u"TxtInsName"_s, u"TxtInsDesc"_s, u"TxtInsNumber"_s,
                                       u"bOK"_s, u"bCancel"_s}));
        editor.Click(editor.Node(0, 1));
        QCOMPARE(order(), (QStringList{u"tvwInstrEdit"_s, u"txtName"_s, u"txtDescription"_s, u"cmbGroup"_s,
                                       u"txtMin"_s, u"txtMax"_s, u"cmbFormat"_s, u"cmbUnit"_s, u"txtVar"_s,
                                       u"bOK"_s, u"bCancel"_s}));
        editor.Cancel();
    });
}

void InstrEditTest::LabelsHaveTheirKeys()
{
    Editing editor;
    editor.Show([&] {
        const auto by = [&](Qt::Key key) {
            QTest::keyClick(editor.Focus(), key, Qt::AltModifier);
            return editor.Focus()->objectName();
        };
        QCOMPARE(by(Qt::Key_D), u"TxtInsDesc"_s);
        editor.Tree().setFocus();
        editor.Click(editor.Node(0, 1));
        QCOMPARE(by(Qt::Key_N), u"txtName"_s);
        QCOMPARE(by(Qt::Key_D), u"txtDescription"_s);
        QCOMPARE(by(Qt::Key_M), u"txtMin"_s);
        QCOMPARE(by(Qt::Key_X), u"txtMax"_s);
        QCOMPARE(by(Qt::Key_F), u"cmbFormat"_s);
        QCOMPARE(by(Qt::Key_U), u"cmbUnit"_s);
        QCOMPARE(by(Qt::Key_V), u"txtVar"_s);
        editor.Cancel();
    });
}

void InstrEditTest::AnInstrumentIsAdded()
{
    Editing editor;
    editor.Show([&] {
        editor.ExpectNumber(u"1"_s);
        editor.ExpectWarning(u"Instrument already exists."_s);
        editor.Press(u"instr"_s);
        editor.ExpectNumber(std::nullopt);
        editor.Press(u"instr"_s);
        QCOMPARE(editor.Rows().size(), 5);
        editor.ExpectNumber(u"12"_s);
        QTest::keyClick(editor.Focus(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(editor.Rows().mid(5), (QStringList{u"[instr 12] Instrument 12 <"_s, u"  [p1] Number"_s,
                                                    u"  [p2] Start"_s, u"  [p3] Duration"_s}));
        QCOMPARE(editor.Page(), (QStringList{u"Instrument 12"_s, {}, u"12"_s}));
        editor.Ok();
    });
    QVERIFY(editor.Store().contains(u"<instr number=\"12\" name=\"Instrument 12\">\n"_s));
}

void InstrEditTest::AFieldIsAdded()
{
    Editing editor;
    editor.Show([&] {
        editor.Click(editor.Node(0, 0));
        editor.Press(u"label"_s);
        QCOMPARE(editor.Rows(), (QStringList{u"[instr 1] Pad"_s, u"  [p1] Number"_s, u"  [p2] "_s,
                                             u"  [p3] Amp"_s, u"  [p4]  <"_s, u"[instr 7]"_s}));
        editor.Put(u"txtName"_s, u"Freq"_s);
        editor.Click(editor.Node(1));
        QTest::keyClick(&editor.Tree(), Qt::Key_P, Qt::ControlModifier);
        QCOMPARE(editor.Rows().mid(4), (QStringList{u"  [p4] Freq"_s, u"[instr 7]"_s, u"  [p1]  <"_s}));
        editor.Ok();
    });
    QVERIFY(editor.Store().contains(
        u"<p number=\"4\" name=\"Freq\" format=\"0\" min=\"0\" max=\"0\"/>\n</instr>"_s));
}

void InstrEditTest::AFieldWhoseKeyIsTakenIsReported()
{
    Editing editor;
    editor.Show([&] {
        editor.Click(editor.Node(0, 1));
        editor.Press(u"delete"_s);
        editor.desktop.ExpectMessage({.text =
                                          u"An error has occurred:\n\nThe key \"i1p3\" is there twice (5)\n"
                                          "Error source: Zelvane\n\nDo you want to report this bug via "
                                          "email?"_s,
                                      .icon = BoxIcon::Critical,
                                      .buttons = BoxButtons::OkCancel},
                                     BoxAnswer::Cancel);
        editor.Press(u"label"_s);
        QCOMPARE(editor.Rows(),
                 (QStringList{u"[instr 1] Pad <"_s, u"  [p1] Number"_s, u"  [p2] Amp"_s, u"[instr 7]"_s}));
        editor.Cancel();
    });
}

void InstrEditTest::AFieldIsMoved()
{
    Editing editor;
    editor.Show([&] {
        editor.Click(editor.Node(0, 1));
        editor.Put(u"txtName"_s, u"Start"_s);
        editor.Press(u"down"_s);
        QCOMPARE(editor.Rows(), (QStringList{u"[instr 1] Pad"_s, u"  [p1] Number"_s, u"  [p2] Amp"_s,
                                             u"  [p3] Start <"_s, u"[instr 7]"_s}));
        QVERIFY(!editor.Tool(u"down"_s).isEnabled());
        QTest::keyClick(editor.Focus(), Qt::Key_Up, Qt::ControlModifier);
        QTest::keyClick(editor.Focus(), Qt::Key_Up, Qt::ControlModifier);
        QCOMPARE(editor.Rows().mid(1, 3),
                 (QStringList{u"  [p1] Start <"_s, u"  [p2] Number"_s, u"  [p3] Amp"_s}));
        editor.Ok();
    });
    QVERIFY(editor.Store().contains(u"<p number=\"1\" name=\"Start\""_s));
}

void InstrEditTest::CommandsLeaveTheKeyboardInItsField()
{
    Editing editor;
    editor.Show([&] {
        const auto type = [&](const QString &keys) {
            QVERIFY(editor.Focus());
            QTest::keyClick(editor.Focus(), Qt::Key_End);
            QTest::keyClicks(editor.Focus(), keys);
        };
        editor.Click(editor.Node(0, 1));
        editor.Put(u"txtName"_s, u"Start"_s);
        QTest::keyClick(editor.Focus(), Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(editor.Focus(), &editor.Field(u"txtName"_s));
        type(u"ing"_s);
        QTest::keyClick(editor.Focus(), Qt::Key_Up, Qt::ControlModifier);
        QCOMPARE(editor.Focus(), &editor.Field(u"txtName"_s));
        type(u" time"_s);
        QTest::keyClick(editor.Focus(), Qt::Key_P, Qt::ControlModifier);
        QCOMPARE(editor.Focus(), &editor.Field(u"txtName"_s));
        type(u"Pan"_s);
        editor.Press(u"up"_s);
        QCOMPARE(editor.Focus(), &editor.Field(u"txtName"_s));
        // The field is not on the page of an instrument.
        editor.ExpectNumber(u"12"_s);
        QTest::keyClick(editor.Focus(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(editor.Focus(), &editor.Field(u"TxtInsName"_s));
        type(u"th"_s);
        QTest::keyClick(editor.Focus(), Qt::Key_P, Qt::ControlModifier);
        QVERIFY(editor.Focus() && editor.dialog->isAncestorOf(editor.Focus()));
        QCOMPARE(
            editor.Rows(),
            (QStringList{u"[instr 1] Pad"_s, u"  [p1] Number"_s, u"  [p2] Starting time"_s, u"  [p3] Pan"_s,
                         u"  [p4] Amp"_s, u"[instr 7]"_s, u"[instr 12] Instrument 12th"_s, u"  [p1] Number"_s,
                         u"  [p2] Start"_s, u"  [p3] Duration"_s, u"  [p4]  <"_s}));
        editor.Cancel();
    });
}

void InstrEditTest::TheKeyboardGoesToTheTreeWithTheLastInstrument()
{
    Editing editor("<instruments><instr number=\"7\"/></instruments>");
    editor.Show([&] {
        editor.Put(u"TxtInsName"_s, u"x"_s);
        editor.desktop.ExpectMessage({.text = u"Delete instrument?"_s,
                                      .icon = BoxIcon::Question,
                                      .buttons = BoxButtons::YesNo,
                                      .defaultAnswer = BoxAnswer::No},
                                     BoxAnswer::Yes);
        editor.Press(u"delete"_s);
        QCOMPARE(editor.Focus(), &editor.Tree());
        editor.Cancel();
    });
}

void InstrEditTest::AFieldIsRemoved()
{
    Editing editor;
    editor.Show([&] {
        editor.Click(editor.Node(0, 1));
        // In a field the key is the field's.
        editor.Field(u"txtName"_s).setFocus();
        QTest::keyClick(editor.Focus(), Qt::Key_Delete);
        QCOMPARE(editor.Rows().size(), 5);
        // What is not valid goes with its p-field.
        editor.Put(u"txtVar"_s, u"x"_s);
        editor.Tree().setFocus();
        QTest::keyClick(editor.Focus(), Qt::Key_Delete);
        QCOMPARE(editor.Rows(),
                 (QStringList{u"[instr 1] Pad <"_s, u"  [p1] Number"_s, u"  [p2] Amp"_s, u"[instr 7]"_s}));
        editor.Ok();
    });
    QVERIFY(editor.Store().contains(u"<p number=\"2\" name=\"Amp\""_s));
}

void InstrEditTest::AnInstrumentIsRemovedOnRequest()
{
    Editing editor;
    editor.Show([&] {
        const MessageBoxRequest question{.text = u"Delete instrument?"_s,
                                         .icon = BoxIcon::Question,
                                         .buttons = BoxButtons::YesNo,
                                         .defaultAnswer = BoxAnswer::No};
        editor.desktop.ExpectMessage(question, BoxAnswer::No);
        QTest::keyClick(editor.Focus(), Qt::Key_Delete);
        QCOMPARE(editor.Rows().size(), 5);
        editor.desktop.ExpectMessage(question, BoxAnswer::Yes);
        editor.Press(u"delete"_s);
        QCOMPARE(editor.Rows(), QStringList(u"[instr 7] <"_s));
        editor.desktop.ExpectMessage(question, BoxAnswer::Yes);
        editor.Press(u"delete"_s);
        QCOMPARE(editor.Rows(), QStringList());
        QCOMPARE(editor.Page(), (QStringList{{}, {}, {}}));
        QVERIFY(!editor.Tool(u"delete"_s).isEnabled());
        editor.Ok();
    });
    QCOMPARE(editor.Store(), u"<instruments/>\n"_s);
}

void InstrEditTest::NothingIsStoredBeforeOk()
{
    Editing editor;
    const QString before = editor.Text().Text();
    editor.Show([&] {
        editor.Put(u"TxtInsName"_s, u"x"_s);
        editor.Press(u"label"_s);
        QTest::mouseClick(editor.dialog->findChild<QPushButton *>(u"bCancel"_s), Qt::LeftButton);
    });
    QCOMPARE(editor.Text().Text(), before);
    QVERIFY(!editor.Text().CanUndo());
}

void InstrEditTest::OkThatFailsKeepsTheDialog()
{
    Editing editor;
    editor.WriteFile(u"song.xml"_s, TwoInstruments);
    editor.Open({editor.WriteFile(u"song.orc"_s, "instr 1\nendin\n")});
    const auto bytes = [&] { return BytesOf(editor.folder.filePath(u"song.xml"_s)); };
    editor.Show([&] {
        editor.Put(u"TxtInsName"_s, u"Lead"_s);
        editor.WriteFile(u"song.xml"_s, "<project/>");
        editor.ExpectReport(u"The document's data holds another element already: <project> (5)"_s);
        editor.Ok();
        QVERIFY(editor.dialog->isVisible());
        QCOMPARE(editor.Page().first(), u"Lead"_s);
        QCOMPARE(bytes(), "<project/>");
        editor.WriteFile(u"song.xml"_s, TwoInstruments);
        editor.Ok();
    });
    QVERIFY(bytes().startsWith("<instruments>\r\n<instr number=\"1\" name=\"Lead\""));
    QVERIFY(!QFile::exists(editor.folder.filePath(u"song.xml.bak"_s)));
}

void InstrEditTest::TheEndOfTheSessionAsksAboutChanges()
{
    Editing editor;
    const auto expectQuestion = [&](BoxAnswer answer) {
        editor.desktop.ExpectMessage(
            {.text = u"The changes to the instruments are not saved. Discard them?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo,
             .defaultAnswer = BoxAnswer::No},
            answer);
    };
    const std::function<void()> changes[] = {
        [&] { editor.Put(u"TxtInsName"_s, u"Lead"_s); },
        [&] {
            editor.Put(u"TxtInsName"_s, u"Lead"_s);
            editor.Click(editor.Node(0, 0)); // the page is left
        },
        [&] { editor.Press(u"label"_s); },
        [&] {
            editor.Click(editor.Node(0, 0));
            editor.Press(u"down"_s);
        },
        [&] {
            editor.Click(editor.Node(0, 0));
            editor.Press(u"delete"_s);
        },
        [&] {
            editor.ExpectNumber(u"3"_s);
            editor.Press(u"instr"_s);
        },
    };
    for (const auto &change : changes) {
        editor.Show([&] {
            change();
            expectQuestion(BoxAnswer::No);
            QVERIFY(!editor.window->MayEndSession());
            QVERIFY(editor.dialog->isVisible());
            expectQuestion(BoxAnswer::Yes);
            QVERIFY(editor.window->MayEndSession());
            QVERIFY(!editor.dialog->isVisible());
        });
    }
    editor.Show([&] {
        editor.Click(editor.Node(0, 1));
        editor.Click(editor.Node(1));
        QVERIFY(editor.window->MayEndSession());
    });
    editor.desktop.CheckAllCame();
}

void InstrEditTest::ALongTextIsShownWhole()
{
    const QByteArray name(40'000, 'n');
    Editing editor("<instruments><instr number=\"1\" name=\"" + name + "\"><p number=\"1\" group=\"" + name +
                   "\"/></instr></instruments>\n");
    editor.Show([&] {
        editor.Click(editor.Node(0, 0));
        editor.Click(editor.Node(0));
        editor.Ok();
    });
    QCOMPARE(editor.Store().count(QString::fromLatin1(name)), 2);
}

void InstrEditTest::WhatWasNotLoadedIsCopied()
{
    const QByteArray store = "<instruments><instr number=\"1\"/><instr number=\"x\"/></instruments>";
    Editing editor;
    editor.WriteFile(u"song.xml"_s, store);
    editor.Open({editor.WriteFile(u"song.orc"_s, "instr 1\nendin\n")});
    editor.ExpectReport(u"Type mismatch (13)"_s);
    editor.Show([&] {
        QCOMPARE(editor.Rows(), QStringList(u"[instr 1] <"_s));
        editor.Ok();
    });
    QCOMPARE(editor.window->Context().status.Text(),
             u"song.xml held what cannot be kept there; it was copied to song.xml.bak"_s);
    QFile copy(editor.folder.filePath(u"song.xml.bak"_s));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), store);
}

void InstrEditTest::WhatWasNotLoadedFromTheTagComesBackByUndo()
{
    Editing editor("<instruments><instr number=\"1\"/><instr number=\"x\"/></instruments>\n");
    const QString before = editor.Text().Text();
    editor.ExpectReport(u"Type mismatch (13)"_s);
    editor.Show([&] { editor.Ok(); });
    QCOMPARE(editor.window->Context().status.Text(),
             u"<Zelvane> held what cannot be kept there; Undo brings it back"_s);
    QCOMPARE(editor.Store(), u"<instruments>\n<instr number=\"1\"/>\n</instruments>\n"_s);
    editor.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(editor.Text().Text(), before);
    QVERIFY(!editor.Text().CanUndo());
}

void InstrEditTest::OkIsOneStepOfUndo()
{
    Editing editor;
    editor.Text().SetSelection(3, 5);
    const QString before = editor.Text().Text();
    editor.Show([&] {
        editor.Put(u"TxtInsName"_s, u"x"_s);
        QTest::mouseClick(editor.dialog->findChild<QPushButton *>(u"bOK"_s), Qt::LeftButton);
    });
    QVERIFY(editor.Text().Text() != before);
    QCOMPARE(editor.Text().Selection(), (TextSpan{3, 5}));
    QVERIFY(editor.window->windowTitle().contains(u'*'));
    editor.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(editor.Text().Text(), before);
}

void InstrEditTest::OkLeavesTheViewWhereItIs()
{
    const QByteArray lines = QByteArray("a line\n").repeated(300);
    Editing editor;
    editor.Open(
        {editor.WriteFile(u"song.csd"_s, lines + "<Zelvane>\n" + TwoInstruments + "</Zelvane>\n" + lines)});
    const auto edit = [&](const QString &name) {
        editor.Show([&] {
            editor.Put(u"TxtInsName"_s, name);
            editor.Press(u"label"_s);
            editor.Ok();
        });
    };
    TextControl &text = editor.Text();
    // The caret is out of sight, above the descriptions and the view, and then below both.
    text.SetSelection(9, 12);
    text.ScrollToLine(100);
    edit(u"one"_s);
    QCOMPARE(text.Selection(), (TextSpan{9, 12}));
    QCOMPARE(text.FirstVisibleLine(), 100);
    const qsizetype end = text.Length();
    text.SetSelection(end, end);
    text.ScrollToLine(400);
    edit(u"two"_s);
    QCOMPARE(text.Selection(), (TextSpan{text.Length(), text.Length()}));
    QCOMPARE(text.FirstVisibleLine(), 401);
}

void InstrEditTest::OkThatCannotStoreTellsSo()
{
    Editing editor;
    editor.Open({editor.WriteFile(u"song.orc"_s, "instr 1\nendin\n")});
    editor.Show([&] {
        editor.desktop.ExpectMessage({.text = u"Zelvane will store information onto a new file named: "_s +
                                              editor.folder.filePath(u"song.xml"_s) +
                                              u"\n\nWould you like to proceed?"_s,
                                      .icon = BoxIcon::Warning,
                                      .buttons = BoxButtons::YesNo},
                                     BoxAnswer::No);
        editor.desktop.ExpectMessage(
            {.text = u"Cannot save Instrument Properties."_s, .icon = BoxIcon::Critical});
        editor.Ok();
    });
    QVERIFY(!QFile::exists(editor.folder.filePath(u"song.xml"_s)));
}

void InstrEditTest::PastedLineEndsBecomeBlanks()
{
    Editing on("<instruments><instr number=\"1\" name=\"a&#10;b\"/></instruments>");
    QGuiApplication::clipboard()->setText(u"x\ny"_s);
    on.Show([&] {
        on.Click(on.Node(0));
        QCOMPARE(on.Field(u"TxtInsName"_s).text(), u"a\nb"_s);
        for (const QString &name : {u"TxtInsName"_s, u"TxtInsDesc"_s}) {
            on.Field(name).setFocus();
            QTest::keyClick(on.Focus(), Qt::Key_End);
            QTest::keyClick(on.Focus(), Qt::Key_V, Qt::ControlModifier);
        }
        QCOMPARE(on.Field(u"TxtInsName"_s).text(), u"a\nbx y"_s);
        QCOMPARE(on.Field(u"TxtInsDesc"_s).text(), u"x y"_s);
        on.Cancel();
    });
}

void InstrEditTest::ThousandsOfInstrumentsAreQuick()
{
    QByteArray store = "<instruments>\n";
    for (int number = 1; number <= 2000; ++number) {
        store += "<instr number=\"" + QByteArray::number(number) + "\" name=\"x\">\n";
        for (int p = 1; p <= 20; ++p)
            store += "<p number=\"" + QByteArray::number(p) +
                     "\" name=\"n\" group=\"g\" format=\"0\" min=\"0\" max=\"1\"/>\n";
        store += "</instr>\n";
    }
    Editing editor(store + "</instruments>\n");
    editor.Show([&] {
        const QAbstractItemModel &model = *editor.Tree().model();
        QCOMPARE(model.rowCount(), 2000);
        // The view keeps all rows in a hash: those that share one make it walk.
        QSet<size_t> hashes;
        for (int instrument = 0; instrument < 2000; ++instrument) {
            hashes.insert(qHash(editor.Node(instrument)));
            for (int field = 0; field < 20; ++field)
                hashes.insert(qHash(editor.Node(instrument, field)));
        }
        QVERIFY(hashes.size() > 41000);
        QTest::keyClick(&editor.Tree(), Qt::Key_End);
        QCOMPARE(editor.Tree().currentIndex(), editor.Node(1999, 19));
        editor.Press(u"label"_s);
        QCOMPARE(editor.Tree().currentIndex(), editor.Node(1999, 20));
        editor.Ok();
    });
    QVERIFY(editor.Store().endsWith(
        u"<p number=\"21\" format=\"0\" min=\"0\" max=\"0\"/>\n</instr>\n</instruments>\n"_s));
}

int main(int argc, char **argv)
{
    return RunUiTest<InstrEditTest>(argc, argv);
}

#include "test_instredit.moc"
