// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"
#include "platform/ui/endrequest.h"
#include "shell/documentkeys.h"
#include "shell/editorkeys.h"
#include "shell/layoutkeys.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/sidepanel.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/uitest.h"
#include "window/ui/workspace.h"

#include <csignal>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QMenuBar>
#include <QMimeData>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A scripted desktop that lets the test look at the program while a question stands.
class WatchedDesktop : public ScriptedDesktop
{
public:
    std::function<void()> duringMessage;
    std::function<void()> duringOpenDialog;

    BoxAnswer MessageBox(const MessageBoxRequest &request) override
    {
        if (duringMessage)
            duringMessage();
        return ScriptedDesktop::MessageBox(request);
    }
    FileDialogAnswer OpenFileDialog(const FileDialogRequest &request) override
    {
        if (duringOpenDialog)
            duringOpenDialog();
        return ScriptedDesktop::OpenFileDialog(request);
    }
};

MessageBoxRequest Report(const QString &error)
{
    return {.text =
                u"An error has occurred:\n\n"_s + error + u"\n\nDo you want to report this bug via email?"_s,
            .icon = BoxIcon::Critical,
            .buttons = BoxButtons::OkCancel};
}

const QString Mismatch = u"Type mismatch (13)\nError source: Zelvane"_s;

} // namespace

class StartStopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void InitTakesItsStepsInOrder();
    void SettingsThatCannotBeReadLeaveAWindowToWorkIn_data();
    void SettingsThatCannotBeReadLeaveAWindowToWorkIn();
    void AFileThatCannotBeOpenedLeavesABareEditor();
    void LayoutIsReadInOrder_data();
    void LayoutIsReadInOrder();
    void AFileDroppedOnTheTextIsTheWindows();
    void MailWaitsForTheEndOfADialog();
    void MailIsServedWhileTheFirstUseMessageStands();
    void TheEndIsAskedForOnce();
    void AFailedSaveKeepsTheWindowOpen();
    void AStoreThatCannotBeWrittenIsToldAtTheClose();
    void SignalsAskForTheEnd();
};

void StartStopTest::InitTakesItsStepsInOrder()
{
    EditorWindow editor;
    WatchedDesktop desktop;
    const QString file = editor.WriteFile(u"a.orc"_s, "instr 1\noscil\nendin\n");
    editor.settings.SaveNumber(Keys::Startup, 1);
    editor.settings.SaveNumber(Keys::Used, 100);
    editor.settings.SaveFlag(Keys::PresetsLabels, true);
    editor.settings.SaveFlag(Keys::WordWrap, true);
    editor.settings.SaveFlag(Keys::SystemColors, false);
    editor.settings.SaveSetting(u"Recent File List"_s, u"1"_s, u"/old.orc"_s);
    editor.settings.SaveSetting(u"Presets"_s, u"One"_s, {});
    editor.settings.SaveSetting(u"One"_s, u"Command"_s, u"/bin/one"_s);
    editor.window = std::make_unique<frmEditor>(editor.settings, desktop, CommandLine({}));
    frmEditor &window = *editor.window;
    window.show();
    QCOMPARE(window.windowTitle(), u"Zelvane"_s);
    auto &combo = editor.Find<QComboBox>(u"cmbOpcodes"_s);

    QStringList steps;
    desktop.duringOpenDialog = [&] {
        steps.append(u"document"_s);
        QCOMPARE(window.windowTitle(), u"Zelvane - Untitled ()"_s);
        QVERIFY(editor.Text().WordWrap());
        QVERIFY(editor.Text().updatesEnabled());
        QVERIFY(!window.Context().document.Loading);
        QVERIFY(editor.Row(u"mnuLabels_1"_s).isChecked());
        QVERIFY(window.findChild<QAction *>(u"mnuPreset_0"_s) ||
                !editor.Find<QMenu>(u"mnuPresets"_s).isEmpty());
        QVERIFY(!window.findChild<QAction *>(u"MRUfolder_1"_s)); // the menu of recent files comes later
        QVERIFY(!window.acceptDrops());
        QCOMPARE(combo.count(), 0);
    };
    desktop.duringMessage = [&] {
        steps.append(u"message"_s);
        QCOMPARE(window.windowTitle(), u"Zelvane - %1 (Orchestra)"_s.arg(file));
    };
    desktop.ExpectOpenDialog(OpenRequest, {.path = file});
    desktop.ExpectMessage(
        {.text = u"You used Zelvane 100 times. At this time you should be an experienced user, so "
                 "please send me your comments, suggestions, new ideas. I really need them to make "
                 "Zelvane always better. Thank you."_s,
         .icon = BoxIcon::Information});
    desktop.ExpectShellRun(
        {.verb = u"open"_s, .file = u"mailto:"_s + QString::fromUtf16(AuthorAddress) + u"?subject=&body="_s});
    window.Init([&] {
        steps.append(u"splash"_s);
        QCOMPARE(window.Context().document.CurrentFile, file);
        QCOMPARE(editor.Row(u"MRUfolder_1"_s).text(), u"&1 "_s + file);
        QVERIFY(window.acceptDrops());
        QCOMPARE(combo.count(), 4);
    });
    QCOMPARE(steps, QStringList({u"document"_s, u"splash"_s, u"message"_s}));
    desktop.CheckAllCame();
    editor.window.reset();
}

