// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmfind.h"

#include "shell/findkeys.h"
#include "shell/ui/screenplace.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const QString Recent = u"Recent Find Strings"_s;

/// A main window with a text, and the find dialog over it.
struct Searching : EditorWindow {
    explicit Searching(const QString &text)
    {
        Open();
        static_cast<void>(QTest::qWaitForWindowActive(window.get()));
        Text().LoadText(text);
        window->Context().document.Modified = false;
    }

    frmFind *Dialog() { return window->findChild<frmFind *>(); }
    frmFind &Show(const QString &row)
    {
        Row(row).trigger();
        frmFind *dialog = Dialog();
        if (!Eventually([dialog] { return QApplication::activeWindow() == dialog; }))
            QTest::qFail("the find dialog is not the active window", __FILE__, __LINE__);
        return *dialog;
    }
    QComboBox &Find() { return EditorWindow::Find<QComboBox>(u"txtFind"_s); }
    QLineEdit &With() { return EditorWindow::Find<QLineEdit>(u"txtReplace"_s); }
    QPushButton &Button(const QString &name) { return EditorWindow::Find<QPushButton>(name); }
    QCheckBox &Check(const QString &name) { return EditorWindow::Find<QCheckBox>(name); }
    QRadioButton &Scope(int entry)
    {
        return EditorWindow::Find<QRadioButton>(u"optScope_"_s + QString::number(entry));
    }
    QString Status() { return window->Context().status.Text(); }
    void Click(const QString &name) { QTest::mouseClick(&Button(name), Qt::LeftButton); }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(Dialog()->focusWidget() ? Dialog()->focusWidget() : Dialog(), key, modifiers);
    }
    void ExpectMissing(const QString &what)
    {
        desktop.ExpectMessage({.text = u"Cannot find '"_s + what + u"'."_s, .icon = BoxIcon::Information});
    }
    void ExpectReplaced(int times)
    {
        desktop.ExpectMessage(
            {.text = u"Text has been replaced %1 times."_s.arg(times), .icon = BoxIcon::Information});
    }
};

void Unload()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

class FrmFindTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FindModeHasItsControls();
    void ReplaceModeShowsTheRest();
    void ReplaceButtonOpensReplaceMode();
    void OneDialogServesBothModes();
    void FieldsComeFromTheStore();
    void SelectionOnOneLineIsTheText();
    void SeveralLinesAreTheScope();
    void TheKeysStartAgain_data();
    void TheKeysStartAgain();
    void TheKeysLeaveWhatIsTyped();
    void TheListHoldsSevenStrings();
    void TypedTextIsNotCompleted();
    void EnterFindsAndTheDialogKeepsTheFocus();
    void F3FindsLikeTheButton();
    void SearchWraps();
    void NothingFoundIsToldOnce();
    void FindAgainNeverWraps();
    void ReplaceGoesStepByStep();
    void ReplaceAllIsOneStepOfUndo();
    void ReplaceAllStaysInTheSelection();
    void ReplaceAllInOtherScripts();
    void ReplaceAllOfManyHits();
    void ClosingSavesThePlace();
    void PlaceOffTheScreensComesBack();
    void TheReplaceFormComesWhole();
    void WithoutAStoredPlaceItComesWhole();
    void TheGrownDialogStaysOnTheScreen();
    void DialogGivesWayToTheHit();
    void AnOptionThatCannotBeReadIsReported();
    void WithoutTheSettingThereIsNoBox();
    void TheBoxComesAndGoesWithTheSetting();
    void RegularExpressionsAreFound();
    void RegularExpressionsAreReplacedByStep();
    void RegularExpressionsAreReplacedInOneStep();
    void ABadExpressionIsTold();
};

