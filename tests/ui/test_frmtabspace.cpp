// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmtabspace.h"

#include "shell/editorkeys.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"
#include "texttools/reformatter.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A main window with a text, and a script for the formatting dialog.
struct Formatting : EditorWindow {
    ModalDriver driver;
    frmTabSpace *dialog = nullptr;

    explicit Formatting(const QString &text)
    {
        Open();
        Text().LoadText(text);
        window->Context().document.Modified = false;
    }

    QListWidget &List() { return *dialog->findChild<QListWidget *>(u"lstMode"_s); }
    QLabel &Description() { return *dialog->findChild<QLabel *>(u"lblDesc"_s); }
    QLabel &Tip() { return *dialog->findChild<QLabel *>(u"lblTip"_s); }
    QPushButton &Button(const QString &name) { return *dialog->findChild<QPushButton *>(name); }
    void Click(const QString &name) { QTest::mouseClick(&Button(name), Qt::LeftButton); }
    void Choose(FormattingAlgorithm algorithm) { List().setCurrentRow(int(algorithm)); }

    /// Opens the dialog by its menu row; `script` has to end it.
    void Show(const std::function<void()> &script)
    {
        driver.Expect<frmTabSpace>([this, script](frmTabSpace &shown) {
            dialog = &shown;
            script();
        });
        Row(u"mnuTabSpace"_s).trigger();
        dialog = nullptr;
    }
    void Run(FormattingAlgorithm algorithm)
    {
        Show([this, algorithm] {
            Choose(algorithm);
            Click(u"bOK"_s);
        });
    }
    /// Runs the algorithm over a long text; `during` comes in the middle of it.
    void RunLong(FormattingAlgorithm algorithm, const std::function<void()> &during)
    {
        Show([this, algorithm, during] {
            Choose(algorithm);
            QTimer::singleShot(0, dialog, [this, during] {
                QCOMPARE(Tip().text(), u"Processing..."_s);
                QVERIFY(!Button(u"bOK"_s).isEnabled());
                QVERIFY(!List().isEnabled());
                QVERIFY(!Text().updatesEnabled());
                QVERIFY(QApplication::overrideCursor());
                QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
                during();
            });
            Click(u"bOK"_s);
        });
    }
    /// The window is as before the dialog.
    void CheckReleased()
    {
        QVERIFY(Text().updatesEnabled());
        QVERIFY(!QApplication::overrideCursor());
    }
};

QString LongText()
{
    return QString(u"a  b\tc \n"_s).repeated(100'000);
}

} // namespace

class FrmTabSpaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void HasItsControls();
    void ShowsTheDescription();
    void WithoutAChoiceItNotesAndStays();
    void WholeTextIsLeftSelected();
    void OnlyTheSelectionIsTaken();
    void EveryAlgorithmRuns_data();
    void EveryAlgorithmRuns();
    void IsOneStepOfUndo();
    void DoubleClickConfirms();
    void EscapeLeavesAll();
    void CancelWorksDuringARun();
    void ClosingWorksDuringARun();
    void ForeignChangeEndsTheRun();
    void TabSpacesOfZeroAreRefused();
    void UnreadableTabSpacesAreReported();
};

void FrmTabSpaceTest::HasItsControls()
{
    Formatting on(u"a"_s);
    on.Show([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Formatting Algorythms"_s);
        QVERIFY(on.dialog->isModal());
        QCOMPARE(on.dialog->findChild<QLabel *>(u"lblMode"_s)->text(), u"Choose a formatting algorythm:"_s);
        QCOMPARE(on.List().count(), 10);
        for (int row = 0; row < 10; ++row)
            QCOMPARE(on.List().item(row)->text(), FormattingAlgorithmTexts()[size_t(row)].name);
        QVERIFY(on.List().selectedItems().isEmpty());
        QCOMPARE(on.Description().text(), QString());
        QCOMPARE(on.Tip().text(), QString());
        QCOMPARE(on.Button(u"bOK"_s).text(), u"OK"_s);
        QCOMPARE(on.Button(u"bCancel"_s).text(), u"Cancel"_s);
        on.Click(u"bCancel"_s);
    });
}

