// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's life: documents, status line, drops, mail, dialogs and the close.

#include "preferences/ui/frmoptions.h"
#include "run/runkeys.h"
#include "shell/bands.h"
#include "shell/documentkeys.h"
#include "shell/editorkeys.h"
#include "shell/layoutkeys.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/frmnew.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"
#include "texttools/insertkeys.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void SelectionShowsInStatusAndButtons();
    void FileLineGoesWithTheFirstMove();
    void CloseAsksFirst();
    void CloseDuringStartWaits();
    void EditorIsTheActiveWindowButForDialogs();
    void MinimizingPresetKnowsTheSelection();
    void DroppedFilesOpenTheFirst();
    void HandOverOpensAndClearsTheMailbox();
    void NewInstanceStartsBare();
    void EmptyStoreAsksNothingAndWelcomes();
    void BadSettingIsReported();
    void DateAndTimeAreInserted();
    void LineSeparatorsShowTheirCharacter();
    void HelpCommandsOpenTheirPages();
    void CaptionKeepsOddNames();
    void BoxOfNewDocuments();
    void BoxOfNewDocumentsByMouse();
};

void MainWindowTest::SelectionShowsInStatusAndButtons()
{
    EditorWindow editor;
    const QString file = editor.WriteFile(u"a.txt"_s, "one\ntwo\nthree\n");
    editor.Open({file});
    auto &status = editor.Find<QLabel>(u"lblStatus"_s);
    auto &line = editor.Find<QLabel>(u"lblLine"_s);
    editor.Text().SetSelection(4, 6);
    QCOMPARE(status.text(), u"2 characters selected"_s);
    QCOMPARE(line.text(), u"Line 2 Col 1"_s);
    QVERIFY(ToolbarButton(editor, u"cut"_s)->isEnabled());
    QVERIFY(ToolbarButton(editor, u"copy"_s)->isEnabled());
    QVERIFY(!ToolbarButton(editor, u"paste"_s)->isEnabled());
    QVERIFY(!ToolbarButton(editor, u"undo"_s)->isEnabled());
    editor.Text().SetSelection(1, 9);
    QCOMPARE(status.text(), u"2 lines selected"_s);
    ToolbarButton(editor, u"copy"_s)->trigger();
    QCOMPARE(editor.desktop.clipboard, u"ne\ntwo\nt"_s);
    QVERIFY(ToolbarButton(editor, u"paste"_s)->isEnabled());
    ToolbarButton(editor, u"cut"_s)->trigger();
    QCOMPARE(editor.Text().Text(), u"ohree\n"_s);
    QCOMPARE(status.text(), QString());
    QVERIFY(ToolbarButton(editor, u"undo"_s)->isEnabled());
    QVERIFY(!ToolbarButton(editor, u"cut"_s)->isEnabled());
    ToolbarButton(editor, u"undo"_s)->trigger();
    QCOMPARE(editor.Text().Text(), u"one\ntwo\nthree\n"_s);
    QVERIFY(ToolbarButton(editor, u"redo"_s)->isEnabled());
    ToolbarButton(editor, u"redo"_s)->trigger();
    ToolbarButton(editor, u"paste"_s)->trigger();
    QCOMPARE(editor.Text().Text(), u"one\ntwo\nthree\n"_s);
    editor.Row(u"mnuSelectAll"_s).trigger();
    editor.Row(u"mnuDelete"_s).trigger();
    QCOMPARE(editor.Text().Text(), QString());
}

void MainWindowTest::FileLineGoesWithTheFirstMove()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::Band(WindowBand::Opcodes),
                             false); // loading its list would take the status line
    editor.Open({editor.WriteFile(u"a.txt"_s, "one\r\ntwo\r\n")});
    const StatusLine &status = editor.window->Context().status;
    QVERIFY2(status.Text().startsWith(u"a.txt: last saved "), qPrintable(status.Text()));
    QVERIFY2(status.Text().endsWith(u" - 3 lines - 16 bytes - PC"), qPrintable(status.Text()));
    editor.Text().SetSelection(1, 1);
    QCOMPARE(status.Text(), QString());
    QTest::keyClick(&editor.Text(), 'x');
    editor.Row(u"mnuSave"_s).trigger();
    QVERIFY2(status.Text().startsWith(u"a.txt: last saved "), qPrintable(status.Text()));
    QVERIFY2(status.Text().endsWith(u" - 3 lines - 18 bytes - PC"), qPrintable(status.Text()));
    QTest::keyClick(&editor.Text(), Qt::Key_Left);
    QCOMPARE(status.Text(), QString());
}