void FrmFindTest::FindModeHasItsControls()
{
    Searching on(u"one\n"_s);
    frmFind &dialog = on.Show(u"mnuFind"_s);
    QCOMPARE(dialog.windowTitle(), u"Find"_s);
    QVERIFY(!dialog.isModal());
    for (const char16_t *name : {u"txtReplace", u"lblReplace", u"bReplaceAll", u"fraScope"})
        QVERIFY2(!on.EditorWindow::Find<QWidget>(QString::fromUtf16(name)).isVisible(),
                 qPrintable(QString::fromUtf16(name)));
    QCOMPARE(on.Button(u"bFind"_s).text(), u"&Find next"_s);
    QCOMPARE(on.Button(u"bReplace"_s).text(), u"&Replace..."_s);
    QCOMPARE(on.Button(u"bReplaceAll"_s).text(), u"Replace &All"_s);
    QCOMPARE(on.Button(u"bClose"_s).text(), u"Close"_s);
    QCOMPARE(on.Check(u"chkWholeWords"_s).text(), u"Match &whole words"_s);
    QCOMPARE(on.Check(u"chkCase"_s).text(), u"Match &case"_s);
    QCOMPARE(on.Check(u"chkWrap"_s).text(), u"&Wrap searches"_s);
    for (const char16_t *name : {u"chkWholeWords", u"chkCase", u"chkWrap"})
        QVERIFY(!on.Check(QString::fromUtf16(name)).isChecked());
    QVERIFY(on.Scope(1).isChecked());
    QCOMPARE(on.With().text(), QString());
    QCOMPARE(on.Find().currentText(), QString());
    QCOMPARE(dialog.focusWidget(), &on.Find());
}

void FrmFindTest::ReplaceModeShowsTheRest()
{
    Searching on(u"one\n"_s);
    frmFind &dialog = on.Show(u"mnuReplace"_s);
    QCOMPARE(dialog.windowTitle(), u"Replace"_s);
    for (const char16_t *name : {u"txtReplace", u"lblReplace", u"bReplaceAll", u"fraScope"})
        QVERIFY2(on.EditorWindow::Find<QWidget>(QString::fromUtf16(name)).isVisible(),
                 qPrintable(QString::fromUtf16(name)));
    QCOMPARE(on.Button(u"bReplace"_s).text(), u"&Replace"_s);
    QCOMPARE(on.EditorWindow::Find<QGroupBox>(u"fraScope"_s).title(), u"Scope:"_s);
    QCOMPARE(on.Scope(0).text(), u"&Selected text"_s);
    QCOMPARE(on.Scope(1).text(), u"Entire &document"_s);
}

void FrmFindTest::ReplaceButtonOpensReplaceMode()
{
    Searching on(u"one one\n"_s);
    on.Text().SetSelection(0, 3);
    frmFind &dialog = on.Show(u"mnuFind"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(dialog.windowTitle(), u"Replace"_s);
    QVERIFY(on.With().isVisible());
    QCOMPARE(on.Text().Text(), u"one one\n"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 3}));
    QVERIFY(on.settings.GetAllSettings(Recent).empty());
}

void FrmFindTest::OneDialogServesBothModes()
{
    Searching on(u"one\n"_s);
    frmFind *dialog = &on.Show(u"mnuReplace"_s);
    on.Find().setEditText(u"typed"_s);
    QCOMPARE(&on.Show(u"mnuFind"_s), dialog);
    QCOMPARE(dialog->windowTitle(), u"Find"_s);
    QCOMPARE(on.Find().currentText(), u"typed"_s);
    QCOMPARE(on.window->findChildren<frmFind *>().size(), 1);
    on.Click(u"bClose"_s);
    Unload();
    QCOMPARE(on.Dialog(), nullptr);
    on.Row(u"Toolbar1_find"_s).trigger();
    QVERIFY(on.Dialog());
    QCOMPARE(on.Dialog()->windowTitle(), u"Find"_s);
    QCOMPARE(on.Find().currentText(), QString());
}

void FrmFindTest::FieldsComeFromTheStore()
{
    Searching on(u"one\n"_s);
    on.settings.SaveSetting(Recent, u"1"_s, u"newest"_s);
    on.settings.SaveText(Keys::FindReplace, u"with"_s);
    for (const FlagKey *key : {&Keys::FindWholeWords, &Keys::FindMatchCase, &Keys::FindWrapSearches})
        on.settings.SaveFlag(*key, true);
    on.settings.SaveNumber(Keys::FindScope, 0);
    on.Show(u"mnuReplace"_s);
    QCOMPARE(on.Find().currentText(), u"newest"_s);
    QCOMPARE(on.Find().lineEdit()->selectedText(), u"newest"_s);
    QCOMPARE(on.With().text(), u"with"_s);
    for (const char16_t *name : {u"chkWholeWords", u"chkCase", u"chkWrap"})
        QVERIFY(on.Check(QString::fromUtf16(name)).isChecked());
    QVERIFY(on.Scope(0).isChecked());
    QVERIFY(!on.Button(u"bFind"_s).isEnabled());
}

