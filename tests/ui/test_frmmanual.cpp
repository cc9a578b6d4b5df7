// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/runkeys.h"
#include "run/toolpaths.h"
#include "run/ui/frmflags.h"
#include "run/ui/frmmanual.h"
#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "shell/toolkeys.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// The dialog by its controls.
struct Manual {
    explicit Manual(frmManual &manual) : dialog(manual) {}

    template <typename Widget> Widget &Find(const QString &name) const
    {
        auto *found = dialog.findChild<Widget *>(name);
        if (!found)
            qFatal("no control named %s", qPrintable(name));
        return *found;
    }

    frmManual &dialog;
    QLineEdit &txtORC = Find<QLineEdit>(u"txtORC"_s);
    QLineEdit &txtSCO = Find<QLineEdit>(u"txtSCO"_s);
    QComboBox &cmbArgs = Find<QComboBox>(u"cmbArgs"_s);
    QPushButton &bORC = Find<QPushButton>(u"bORC"_s);
    QPushButton &bSCO = Find<QPushButton>(u"bSCO"_s);
    QPushButton &bFlags = Find<QPushButton>(u"bFlags"_s);
    QCheckBox &chkCsound2 = Find<QCheckBox>(u"chkCsound2"_s);
    QCheckBox &chkSaveFirst = Find<QCheckBox>(u"chkSaveFirst"_s);
    QRadioButton &chkFolderComp = Find<QRadioButton>(u"chkFolderComp"_s);
    QRadioButton &chkFolderDoc = Find<QRadioButton>(u"chkFolderDoc"_s);
    QPushButton &bOK = Find<QPushButton>(u"bOK"_s);
    QPushButton &bCancel = Find<QPushButton>(u"bCancel"_s);
};

/// A document in a folder of its own, two compilers, and the dialog on it.
class Run
{
public:
    QString Document(const QString &name)
    {
        context.document.CurrentFile = context.WriteFile(name);
        ClassifyDocument(context.document, context.settings);
        return context.document.CurrentFile;
    }
    Manual Open()
    {
        dialog = std::make_unique<frmManual>(RunContext{context.editor, tools, context.windows});
        dialog->show();
        if (!QTest::qWaitForWindowActive(dialog.get()))
            QTest::qFail("the dialog is not active", __FILE__, __LINE__);
        return Manual(*dialog);
    }
    /// The compiler is to be started in the document's folder.
    void ExpectRun(const QString &parameters)
    {
        context.desktop.ExpectShellRun(
            {.file = tools.Csound, .parameters = parameters, .folder = context.folder.path()});
    }

    TestContext context;
    ToolPaths tools{.Csound = u"/opt/one/csound"_s, .Csound2 = u"/opt/two/csound"_s};
    std::unique_ptr<frmManual> dialog;
};

} // namespace

class ManualTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ControlsAreNamed();
    void TabWalksTheControls();
    void MnemonicsReachTheFields();
    void FieldsByTheKindOfTheDocument();
    void WithoutDocument();
    void StoredChoices_data();
    void StoredChoices();
    void BadSettingIsItsDefault();
    void HistoryIsNotOffered();
    void HistoryFromKeyZeroIsOffered();
    void FocusSelectsAll();
    void FocusThatComesBackSelectsNothing();
    void BrowseForTheOrchestra();
    void BrowseForTheScore();
    void BrowseWithoutAFile();
    void FlagsDialog();
    void FlagsMenu();
    void RunsTheCompiler();
    void EnterRuns();
    void EscapeCancels();
    void SecondCompilerInItsFolderWithSaving();
    void AFailedSaveKeepsTheDialogOpen();
    void BlanksAreQuoted();
    void FailedMacroKeepsTheDialog();
    void WithoutCompilerPreferencesAreOffered();
    void WithoutCompilerNoClosesToo();
    void FailureIsReported();
    void ShiftSwapsMacros();
    void SaveFirstCanBeDropped();
    void EditorOpensIt();
    void EditorSavesFirst();
};