void MainWindowTest::CloseAsksFirst()
{
    EditorWindow editor;
    editor.Open();
    QTest::keyClick(&editor.Text(), Qt::Key_A);
    MessageBoxRequest question{
        .text = u"Save changes to Untitled?"_s, .icon = BoxIcon::Warning, .buttons = BoxButtons::YesNoCancel};
    editor.desktop.ExpectMessage(question, BoxAnswer::Cancel);
    QVERIFY(!editor.window->close());
    QVERIFY(editor.window->isVisible());
    QCOMPARE(editor.settings.Number(Keys::Used), 2.0);
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Font"_s), QString());
    editor.desktop.ExpectMessage(question, BoxAnswer::No);
    editor.Row(u"mnuExit"_s).trigger();
    QVERIFY(!editor.window->isVisible());
    QCOMPARE(editor.settings.Number(Keys::Used), 3.0);
}

void MainWindowTest::CloseDuringStartWaits()
{
    EditorWindow editor;
    auto &window =
        *(editor.window = std::make_unique<frmEditor>(editor.settings, editor.desktop, CommandLine({})));
    window.show();
    QTimer::singleShot(0, &window, [&] { window.close(); });
    window.Init(); // serves events while it loads the opcode list
    QVERIFY(window.isVisible());
    QVERIFY(Eventually([&] { return !window.isVisible(); }));
    QCOMPARE(editor.settings.Number(Keys::Used), 3.0);
}

void MainWindowTest::EditorIsTheActiveWindowButForDialogs()
{
    EditorWindow editor;
    frmEditor &window = editor.Open();
    window.activateWindow();
    QVERIFY(Eventually([&] { return QApplication::activeWindow() == &window; }));
    QVERIFY(window.MainWindowActive());
    {
        QDialog dialog(&window);
        dialog.open();
        dialog.activateWindow();
        QVERIFY(Eventually([&] { return QApplication::activeWindow() == &dialog; }));
        QVERIFY(!window.MainWindowActive());
        // Another program comes to the front.
        QApplication::setActiveWindow(nullptr);
        QVERIFY(!window.MainWindowActive());
        // A dialog that has gone is nobody's active window.
        dialog.close();
        QVERIFY(window.MainWindowActive());
    }
    window.MinimizeMainWindow();
    QApplication::setActiveWindow(nullptr);
    QVERIFY(!window.isActiveWindow());
    QVERIFY(window.MainWindowActive());
}

void MainWindowTest::MinimizingPresetKnowsTheSelection()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::MinimizeOnPresets, true);
    editor.settings.SaveSetting(u"Presets"_s, u"Say"_s, {});
    editor.settings.SaveSetting(u"Say"_s, u"Command"_s, u"/bin/say"_s);
    editor.settings.SaveSetting(u"Say"_s, u"Args"_s, u"$SEL$"_s);
    frmEditor &window = editor.Open();
    editor.Text().SetText(u"some words"_s);
    editor.Text().SetSelection(5, 10);
    // A desktop takes the keyboard from a window that it minimizes.
    QApplication::setActiveWindow(nullptr);
    QVERIFY(!window.isActiveWindow());
    editor.desktop.ExpectShellRun({.file = u"/bin/say"_s, .parameters = u"words"_s, .folder = u"/bin"_s});
    editor.Row(u"mnuPreset_0"_s).trigger();
    editor.desktop.CheckAllCame();
    QVERIFY(window.isMinimized());
    QCOMPARE(window.Context().status.Text(), u"Say: /bin/say words"_s);
}

void MainWindowTest::DroppedFilesOpenTheFirst()
{
    EditorWindow editor;
    const QString first = editor.WriteFile(u"first.orc"_s, "a\n");
    const QString second = editor.WriteFile(u"second.orc"_s, "b\n");
    editor.Open();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(first), QUrl::fromLocalFile(second)});
    QDragEnterEvent enter(QPoint(20, 300), Qt::CopyAction, &data, Qt::LeftButton, {});
    // Over the text, too: it leaves files to the window.
    QCoreApplication::sendEvent(editor.Text().viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(20, 300), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(editor.Text().viewport(), &drop);
    QVERIFY(Eventually([&] { return editor.window->Context().document.CurrentFile == first; }));
    QCOMPARE(editor.Text().Text(), u"a\n"_s);

    QMimeData words;
    words.setText(u"words"_s);
    QDragEnterEvent text(QPoint(20, 300), Qt::CopyAction, &words, Qt::LeftButton, {});
    text.ignore();
    QCoreApplication::sendEvent(editor.window.get(), &text);
    QVERIFY(!text.isAccepted());
}