void FrmFindTest::SelectionOnOneLineIsTheText()
{
    Searching on(u"one two\nthree"_s);
    on.settings.SaveSetting(Recent, u"1"_s, u"newest"_s);
    on.Text().SetSelection(4, 7);
    on.Show(u"mnuFind"_s);
    QCOMPARE(on.Find().currentText(), u"two"_s);
    QCOMPARE(on.Find().lineEdit()->selectedText(), u"two"_s);
    QVERIFY(on.Scope(1).isChecked());
}

void FrmFindTest::SeveralLinesAreTheScope()
{
    Searching on(u"one two\nthree"_s);
    on.settings.SaveSetting(Recent, u"1"_s, u"newest"_s);
    on.Text().SetSelection(4, 10);
    on.Show(u"mnuReplace"_s);
    QCOMPARE(on.Find().currentText(), u"newest"_s);
    QVERIFY(on.Scope(0).isChecked());
    QVERIFY(!on.Button(u"bFind"_s).isEnabled());
    QVERIFY(!on.Button(u"bReplace"_s).isEnabled());
    QVERIFY(on.Button(u"bReplaceAll"_s).isEnabled());
    on.Key(Qt::Key_F3);
    QCOMPARE(on.Text().Selection(), (TextSpan{4, 10}));
    on.Scope(1).click();
    QVERIFY(on.Button(u"bFind"_s).isEnabled());
    QVERIFY(on.Button(u"bReplace"_s).isEnabled());
    on.Scope(0).click();
    QVERIFY(!on.Button(u"bFind"_s).isEnabled());
    // Without the frame the scope cannot be changed: it must not lock the buttons.
    on.Show(u"mnuFind"_s);
    QVERIFY(on.Button(u"bFind"_s).isEnabled());
    QVERIFY(on.Button(u"bReplace"_s).isEnabled());
}

void FrmFindTest::TheKeysStartAgain_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("row");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("inDialog");
    const std::pair<QString, Qt::Key> rows[] = {{u"mnuFind"_s, Qt::Key_F}, {u"mnuReplace"_s, Qt::Key_H}};
    for (const auto &[before, unused] : rows) {
        for (const auto &[row, key] : rows) {
            for (const bool inDialog : {false, true}) {
                const char *place = inDialog ? "dialog" : "window";
                QTest::addRow("%s, then %s in the %s", qPrintable(before), qPrintable(row), place)
                    << before << row << key << inDialog;
            }
        }
    }
}

void FrmFindTest::TheKeysStartAgain()
{
    QFETCH(QString, before);
    QFETCH(QString, row);
    QFETCH(Qt::Key, key);
    QFETCH(bool, inDialog);
    Searching on(u"one two\nthree"_s);
    on.Text().SetSelection(0, 3);
    frmFind &dialog = on.Show(before);
    on.Find().setEditText(u"typed"_s);
    on.Check(u"chkCase"_s).setFocus();
    on.Text().SetSelection(4, 7);
    if (inDialog) {
        on.Key(key, Qt::ControlModifier);
    } else {
        on.window->activateWindow();
        on.Text().setFocus();
        QVERIFY(Eventually([&] { return QApplication::activeWindow() == on.window.get(); }));
        QTest::keyClick(&on.Text(), key, Qt::ControlModifier);
    }
    QVERIFY(Eventually([&] { return QApplication::activeWindow() == &dialog; }));
    QCOMPARE(on.window->findChildren<frmFind *>().size(), 1);
    QCOMPARE(dialog.windowTitle(), row == u"mnuFind"_s ? u"Find"_s : u"Replace"_s);
    QCOMPARE(on.Find().currentText(), u"two"_s);
    QCOMPARE(on.Find().lineEdit()->selectedText(), u"two"_s);
    QCOMPARE(QApplication::focusWidget(), &on.Find());
    QCOMPARE(on.Text().Text(), u"one two\nthree"_s);
    QTest::keyClicks(QApplication::focusWidget(), u"thr"_s); // in place of what is selected
    QCOMPARE(on.Find().currentText(), u"thr"_s);
    on.Key(Qt::Key_Return);
    QCOMPARE(on.Text().Selection(), (TextSpan{8, 11}));
}