void ManualTest::ControlsAreNamed()
{
    Run run;
    Manual manual = run.Open();
    QCOMPARE(manual.dialog.objectName(), u"frmManual"_s);
    QCOMPARE(manual.dialog.windowTitle(), u"Zelvane - Run Csound"_s);
    const std::pair<const char16_t *, const char16_t *> labels[] = {
        {u"lblORC", u"&Orchestra:"}, {u"lblSCO", u"&Score:"}, {u"lblArgs", u"&Flags:"}};
    const QWidget *const buddies[] = {&manual.txtORC, &manual.txtSCO, &manual.cmbArgs};
    for (int i = 0; i < 3; ++i) {
        const QLabel &label = manual.Find<QLabel>(QString::fromUtf16(labels[i].first));
        QCOMPARE(label.text(), QString::fromUtf16(labels[i].second));
        QCOMPARE(label.buddy(), buddies[i]);
    }
    QCOMPARE(manual.bORC.text(), u"Browse..."_s);
    QCOMPARE(manual.bSCO.text(), u"Browse..."_s);
    QCOMPARE(manual.chkCsound2.text(), u"&Use Csound #2"_s);
    QCOMPARE(manual.chkSaveFirst.text(), u"&Save document first"_s);
    QCOMPARE(manual.chkFolderComp.text(), u"Compiler"_s);
    QCOMPARE(manual.chkFolderDoc.text(), u"Document"_s);
    QCOMPARE(manual.bOK.text(), u"&Run Csound"_s);
    QCOMPARE(manual.bCancel.text(), u"Cancel"_s);
    QVERIFY(manual.bOK.isDefault());
    QCOMPARE(manual.cmbArgs.toolTip(), u"Parameters passed to Csound. Macros allowed."_s);
    QCOMPARE(manual.chkFolderComp.toolTip(), u"This setting is required by Winsound."_s);
    QCOMPARE(manual.chkFolderDoc.toolTip(), u"Required when #includes with relative paths are used."_s);
    // The two Browse buttons are told apart by those who do not see them.
    QVERIFY(!manual.bORC.accessibleName().isEmpty());
    QVERIFY(manual.bORC.accessibleName() != manual.bSCO.accessibleName());
    QVERIFY(manual.cmbArgs.isEditable());
}

void ManualTest::TabWalksTheControls()
{
    Run run;
    Manual manual = run.Open();
    manual.txtORC.setFocus();
    for (QWidget *next : std::initializer_list<QWidget *>{
             &manual.txtORC, &manual.bORC, &manual.txtSCO, &manual.bSCO, &manual.cmbArgs, &manual.bFlags,
             &manual.chkCsound2, &manual.chkSaveFirst, &manual.chkFolderDoc, &manual.bOK, &manual.bCancel,
             &manual.txtORC}) {
        QCOMPARE(manual.dialog.focusWidget(), next);
        QTest::keyClick(manual.dialog.focusWidget(), Qt::Key_Tab);
    }
    // The two options are one stop, with the arrow keys between them.
    manual.chkFolderDoc.setFocus();
    QTest::keyClick(&manual.chkFolderDoc, Qt::Key_Up);
    QVERIFY(manual.chkFolderComp.isChecked());
    QVERIFY(!manual.chkFolderDoc.isChecked());
    QVERIFY(manual.chkFolderComp.hasFocus());
}

void ManualTest::MnemonicsReachTheFields()
{
    Run run;
    Manual manual = run.Open();
    QTest::keyClick(&manual.dialog, Qt::Key_O, Qt::AltModifier);
    QVERIFY(manual.txtORC.hasFocus());
    QTest::keyClick(&manual.dialog, Qt::Key_F, Qt::AltModifier);
    QVERIFY(manual.cmbArgs.hasFocus());
    QTest::keyClick(&manual.dialog, Qt::Key_U, Qt::AltModifier);
    QTRY_VERIFY(manual.chkCsound2.isChecked());
    // Two controls share the letter S: it goes from one to the other.
    QTest::keyClick(&manual.dialog, Qt::Key_S, Qt::AltModifier);
    const bool scoreFirst = manual.txtSCO.hasFocus();
    QVERIFY(scoreFirst || manual.chkSaveFirst.hasFocus());
    QTest::keyClick(&manual.dialog, Qt::Key_S, Qt::AltModifier);
    QCOMPARE(manual.chkSaveFirst.hasFocus(), scoreFirst);
    QCOMPARE(manual.txtSCO.hasFocus(), !scoreFirst);
}