void StartStopTest::SettingsThatCannotBeReadLeaveAWindowToWorkIn_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key :
         {"SystemColors", "TabSize", "WordWrap", "FontSize", "FontItalic", "DragAndDrop", "PresetsLabels"})
        QTest::newRow(key) << QString::fromLatin1(key);
}

void StartStopTest::SettingsThatCannotBeReadLeaveAWindowToWorkIn()
{
    QFETCH(QString, key);
    EditorWindow editor;
    editor.settings.SaveSetting(u"Options"_s, key, u"perhaps"_s);
    editor.desktop.ExpectMessage(Report(Mismatch), BoxAnswer::Cancel);
    editor.Open();
    editor.desktop.CheckAllCame();
    const DocumentRecord &document = editor.window->Context().document;
    QVERIFY(editor.Text().isVisible());
    QVERIFY(editor.Text().updatesEnabled());
    QVERIFY(!document.Loading);
    QVERIFY(!document.Modified);
    // What is typed counts, and is asked about.
    QTest::keyClick(&editor.Text(), Qt::Key_A);
    QCOMPARE(editor.Text().Text(), u"a"_s);
    QVERIFY(document.Modified);
    QCOMPARE(editor.window->windowTitle(), u"Zelvane - Untitled* ()"_s);
    editor.desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Cancel);
    QVERIFY(!editor.window->close());
}

void StartStopTest::AFileThatCannotBeOpenedLeavesABareEditor()
{
    EditorWindow editor;
    QString description;
    const QString missing = editor.folder.filePath(u"none.orc"_s);
    try {
        ReadFileBytes(missing);
    } catch (const RunTimeError &error) {
        description = error.Description();
    }
    editor.desktop.ExpectMessage(
        {.text = u"Unable to open "_s + missing + u".\n\n"_s + description, .icon = BoxIcon::Warning});
    editor.Open({missing});
    QCOMPARE(editor.window->windowTitle(), u"Zelvane"_s);
    QVERIFY(editor.Text().isVisible() && editor.Text().isEnabled());
    // The failed load has left Modified set: what is typed is asked about.
    QTest::keyClick(&editor.Text(), Qt::Key_A);
    QCOMPARE(editor.Text().Text(), u"a"_s);
    editor.desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Cancel);
    QVERIFY(!editor.window->close());
}

void StartStopTest::LayoutIsReadInOrder_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("applied");
    // Each row breaks one key: what was read before it stands, and nothing that is read behind it.
    const char *const keys[] = {"FlatButtons",      "BandWidth1",  "BandRow2",     "PanelWidth",
                                "PanelBandHeight1", "HotTracking", "RelatedFiles", "CodeOutline",
                                "LoopMode",         "BandLabels",  "Band1",        "StatusBar",
                                "Labels",           "PanelLabels"};
    QString applied(qsizetype(std::size(keys)), u'-');
    for (size_t i = 0; i < std::size(keys); ++i) {
        QTest::newRow(keys[i]) << QString::fromLatin1(keys[i]) << applied;
        applied[qsizetype(i)] = u'T';
    }
}