void FrmFindTest::TheKeysLeaveWhatIsTyped()
{
    Searching on(u"one two\nthree"_s);
    on.Show(u"mnuFind"_s);
    on.Find().setEditText(u"typed"_s);
    on.Check(u"chkCase"_s).setFocus();
    on.Key(Qt::Key_H, Qt::ControlModifier); // nothing is selected in the text
    QCOMPARE(on.Find().currentText(), u"typed"_s);
    QCOMPARE(on.Find().lineEdit()->selectedText(), u"typed"_s);
    QCOMPARE(QApplication::focusWidget(), &on.Find());
    QVERIFY(on.Scope(1).isChecked());
    on.Text().SetSelection(4, 10);
    on.Key(Qt::Key_H, Qt::ControlModifier);
    QCOMPARE(on.Find().currentText(), u"typed"_s);
    QVERIFY(on.Scope(0).isChecked());
}

void FrmFindTest::TheListHoldsSevenStrings()
{
    Searching on(u"abcdefghi"_s);
    for (int key = 1; key <= 8; ++key)
        on.settings.SaveSetting(Recent, QString::number(key), QString(QChar(u'a' + key)));
    on.Show(u"mnuFind"_s);
    QCOMPARE(on.Find().count(), 7);
    QCOMPARE(on.Find().itemText(0), u"b"_s);
    QCOMPARE(on.Find().itemText(6), u"h"_s);
    on.Find().setEditText(u"a"_s);
    on.Click(u"bFind"_s);
    QCOMPARE(on.Find().count(), 7);
    QCOMPARE(on.Find().itemText(0), u"a"_s);
    QCOMPARE(on.Find().itemText(6), u"g"_s);
    QCOMPARE(on.Find().currentText(), u"a"_s);
    QCOMPARE(on.settings.GetSetting(Recent, u"8"_s), u"h"_s);
}

void FrmFindTest::TypedTextIsNotCompleted()
{
    Searching on(u"one"_s);
    on.settings.SaveSetting(Recent, u"1"_s, u"oscil"_s);
    on.Show(u"mnuFind"_s);
    QTest::keyClicks(on.Find().lineEdit(), u"os"_s);
    QCOMPARE(on.Find().currentText(), u"os"_s);
}

void FrmFindTest::EnterFindsAndTheDialogKeepsTheFocus()
{
    Searching on(QString(u"line\n"_s).repeated(500) + u"Needle\n"_s);
    frmFind &dialog = on.Show(u"mnuFind"_s);
    QTest::keyClicks(on.Find().lineEdit(), u"needle"_s);
    on.Key(Qt::Key_Return);
    QCOMPARE(on.Text().Selection(), (TextSpan{2500, 2506}));
    QVERIFY(on.Text().FirstVisibleLine() > 400);
    QCOMPARE(on.Status(), u"'needle' found at character 2501"_s);
    QVERIFY(dialog.isActiveWindow());
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.focusWidget(), &on.Find());
    QCOMPARE(on.settings.GetSetting(Recent, u"1"_s), u"needle"_s);
    QCOMPARE(on.settings.StoredText(Keys::FindScope).value_or(QString()), u"1"_s);
}

void FrmFindTest::F3FindsLikeTheButton()
{
    Searching on(u"one two One two"_s);
    on.Show(u"mnuFind"_s);
    QTest::keyClicks(on.Find().lineEdit(), u"one"_s);
    on.Key(Qt::Key_F3);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 3}));
    on.Key(Qt::Key_F3);
    QCOMPARE(on.Text().Selection(), (TextSpan{8, 11}));
    on.Check(u"chkCase"_s).setChecked(true);
    on.ExpectMissing(u"one"_s);
    on.Key(Qt::Key_F3);
    QVERIFY(on.settings.Flag(Keys::FindMatchCase));
    on.desktop.CheckAllCame();
}

void FrmFindTest::SearchWraps()
{
    Searching on(u"one two"_s);
    on.Text().SetSelection(4, 4);
    on.Show(u"mnuFind"_s);
    QTest::keyClicks(on.Find().lineEdit(), u"one"_s);
    on.Check(u"chkWrap"_s).setChecked(true);
    on.Click(u"bFind"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 3}));
    QCOMPARE(on.Status(), u"Restarting from the beginning of the document... 'one' found at character 1"_s);
    QVERIFY(on.settings.Flag(Keys::FindWrapSearches));
}

void FrmFindTest::NothingFoundIsToldOnce()
{
    Searching on(u"one two"_s);
    on.Show(u"mnuFind"_s);
    on.Check(u"chkWrap"_s).setChecked(true);
    on.Click(u"bFind"_s); // nothing to find: nothing happens
    QTest::keyClicks(on.Find().lineEdit(), u"three"_s);
    on.ExpectMissing(u"three"_s);
    on.Click(u"bFind"_s);
    on.desktop.CheckAllCame();
}