void ManualTest::FieldsByTheKindOfTheDocument()
{
    {
        Run run;
        const QString score = run.context.WriteFile(u"song.sco"_s);
        const QString orchestra = run.Document(u"song.orc"_s);
        Manual manual = run.Open();
        QCOMPARE(manual.txtORC.text(), orchestra);
        QCOMPARE(manual.txtSCO.text(), score);
        // The files are known: the flags are what is left to say.
        QVERIFY(manual.cmbArgs.hasFocus());
    }
    {
        Run run;
        const QString orchestra = run.context.WriteFile(u"song2.orc"_s); // only a similar name
        const QString score = run.Document(u"song.sco"_s);
        Manual manual = run.Open();
        QCOMPARE(manual.txtORC.text(), orchestra);
        QCOMPARE(manual.txtSCO.text(), score);
    }
    for (const QString &name : {u"song.csd"_s, u"song.txt"_s}) {
        Run run;
        const QString document = run.Document(name);
        Manual manual = run.Open();
        QCOMPARE(manual.txtORC.text(), document);
        QCOMPARE(manual.txtSCO.text(), QString());
    }
}

void ManualTest::WithoutDocument()
{
    Run run;
    Manual manual = run.Open();
    QCOMPARE(manual.txtORC.text(), QString());
    QCOMPARE(manual.txtSCO.text(), QString());
    QCOMPARE(manual.cmbArgs.currentText(), QString());
    QVERIFY(!manual.chkCsound2.isChecked());
    QVERIFY(!manual.chkSaveFirst.isChecked());
    QVERIFY(manual.chkFolderDoc.isChecked());
    QVERIFY(!manual.chkFolderComp.isChecked());
    QVERIFY(manual.txtORC.hasFocus());
}

void ManualTest::StoredChoices_data()
{
    QTest::addColumn<QString>("csound2");
    QTest::addColumn<QString>("saveFirst");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("expected"); // bits: second compiler 1, save first 2, document's folder 4
    QTest::newRow("numbers") << u"1"_s << u"0"_s << u"-1"_s << 5;
    QTest::newRow("words") << u"False"_s << u"True"_s << u"False"_s << 2;
    QTest::newRow("all") << u"-1"_s << u"-1"_s << u"True"_s << 7;
    QTest::newRow("none") << u"0"_s << u"0"_s << u"0"_s << 0;
}

void ManualTest::StoredChoices()
{
    QFETCH(QString, csound2);
    QFETCH(QString, saveFirst);
    QFETCH(QString, folder);
    QFETCH(int, expected);
    Run run;
    run.context.settings.SaveSetting(u"Options"_s, u"ManualCsound2"_s, csound2);
    run.context.settings.SaveSetting(u"Options"_s, u"ManualSaveFirst"_s, saveFirst);
    run.context.settings.SaveSetting(u"Options"_s, u"ManualInitialFolder"_s, folder);
    Manual manual = run.Open();
    QCOMPARE(manual.chkCsound2.isChecked(), (expected & 1) != 0);
    QCOMPARE(manual.chkSaveFirst.isChecked(), (expected & 2) != 0);
    QCOMPARE(manual.chkFolderDoc.isChecked(), (expected & 4) != 0);
    QCOMPARE(manual.chkFolderComp.isChecked(), (expected & 4) == 0);
}

void ManualTest::BadSettingIsItsDefault()
{
    Run run;
    run.context.settings.SaveSetting(u"Options"_s, u"ManualCsound2"_s, u"perhaps"_s);
    Manual manual = run.Open();
    QCOMPARE(run.context.settings.TakeUnreadable().size(), 1u);
    QVERIFY(!manual.chkCsound2.isChecked());
    // The dialog works, and what it writes at the run can be read again.
    run.context.desktop.ExpectShellRun({.file = u"/opt/one/csound"_s, .parameters = u"-d  "_s});
    manual.cmbArgs.setEditText(u"-d"_s);
    manual.bOK.click();
    QVERIFY(!run.context.settings.Flag(Keys::ManualCsound2));
}

void ManualTest::HistoryIsNotOffered()
{
    Run run;
    run.context.settings.SaveSetting(u"Recent Command Lines"_s, u"1"_s, u"-d -W"_s);
    Manual manual = run.Open();
    QCOMPARE(manual.cmbArgs.count(), 0);
    QCOMPARE(manual.cmbArgs.currentText(), QString());
}

