// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/frmfindinfiles.h"

#include "shell/ui/appearance.h"
#include "shell/ui/screenplace.h"
#include "support/editorwindow.h"
#include "support/uitest.h"
#include "writing/findinfileskeys.h"
#include "writing/writingkeys.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QPointer>
#include <QPushButton>
#include <QRect>
#include <QScreen>
#include <QSignalSpy>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A main window with the aid on, and a folder of pieces.
struct FindingInFiles : EditorWindow {
    FindingInFiles()
    {
        settings.SaveFlag(Keys::FindInFiles, true);
        QDir(folder.path()).mkpath(u"pieces/deep"_s);
        Write(u"a.csd"_s, "instr 1\n\ta1 oscil  1, 2\nendin\n");
        Write(u"b.orc"_s, "; nothing\n");
        Write(u"deep/c.csd"_s, "x\noscil\nposcil\n");
        Write(u"nul.csd"_s, QByteArray("oscil\0", 6));
        settings.SaveText(Keys::FindInFilesFolder, Path({}));
        Open();
        static_cast<void>(QTest::qWaitForWindowActive(window.get()));
    }

    QString Path(const QString &name) const
    {
        return folder.path() + (name.isEmpty() ? u"/pieces"_s : u"/pieces/"_s + name);
    }
    QString Write(const QString &name, const QByteArray &bytes)
    {
        return WriteFile(u"pieces/"_s + name, bytes);
    }
    /// Begins a search that takes minutes in each file.
    void SearchLong()
    {
        QByteArray hard;
        for (int i = 0; i < 5000; ++i)
            hard += QByteArray(40, 'a') + "b\n";
        for (int i = 0; i < 50; ++i)
            Write(u"hard%1.csd"_s.arg(i), hard);
        Show();
        Text().setEditText(u"(a?){24}(a?){24}a{24}$"_s);
        Check(u"chkSearchExpression"_s).setChecked(true);
        Click(u"bSearch"_s);
        QVERIFY(Dialog()->IsSearching());
    }
    frmFindInFiles *Dialog() { return window->findChild<frmFindInFiles *>(); }
    frmFindInFiles &Show()
    {
        Row(u"mnuFindInFiles"_s).trigger();
        frmFindInFiles *dialog = Dialog();
        if (!Eventually([dialog] { return QApplication::activeWindow() == dialog; }))
            QTest::qFail("the dialog is not the active window", __FILE__, __LINE__);
        return *dialog;
    }
    QComboBox &Text() { return Find<QComboBox>(u"cmbFileText"_s); }
    QLineEdit &Field(const QString &name) { return Find<QLineEdit>(name); }
    QCheckBox &Check(const QString &name) { return Find<QCheckBox>(name); }
    QPushButton &Button(const QString &name) { return Find<QPushButton>(name); }
    QTreeView &List() { return Find<QTreeView>(u"lvwFound"_s); }
    QString Told() { return Find<QLabel>(u"lblFound"_s).text(); }
    void Click(const QString &name) { QTest::mouseClick(&Button(name), Qt::LeftButton); }
    bool Ended()
    {
        return Eventually([this] { return !Dialog()->IsSearching(); });
    }
    QStringList Rows()
    {
        QStringList rows;
        const QAbstractItemModel &model = *List().model();
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column)
                cells.append(model.index(row, column).data().toString());
            rows.append(cells.join(u'|'));
        }
        return rows;
    }
    TextControl &Editor() { return EditorWindow::Text(); }
    DocumentRecord &Document() { return window->Context().document; }
};

} // namespace

class FindInFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheCommandComesAndGoesWithTheAid();
    void OpensWithItsFields();
    void ListsWhatItFinds();
    void HeedsItsBoxes();
    void SaysWhatIsMissing();
    void EnterOpensTheLine();
    void UnsavedWorkIsAskedAbout();
    void InTheDocumentOnlyTheLineIsSelected();
    void StopEndsTheSearch();
    void TheWindowAndTheAidEndARunningSearch();
    void ClosingEndsTheSearchAndSavesThePlace();
    void TheFolderIsPicked();
    void TheDialogGivesWayToTheHit();
    void TheSizeIsHeldToTheScreen();
};

void FindInFilesTest::TheCommandComesAndGoesWithTheAid()
{
    FindingInFiles on;
    QVERIFY(on.Row(u"mnuFindInFiles"_s).isEnabled());
    const QPointer<frmFindInFiles> dialog = &on.Show();
    on.settings.SaveFlag(Keys::FindInFiles, false);
    on.window->Looks().ApplyAll();
    QVERIFY(!on.Row(u"mnuFindInFiles"_s).isEnabled());
    QVERIFY(!dialog);
    on.settings.SaveFlag(Keys::FindInFiles, true);
    on.window->Looks().ApplyAll();
    QVERIFY(on.Row(u"mnuFindInFiles"_s).isEnabled());
}