void MainWindowTest::HandOverOpensAndClearsTheMailbox()
{
    EditorWindow editor;
    const QString file = editor.WriteFile(u"given over.sco"_s, "i1 0 1\n");
    editor.Open();
    editor.settings.SaveText(Keys::Open, u'"' + file + u'"');
    editor.window->Mail().Wake();
    QCOMPARE(editor.window->Context().document.CurrentFile, file);
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Open"_s, u"gone"_s), u"gone"_s);
    editor.window->Mail().Wake();
    QCOMPARE(editor.window->Context().document.CurrentFile, file);
}

void MainWindowTest::NewInstanceStartsBare()
{
    EditorWindow editor;
    editor.settings.SaveNumber(Keys::Startup, 0);
    editor.settings.SaveSetting(u"Recent File List"_s, u"1"_s, editor.WriteFile(u"a.orc"_s, "x\n"));
    editor.Open({u"/i"_s});
    QCOMPARE(editor.window->windowTitle(), u"Zelvane"_s);
    QCOMPARE(editor.Text().Text(), QString());
    editor.Open();
    QCOMPARE(editor.window->windowTitle(),
             u"Zelvane - %1 (Orchestra)"_s.arg(editor.folder.filePath(u"a.orc"_s)));
}

void MainWindowTest::EmptyStoreAsksNothingAndWelcomes()
{
    EditorWindow editor;
    editor.settings.DeleteSetting(u"Options"_s);
    editor.desktop.ExpectMessage(Welcome());
    ModalDriver driver;
    driver.Expect<frmOptions>([](frmOptions &preferences) { preferences.reject(); });
    bool splashClosed = false;
    editor.window = std::make_unique<frmEditor>(editor.settings, editor.desktop, CommandLine({}));
    editor.window->show();
    editor.window->Init([&] { splashClosed = true; });
    QVERIFY(splashClosed);
    QCOMPARE(editor.window->windowTitle(), u"Zelvane - Untitled ()"_s);
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    for (const WindowBand band : AllBands<WindowBand>()) {
        QVERIFY(bar.IsBandVisible(band));
        QVERIFY(bar.StartsRow(band));
    }
    QVERIFY(editor.settings.GetAllSettings(u"Options"_s).empty());
    QCOMPARE(editor.Find<QComboBox>(u"cmbOpcodes"_s).lineEdit()->text(),
             u"Opcodes (press Enter to insert)"_s);
}

void MainWindowTest::BadSettingIsReported()
{
    EditorWindow editor;
    editor.settings.SaveSetting(u"Options"_s, u"BandRow3"_s, u"maybe"_s);
    editor.desktop.ExpectMessage(MismatchBox(u"BandRow3=maybe"_s), BoxAnswer::Cancel);
    editor.Open();
    QCOMPARE(editor.window->windowTitle(), u"Zelvane - Untitled ()"_s);
    QVERIFY(editor.Text().isVisible());
}

void MainWindowTest::DateAndTimeAreInserted()
{
    EditorWindow editor;
    editor.Open();
    editor.Row(u"mnuDate"_s).trigger();
    const QLocale locale = QLocale::system();
    QCOMPARE(editor.Text().Text(), locale.toString(QDate(2001, 3, 7), QLocale::ShortFormat) + u' ' +
                                       locale.toString(QTime(12, 30, 15), QLocale::ShortFormat));
}

void MainWindowTest::LineSeparatorsShowTheirCharacter()
{
    EditorWindow editor;
    editor.settings.SaveText(Keys::LineStyle2, u"&="_s);
    Commands &commands = editor.Open().CommandTable();
    commands.MenuOpening(Menu::mnuInsert);
    QCOMPARE(editor.Row(u"mnuLineSeparation_0"_s).text(), QString(16, u'-'));
    QCOMPARE(editor.Row(u"mnuLineSeparation_1"_s).text(), QString(32, u'&'));
}