void StartStopTest::LayoutIsReadInOrder()
{
    QFETCH(QString, key);
    QFETCH(QString, applied);
    EditorWindow editor;
    const std::pair<QString, QString> layout[] = {
        {u"FlatButtons"_s, u"0"_s},       {u"BandWidth1"_s, u"333"_s}, {u"BandRow2"_s, u"0"_s},
        {u"PanelWidth"_s, u"234"_s},      {u"HotTracking"_s, u"-1"_s}, {u"LoopMode"_s, u"-1"_s},
        {u"BandLabels"_s, u"-1"_s},       {u"Band1"_s, u"0"_s},        {u"StatusBar"_s, u"0"_s},
        {u"PanelBandHeight1"_s, u"77"_s}, {u"Labels"_s, u"-1"_s},      {u"PanelLabels"_s, u"-1"_s}};
    for (const auto &[name, value] : layout)
        editor.settings.SaveSetting(u"Options"_s, name, value);
    editor.settings.SaveSetting(u"Options"_s, key, u"perhaps"_s);
    editor.desktop.ExpectMessage(Report(Mismatch), BoxAnswer::Cancel);
    editor.window = std::make_unique<frmEditor>(editor.settings, editor.desktop, CommandLine({}));
    editor.desktop.CheckAllCame();
    const auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    const auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    const bool found[] = {
        !editor.Find<QToolBar>(u"Toolbar1"_s).findChild<QToolButton *>()->autoRaise(),
        bar.BandWidth(0) == 333,
        !bar.StartsRow(1),
        static_cast<Workspace *>(editor.window->centralWidget())->PanelWidth() == 234,
        panel.BandHeight(0) == 77,
        editor.Find<QTreeWidget>(u"tvwBrowse"_s).hasMouseTracking(),
        editor.Row(u"mnuRelated"_s).isChecked(),
        editor.Row(u"mnuBrowse"_s).isChecked(),
        editor.Row(u"mnuLoop"_s).isChecked(),
        bar.AreCaptionsShown(),
        !editor.Row(u"mnuShowToolbar_0"_s).isChecked(),
        !editor.Row(u"mnuShowStatusbar"_s).isChecked(),
        editor.Row(u"mnuLabels_0"_s).isChecked(),
        editor.Row(u"mnuLabels_2"_s).isChecked(),
    };
    QString state;
    for (const bool one : found)
        state += one ? u'T' : u'-';
    QCOMPARE(state, applied);
    editor.window.reset();
}

void StartStopTest::AFileDroppedOnTheTextIsTheWindows()
{
    EditorWindow editor;
    const QString file = editor.WriteFile(u"a.orc"_s, "dropped\n");
    editor.Open();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    data.setText(file);
    QWidget *viewport = editor.Text().viewport();
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport, &drop);
    QVERIFY(Eventually([&] { return editor.window->Context().document.CurrentFile == file; }));
    QCOMPARE(editor.Text().Text(), u"dropped\n"_s);
}