void ManualTest::HistoryFromKeyZeroIsOffered()
{
    Run run;
    for (int i = 0; i < 13; ++i)
        run.context.settings.SaveSetting(u"Recent Command Lines"_s, QString::number(i), u"-%1"_s.arg(i));
    Manual manual = run.Open();
    QCOMPARE(manual.cmbArgs.count(), 12);
    QCOMPARE(manual.cmbArgs.itemText(11), u"-11"_s);
    QCOMPARE(manual.cmbArgs.currentIndex(), 0);
    QCOMPARE(manual.cmbArgs.currentText(), u"-0"_s);
}

void ManualTest::FocusSelectsAll()
{
    Run run;
    run.Document(u"song.orc"_s);
    Manual manual = run.Open();
    manual.txtSCO.setText(u"/tmp/song.sco"_s);
    for (QLineEdit *field : {&manual.txtORC, &manual.txtSCO}) {
        for (const Qt::FocusReason reason :
             {Qt::OtherFocusReason, Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
            manual.cmbArgs.setFocus();
            field->deselect();
            field->setFocus(reason);
            QCOMPARE(field->selectedText(), field->text());
        }
        // The click that brings the focus selects all too; the next one sets the caret.
        manual.cmbArgs.setFocus();
        field->deselect();
        QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(20, field->height() / 2));
        QTRY_COMPARE(field->selectedText(), field->text());
        QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(20, field->height() / 2));
        QCoreApplication::processEvents();
        QVERIFY(!field->hasSelectedText());
    }
}

void ManualTest::FocusThatComesBackSelectsNothing()
{
    Run run;
    run.Document(u"song.orc"_s);
    Manual manual = run.Open();
    manual.txtORC.setFocus();
    manual.txtORC.deselect();
    for (const Qt::FocusReason reason : {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason}) {
        QFocusEvent back(QEvent::FocusIn, reason);
        QCoreApplication::sendEvent(&manual.txtORC, &back);
        QVERIFY(!manual.txtORC.hasSelectedText());
    }
}

void ManualTest::BrowseForTheOrchestra()
{
    Run run;
    const QString document = run.Document(u"song.orc"_s);
    run.context.settings.SaveText(Keys::OrchestraExtensions, u"orc ins"_s);
    Manual manual = run.Open();
    const FileDialogRequest request{.title = u"Zelvane - Run Csound"_s,
                                    .filters = {{u"Orchestra Files"_s, u"*.orc;*.ins"_s}},
                                    .folder = document,
                                    .fileName = u"song.orc"_s};
    run.context.desktop.ExpectOpenDialog(request, {});
    QTest::mouseClick(&manual.bORC, Qt::LeftButton);
    QCOMPARE(manual.txtORC.text(), document);
    run.context.desktop.ExpectOpenDialog(request, {u"/other/a b.orc"_s});
    QTest::mouseClick(&manual.bORC, Qt::LeftButton);
    run.context.desktop.CheckAllCame();
    QCOMPARE(manual.txtORC.text(), u"/other/a b.orc"_s);
    QCOMPARE(manual.txtSCO.text(), QString());
}

void ManualTest::BrowseForTheScore()
{
    Run run;
    Manual manual = run.Open();
    manual.txtSCO.setText(u"\"/a folder/x.sco\""_s);
    run.context.desktop.ExpectOpenDialog({.title = u"Zelvane - Run Csound"_s,
                                          .filters = {{u"Score Files"_s, u"*.sco"_s}},
                                          .folder = u"/a folder/x.sco"_s,
                                          .fileName = u"x.sco"_s},
                                         {u"/y.sco"_s});
    QTest::mouseClick(&manual.bSCO, Qt::LeftButton);
    run.context.desktop.CheckAllCame();
    QCOMPARE(manual.txtSCO.text(), u"/y.sco"_s);
    QCOMPARE(manual.txtORC.text(), QString());
}

void ManualTest::BrowseWithoutAFile()
{
    Run run;
    const QString document = run.Document(u"song.orc"_s);
    Manual manual = run.Open();
    manual.txtSCO.clear();
    run.context.desktop.ExpectOpenDialog(
        {.title = u"Zelvane - Run Csound"_s, .filters = {{u"Score Files"_s, u"*.sco"_s}}, .folder = document},
        {});
    QTest::mouseClick(&manual.bSCO, Qt::LeftButton);
    run.context.desktop.CheckAllCame();
    QCOMPARE(manual.txtSCO.text(), QString());
}