void FindInFilesTest::OpensWithItsFields()
{
    FindingInFiles on;
    on.Editor().LoadText(u"one two\n"_s);
    on.Editor().SetSelection(4, 7);
    frmFindInFiles &dialog = on.Show();
    QCOMPARE(dialog.windowTitle(), u"Find in Files"_s);
    QVERIFY(!dialog.isModal());
    QCOMPARE(on.Text().currentText(), u"two"_s);
    QCOMPARE(dialog.focusWidget(), &on.Text());
    QCOMPARE(on.Field(u"txtSearchFolder"_s).text(), on.Path({}));
    QCOMPARE(on.Field(u"txtSearchPatterns"_s).text(), u"*.orc;*.sco;*.csd"_s);
    QVERIFY(on.Check(u"chkSearchSubFolders"_s).isChecked());
    for (const QString &name : {u"chkSearchWords"_s, u"chkSearchCase"_s, u"chkSearchExpression"_s})
        QVERIFY2(!on.Check(name).isChecked(), qPrintable(name));
    QVERIFY(!on.Button(u"bStopSearch"_s).isEnabled());
    QVERIFY(!on.Button(u"bOpenFound"_s).isEnabled());
    on.Editor().SetSelection(0, 3);
    QCOMPARE(&on.Show(), &dialog);
    QCOMPARE(on.Text().currentText(), u"one"_s);
    for (const QObject *field : {static_cast<QObject *>(&on.Text()), static_cast<QObject *>(&on.List())})
        QVERIFY(!static_cast<const QWidget *>(field)->accessibleName().isEmpty());
}

void FindInFilesTest::ListsWhatItFinds()
{
    FindingInFiles on;
    on.Show();
    QTest::keyClicks(on.Text().lineEdit(), u"oscil"_s);
    QTest::keyClick(on.Text().lineEdit(), Qt::Key_Return);
    QVERIFY(on.Ended());
    QCOMPARE(on.Rows(),
             QStringList({u"a.csd|2|a1 oscil 1, 2"_s, u"deep/c.csd|2|oscil"_s, u"deep/c.csd|3|poscil"_s}));
    QCOMPARE(on.Told(), u"3 lines in 2 of 3 files. Passed over: 1 binary."_s);
    QCOMPARE(on.List().currentIndex().row(), 0);
    QVERIFY(on.Button(u"bOpenFound"_s).isEnabled());
    QCOMPARE(on.Text().itemText(0), u"oscil"_s);
    QCOMPARE(on.Text().currentText(), u"oscil"_s);
    // A second search begins with an empty list.
    on.Text().setEditText(u"not there"_s);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Rows().isEmpty());
    QVERIFY(on.Ended());
    QVERIFY(on.Rows().isEmpty());
    QCOMPARE(on.Told(), u"0 lines in 0 of 3 files. Passed over: 1 binary."_s);
    QVERIFY(!on.Button(u"bOpenFound"_s).isEnabled());
    on.Field(u"txtSearchPatterns"_s).setText(u"*.udo, *.txt"_s);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    QCOMPARE(on.Told(), u"No file there has such a name."_s);
}

void FindInFilesTest::HeedsItsBoxes()
{
    FindingInFiles on;
    on.Show();
    on.Text().setEditText(u"^\\s*OSC[i-l]+$"_s);
    on.Check(u"chkSearchExpression"_s).setChecked(true);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    QCOMPARE(on.Rows(), QStringList(u"deep/c.csd|2|oscil"_s));
    on.Check(u"chkSearchCase"_s).setChecked(true);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    QVERIFY(on.Rows().isEmpty());
    on.Check(u"chkSearchCase"_s).setChecked(false);
    on.Check(u"chkSearchExpression"_s).setChecked(false);
    on.Check(u"chkSearchWords"_s).setChecked(true);
    on.Check(u"chkSearchSubFolders"_s).setChecked(false);
    on.Text().setEditText(u"OSCIL"_s);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    QCOMPARE(on.Rows(), QStringList(u"a.csd|2|a1 oscil 1, 2"_s));
    QVERIFY(on.settings.Flag(Keys::FindInFilesWholeWords));
    QVERIFY(!on.settings.Flag(Keys::FindInFilesSubFolders));
}