void FrmFindTest::FindAgainNeverWraps()
{
    Searching on(u"one two one"_s);
    on.settings.SaveFlag(Keys::FindWrapSearches, true);
    on.settings.SaveSetting(Recent, u"1"_s, u"one"_s);
    on.window->activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(on.window.get()));
    QTest::keyClick(&on.Text(), Qt::Key_F3);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 3}));
    QTest::keyClick(&on.Text(), Qt::Key_F3);
    QCOMPARE(on.Text().Selection(), (TextSpan{8, 11}));
    on.ExpectMissing(u"one"_s);
    QTest::keyClick(&on.Text(), Qt::Key_F3);
    on.desktop.CheckAllCame();
}

void FrmFindTest::ReplaceGoesStepByStep()
{
    Searching on(u"one One one"_s);
    on.Show(u"mnuReplace"_s);
    QTest::keyClicks(on.Find().lineEdit(), u"one"_s);
    QTest::keyClicks(&on.With(), u"three"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 3}));
    QCOMPARE(on.Text().Text(), u"one One one"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"three One one"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"three One one"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{10, 13}));
    on.ExpectMissing(u"one"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"three One three"_s);
    QCOMPARE(on.settings.Text(Keys::FindReplace), u"three"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), u"three One one"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), u"one One one"_s);
    QVERIFY(!on.Text().CanUndo());
}

void FrmFindTest::ReplaceAllIsOneStepOfUndo()
{
    Searching on(u"a b A\nb a"_s);
    on.Text().ApplyStyles(0, 9, {{2, 3, StyleClass::Comment}, {6, 1, StyleClass::Opcode}});
    on.Text().SetSelection(2, 3);
    on.window->activateWindow();
    on.Text().setFocus();
    on.Show(u"mnuReplace"_s);
    on.Find().setEditText(u"a"_s);
    on.With().setText(u"xyz"_s);
    on.ExpectReplaced(3);
    on.Click(u"bReplaceAll"_s);
    QCOMPARE(on.Text().Text(), u"xyz b xyz\nb xyz"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{15, 15}));
    QVERIFY(on.Text().isVisible());
    QCOMPARE(on.window->focusWidget(), &on.Text());
    QVERIFY(on.window->Context().document.Modified);
    QCOMPARE(on.Text().StyleAt(0), StyleClass::Text);
    QCOMPARE(on.Text().StyleAt(4), StyleClass::Comment);
    QCOMPARE(on.Text().StyleAt(8), StyleClass::Comment);
    QCOMPARE(on.Text().StyleAt(9), StyleClass::Text);
    QCOMPARE(on.Text().StyleAt(10), StyleClass::Opcode);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), u"a b A\nb a"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{2, 3}));
    QCOMPARE(on.Text().StyleAt(4), StyleClass::Comment);
    QCOMPARE(on.Text().StyleAt(5), StyleClass::Text);
    QCOMPARE(on.Text().StyleAt(6), StyleClass::Opcode);
    QVERIFY(!on.Text().CanUndo());
    on.Row(u"mnuRedo"_s).trigger();
    QCOMPARE(on.Text().Text(), u"xyz b xyz\nb xyz"_s);
    QCOMPARE(on.Text().StyleAt(4), StyleClass::Comment);
    QCOMPARE(on.Text().StyleAt(10), StyleClass::Opcode);
}

void FrmFindTest::ReplaceAllStaysInTheSelection()
{
    Searching on(u"a a\na a\na"_s);
    on.Text().SetSelection(2, 7);
    on.Show(u"mnuReplace"_s);
    on.Find().setEditText(u"a"_s);
    on.With().setText(u"long"_s);
    on.ExpectReplaced(3);
    on.Click(u"bReplaceAll"_s);
    QCOMPARE(on.Text().Text(), u"a long\nlong long\na"_s);
}

