// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/flagtable.h"
#include "run/ui/flagpicker.h"
#include "run/ui/frmflags.h"
#include "support/modaldriver.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// The open dialog by its controls.
struct Flags {
    explicit Flags(frmFlags &dialog)
        : lvwFlags(*dialog.findChild<QTreeWidget *>(u"lvwFlags"_s)),
          txtFlags(*dialog.findChild<QLineEdit *>(u"txtFlags"_s)),
          cmdOK(*dialog.findChild<QPushButton *>(u"cmdOK"_s)),
          cmdCancel(*dialog.findChild<QPushButton *>(u"cmdCancel"_s))
    {
    }

    /// The row of a flag; of two with the same flag the one with this type.
    QTreeWidgetItem &Row(const QString &flag, const QString &type = {})
    {
        for (int i = 0; i < lvwFlags.topLevelItemCount(); ++i) {
            QTreeWidgetItem *item = lvwFlags.topLevelItem(i);
            if (item->text(0) == flag && (type.isEmpty() || item->text(1) == type))
                return *item;
        }
        qFatal("no row of flag %s", qPrintable(flag));
    }
    /// Goes to a row and presses the space bar.
    void Check(QTreeWidgetItem &item)
    {
        lvwFlags.setCurrentItem(&item);
        QTest::keyClick(&lvwFlags, Qt::Key_Space);
    }

    QTreeWidget &lvwFlags;
    QLineEdit &txtFlags;
    QPushButton &cmdOK;
    QPushButton &cmdCancel;
};

MessageBoxRequest NothingPicked()
{
    return {.text = u"Pick a flag or press Cancel."_s, .icon = BoxIcon::Warning};
}

QString ValueQuestion(const QString &flag, const QString &type)
{
    return u"Flag:\t"_s + flag + u"\n\nType:\t"_s + type + u"\n\nType flag value."_s;
}

/// A window with a text box, a combo box and a button for each that picks flags for it.
struct Fields {
    explicit Fields(EditorContext &editor)
    {
        combo.setEditable(true);
        combo.setCompleter(nullptr);
        auto *layout = new QVBoxLayout(&window);
        for (QWidget *widget : std::initializer_list<QWidget *>{&text, &pickText, &combo, &pickCombo})
            layout->addWidget(widget);
        new FlagPicker(editor, &pickText, &text);
        new FlagPicker(editor, &pickCombo, &combo);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }

    QWidget window;
    QLineEdit text;
    QComboBox combo;
    QPushButton pickText{u"Text"_s};
    QPushButton pickCombo{u"Combo"_s};
};

} // namespace

class FlagsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ListHasTheRows();
    void ControlsAreNamed();
    void TextsAreShownWhole();
    void CheckedFlagsMakeTheLine();
    void ValueIsAskedFor();
    void NoValueUnchecksTheRow();
    void SpaceChecksFromAnyColumn();
    void HeldSpaceChecksOnce();
    void MouseChecksTheBox();
    void RebuiltLineReplacesWhatWasTyped();
    void OkNeedsAFlag();
    void EnterIsOkAndEscapeCancels();
    void TextBoxTakesTheLineSelected();
    void PickedFlagsKeepApartFromOthers();
    void ComboBoxTakesTheLine();
    void GoneTargetIsNoMatter();
    void ButtonOpensTheDialog();
    void SelectionSurvivesTheLossOfFocus();
    void MenuHasTheFlags();
    void MenuRowReplacesTheSelection();
    void MenuRowGoesToAComboBox();

public:
    TestContext context;
};

void FlagsTest::ListHasTheRows()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    Flags flags(dialog);
    QCOMPARE(flags.lvwFlags.topLevelItemCount(), 56);
    const std::vector<FlagRow> &table = ShippedFlagTable();
    for (int i = 0; i < 56; ++i) {
        const QTreeWidgetItem *item = flags.lvwFlags.topLevelItem(i);
        const FlagRow &row = table[size_t(i)];
        QCOMPARE(item->text(0), row.flag);
        QCOMPARE(item->text(1), row.type);
        QCOMPARE(item->text(2), row.description);
        QCOMPARE(item->checkState(0), Qt::Unchecked);
        QVERIFY(item->flags().testFlag(Qt::ItemIsUserCheckable));
    }
    const QTreeWidgetItem *header = flags.lvwFlags.headerItem();
    QCOMPARE(header->text(0), u"Flag"_s);
    QCOMPARE(header->text(1), u"Value"_s);
    QCOMPARE(header->text(2), u"Description"_s);
    QCOMPARE(flags.lvwFlags.columnCount(), 3);
    QCOMPARE(flags.txtFlags.text(), QString());
}