void StartStopTest::MailWaitsForTheEndOfADialog()
{
    EditorWindow editor;
    const QString first = editor.WriteFile(u"first.orc"_s, "first\n");
    const QString second = editor.WriteFile(u"second.orc"_s, "second\n");
    editor.Open({first});
    QDialog dialog(editor.window.get());
    QTimer::singleShot(0, &dialog, [&] {
        editor.settings.SaveText(Keys::Open, second);
        editor.window->HandOver();
        QCOMPARE(editor.window->Context().document.CurrentFile, first);
        QCOMPARE(editor.settings.Text(Keys::Open), second);
        dialog.accept();
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(editor.window->Context().document.CurrentFile, first); // the command has not ended yet
    QVERIFY(editor.window->HasMail());
    QVERIFY(Eventually([&] { return editor.window->Context().document.CurrentFile == second; }));
    QVERIFY(!editor.window->HasMail());
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Open"_s, u"gone"_s), u"gone"_s);
    // Without waiting mail the end of a dialog opens nothing.
    editor.settings.SaveText(Keys::Open, first);
    QTimer::singleShot(0, &dialog, &QDialog::accept);
    dialog.exec();
    QTest::qWait(20);
    QCOMPARE(editor.window->Context().document.CurrentFile, second);
}

void StartStopTest::MailIsServedWhileTheFirstUseMessageStands()
{
    EditorWindow editor;
    WatchedDesktop desktop;
    const QString file = editor.WriteFile(u"a.orc"_s, "x\n");
    editor.settings.SaveNumber(Keys::Used, 1);
    editor.window = std::make_unique<frmEditor>(editor.settings, desktop, CommandLine({}));
    editor.window->show();
    desktop.ExpectMessage(
        {.text =
             u"Welcome to Zelvane! This program is FREE, you may download new versions at "_s +
             QString::fromUtf16(WebAddress) +
             u"\n\nIf you have questions, suggestions or you find a bug, please feel free to contact me at "_s +
             QString::fromUtf16(AuthorAddress) + u"\n\nHappy Csounding!"_s,
         .icon = BoxIcon::Information,
         .title = u"Welcome!"_s});
    desktop.duringMessage = [&] {
        QDialog box;
        QTimer::singleShot(0, &box, [&] {
            editor.settings.SaveText(Keys::Open, file);
            editor.window->HandOver();
            QCOMPARE(editor.window->Context().document.CurrentFile, file);
            box.accept();
        });
        box.exec();
    };
    editor.window->Init();
    QCOMPARE(editor.window->Context().document.CurrentFile, file);
    editor.window.reset();
}

void StartStopTest::TheEndIsAskedForOnce()
{
    EditorWindow editor;
    WatchedDesktop desktop;
    editor.window = std::make_unique<frmEditor>(editor.settings, desktop, CommandLine({}));
    frmEditor &window = *editor.window;
    window.show();
    window.Init();
    QTest::keyClick(&editor.Text(), Qt::Key_A);
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Cancel);
    desktop.duringMessage = [&] {
        window.close();
        QVERIFY(!window.MayEnd());
    };
    QVERIFY(!window.close());
    desktop.duringMessage = {};
    QVERIFY(window.isVisible());
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
    QVERIFY(window.MayEnd());
    QVERIFY(window.isVisible()); // it only asks
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
    QVERIFY(window.close());
    editor.window.reset();
}

void StartStopTest::AFailedSaveKeepsTheWindowOpen()
{
    EditorWindow editor;
    editor.Open();
    QTest::keyClick(&editor.Text(), Qt::Key_A);
    const QString bad = editor.folder.filePath(u"no such folder/a.orc"_s);
    QString description;
    try {
        WriteFileBytes(bad, "a");
    } catch (const RunTimeError &error) {
        description = error.Description();
    }
    editor.desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Yes);
    editor.desktop.ExpectSaveDialog({.filters = {{u"All files"_s, u"*.*"_s}}}, {.path = bad});
    editor.desktop.ExpectMessage(
        {.text = u"Unable to save "_s + bad + u".\n\n"_s + description, .icon = BoxIcon::Warning});
    QVERIFY(!editor.window->close());
    QVERIFY(editor.window->isVisible());
    QCOMPARE(editor.Text().Text(), u"a"_s);
    QCOMPARE(editor.settings.Number(Keys::Used), 2.0);
}

void StartStopTest::AStoreThatCannotBeWrittenIsToldAtTheClose()
{
    EditorWindow editor;
    editor.Open();
    QVERIFY(QDir(editor.storeFolder.path()).mkdir(u"settings.lock"_s) ||
            (QFile::remove(editor.storeFolder.filePath(u"settings.lock"_s)) &&
             QDir(editor.storeFolder.path()).mkdir(u"settings.lock"_s)));
    QString error;
    try {
        editor.settings.SaveNumber(Keys::Window, 1);
        QFAIL("the store can be written");
    } catch (const RunTimeError &failure) {
        error = failure.Description() + u" ("_s + QString::number(int(failure.Number())) +
                u")\nError source: "_s + failure.Source();
    }
    editor.desktop.ExpectMessage(Report(error), BoxAnswer::Cancel);
    QVERIFY(editor.window->close());
    editor.desktop.CheckAllCame();
}

void StartStopTest::SignalsAskForTheEnd()
{
    for (const int number : {SIGTERM, SIGINT}) {
        struct sigaction before {
        }, after{};
        ::sigaction(number, nullptr, &before);
        int received = 0;
        {
            EndRequest request;
            connect(&request, &EndRequest::Received, this, [&] { ++received; });
            std::raise(number);
            std::raise(number);
            QCOMPARE(received, 0);
            QVERIFY(Eventually([&] { return received > 0; }));
            QTest::qWait(20);
            QCOMPARE(received, 1);
            std::raise(number);
            QVERIFY(Eventually([&] { return received == 2; }));
        }
        ::sigaction(number, nullptr, &after);
        QVERIFY(after.sa_handler == before.sa_handler);
    }
}

int main(int argc, char **argv)
{
    return RunUiTest<StartStopTest>(argc, argv);
}

#include "test_startstop.moc"