void FrmFindTest::ReplaceAllInOtherScripts()
{
    const QString text = u"\u00e8\U0001f600x\u00e8 \u4e2dx\U0001f600\n\u00c8"_s;
    Searching on(text);
    on.Show(u"mnuReplace"_s);
    const auto replaceAll = [&](const QString &what, const QString &with, int times) {
        on.Find().setEditText(what);
        on.With().setText(with);
        on.ExpectReplaced(times);
        on.Click(u"bReplaceAll"_s);
    };
    replaceAll(u"\U0001f600"_s, u"o"_s, 2);
    QCOMPARE(on.Text().Text(), u"\u00e8ox\u00e8 \u4e2dxo\n\u00c8"_s);
    replaceAll(u"\u00e8"_s, u"\U0001f3b5!"_s, 3);
    QCOMPARE(on.Text().Text(), u"\U0001f3b5!ox\U0001f3b5! \u4e2dxo\n\U0001f3b5!"_s);
    replaceAll(u"\u4e2d"_s, u""_s, 1);
    QCOMPARE(on.Text().Text(), u"\U0001f3b5!ox\U0001f3b5! xo\n\U0001f3b5!"_s);
    for (int step = 0; step < 3; ++step)
        on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), text);
}

void FrmFindTest::ReplaceAllOfManyHits()
{
    const QString line = QString(94, u'.') + u"oscil\n"_s;
    Searching on(line.repeated(100'000));
    on.Show(u"mnuReplace"_s);
    on.Find().setEditText(u"oscil"_s);
    on.With().setText(u"poscil3"_s);
    on.ExpectReplaced(100'000);
    on.Click(u"bReplaceAll"_s);
    QCOMPARE(on.Text().Length(), line.size() * 100'000 + 200'000);
    on.Row(u"mnuUndo"_s).trigger();
    QVERIFY(on.Text().Text() == line.repeated(100'000));
    QVERIFY(!on.Text().CanUndo());
}

void FrmFindTest::ClosingSavesThePlace()
{
    Searching on(u"one"_s);
    frmFind &dialog = on.Show(u"mnuFind"_s);
    dialog.move(120, 140);
    QCoreApplication::processEvents();
    const int dpi = dialog.logicalDpiX();
    on.Key(Qt::Key_Escape);
    Unload();
    QCOMPARE(on.Dialog(), nullptr);
    QCOMPARE(FromTwips(on.settings.Number(Keys::FindX, 0), dpi), 120);
    QCOMPARE(FromTwips(on.settings.Number(Keys::FindY, 0), dpi), 140);
    QCOMPARE(on.Show(u"mnuReplace"_s).pos(), QPoint(120, 140));
    on.Dialog()->move(60, 70);
    on.window->close();
    QVERIFY(!on.Dialog() || !on.Dialog()->isVisible());
    QCOMPARE(FromTwips(on.settings.Number(Keys::FindX, 0), dpi), 60);
}

void FrmFindTest::PlaceOffTheScreensComesBack()
{
    Searching on(u"one"_s);
    on.settings.SaveNumber(Keys::FindX, 900000);
    on.settings.SaveNumber(Keys::FindY, -900000);
    const frmFind &dialog = on.Show(u"mnuFind"_s);
    QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
}

void FrmFindTest::TheReplaceFormComesWhole()
{
    Searching on(u"one"_s);
    const frmFind &small = on.Show(u"mnuFind"_s);
    const QRect screen = small.screen()->availableGeometry();
    const QPoint corner = screen.bottomRight() - QPoint(small.width(), small.height());
    const int height = small.height();
    const int dpi = small.logicalDpiX();
    on.Key(Qt::Key_Escape);
    Unload();
    // Stored where the lower form of the dialog just fits.
    on.settings.SaveNumber(Keys::FindX, ToTwips(corner.x(), dpi));
    on.settings.SaveNumber(Keys::FindY, ToTwips(corner.y(), dpi));
    const frmFind &dialog = on.Show(u"mnuReplace"_s);
    QVERIFY(dialog.height() > height);
    QVERIFY2(screen.contains(dialog.frameGeometry()), qPrintable(QDebug::toString(dialog.frameGeometry())));
}

void FrmFindTest::WithoutAStoredPlaceItComesWhole()
{
    Searching on(u"one"_s);
    const QRect screen = on.window->screen()->availableGeometry();
    on.window->resize(300, 200);
    for (const QPoint &corner :
         {screen.bottomRight() - QPoint(40, 40), screen.topLeft() - QPoint(250, 150)}) {
        on.window->move(corner);
        for (const QString &row : {u"mnuFind"_s, u"mnuReplace"_s}) {
            on.settings.DeleteSetting(Keys::FindX);
            on.settings.DeleteSetting(Keys::FindY);
            const frmFind &dialog = on.Show(row);
            QVERIFY2(screen.contains(dialog.frameGeometry()),
                     qPrintable(QDebug::toString(dialog.frameGeometry())));
            on.Key(Qt::Key_Escape);
            Unload();
        }
    }
}

void FrmFindTest::TheGrownDialogStaysOnTheScreen()
{
    Searching on(u"one"_s);
    frmFind &dialog = on.Show(u"mnuFind"_s);
    const QRect screen = dialog.screen()->availableGeometry();
    const QSize frame = dialog.frameGeometry().size();
    dialog.move(screen.right() - frame.width(), screen.bottom() - frame.height());
    QVERIFY(screen.contains(dialog.frameGeometry()));
    const int before = dialog.height();
    on.Click(u"bReplace"_s);
    QVERIFY(dialog.height() > before);
    QVERIFY2(screen.contains(dialog.frameGeometry()), qPrintable(QDebug::toString(dialog.frameGeometry())));
}

void FrmFindTest::DialogGivesWayToTheHit()
{
    Searching on(QString(u"one two three four five six seven\n"_s).repeated(12) + u"needle\n"_s);
    frmFind &dialog = on.Show(u"mnuFind"_s);
    const auto place = [&] {
        return on.Text().RangeOnScreen(on.Text().Length() - 7, on.Text().Length() - 1);
    };
    const QRect hit = place();
    dialog.move(hit.center() - QPoint(30, 20));
    QVERIFY(dialog.frameGeometry().intersects(hit));
    on.Find().setEditText(u"needle"_s);
    on.Click(u"bFind"_s);
    QCOMPARE(place(), hit);
    QCOMPARE(on.Text().SelectedText(), u"needle"_s);
    QVERIFY(!dialog.frameGeometry().intersects(hit));
    QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
}

void FrmFindTest::AnOptionThatCannotBeReadIsReported()
{
    Searching on(u"one"_s);
    on.settings.SaveStoredText(Keys::FindWholeWords, u"perhaps"_s);
    on.Row(u"mnuFindAgain"_s).trigger();
    on.desktop.ExpectMessage({.text = u"An error has occurred:\nFindWholeWords=perhaps\nType mismatch (13)\n"
                                      "Error source: Zelvane\n\nDo you want to report this bug via email?"_s,
                              .icon = BoxIcon::Critical,
                              .buttons = BoxButtons::OkCancel},
                             BoxAnswer::Cancel);
    QCoreApplication::processEvents();
    on.desktop.CheckAllCame();
}

void FrmFindTest::WithoutTheSettingThereIsNoBox()
{
    Searching on(u"a.b a+b"_s);
    on.settings.SaveFlag(Keys::FindRegularExpression, true);
    on.Show(u"mnuFind"_s);
    QVERIFY(!on.Check(u"chkRegularExpression"_s).isVisible());
    on.Find().setEditText(u"a+"_s);
    on.Click(u"bFind"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{4, 6}));
    QVERIFY(on.settings.Flag(Keys::FindRegularExpression)); // what nobody has seen is not changed
}

void FrmFindTest::TheBoxComesAndGoesWithTheSetting()
{
    Searching on(u"one"_s);
    frmFind &dialog = on.Show(u"mnuFind"_s);
    QCheckBox &box = on.Check(u"chkRegularExpression"_s);
    const int height = dialog.height();
    on.settings.SaveFlag(Keys::RegularExpressions, true);
    dialog.FollowSettings();
    QVERIFY(box.isVisible());
    QCOMPARE(box.text(), u"Regular e&xpression"_s);
    QVERIFY(!box.isChecked());
    QVERIFY(dialog.height() > height);
    on.settings.SaveFlag(Keys::RegularExpressions, false);
    dialog.FollowSettings();
    QVERIFY(!box.isVisible());
    QCOMPARE(dialog.height(), height);
}

void FrmFindTest::RegularExpressionsAreFound()
{
    Searching on(u"instr 1\nendin\ninstr 22\nendin\n"_s);
    on.settings.SaveFlag(Keys::RegularExpressions, true);
    on.Show(u"mnuFind"_s);
    on.Find().setEditText(u"^instr\\s+\\d+$"_s);
    on.ExpectMissing(u"^instr\\s+\\d+$"_s);
    on.Click(u"bFind"_s);
    on.Check(u"chkRegularExpression"_s).setChecked(true);
    on.Click(u"bFind"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 7}));
    on.Click(u"bFind"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{14, 22}));
    QCOMPARE(on.Status(), u"'^instr\\s+\\d+$' found at character 15"_s);
    on.Click(u"bClose"_s);
    Unload();
    on.Text().SetSelection(0, 0);
    on.Row(u"mnuFindAgain"_s).trigger();
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 7}));
    on.Show(u"mnuFind"_s);
    QVERIFY(on.Check(u"chkRegularExpression"_s).isChecked());
    on.desktop.CheckAllCame();
}