void FlagsTest::ControlsAreNamed()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    QCOMPARE(dialog.objectName(), u"frmFlags"_s);
    QCOMPARE(dialog.windowTitle(), u"Zelvane - Csound Flags"_s);
    Flags flags(dialog);
    auto *label = dialog.findChild<QLabel *>(u"lblFlags"_s);
    QCOMPARE(label->text(), u"&Flags:"_s);
    QCOMPARE(label->buddy(), &flags.txtFlags);
    QCOMPARE(flags.cmdOK.text(), u"OK"_s);
    QVERIFY(flags.cmdOK.isDefault());
    QCOMPARE(flags.cmdCancel.text(), u"Cancel"_s);
    QVERIFY(!flags.lvwFlags.accessibleName().isEmpty());
    QVERIFY(!flags.txtFlags.accessibleName().isEmpty());
    // Tab walks the controls in the order of the screen.
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (QWidget *next : std::initializer_list<QWidget *>{&flags.lvwFlags, &flags.txtFlags, &flags.cmdOK,
                                                          &flags.cmdCancel, &flags.lvwFlags}) {
        QCOMPARE(dialog.focusWidget(), next);
        QTest::keyClick(&dialog, Qt::Key_Tab);
    }
}

void FlagsTest::TextsAreShownWhole()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    Flags flags(dialog);
    QVERIFY(flags.lvwFlags.header()->length() <= flags.lvwFlags.viewport()->width());
    for (int i = 0; i < flags.lvwFlags.topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = flags.lvwFlags.topLevelItem(i);
        for (int column = 0; column < 3; ++column)
            QVERIFY2(flags.lvwFlags.fontMetrics().horizontalAdvance(item->text(column)) <
                         flags.lvwFlags.columnWidth(column),
                     qPrintable(item->text(column)));
    }
}

void FlagsTest::CheckedFlagsMakeTheLine()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    Flags flags(dialog);
    flags.Check(flags.Row(u"-d"_s));
    QCOMPARE(flags.txtFlags.text(), u"-d"_s);
    flags.Check(flags.Row(u"-W"_s));
    QCOMPARE(flags.txtFlags.text(), u"-W -d"_s);
    flags.Check(flags.Row(u"-H#"_s));
    flags.Check(flags.Row(u"-+O"_s));
    QCOMPARE(flags.txtFlags.text(), u"-W -d -H# -+O"_s);
    flags.Check(flags.Row(u"-d"_s));
    QCOMPARE(flags.Row(u"-d"_s).checkState(0), Qt::Unchecked);
    QCOMPARE(flags.txtFlags.text(), u"-W -H# -+O"_s);
}

void FlagsTest::ValueIsAskedFor()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    Flags flags(dialog);
    flags.Check(flags.Row(u"-W"_s));
    context.desktop.ExpectInput(u"Flag value"_s, ValueQuestion(u"-o"_s, u"fnam"_s), u"x.wav"_s);
    QTreeWidgetItem &output = flags.Row(u"-o"_s);
    flags.Check(output);
    context.desktop.CheckAllCame();
    QCOMPARE(output.checkState(0), Qt::Checked);
    QCOMPARE(output.text(1), u"x.wav"_s);
    QCOMPARE(flags.txtFlags.text(), u"-o x.wav -W"_s);

    // The two rows of one flag are two flags.
    context.desktop.ExpectInput(u"Flag value"_s, ValueQuestion(u"-t"_s, u"0"_s), u"0"_s);
    flags.Check(flags.Row(u"-t"_s, u"0"_s));
    context.desktop.CheckAllCame();
    QCOMPARE(flags.txtFlags.text(), u"-o x.wav -W -t 0"_s);
    QCOMPARE(flags.Row(u"-t"_s, u"N"_s).checkState(0), Qt::Unchecked);

    flags.Check(output);
    QCOMPARE(output.text(1), u"fnam"_s);
    QCOMPARE(flags.txtFlags.text(), u"-W -t 0"_s);
}