void ManualTest::FlagsDialog()
{
    Run run;
    run.Document(u"song.csd"_s);
    Manual manual = run.Open();
    manual.cmbArgs.setEditText(u"-d XX"_s);
    manual.cmbArgs.lineEdit()->setSelection(3, 2);
    run.context.desktop.ExpectInput(u"Flag value"_s, u"Flag:\t-o\n\nType:\tfnam\n\nType flag value."_s,
                                    u"x.wav"_s);
    ModalDriver driver;
    driver.Expect<frmFlags>([&](frmFlags &flags) {
        auto *list = flags.findChild<QTreeWidget *>(u"lvwFlags"_s);
        for (const QString &flag : {u"-o"_s, u"-W"_s}) {
            list->setCurrentItem(list->findItems(flag, Qt::MatchExactly).constFirst());
            QTest::keyClick(list, Qt::Key_Space);
        }
        QTest::keyClick(list, Qt::Key_Return);
    });
    QTest::mouseClick(&manual.bFlags, Qt::LeftButton);
    QCOMPARE(manual.cmbArgs.currentText(), u"-d -o x.wav -W"_s);
    QVERIFY(manual.dialog.isVisible());
}

void ManualTest::FlagsMenu()
{
    Run run;
    run.Document(u"song.csd"_s);
    Manual manual = run.Open();
    manual.cmbArgs.setEditText(u"-d"_s);
    run.context.desktop.keysDown = {KeyCode::Ctrl};
    QTest::mouseClick(&manual.bFlags, Qt::LeftButton, Qt::ControlModifier);
    run.context.desktop.keysDown = {};
    auto *menu = manual.bFlags.findChild<QMenu *>(u"mnuFlags"_s);
    QVERIFY(menu && menu->isVisible());
    menu->setActiveAction(menu->actions().at(9));
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(manual.cmbArgs.currentText(), u"-d -W"_s);
    QCOMPARE(manual.cmbArgs.lineEdit()->cursorPosition(), 2);
}

void ManualTest::RunsTheCompiler()
{
    Run run;
    run.context.WriteFile(u"song.sco"_s);
    const QString orchestra = run.Document(u"song.orc"_s);
    Manual manual = run.Open();
    QTest::keyClicks(&manual.cmbArgs, u"-W -o $WAVE$"_s);
    const QString base = run.context.folder.filePath(u"song"_s);
    run.ExpectRun(u"-W -o %1.wav %1.orc %1.sco"_s.arg(base));
    QTest::mouseClick(&manual.bOK, Qt::LeftButton);
    run.context.desktop.CheckAllCame();
    QVERIFY(!manual.dialog.isVisible());
    QVERIFY(run.context.operations.calls.isEmpty());
    QCOMPARE(run.context.settings.GetSetting(u"Recent Command Lines"_s, u"1"_s), u"-W -o $WAVE$"_s);
}

void ManualTest::EnterRuns()
{
    Run run;
    const QString document = run.Document(u"song.csd"_s);
    Manual manual = run.Open();
    QTest::keyClicks(&manual.cmbArgs, u"-d"_s);
    run.ExpectRun(u"-d "_s + document + u' ');
    QTest::keyClick(&manual.cmbArgs, Qt::Key_Return);
    run.context.desktop.CheckAllCame();
    QVERIFY(!manual.dialog.isVisible());
    QCOMPARE(manual.dialog.result(), int(QDialog::Accepted));
}

void ManualTest::EscapeCancels()
{
    for (const bool byKey : {true, false}) {
        Run run;
        run.Document(u"song.csd"_s);
        Manual manual = run.Open();
        manual.chkCsound2.setChecked(true);
        if (byKey)
            QTest::keyClick(&manual.cmbArgs, Qt::Key_Escape);
        else
            QTest::mouseClick(&manual.bCancel, Qt::LeftButton);
        QVERIFY(!manual.dialog.isVisible());
        // Nothing is remembered.
        QVERIFY(run.context.settings.GetAllSettings(u"Options"_s).empty());
    }
}