void FrmFindTest::RegularExpressionsAreReplacedByStep()
{
    Searching on(u"a1 = a2 \u00e8 \U0001f600 a3 = a4"_s);
    on.settings.SaveFlag(Keys::RegularExpressions, true);
    on.settings.SaveFlag(Keys::FindRegularExpression, true);
    on.Show(u"mnuReplace"_s);
    on.Find().setEditText(u"(\\w+) = (\\w+)"_s);
    on.With().setText(u"\\2 = \\1"_s);
    on.Click(u"bReplace"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"a2 = a1 \u00e8 \U0001f600 a3 = a4"_s);
    on.ExpectMissing(u"(\\w+) = (\\w+)"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"a2 = a1 \u00e8 \U0001f600 a4 = a3"_s);
    on.desktop.CheckAllCame();
    // A place between characters, once it has been found.
    on.Text().SetText(u"one\ntwo\nthree\n"_s);
    on.Text().SetSelection(0, 0);
    on.Find().setEditText(u"^"_s);
    on.With().setText(u"; "_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"one\ntwo\nthree\n"_s);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"one\n; two\nthree\n"_s);
    on.ExpectMissing(u"^"_s);
    on.Click(u"bReplace"_s);
    on.desktop.CheckAllCame();
    QCOMPARE(on.Text().Text(), u"one\n; two\n; three\n"_s);
    on.Text().SetSelection(0, 0);
    on.Click(u"bReplace"_s);
    QCOMPARE(on.Text().Text(), u"one\n; two\n; three\n"_s);
}