void FrmTabSpaceTest::ShowsTheDescription()
{
    Formatting on(u"a"_s);
    on.Show([&] {
        on.List().setFocus();
        for (int row = 0; row < 10; ++row) {
            QTest::keyClick(&on.List(), Qt::Key_Down);
            QCOMPARE(on.Description().text(), FormattingAlgorithmTexts()[size_t(row)].description);
            QVERIFY2(on.Description().heightForWidth(on.Description().width()) <= on.Description().height(),
                     qPrintable(on.Description().text()));
        }
        on.Click(u"bCancel"_s);
    });
}

void FrmTabSpaceTest::WithoutAChoiceItNotesAndStays()
{
    Formatting on(u"a  b"_s);
    on.desktop.ExpectMessage(
        {.text = u"Choose a formatting algorythm or press Cancel."_s, .icon = BoxIcon::Information});
    on.Show([&] {
        on.Click(u"bOK"_s);
        QVERIFY(on.dialog->isVisible());
        QCOMPARE(on.Tip().text(), QString());
        on.Click(u"bCancel"_s);
    });
    on.desktop.CheckAllCame();
    QCOMPARE(on.Text().Text(), u"a  b"_s);
}

void FrmTabSpaceTest::WholeTextIsLeftSelected()
{
    Formatting on(u"a  b\nc   d  "_s);
    on.Text().SetSelection(3, 3);
    on.Run(FormattingAlgorithm::MultipleSpacesToOneTab);
    QCOMPARE(on.Text().Text(), u"a\tb\nc\td\t "_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{0, 9}));
    QVERIFY(on.window->Context().document.Modified);
    on.CheckReleased();
}

void FrmTabSpaceTest::OnlyTheSelectionIsTaken()
{
    Formatting on(u"a b c d"_s);
    on.Text().SetSelection(2, 5);
    on.Run(FormattingAlgorithm::OneSpaceToOneTab);
    QCOMPARE(on.Text().Text(), u"a b\tc d"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{2, 5}));
}

void FrmTabSpaceTest::EveryAlgorithmRuns_data()
{
    QTest::addColumn<int>("algorithm");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, FormattingAlgorithm algorithm, const QString &text,
                        const QString &result) { QTest::newRow(name) << int(algorithm) << text << result; };
    using enum FormattingAlgorithm;
    row("space to tab", OneSpaceToOneTab, u"a b  c"_s, u"a\tb\t\tc"_s);
    row("spaces to tab", MultipleSpacesToOneTab, u"a b  c"_s, u"a b\tc"_s);
    row("one or more to tab", OneOrMultipleSpacesToOneTab, u"a b  c"_s, u"a\tb\tc"_s);
    row("spaces to space", MultipleSpacesToOneSpace, u"a b   c"_s, u"a b c"_s);
    row("tab to space", OneTabToOneSpace, u"a\tb\t\tc"_s, u"a b  c"_s);
    row("tab to spaces", OneTabToMultipleSpaces, u"\ta\n1\tb"_s, u"  a\n1 b"_s);
    row("trailing", RemoveTrailing, u"a \nlong \t\nc "_s, u"a\nlong\nc "_s);
    row("indent", RemoveLineIndent, u" a\n \tb\nc"_s, u" a\nb\nc"_s);
    row("blank lines to one", MultipleBlankLinesToOne, u"a\n\n\n\n\nb"_s, u"a\n\nb"_s);
    row("no blank lines", RemoveBlankLines, u"a\n\n\nb"_s, u"a\nb"_s);
}

void FrmTabSpaceTest::EveryAlgorithmRuns()
{
    QFETCH(int, algorithm);
    QFETCH(QString, text);
    QFETCH(QString, result);
    Formatting on(text);
    on.settings.SaveNumber(Keys::TabSpaces, 4);
    on.Run(FormattingAlgorithm(algorithm));
    QCOMPARE(on.Text().Text(), result);
}

void FrmTabSpaceTest::IsOneStepOfUndo()
{
    Formatting on(u"a\t;b\t\n"_s);
    on.Text().ApplyStyles(0, 6, {{2, 2, StyleClass::Comment}});
    on.Text().SetSelection(1, 1);
    on.Run(FormattingAlgorithm::OneTabToOneSpace);
    QCOMPARE(on.Text().Text(), u"a ;b \n"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), u"a\t;b\t\n"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{1, 1}));
    QCOMPARE(on.Text().StyleAt(2), StyleClass::Comment);
    QVERIFY(!on.Text().CanUndo());
}