void ManualTest::SecondCompilerInItsFolderWithSaving()
{
    Run run;
    const QString document = run.Document(u"song.csd"_s);
    Manual manual = run.Open();
    manual.chkCsound2.click();
    manual.chkSaveFirst.click();
    manual.chkFolderComp.click();
    run.context.desktop.ExpectShellRun(
        {.file = u"/opt/two/csound"_s, .parameters = u' ' + document + u' ', .folder = u"/opt/two"_s});
    manual.bOK.click();
    run.context.desktop.CheckAllCame();
    QCOMPARE(run.context.operations.calls, QStringList{u"save "_s + document});
    Manual again = run.Open();
    QVERIFY(again.chkCsound2.isChecked());
    QVERIFY(again.chkSaveFirst.isChecked());
    QVERIFY(again.chkFolderComp.isChecked());
}

void ManualTest::AFailedSaveKeepsTheDialogOpen()
{
    Run run;
    const QString document = run.Document(u"song.csd"_s);
    Manual manual = run.Open();
    manual.chkSaveFirst.click();
    run.context.operations.saveAnswer = false;
    manual.bOK.click();
    QCOMPARE(run.context.operations.calls, QStringList{u"save "_s + document});
    QVERIFY(manual.dialog.isVisible());
    QVERIFY(manual.bOK.isEnabled());
}

void ManualTest::BlanksAreQuoted()
{
    Run run;
    const QString document = run.Document(u"a song.orc"_s);
    run.context.WriteFile(u"a song.sco"_s);
    Manual manual = run.Open();
    const QString quoted = u"\"%1/a song.%2\""_s;
    run.ExpectRun(u"-d "_s + quoted.arg(run.context.folder.path(), u"orc"_s) + u' ' +
                  quoted.arg(run.context.folder.path(), u"sco"_s));
    manual.cmbArgs.setEditText(u"-d"_s);
    manual.bOK.click();
    run.context.desktop.CheckAllCame();
    QCOMPARE(manual.txtORC.text(), u'"' + document + u'"');
}

void ManualTest::FailedMacroKeepsTheDialog()
{
    Run run;
    run.context.windows.mainWindowActive = false;
    Manual manual = run.Open();
    manual.txtORC.setText(u"/a b.orc"_s);
    manual.cmbArgs.setEditText(u"-o $WAVE$"_s);
    run.context.desktop.ExpectMessage(
        {.text = u"WAVE macro returned empty string."_s, .icon = BoxIcon::Warning});
    manual.bOK.click();
    run.context.desktop.CheckAllCame();
    QVERIFY(manual.dialog.isVisible());
    QCOMPARE(manual.txtORC.text(), u"/a b.orc"_s);
    QCOMPARE(manual.cmbArgs.currentText(), u"-o $WAVE$"_s);
    QVERIFY(run.context.settings.GetAllSettings(u"Recent Command Lines"_s).empty());
}

void ManualTest::WithoutCompilerPreferencesAreOffered()
{
    Run run;
    run.tools = {};
    Manual manual = run.Open();
    run.context.desktop.ExpectMessage({.text = u"You should first set a Csound compiler. Do you want to "
                                               "open the Preferences dialog box now?"_s,
                                       .icon = BoxIcon::Warning,
                                       .buttons = BoxButtons::YesNo},
                                      BoxAnswer::Yes);
    manual.bOK.click();
    run.context.desktop.CheckAllCame();
    QCOMPARE(run.context.windows.calls, QStringList{u"preferences"_s});
    QVERIFY(!manual.dialog.isVisible());
}

void ManualTest::WithoutCompilerNoClosesToo()
{
    Run run;
    run.tools = {};
    Manual manual = run.Open();
    run.context.desktop.ExpectMessage({.text = u"You should first set a Csound compiler. Do you want to "
                                               "open the Preferences dialog box now?"_s,
                                       .icon = BoxIcon::Warning,
                                       .buttons = BoxButtons::YesNo},
                                      BoxAnswer::No);
    manual.bOK.click();
    run.context.desktop.CheckAllCame();
    QVERIFY(run.context.windows.calls.isEmpty());
    QVERIFY(!manual.dialog.isVisible());
}

void ManualTest::FailureIsReported()
{
    // A macro that lacks its second dollar is a run-time error of the expansion.
    Run run;
    run.Document(u"song.csd"_s);
    Manual manual = run.Open();
    manual.cmbArgs.setEditText(u"$DOCUMENT"_s);
    run.context.desktop.ExpectMessage(ErrorBox(u"Invalid procedure call or argument (5)"_s),
                                      BoxAnswer::Cancel);
    manual.bOK.click();
    run.context.desktop.CheckAllCame();
    QVERIFY(manual.dialog.isVisible());
}