void FrmFindTest::RegularExpressionsAreReplacedInOneStep()
{
    const QString text = u"k1 x \u00e8 k22 y\nk3 z\n"_s;
    Searching on(text);
    on.Text().ApplyStyles(0, text.size(), {{3, 4, StyleClass::Comment}, {11, 1, StyleClass::Opcode}});
    on.settings.SaveFlag(Keys::RegularExpressions, true);
    on.Show(u"mnuReplace"_s);
    on.Find().setEditText(u"k(\\d+)"_s);
    on.With().setText(u"\u00e9[\\1]"_s);
    on.Check(u"chkRegularExpression"_s).setChecked(true);
    on.ExpectReplaced(3);
    on.Click(u"bReplaceAll"_s);
    QCOMPARE(on.Text().Text(), u"\u00e9[1] x \u00e8 \u00e9[22] y\n\u00e9[3] z\n"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{21, 21}));
    QCOMPARE(on.Text().StyleAt(5), StyleClass::Comment);
    QCOMPARE(on.Text().StyleAt(8), StyleClass::Comment);
    QCOMPARE(on.Text().StyleAt(15), StyleClass::Opcode);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), text);
    QCOMPARE(on.Text().StyleAt(11), StyleClass::Opcode);
    QVERIFY(!on.Text().CanUndo());
    on.Find().setEditText(u"$"_s);
    on.With().setText(u" ;"_s);
    on.ExpectReplaced(3);
    on.Click(u"bReplaceAll"_s);
    QCOMPARE(on.Text().Text(), u"k1 x \u00e8 k22 y ;\nk3 z ;\n ;"_s);
    on.desktop.CheckAllCame();
}

void FrmFindTest::ABadExpressionIsTold()
{
    Searching on(u"one"_s);
    on.settings.SaveFlag(Keys::RegularExpressions, true);
    on.settings.SaveFlag(Keys::FindRegularExpression, true);
    on.Show(u"mnuFind"_s);
    on.Find().setEditText(u"o["_s);
    on.desktop.ExpectMessage({.text = u"Cannot understand the regular expression 'o[': missing terminating ] "
                                      "for character class (at character 3)."_s,
                              .icon = BoxIcon::Warning});
    on.Click(u"bFind"_s);
    on.desktop.CheckAllCame();
}

int main(int argc, char **argv)
{
    return RunUiTest<FrmFindTest>(argc, argv);
}

#include "test_frmfind.moc"