void FlagsTest::NoValueUnchecksTheRow()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    Flags flags(dialog);
    QTreeWidgetItem &row = flags.Row(u"--"_s);
    for (const std::optional<QString> &answer :
         {std::optional<QString>(), std::optional<QString>(QString())}) {
        context.desktop.ExpectInput(u"Flag value"_s, ValueQuestion(u"--"_s, u"fnam"_s), answer);
        flags.Check(row);
        context.desktop.CheckAllCame();
        QCOMPARE(row.checkState(0), Qt::Unchecked);
        QCOMPARE(row.text(1), u"fnam"_s);
        QCOMPARE(flags.txtFlags.text(), QString());
    }
}

void FlagsTest::SpaceChecksFromAnyColumn()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    Flags flags(dialog);
    flags.lvwFlags.setCurrentItem(&flags.Row(u"-W"_s), 2);
    QTest::keyClick(&flags.lvwFlags, Qt::Key_Space);
    QCOMPARE(flags.txtFlags.text(), u"-W"_s);
}

void FlagsTest::HeldSpaceChecksOnce()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    Flags flags(dialog);
    flags.Check(flags.Row(u"-W"_s));
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, true);
    QCoreApplication::sendEvent(&flags.lvwFlags, &again);
    QCOMPARE(flags.txtFlags.text(), u"-W"_s);
}

void FlagsTest::MouseChecksTheBox()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    Flags flags(dialog);
    const QRect row = flags.lvwFlags.visualItemRect(&flags.Row(u"-A"_s));
    QTest::mouseClick(flags.lvwFlags.viewport(), Qt::LeftButton, {},
                      QPoint(row.left() + 10, row.center().y()));
    QCOMPARE(flags.txtFlags.text(), u"-A"_s);
    // A click beside the box only selects the row.
    QTest::mouseClick(flags.lvwFlags.viewport(), Qt::LeftButton, {},
                      QPoint(flags.lvwFlags.header()->sectionPosition(2) + 20, row.center().y()));
    QCOMPARE(flags.txtFlags.text(), u"-A"_s);
}

void FlagsTest::RebuiltLineReplacesWhatWasTyped()
{
    frmFlags dialog(context.editor, nullptr, nullptr);
    Flags flags(dialog);
    QTest::keyClicks(&flags.txtFlags, u"-typed"_s);
    flags.Check(flags.Row(u"-W"_s));
    QCOMPARE(flags.txtFlags.text(), u"-W"_s);
    flags.Check(flags.Row(u"-W"_s));
    QCOMPARE(flags.txtFlags.text(), QString());
}

void FlagsTest::OkNeedsAFlag()
{
    QLineEdit target(u"-d"_s);
    frmFlags dialog(context.editor, &target, nullptr);
    dialog.show();
    Flags flags(dialog);
    context.desktop.ExpectMessage(NothingPicked());
    QTest::mouseClick(&flags.cmdOK, Qt::LeftButton);
    context.desktop.CheckAllCame();
    QVERIFY(dialog.isVisible());
    QCOMPARE(target.text(), u"-d"_s);
}