void FindInFilesTest::SaysWhatIsMissing()
{
    FindingInFiles on;
    on.Show();
    const auto expect = [&](const QString &text) {
        on.desktop.ExpectMessage({.text = text, .icon = BoxIcon::Warning});
        on.Click(u"bSearch"_s);
        on.desktop.CheckAllCame();
        QVERIFY(!on.Dialog()->IsSearching());
    };
    expect(u"There is no text to find."_s);
    on.Text().setEditText(u"[a"_s);
    on.Check(u"chkSearchExpression"_s).setChecked(true);
    expect(u"Cannot understand the regular expression '[a': missing terminating ] for character class "
           "(at character 3)."_s);
    on.Field(u"txtSearchFolder"_s).setText(on.Path(u"gone"_s));
    expect(u"There is no folder '"_s + on.Path(u"gone"_s) + u"'."_s);
}

void FindInFilesTest::EnterOpensTheLine()
{
    FindingInFiles on;
    on.Show();
    on.Text().setEditText(u"oscil"_s);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    QTest::keyClick(on.Dialog(), Qt::Key_R, Qt::AltModifier);
    QCOMPARE(on.Dialog()->focusWidget(), &on.List());
    QTest::keyClick(&on.List(), Qt::Key_Down);
    QTest::keyClick(&on.List(), Qt::Key_Return);
    QCOMPARE(on.Document().CurrentFile, on.Path(u"deep/c.csd"_s));
    QCOMPARE(on.Editor().SelectedText(), u"oscil"_s);
    QVERIFY(Eventually([&] { return QApplication::activeWindow() == on.window.get(); }));
    QCOMPARE(on.window->focusWidget(), &on.Editor());
    QVERIFY(on.Dialog()->isVisible());
    // The same by a double click, and by the button.
    const QRect first = on.List().visualRect(on.List().model()->index(0, 2));
    QTest::mouseClick(on.List().viewport(), Qt::LeftButton, {}, first.center());
    QTest::mouseDClick(on.List().viewport(), Qt::LeftButton, {}, first.center());
    QCOMPARE(on.Document().CurrentFile, on.Path(u"a.csd"_s));
    QCOMPARE(on.Editor().Selection(), (TextSpan{12, 17}));
    on.List().setCurrentIndex(on.List().model()->index(2, 0));
    on.Click(u"bOpenFound"_s);
    QCOMPARE(on.Document().CurrentFile, on.Path(u"deep/c.csd"_s));
    QCOMPARE(on.Editor().Selection(), (TextSpan{9, 14}));
    on.Show();
    QCOMPARE(on.Text().currentText(), u"oscil"_s);
    on.desktop.CheckAllCame();
}

void FindInFilesTest::UnsavedWorkIsAskedAbout()
{
    FindingInFiles on;
    on.Show();
    on.Text().setEditText(u"oscil"_s);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    on.Editor().ReplaceSelection(u"my work"_s);
    QVERIFY(on.Document().Modified);
    const MessageBoxRequest question{
        .text = u"Save changes to Untitled?"_s, .icon = BoxIcon::Warning, .buttons = BoxButtons::YesNoCancel};
    on.desktop.ExpectMessage(question, BoxAnswer::Cancel);
    on.Click(u"bOpenFound"_s);
    on.desktop.CheckAllCame();
    QCOMPARE(on.Editor().Text(), u"my work"_s);
    QCOMPARE(on.Document().CurrentFile, QString());
    on.desktop.ExpectMessage(question, BoxAnswer::No);
    on.Click(u"bOpenFound"_s);
    QCOMPARE(on.Document().CurrentFile, on.Path(u"a.csd"_s));
    on.desktop.CheckAllCame();
}

void FindInFilesTest::InTheDocumentOnlyTheLineIsSelected()
{
    FindingInFiles on;
    on.Show();
    on.Text().setEditText(u"oscil"_s);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    on.Click(u"bOpenFound"_s);
    on.Editor().SetSelection(0, 0);
    on.Editor().ReplaceSelection(u"; two lines\n; more\n"_s);
    on.Click(u"bOpenFound"_s); // asks nothing, and finds the line where it is now
    QCOMPARE(on.Editor().SelectedText(), u"oscil"_s);
    QCOMPARE(on.Editor().LineOfOffset(on.Editor().Selection().start), 3);
    QVERIFY(on.Document().Modified);
    on.desktop.CheckAllCame();
}