void MainWindowTest::HelpCommandsOpenTheirPages()
{
    EditorWindow editor;
    editor.Open();
    editor.desktop.ExpectShellRun({.verb = u"open"_s, .file = QString::fromUtf16(WebAddress)}, 2);
    const QString web = QString::fromUtf16(WebAddress);
    editor.desktop.ExpectMessage(
        {.text = u"Cannot start Browser. The following URL will be copied to Clipboard:\n\n"_s + web +
                 u"\n\nPlease run your Internet Browser manually then paste text in the Address field."_s,
         .icon = BoxIcon::Warning});
    editor.Row(u"mnuWebPage"_s).trigger();
    QCOMPARE(editor.desktop.clipboard, web);
    const QString page = editor.folder.filePath(
        QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName() + u".html"_s);
    editor.desktop.ExpectShellRun({.verb = u"open"_s, .file = page}, 2);
    editor.desktop.ExpectMessage({.text = u"Cannot start Zelvane Help."_s, .icon = BoxIcon::Warning});
    editor.Row(u"mnuAppHelp"_s).trigger();
    QVERIFY(editor.Row(u"mnuAbout"_s).isEnabled());
}

void MainWindowTest::CaptionKeepsOddNames()
{
    EditorWindow editor;
    const QString file = editor.WriteFile(u"a[*]b&c.orc"_s, "x\n");
    editor.Open({file});
    // What the window manager gets: the toolkit has put its mark in the place of "[*]" where it found one.
    QCOMPARE(editor.window->windowHandle()->title(), u"Zelvane - %1 (Orchestra)"_s.arg(file));
}

void MainWindowTest::BoxOfNewDocuments()
{
    EditorWindow editor;
    editor.Open();
    const std::pair<int, QString> rows[] = {{0, u"Zelvane - Untitled (Orchestra)"_s},
                                            {1, u"Zelvane - Untitled (Score)"_s},
                                            {2, u"Zelvane - Untitled (Unified Format)"_s},
                                            {3, u"Zelvane - Untitled ()"_s}};
    for (const auto &[row, caption] : rows) {
        QTimer::singleShot(0, this, [row = row] {
            QWidget *dialog = QApplication::activeModalWidget();
            QCOMPARE(dialog->objectName(), u"frmNew"_s);
            QCOMPARE(dialog->windowTitle(), u"New Document"_s);
            for (int i = 0; i < row; ++i)
                QTest::keyClick(dialog->findChild<QWidget *>(u"lvwNew"_s), Qt::Key_Right);
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        editor.Row(u"mnuNew"_s).trigger();
        QCOMPARE(editor.window->windowTitle(), caption);
        QVERIFY(!editor.window->Context().document.Modified);
    }
    editor.window->Documents().NewFile(FileKind::Unified, {});
    QVERIFY(editor.Text().Text().startsWith(u"<CsoundSynthesizer>\n<CsOptions>\n\n</CsOptions>\n"_s));
    QTimer::singleShot(0, this, [] {
        QWidget *dialog = QApplication::activeModalWidget();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    editor.Row(u"mnuNew"_s).trigger();
    QCOMPARE(editor.window->windowTitle(), u"Zelvane - Untitled (Unified Format)"_s);
    QVERIFY(!editor.Text().Text().isEmpty());
}

void MainWindowTest::BoxOfNewDocumentsByMouse()
{
    frmNew box;
    box.setAttribute(Qt::WA_DeleteOnClose, false);
    box.show();
    auto *kinds = box.findChild<QListWidget *>(u"lvwNew"_s);
    QStringList texts;
    for (int i = 0; i < kinds->count(); ++i) {
        texts += kinds->item(i)->text();
        QVERIFY(!kinds->item(i)->icon().isNull());
    }
    QCOMPARE(texts, (QStringList{u"Orchestra"_s, u"Score"_s, u"Unified Format"_s, u"Text"_s}));

    const auto place = [&](int row) { return kinds->visualItemRect(kinds->item(row)).center(); };
    const auto doubleClick = [&](Qt::MouseButton button, int row) {
        QTest::mouseClick(kinds->viewport(), button, {}, place(row));
        QTest::mouseDClick(kinds->viewport(), button, {}, place(row));
    };
    doubleClick(Qt::MiddleButton, 1);
    doubleClick(Qt::RightButton, 1);
    QVERIFY(box.isVisible());
    doubleClick(Qt::LeftButton, 2);
    QVERIFY(!box.isVisible());
    QCOMPARE(box.Kind(), FileKind::Unified);

    frmNew second;
    second.setAttribute(Qt::WA_DeleteOnClose, false);
    second.show();
    QTest::mouseClick(second.findChild<QPushButton *>(u"cmdCancel"_s), Qt::LeftButton);
    QVERIFY(!second.isVisible());
    QCOMPARE(int(second.Kind()), 255);
}

int main(int argc, char **argv)
{
    return RunUiTest<MainWindowTest>(argc, argv);
}

#include "test_mainwindow.moc"