void FlagsTest::EnterIsOkAndEscapeCancels()
{
    QLineEdit target;
    {
        frmFlags dialog(context.editor, &target, nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        Flags flags(dialog);
        flags.Check(flags.Row(u"-W"_s));
        QTest::keyClick(&flags.lvwFlags, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(target.text(), QString());
    }
    frmFlags dialog(context.editor, &target, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    Flags flags(dialog);
    flags.Check(flags.Row(u"-W"_s));
    QTest::keyClick(&flags.lvwFlags, Qt::Key_Return);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(target.text(), u"-W"_s);
}

void FlagsTest::PickedFlagsKeepApartFromOthers()
{
    QLineEdit target(u"-dXX$DOCUMENT$"_s);
    target.setSelection(2, 2);
    frmFlags dialog(context.editor, &target, nullptr);
    dialog.show();
    Flags flags(dialog);
    flags.Check(flags.Row(u"-W"_s));
    QTest::mouseClick(&flags.cmdOK, Qt::LeftButton);
    QCOMPARE(target.text(), u"-d -W $DOCUMENT$"_s);
    QCOMPARE(target.selectedText(), u"-W"_s);
    QCOMPARE(target.selectionStart(), 3);
}

void FlagsTest::TextBoxTakesTheLineSelected()
{
    QLineEdit target(u"-d XX $DOCUMENT$"_s);
    target.setSelection(3, 2);
    frmFlags dialog(context.editor, &target, nullptr);
    Flags flags(dialog);
    flags.Check(flags.Row(u"-W"_s));
    flags.Check(flags.Row(u"-f"_s));
    flags.cmdOK.click();
    QCOMPARE(target.text(), u"-d -W -f $DOCUMENT$"_s);
    QCOMPARE(target.selectedText(), u"-W -f"_s);
    // Without a selection the line goes in at the caret.
    target.deselect();
    target.setCursorPosition(0);
    frmFlags second(context.editor, &target, nullptr);
    Flags again(second);
    again.Check(again.Row(u"-R"_s));
    again.cmdOK.click();
    QCOMPARE(target.text(), u"-R -d -W -f $DOCUMENT$"_s);
    QCOMPARE(target.selectedText(), u"-R"_s);
}

void FlagsTest::ComboBoxTakesTheLine()
{
    QComboBox target;
    target.setEditable(true);
    target.setEditText(u"-d XX"_s);
    target.lineEdit()->setSelection(3, 2);
    frmFlags dialog(context.editor, &target, nullptr);
    Flags flags(dialog);
    flags.Check(flags.Row(u"-W"_s));
    flags.cmdOK.click();
    QCOMPARE(target.currentText(), u"-d -W"_s);
    QVERIFY(!target.lineEdit()->hasSelectedText());
    QCOMPARE(target.lineEdit()->cursorPosition(), 5);
}

void FlagsTest::GoneTargetIsNoMatter()
{
    auto target = std::make_unique<QLineEdit>();
    frmFlags dialog(context.editor, target.get(), nullptr);
    dialog.show();
    Flags flags(dialog);
    flags.Check(flags.Row(u"-W"_s));
    target.reset();
    flags.cmdOK.click();
    QVERIFY(!dialog.isVisible());
    // A control without a field of text takes nothing.
    QPushButton button(u"Button"_s);
    frmFlags second(context.editor, &button, nullptr);
    Flags again(second);
    again.Check(again.Row(u"-W"_s));
    again.cmdOK.click();
    QCOMPARE(button.text(), u"Button"_s);
}

void FlagsTest::ButtonOpensTheDialog()
{
    Fields fields(context.editor);
    fields.text.setText(u"-d "_s);
    ModalDriver driver;
    driver.Expect<frmFlags>([&](frmFlags &dialog) {
        QCOMPARE(dialog.parentWidget(), &fields.window);
        Flags flags(dialog);
        flags.Check(flags.Row(u"-W"_s));
        QTest::keyClick(&flags.lvwFlags, Qt::Key_Return);
    });
    QTest::mouseClick(&fields.pickText, Qt::LeftButton);
    QCOMPARE(fields.text.text(), u"-d -W"_s);
    QCOMPARE(fields.text.selectedText(), u"-W"_s);
    QCOMPARE(fields.combo.currentText(), QString());
}

void FlagsTest::SelectionSurvivesTheLossOfFocus()
{
    Fields fields(context.editor);
    fields.combo.setEditText(u"-d XX -f"_s);
    fields.combo.setFocus();
    fields.combo.lineEdit()->setSelection(3, 2);
    fields.pickCombo.setFocus(Qt::TabFocusReason);
    QVERIFY(!fields.combo.lineEdit()->hasSelectedText());
    ModalDriver driver;
    driver.Expect<frmFlags>([&](frmFlags &dialog) {
        Flags flags(dialog);
        flags.Check(flags.Row(u"-W"_s));
        flags.cmdOK.click();
    });
    QTest::keyClick(&fields.pickCombo, Qt::Key_Space);
    QCOMPARE(fields.combo.currentText(), u"-d -W -f"_s);

    // A text that was changed meanwhile has lost it.
    fields.text.setText(u"-d XX -f"_s);
    fields.text.setFocus();
    fields.text.selectAll();
    fields.pickText.setFocus(Qt::TabFocusReason);
    fields.text.setText(u"-Z"_s);
    driver.Expect<frmFlags>([&](frmFlags &dialog) {
        Flags flags(dialog);
        flags.Check(flags.Row(u"-W"_s));
        flags.cmdOK.click();
    });
    QTest::keyClick(&fields.pickText, Qt::Key_Space);
    QCOMPARE(fields.text.text(), u"-Z -W"_s);
}

void FlagsTest::MenuHasTheFlags()
{
    Fields fields(context.editor);
    QVERIFY(!fields.pickText.findChild<QMenu *>(u"mnuFlags"_s));
    context.desktop.keysDown = {KeyCode::Ctrl};
    QTest::mouseClick(&fields.pickText, Qt::LeftButton, Qt::ControlModifier);
    context.desktop.keysDown = {};
    auto *menu = fields.pickText.findChild<QMenu *>(u"mnuFlags"_s);
    QVERIFY(menu);
    QVERIFY(menu->isVisible());
    const std::vector<FlagRow> &table = ShippedFlagTable();
    const QList<QAction *> rows = menu->actions();
    QCOMPARE(rows.size(), qsizetype(56));
    for (qsizetype i = 0; i < 56; ++i)
        QCOMPARE(rows[i]->text(), table[size_t(i)].flag + u'\t' + table[size_t(i)].description);
    QTest::keyClick(menu, Qt::Key_Escape);
    QVERIFY(!menu->isVisible());
    QCOMPARE(fields.text.text(), QString());
    // The rows are made once.
    context.desktop.keysDown = {KeyCode::Ctrl};
    QTest::mouseClick(&fields.pickText, Qt::LeftButton, Qt::ControlModifier);
    context.desktop.keysDown = {};
    QCOMPARE(fields.pickText.findChildren<QMenu *>().size(), qsizetype(1));
    QCOMPARE(menu->actions().size(), qsizetype(56));
    menu->close();
}

void FlagsTest::MenuRowReplacesTheSelection()
{
    Fields fields(context.editor);
    fields.text.setText(u"-d XX $DOCUMENT$"_s);
    fields.text.setFocus();
    fields.text.setSelection(3, 2);
    fields.pickText.setFocus(Qt::TabFocusReason);
    context.desktop.keysDown = {KeyCode::Ctrl};
    QTest::keyClick(&fields.pickText, Qt::Key_Space, Qt::ControlModifier);
    context.desktop.keysDown = {};
    auto *menu = fields.pickText.findChild<QMenu *>(u"mnuFlags"_s);
    QVERIFY(menu && menu->isVisible());
    for (QAction *row : menu->actions()) {
        if (row->text().startsWith(u"-+j\t"_s))
            menu->setActiveAction(row);
    }
    QTest::keyClick(menu, Qt::Key_Return);
    // No value is asked for, and the caret stands behind as many characters as the flag has.
    QCOMPARE(fields.text.text(), u"-d -+j $DOCUMENT$"_s);
    QVERIFY(!fields.text.hasSelectedText());
    QCOMPARE(fields.text.cursorPosition(), 3);
    QVERIFY(fields.text.hasFocus());
}

void FlagsTest::MenuRowGoesToAComboBox()
{
    Fields fields(context.editor);
    fields.combo.setEditText(u"abc"_s);
    fields.combo.setFocus();
    fields.combo.lineEdit()->selectAll();
    context.desktop.keysDown = {KeyCode::Ctrl};
    QTest::mouseClick(&fields.pickCombo, Qt::LeftButton, Qt::ControlModifier);
    context.desktop.keysDown = {};
    auto *menu = fields.pickCombo.findChild<QMenu *>(u"mnuFlags"_s);
    QVERIFY(menu && menu->isVisible());
    menu->setActiveAction(menu->actions().constFirst());
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(fields.combo.currentText(), u"-U"_s);
    QCOMPARE(fields.combo.lineEdit()->cursorPosition(), 2);
    QVERIFY(!fields.combo.lineEdit()->hasSelectedText());
}

int main(int argc, char **argv)
{
    return RunUiTest<FlagsTest>(argc, argv);
}

#include "test_frmflags.moc"