void FindInFilesTest::StopEndsTheSearch()
{
    FindingInFiles on;
    on.SearchLong();
    QVERIFY(on.Button(u"bStopSearch"_s).isEnabled());
    on.Click(u"bStopSearch"_s);
    QVERIFY(on.Ended());
    QVERIFY2(on.Told().startsWith(u"Stopped. 0 lines"_s), qPrintable(on.Told()));
    QVERIFY(!on.Button(u"bStopSearch"_s).isEnabled());
}

void FindInFilesTest::TheWindowAndTheAidEndARunningSearch()
{
    const auto gone = [](const QPointer<frmFindInFiles> &dialog) {
        return Eventually([&dialog] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return !dialog;
        });
    };
    FindingInFiles switchedOff;
    switchedOff.SearchLong();
    QPointer<frmFindInFiles> dialog = switchedOff.Dialog();
    switchedOff.settings.SaveFlag(Keys::FindInFiles, false);
    switchedOff.window->Looks().ApplyAll();
    QVERIFY(gone(dialog));
    FindingInFiles closed;
    closed.SearchLong();
    dialog = closed.Dialog();
    closed.window->close();
    QVERIFY(gone(dialog));
    QVERIFY(!closed.window->isVisible());
    FindingInFiles deleted;
    deleted.SearchLong();
    dialog = deleted.Dialog();
    deleted.window.reset();
    QVERIFY(!dialog);
}

void FindInFilesTest::ClosingEndsTheSearchAndSavesThePlace()
{
    FindingInFiles on;
    frmFindInFiles &dialog = on.Show();
    dialog.move(20, 140);
    dialog.resize(700, 480);
    QCoreApplication::processEvents();
    const int dpi = dialog.logicalDpiX();
    const QPointer<frmFindInFiles> watched = &dialog;
    on.Text().setEditText(u"oscil"_s);
    on.Click(u"bSearch"_s);
    QTest::keyClick(on.Text().lineEdit(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!watched);
    QCOMPARE(FromTwips(on.settings.Number(Keys::FindInFilesX, 0), dpi), 20);
    QCOMPARE(FromTwips(on.settings.Number(Keys::FindInFilesY, 0), dpi), 140);
    frmFindInFiles &again = on.Show();
    QCOMPARE(again.pos(), QPoint(20, 140));
    QCOMPARE(again.size(), QSize(700, 480));
    QCOMPARE(on.Text().currentText(), u"oscil"_s);
    on.window->close();
    QVERIFY(!on.Dialog() || !on.Dialog()->isVisible());
}

void FindInFilesTest::TheFolderIsPicked()
{
    FindingInFiles on;
    on.Show();
    on.desktop.ExpectBrowseFolder(u"Search in this folder"_s, on.Path({}), on.Path(u"deep"_s));
    on.Click(u"bSearchFolder"_s);
    on.desktop.CheckAllCame();
    QCOMPARE(on.Field(u"txtSearchFolder"_s).text(), on.Path(u"deep"_s));
}

void FindInFilesTest::TheDialogGivesWayToTheHit()
{
    FindingInFiles on;
    frmFindInFiles &dialog = on.Show();
    dialog.resize(dialog.minimumSizeHint());
    on.Text().setEditText(u"oscil"_s);
    on.Click(u"bSearch"_s);
    QVERIFY(on.Ended());
    on.Click(u"bOpenFound"_s);
    const auto hit = [&] {
        return on.Editor().RangeOnScreen(on.Editor().Selection().start, on.Editor().Selection().end);
    };
    dialog.move(10, hit().center().y() - 20);
    QVERIFY(dialog.frameGeometry().intersects(hit()));
    on.Click(u"bOpenFound"_s);
    QCOMPARE(on.Editor().SelectedText(), u"oscil"_s);
    QVERIFY(!dialog.frameGeometry().intersects(hit()));
    QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
}

void FindInFilesTest::TheSizeIsHeldToTheScreen()
{
    FindingInFiles on;
    on.settings.SaveNumber(Keys::FindInFilesWidth, 200'000);
    on.settings.SaveNumber(Keys::FindInFilesHeight, 200'000);
    frmFindInFiles &dialog = on.Show();
    const QRect screen = dialog.screen()->availableGeometry();
    QVERIFY2(screen.contains(dialog.frameGeometry()), qPrintable(QDebug::toString(dialog.frameGeometry())));
    // Also where all is twice as large: half the width of a small screen is enough for what it holds.
    QVERIFY2(dialog.minimumSizeHint().width() < 600, qPrintable(QDebug::toString(dialog.minimumSizeHint())));
}

int main(int argc, char **argv)
{
    return RunUiTest<FindInFilesTest>(argc, argv);
}

#include "test_findinfiles.moc"