void ManualTest::ShiftSwapsMacros()
{
    Run run;
    const QString document = run.Document(u"song.csd"_s);
    Manual manual = run.Open();
    manual.cmbArgs.setEditText(u"$CSOUND$"_s);
    run.context.desktop.keysDown = {KeyCode::Shift};
    run.ExpectRun(u"/opt/two/csound "_s + document + u' ');
    QTest::mouseClick(&manual.bOK, Qt::LeftButton, Qt::ShiftModifier);
    run.context.desktop.CheckAllCame();
    QVERIFY(!manual.dialog.isVisible());
}

void ManualTest::SaveFirstCanBeDropped()
{
    Run run;
    const QString document = run.Document(u"song.csd"_s);
    run.context.settings.SaveFlag(Keys::ManualSaveFirst, true);
    frmManual dialog({run.context.editor, run.tools, run.context.windows});
    dialog.DropSaveFirst();
    dialog.show();
    Manual manual(dialog);
    QVERIFY(!manual.chkSaveFirst.isChecked());
    QVERIFY(!manual.chkSaveFirst.isEnabled());
    QVERIFY(!manual.chkSaveFirst.isVisible());
    run.ExpectRun(u' ' + document + u' ');
    manual.bOK.click();
    run.context.desktop.CheckAllCame();
    QVERIFY(run.context.operations.calls.isEmpty());
    QVERIFY(run.context.settings.Flag(Keys::ManualSaveFirst)); // what is not shown is not chosen either
}

void ManualTest::EditorOpensIt()
{
    EditorWindow editor;
    editor.settings.SaveText(Keys::Csound, u"/opt/one/csound"_s);
    const QString piece = editor.WriteFile(u"piece.csd"_s, "<CsoundSynthesizer>\n</CsoundSynthesizer>\n");
    editor.Open({piece});
    ModalDriver driver;
    driver.Expect<frmManual>([&](frmManual &dialog) {
        QCOMPARE(dialog.parentWidget(), editor.window.get());
        Manual manual(dialog);
        QCOMPARE(manual.txtORC.text(), piece);
        QVERIFY(manual.chkSaveFirst.isVisible());
        dialog.reject();
    });
    QVERIFY(editor.Row(u"mnuRunCsound"_s).isEnabled());
    editor.Row(u"mnuRunCsound"_s).trigger();
    driver.Expect<frmManual>([&](frmManual &dialog) {
        Manual manual(dialog);
        editor.desktop.ExpectShellRun({.file = u"/opt/one/csound"_s,
                                       .parameters = u"-n "_s + piece + u' ',
                                       .folder = editor.folder.path()});
        manual.cmbArgs.setEditText(u"-n"_s);
        QTest::keyClick(&manual.cmbArgs, Qt::Key_Return);
    });
    QVERIFY(editor.Find<QAction>(u"Toolbar1_runcsound"_s).isEnabled());
    editor.Find<QAction>(u"Toolbar1_runcsound"_s).trigger();
    editor.desktop.CheckAllCame();
}

void ManualTest::EditorSavesFirst()
{
    EditorWindow editor;
    editor.settings.SaveText(Keys::Csound, u"/opt/one/csound"_s);
    const QString piece = editor.WriteFile(u"piece.csd"_s, "old\n");
    editor.Open({piece});
    QTest::keyClicks(&editor.Text(), u"new "_s);
    ModalDriver driver;
    driver.Expect<frmManual>([&](frmManual &dialog) {
        Manual manual(dialog);
        manual.chkSaveFirst.setChecked(true);
        editor.desktop.ExpectShellRun({.file = u"/opt/one/csound"_s,
                                       .parameters = u' ' + piece + u' ',
                                       .folder = editor.folder.path()});
        manual.bOK.click();
    });
    editor.Row(u"mnuRunCsound"_s).trigger();
    editor.desktop.CheckAllCame();
    QFile file(piece);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("new old\r\n"));
    QVERIFY(!editor.window->Context().document.Modified);
}

int main(int argc, char **argv)
{
    return RunUiTest<ManualTest>(argc, argv);
}

#include "test_frmmanual.moc"