void FrmTabSpaceTest::DoubleClickConfirms()
{
    Formatting on(u"a b"_s);
    on.Show([&] {
        const QRect first = on.List().visualItemRect(on.List().item(0));
        QTest::mouseClick(on.List().viewport(), Qt::LeftButton, {}, first.center());
        QTest::mouseDClick(on.List().viewport(), Qt::LeftButton, {}, first.center());
    });
    QCOMPARE(on.Text().Text(), u"a\tb"_s);
}

void FrmTabSpaceTest::EscapeLeavesAll()
{
    Formatting on(u"a b"_s);
    on.Text().SetSelection(1, 1);
    on.Show([&] {
        on.Choose(FormattingAlgorithm::OneSpaceToOneTab);
        QTest::keyClick(on.dialog, Qt::Key_Escape);
    });
    QCOMPARE(on.Text().Text(), u"a b"_s);
    QCOMPARE(on.Text().Selection(), (TextSpan{1, 1}));
    QVERIFY(!on.window->Context().document.Modified);
}

void FrmTabSpaceTest::CancelWorksDuringARun()
{
    Formatting on(LongText());
    for (int algorithm = 0; algorithm < 10; ++algorithm) {
        bool came = false;
        on.RunLong(FormattingAlgorithm(algorithm), [&] {
            came = true;
            on.Click(u"bCancel"_s);
        });
        QVERIFY(came);
        QVERIFY(on.Text().Text() == LongText());
        QVERIFY(!on.Text().CanUndo());
        QVERIFY(!on.window->Context().document.Modified);
        on.CheckReleased();
    }
}

void FrmTabSpaceTest::ClosingWorksDuringARun()
{
    Formatting on(LongText());
    on.RunLong(FormattingAlgorithm::RemoveTrailing, [&] { on.dialog->close(); });
    QVERIFY(on.Text().Text() == LongText());
    on.CheckReleased();
}

void FrmTabSpaceTest::ForeignChangeEndsTheRun()
{
    Formatting on(LongText());
    on.Show([&] {
        on.Choose(FormattingAlgorithm::OneSpaceToOneTab);
        QTimer::singleShot(0, on.dialog, [&] { on.Text().LoadText(u"another  document"_s); });
        on.Click(u"bOK"_s);
        QVERIFY(on.dialog->isVisible());
        QVERIFY(on.Button(u"bOK"_s).isEnabled());
        QCOMPARE(on.Tip().text(), QString());
        on.Click(u"bCancel"_s);
    });
    QCOMPARE(on.Text().Text(), u"another  document"_s);
    on.CheckReleased();
}

void FrmTabSpaceTest::TabSpacesOfZeroAreRefused()
{
    Formatting on(u"a\tb"_s);
    on.settings.SaveNumber(Keys::TabSpaces, 0);
    on.desktop.ExpectMessage(
        {.text = u"The 'Tab spaces' setting has to be at least 1."_s, .icon = BoxIcon::Warning});
    on.Show([&] {
        on.Choose(FormattingAlgorithm::OneTabToMultipleSpaces);
        on.Click(u"bOK"_s);
        QVERIFY(on.dialog->isVisible());
        QVERIFY(on.Button(u"bOK"_s).isEnabled());
        QVERIFY(on.List().isEnabled());
        QCOMPARE(on.Tip().text(), QString());
        on.CheckReleased();
        on.Click(u"bCancel"_s);
    });
    on.desktop.CheckAllCame();
    QCOMPARE(on.Text().Text(), u"a\tb"_s);
    QVERIFY(!on.Text().CanUndo());
}

void FrmTabSpaceTest::UnreadableTabSpacesAreReported()
{
    Formatting on(u"a\tb"_s);
    on.settings.SaveStoredText(Keys::TabSpaces, u"many"_s);
    on.desktop.ExpectMessage(MismatchBox(u"TabSpaces=many"_s), BoxAnswer::Cancel);
    on.Show([&] {
        on.Choose(FormattingAlgorithm::OneTabToMultipleSpaces);
        on.Click(u"bOK"_s);
        QVERIFY(!on.dialog->isVisible());
    });
    QCoreApplication::processEvents();
    on.desktop.CheckAllCame();
    QCOMPARE(on.Text().Text(), Reformat(FormattingAlgorithm::OneTabToMultipleSpaces, u"a\tb", 8).value());
}

int main(int argc, char **argv)
{
    return RunUiTest<FrmTabSpaceTest>(argc, argv);
}

#include "test_frmtabspace.moc"
