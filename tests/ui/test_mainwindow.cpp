// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/bandbar.h"
#include "shell/ui/menutable.h"
#include "shell/ui/screenplace.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/splitter.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSlider>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A menu as text: the rows with their names and captions, "-" for a separator, submenus in brackets.
QString Outline(const QMenu &menu)
{
    QStringList rows;
    for (const QAction *action : menu.actions()) {
        if (action->menu())
            rows.append(action->menu()->objectName() + u'=' + action->text() + u" ["_s +
                        Outline(*action->menu()) + u']');
        else if (action->isSeparator())
            rows.append(u"-"_s);
        else
            rows.append(action->objectName() + u'=' + action->text());
    }
    return rows.join(u", "_s);
}

constexpr const char16_t *Keys21[] = {
    u"new",   u"open",   u"save",    u"cut",       u"copy", u"paste",    u"comment",
    u"find",  u"undo",   u"redo",    u"back",      u"next", u"fontsize", u"orchestra",
    u"score", u"browse", u"related", u"runcsound", u"code", u"slider",   u"cshelp",
};

QAction *Button(EditorWindow &editor, const QString &key)
{
    return &editor.Find<QAction>(u"Toolbar1_"_s + key);
}

bool Eventually(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, 5000);
}

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void MenusHaveTheirRows_data();
    void MenusHaveTheirRows();
    void MenuBarHasTheMenusInOrder();
    void RowsOfMissingPartsAreDisabled();
    void ToolbarHasItsButtons();
    void FiveButtonsDropDownTwoCommands();
    void ToolbarLabels();
    void ButtonsFollowTheirRows();
    void SaveButtonAndCaptionFollowTheText();
    void KindsEnableTheirCommands();
    void SelectionShowsInStatusAndButtons();
    void FileLineGoesWithTheFirstMove();
    void EditMenuOpensWithTheTextsState();
    void BandsHideAndTheTextGoesUp();
    void OpcodeListLoadsAtTheFirstShowing();
    void SidePanelHidesWithItsBands();
    void SplitterSetsThePanelsWidth();
    void BandCaptionsAreTheKeys();
    void BandGripsShareOutARow();
    void BandsJoinAndPartRows();
    void PanelHeaderSharesOutTheHeight();
    void BandAloneLeavesTheOtherItsShare();
    void LayoutComesBack();
    void LayoutIsWrittenInOrder();
    void MinimizedWindowKeepsTheStoredPlace();
    void OffScreenPlacesComeBack_data();
    void OffScreenPlacesComeBack();
    void StoredPlaceOffTheScreenComesBack();
    void TwipsAreOf1440ToTheInch();
    void CloseAsksFirst();
    void CloseDuringStartWaits();
    void FontSizeKeysAreNoEdit();
    void WordWrapIsKept();
    void WrappedTextFollowsTheWindow();
    void PresetKeysRunRows();
    void EditorIsTheActiveWindowButForDialogs();
    void MinimizingPresetKnowsTheSelection();
    void NoControlIsATabStopBesideTheText();
    void ContextMenusOfTheText();
    void TreesHaveTheirMenus();
    void ContextMenuKey();
    void RecentFilesStandInTheMenu();
    void FileMenuOpensWithTheDocumentsState();
    void DroppedFilesOpenTheFirst();
    void HandOverOpensAndClearsTheMailbox();
    void NewInstanceStartsBare();
    void EmptyStoreAsksNothingAndWelcomes();
    void BadSettingIsReported();
    void DateAndTimeAreInserted();
    void LineSeparatorsShowTheirCharacter();
    void ControlKeysWithoutACommandTypeNothing();
    void FoldersAreEnabledWhenKnown();
    void HelpCommandsOpenTheirPages();
    void CaptionKeepsOddNames();
    void BoxOfNewDocuments();
};

void MainWindowTest::MenusHaveTheirRows_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("rows");
    const auto row = [](const char *name, const char16_t *rows) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromUtf16(rows);
    };
    row("mnuFile",
        u"mnuNew=&New..., mnuOpen=&Open..., mnuSave=&Save, mnuSaveAs=Save &as..., -, mnuNewInstance=New "
        u"&instance, -, "
        "mnuPlatform=&Export [mnuPlatformItem_0=&Pc, mnuPlatformItem_1=&Unix, mnuPlatformItem_2=&Mac, -, "
        "mnuPlatformItem_4=&RTF (Rich Text Format), mnuPlatformItem_5=&HTML], mnuBackupNow=&Backup..., "
        "mnuFileShell=S&hell operation [mnuOpenWith=&Open with..., mnuSearchFiles=&Find files..., -, "
        "mnuFSO_0=&Move to..., mnuFSO_1=&Copy to..., mnuFSO_2=&Rename..., mnuFSO_3=&Delete..., -, "
        "mnuFSO_5=&Properties], mnuPrint=&Print..., -, mnuPreferences=&Preferences..., -, mnuExit=E&xit");
    row("mnuEdit",
        u"mnuUndo=&Undo\tCtrl+Z, mnuRedo=&Redo\tCtrl+Y, mnuEditItem_0=Cu&t\tCtrl+X, "
        u"mnuEditItem_1=&Copy\tCtrl+C, "
        "mnuEditItem_2=&Paste\tCtrl+V, mnuDelete=&Delete\tDel, mnuSelectAll=&Select all, "
        "mnuComment=Co&mment, "
        "mnuUncomment=&Uncomment, mnuRemoveComments=&Remove comments, mnuIndent_0=&Increase indent\tTab, "
        "mnuIndent_1=Decrease i&ndent\tShift+Tab, -, mnuTabSpace=Formatting algorythms..., "
        "mnuChangeCase=C&hange case [mnuCase_0=&Uppercase, mnuCase_1=&Lowercase, mnuCase_2=&Capitalize]");
    row("mnuSearch",
        u"mnuFind=&Find..., mnuFindAgain=Find &again, mnuReplace=&Replace..., mnuGoTo=&Go to line...");
    row("mnuView",
        u"mnuOrchestra=&Orchestra, mnuScore=&Score, mnuBrowse=&Code Outline, mnuRelated=&Related Files, -, "
        "mnuRefreshSyntaxHighlight=Refresh synta&x highlight, -, mnuShowDirs=Show fold&ers ["
        "mnuDIR_0=S&FDIR - Soundfiles..., mnuDIR_1=&SSDIR - Samples..., mnuDIR_2=S&ADIR - Analisys..., "
        "mnuDIR_3=&INCDIR - Include..., -, mnuDIR_5=&Csound..., mnuDIR_6=Csound #&2..., -, "
        "mnuDIR_8=Current &document..., mnuDIR_9=&Backup..., -, mnuDIR_11=&Zelvane...], -, "
        "mnuFontSize_0=&Increase font size\tCtrl+NumPad +, mnuFontSize_1=&Decrease font size\tCtrl+NumPad -, "
        "mnuWordWrap=&Word wrap, -, mnuToolbar=Wor&kspace [mnuShowToolbar_0=&Toolbar, "
        "mnuShowToolbar_1=&Opcodes list, mnuShowToolbar_2=Pl&ayer, mnuShowToolbar_3=&Presets bar, "
        "mnuShowStatusbar=&Status bar, -, mnuLabels_0=Toolbar &labels, mnuLabels_1=P&resets labels, "
        "mnuLabels_2=Pa&nel labels]");
    row("mnuInsert",
        u"mnuRandom=&Random number..., -, mnuHeader=Orchestra &header..., mnuNewInstr=&Instrument..., -, "
        "mnuNewMacro=&Macro definition..., mnuNewInclude=#incl&ude statement..., -, "
        "mnuInsertFilename=&Filename..., "
        "-, mnuLineSeparation_0=----------------, mnuLineSeparation_1=****************, -, mnuDate=&Date && "
        "time");
    row("mnuPresets", u"-, mnuPresetsBox=Add/Remove &Presets...");
    row("mnuTools",
        u"mnuRunCsound=&Run Csound..., -, mnuCodeRes=Co&de Repository..., "
        "mnuCodeResAdd=&Add to Code Repository..., -, mnuInstrEdit=I&nstrument Properties..., "
        "mnuInstrGUI=&i statement gui..., mnuPMapping=p-Fields mapping..., -, "
        "mnuCSD_0=&Convert to Unified file format (CSD), mnuCSD_1=C&onvert to Orchestra/Score pair, -, "
        "mnuDeleteTempFiles=Delete Csound &temporary files...");
    row("mnuPlayer",
        u"mnuPlay=&Play/Restart, mnuPause=P&ause/Resume, mnuStop=&Stop, mnuLoop=&Loop mode, -, "
        "mnuOpenSoundfile=&Open soundfile..., -, mnuSoundShell=S&hell operation [mnuSSO_0=&Move to..., "
        "mnuSSO_1=&Copy to..., mnuSSO_2=&Rename..., mnuSSO_3=&Delete..., -, mnuSSO_5=&Properties], -, "
        "mnuVolumeControl=&Volume control...");
    row("mnuHelp",
        u"mnuCsHelp=&Csound Help, -, mnuAppHelp=Zelvane &Help, mnuWebPage=Zelvane web &page, -, "
        "mnuWeb=Csound on the &web [mnuLinks_0=&The Csound Front Page @ MITPress, mnuLinks_1=&DirectCsound, "
        "mnuLinks_2=&Csound FTP download, mnuLinks_3=Csound &manual in WinHelp format], -, "
        "mnuAbout=&About...");
    row("mnuBrowseEditable",
        u"mnuBrowseEdit_0=&Select, mnuBrowseEdit_1=Cu&t, mnuBrowseEdit_2=Copy, mnuBrowseEdit_3=&Delete, -, "
        "mnuBrowseEdit_5=&Export...");
    row("mnuBrowseInclude", u"mnuBInclude_0=&Open file, mnuBInclude_1=&Insert file");
    row("mnuTreeView", u"mnuTV_0=&Expand, mnuTV_1=&Collapse, -, mnuTV_3=E&xpand all, mnuTV_4=C&ollapse all, "
                       u"-, mnuTV_6=&Refresh");
    row("mnuPresetPopup",
        u"mnuPresetPopupItem_0=&Run\tClick, mnuPresetPopupItem_1=Run - &Confirm macros\tCtrl+Click, -, "
        "mnuPresetPopupItem_3=&Edit...\tAlt+Click");
    row("mnuRelatedPopup",
        u"mnuRelatedItem_0=&Open, -, mnuRelatedItem_2=&Shell [mnuRelatedShell_0=&Open, "
        "mnuRelatedShell_1=Open &with..., -, mnuRelatedShell_3=&Move to..., mnuRelatedShell_4=&Copy to..., "
        "mnuRelatedShell_5=&Rename..., mnuRelatedShell_6=&Delete..., -, mnuRelatedShell_8=Open con&tainer, "
        "-, "
        "mnuRelatedShell_10=&Properties]");
}

void MainWindowTest::MenusHaveTheirRows()
{
    QFETCH(QString, name);
    QFETCH(QString, rows);
    EditorWindow editor;
    editor.Open();
    QCOMPARE(Outline(editor.Find<QMenu>(name)), rows);
}

void MainWindowTest::MenuBarHasTheMenusInOrder()
{
    EditorWindow editor;
    QStringList menus;
    for (const QAction *action : editor.Open().menuBar()->actions())
        menus.append(action->menu()->objectName() + u'=' + action->text());
    QCOMPARE(menus.join(u", "_s),
             u"mnuFile=&File, mnuEdit=&Edit, mnuSearch=&Search, mnuView=&View, mnuInsert=&Insert, "
             "mnuPresets=&Presets, mnuTools=&Tools, mnuPlayer=P&layer, mnuHelp=&Help"_s);
}

void MainWindowTest::RowsOfMissingPartsAreDisabled()
{
    EditorWindow editor;
    Commands &commands = editor.Open().CommandTable();
    for (const MenuRow &row : MenuTable()) {
        const QString name = QString::fromUtf16(row.name);
        const int index = std::max(row.index, 0);
        const QAction *action = commands.Action(name, index);
        if (!action || commands.IsBound(name, index))
            continue;
        QVERIFY2(!action->isEnabled(), qPrintable(RowName(name, row.index)));
        commands.SetEnabled(name, index, true);
        QVERIFY2(!action->isEnabled(), qPrintable(RowName(name, row.index)));
        commands.Run(name, index);
    }
    QVERIFY(!commands.IsBound(u"mnuPrint"_s));
    QVERIFY(commands.IsBound(u"mnuNew"_s));
    QVERIFY(editor.Row(u"mnuNew"_s).isEnabled());
}

void MainWindowTest::ToolbarHasItsButtons()
{
    EditorWindow editor;
    editor.Open();
    QStringList keys;
    for (const QAction *action : editor.Find<QToolBar>(u"Toolbar1"_s).actions()) {
        if (action->isSeparator())
            continue;
        keys.append(action->property("key").toString());
        QVERIFY2(!action->icon().isNull(), qPrintable(action->objectName()));
        QVERIFY2(!action->toolTip().isEmpty(), qPrintable(action->objectName()));
    }
    QStringList expected;
    for (const char16_t *key : Keys21)
        expected.append(QString::fromUtf16(key));
    QCOMPARE(keys, expected);
    for (const QString &key : {u"play"_s, u"pause"_s, u"stop"_s, u"loop"_s})
        QVERIFY(!editor.Find<QAction>(u"tbPlayer_"_s + key).icon().isNull());
    QVERIFY(!editor.Find<QSlider>(u"SliderTime"_s).isEnabled());
    QCOMPARE(editor.Find<QLabel>(u"lblPos"_s).toolTip(), u"Elapsed Time"_s);
}

void MainWindowTest::FiveButtonsDropDownTwoCommands()
{
    EditorWindow editor;
    editor.Open();
    QStringList found;
    for (const QAction *action : editor.Find<QToolBar>(u"Toolbar1"_s).actions()) {
        if (!action->menu())
            continue;
        QStringList captions;
        for (const QAction *entry : action->menu()->actions())
            captions.append(entry->text());
        found.append(action->property("key").toString() + u": "_s + captions.join(u'/'));
    }
    QCOMPARE(found, QStringList({u"comment: Comment/Uncomment"_s, u"find: Find.../Replace..."_s,
                                 u"fontsize: Increase font size/Decrease font size"_s,
                                 u"code: Code Repository.../Add to Code Repository..."_s,
                                 u"slider: i statement gui.../Instrument Properties..."_s}));
    const double before = editor.Text().CurrentFont().points;
    editor.Find<QAction>(u"Toolbar1_fontsize_menu_1"_s).trigger();
    QVERIFY(editor.Text().CurrentFont().points < before);
    Button(editor, u"fontsize"_s)->trigger();
    QCOMPARE(editor.Text().CurrentFont().points, before);
}

void MainWindowTest::ToolbarLabels()
{
    EditorWindow editor;
    editor.Open();
    auto &toolbar = editor.Find<QToolBar>(u"Toolbar1"_s);
    const int before = editor.Find<BandBar>(u"CoolBar1"_s).height();
    QCOMPARE(toolbar.toolButtonStyle(), Qt::ToolButtonIconOnly);
    editor.Row(u"mnuLabels_0"_s).trigger();
    QVERIFY(editor.Row(u"mnuLabels_0"_s).isChecked());
    QCOMPARE(toolbar.toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
    QVERIFY(Eventually([&] { return editor.Find<BandBar>(u"CoolBar1"_s).height() > before; }));
    editor.Row(u"mnuLabels_0"_s).trigger();
    QVERIFY(!editor.Row(u"mnuLabels_0"_s).isChecked());
    QVERIFY(Eventually([&] { return editor.Find<BandBar>(u"CoolBar1"_s).height() == before; }));
}

void MainWindowTest::ButtonsFollowTheirRows()
{
    EditorWindow editor;
    Commands &commands = editor.Open().CommandTable();
    QVERIFY(!Button(editor, u"orchestra"_s)->isEnabled());
    int runs = 0;
    commands.Bind(u"mnuOrchestra"_s, [&](int) { ++runs; });
    QVERIFY(!Button(editor, u"orchestra"_s)->isEnabled());
    commands.SetEnabled(u"mnuOrchestra"_s, 0, true);
    QVERIFY(Button(editor, u"orchestra"_s)->isEnabled());
    Button(editor, u"orchestra"_s)->trigger();
    QCOMPARE(runs, 1);
    QVERIFY(Button(editor, u"browse"_s)->isChecked());
    Button(editor, u"browse"_s)->trigger();
    QVERIFY(!Button(editor, u"browse"_s)->isChecked());
    QVERIFY(!editor.Row(u"mnuBrowse"_s).isChecked());
    editor.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(Button(editor, u"browse"_s)->isChecked());
}

void MainWindowTest::SaveButtonAndCaptionFollowTheText()
{
    EditorWindow editor;
    frmEditor &window = editor.Open();
    QCOMPARE(window.windowTitle(), u"Zelvane - Untitled ()"_s);
    QVERIFY(!Button(editor, u"save"_s)->isEnabled());
    QVERIFY(editor.Row(u"mnuSave"_s).isEnabled());
    QTest::keyClick(&editor.Text(), Qt::Key_A);
    QCOMPARE(window.windowTitle(), u"Zelvane - Untitled* ()"_s);
    QVERIFY(Button(editor, u"save"_s)->isEnabled());
    QVERIFY(window.Context().document.Modified);
    const QString file = editor.folder.filePath(u"a.orc"_s);
    FileDialogRequest request;
    request.filters = {{u"All files"_s, u"*.*"_s}};
    editor.desktop.ExpectSaveDialog(request, {file, 0});
    Button(editor, u"save"_s)->trigger();
    QCOMPARE(window.windowTitle(), u"Zelvane - %1 (Orchestra)"_s.arg(file));
    QVERIFY(!Button(editor, u"save"_s)->isEnabled());
    QCOMPARE(ReadTextFile(file), u"a"_s);
}

void MainWindowTest::KindsEnableTheirCommands()
{
    EditorWindow editor;
    frmEditor &window = editor.Open();
    Commands &commands = window.CommandTable();
    const QString names[] = {u"mnuHeader"_s,   u"mnuNewInstr"_s,  u"mnuOrchestra"_s,
                             u"mnuScore"_s,    u"mnuInstrEdit"_s, u"mnuInstrGUI"_s,
                             u"mnuPMapping"_s, u"mnuNewMacro"_s,  u"mnuNewInclude"_s};
    for (const QString &name : names)
        commands.Bind(name, [](int) {});
    commands.Bind(u"mnuCSD"_s, [](int) {});
    const auto state = [&] {
        QString text;
        for (const QString &name : names)
            text += commands.IsEnabled(name) ? u'T' : u'-';
        return text + (commands.IsEnabled(u"mnuCSD"_s, 0) ? u'T' : u'-') +
               (commands.IsEnabled(u"mnuCSD"_s, 1) ? u'T' : u'-');
    };
    DocumentLifecycle &documents = window.Documents();
    documents.NewFile(FileKind::Other, {});
    QCOMPARE(state(), u"-----------"_s);
    documents.NewFile(FileKind::Orchestra, {});
    QCOMPARE(state(), u"TT-TT-TTTT-"_s);
    documents.NewFile(FileKind::Score, {});
    QCOMPARE(state(), u"--T-TT-TTT-"_s);
    documents.NewFile(FileKind::Unified, {});
    QCOMPARE(state(), u"TTTTTTTTT-T"_s);
    QVERIFY(Button(editor, u"orchestra"_s)->isEnabled());
    QVERIFY(Button(editor, u"score"_s)->isEnabled());
    QVERIFY(Button(editor, u"slider"_s)->isEnabled());
}

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
    QVERIFY(Button(editor, u"cut"_s)->isEnabled());
    QVERIFY(Button(editor, u"copy"_s)->isEnabled());
    QVERIFY(!Button(editor, u"paste"_s)->isEnabled());
    QVERIFY(!Button(editor, u"undo"_s)->isEnabled());
    editor.Text().SetSelection(1, 9);
    QCOMPARE(status.text(), u"2 lines selected"_s);
    Button(editor, u"copy"_s)->trigger();
    QCOMPARE(editor.desktop.clipboard, u"ne\ntwo\nt"_s);
    QVERIFY(Button(editor, u"paste"_s)->isEnabled());
    Button(editor, u"cut"_s)->trigger();
    QCOMPARE(editor.Text().Text(), u"ohree\n"_s);
    QCOMPARE(status.text(), QString());
    QVERIFY(Button(editor, u"undo"_s)->isEnabled());
    QVERIFY(!Button(editor, u"cut"_s)->isEnabled());
    Button(editor, u"undo"_s)->trigger();
    QCOMPARE(editor.Text().Text(), u"one\ntwo\nthree\n"_s);
    QVERIFY(Button(editor, u"redo"_s)->isEnabled());
    Button(editor, u"redo"_s)->trigger();
    Button(editor, u"paste"_s)->trigger();
    QCOMPARE(editor.Text().Text(), u"one\ntwo\nthree\n"_s);
    editor.Row(u"mnuSelectAll"_s).trigger();
    editor.Row(u"mnuDelete"_s).trigger();
    QCOMPARE(editor.Text().Text(), QString());
}

void MainWindowTest::FileLineGoesWithTheFirstMove()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::Band(2), false); // loading its list would take the status line
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

void MainWindowTest::EditMenuOpensWithTheTextsState()
{
    EditorWindow editor;
    editor.Open({editor.WriteFile(u"a.txt"_s, "one\n")});
    Commands &commands = editor.window->CommandTable();
    commands.Bind(u"mnuUncomment"_s, [](int) {});
    const QString rows[] = {u"mnuUndo"_s,       u"mnuRedo"_s,   u"mnuEditItem_0"_s, u"mnuEditItem_1"_s,
                            u"mnuEditItem_2"_s, u"mnuDelete"_s, u"mnuUncomment"_s};
    const auto state = [&] {
        commands.MenuOpening(u"mnuEdit"_s);
        QString text;
        for (const QString &row : rows)
            text += editor.Row(row).isEnabled() ? u'T' : u'-';
        return text;
    };
    QCOMPARE(state(), u"-------"_s);
    editor.desktop.clipboard =
        u"x"_s; // another program has put text there: the menu looks at it when it opens
    editor.Text().SetSelection(0, 1);
    QCOMPARE(state(), u"--TTTTT"_s);
    editor.Text().DeleteSelection();
    QCOMPARE(state(), u"T---T--"_s);
    editor.Text().Undo();
    QCOMPARE(state()[1], u'T');
}

void MainWindowTest::BandsHideAndTheTextGoesUp()
{
    EditorWindow editor;
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(bar.BandCount(), 4);
    QCOMPARE(editor.Text().y(), bar.height() + 3);
    for (int n = 0; n < 4; ++n) {
        QVERIFY(bar.isVisible());
        const int height = bar.height();
        editor.Row(u"mnuShowToolbar_"_s + QString::number(n)).trigger();
        QVERIFY(!editor.Row(u"mnuShowToolbar_"_s + QString::number(n)).isChecked());
        QVERIFY(!bar.IsBandVisible(n));
        QVERIFY(n == 3 || bar.height() < height);
    }
    QVERIFY(!bar.isVisible());
    QCOMPARE(editor.Text().y(), 0);
    editor.Row(u"mnuShowToolbar_2"_s).trigger();
    QVERIFY(bar.isVisible());
    QVERIFY(editor.Find<QWidget>(u"PicPlayer"_s).isVisible());
    QCOMPARE(editor.Text().y(), bar.height() + 3);

    auto &status = editor.Find<QWidget>(u"picStatus"_s);
    QCOMPARE(editor.Text().geometry().bottom() + 1, status.y() - 3);
    editor.Row(u"mnuShowStatusbar"_s).trigger();
    QVERIFY(!status.isVisible());
    QCOMPARE(editor.Text().geometry().bottom() + 1, editor.Text().parentWidget()->height() - 3);
}

void MainWindowTest::OpcodeListLoadsAtTheFirstShowing()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::Band(2), false);
    editor.Open();
    auto &combo = editor.Find<QComboBox>(u"cmbOpcodes"_s);
    QCOMPARE(combo.count(), 0);
    editor.Row(u"mnuShowToolbar_1"_s).trigger();
    QCOMPARE(combo.count(), 4);
    editor.WriteFile(u"opcodes.txt"_s, "other\n");
    editor.Row(u"mnuShowToolbar_1"_s).trigger();
    editor.Row(u"mnuShowToolbar_1"_s).trigger();
    QCOMPARE(combo.count(), 4);

    EditorWindow shown;
    shown.Open();
    QCOMPARE(shown.Find<QComboBox>(u"cmbOpcodes"_s).count(), 4);
}

void MainWindowTest::SidePanelHidesWithItsBands()
{
    EditorWindow editor;
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    auto &splitter = editor.Find<Splitter>(u"Splitter"_s);
    QVERIFY(panel.isVisible() && splitter.isVisible());
    QVERIFY(editor.Find<QTreeWidget>(u"tvwBrowse"_s).isVisible());
    QVERIFY(editor.Find<QTreeWidget>(u"tvwRelated"_s).isVisible());
    QCOMPARE(editor.Text().x(), panel.width() + splitter.width());
    editor.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(panel.isVisible());
    QVERIFY(!editor.Find<QTreeWidget>(u"tvwBrowse"_s).isVisible());
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(!panel.isVisible() && !splitter.isVisible());
    QCOMPARE(editor.Text().x(), 0);
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(panel.isVisible() && splitter.isVisible());
    QCOMPARE(editor.Text().x(), panel.width() + splitter.width());
}

void MainWindowTest::SplitterSetsThePanelsWidth()
{
    EditorWindow editor;
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    auto &splitter = editor.Find<Splitter>(u"Splitter"_s);
    const int before = panel.width();
    const int text = editor.Text().width();
    QTest::mousePress(&splitter, Qt::LeftButton, {}, QPoint(1, 10));
    QTest::mouseMove(&splitter, QPoint(41, 10));
    QMouseEvent move(QEvent::MouseMove, QPointF(41, 10), splitter.mapToGlobal(QPointF(41, 10)), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(&splitter, &move);
    const int dragged = splitter.x() - before;
    QVERIFY(dragged > 0);
    QCOMPARE(panel.width(), before);
    QTest::mouseRelease(&splitter, Qt::LeftButton, {}, QPoint(1, 10));
    QCOMPARE(panel.width(), before + dragged);
    QCOMPARE(editor.Text().width(), text - dragged);
    // A click without a move leaves the width.
    QTest::mouseClick(&splitter, Qt::LeftButton, {}, QPoint(1, 10));
    QCOMPARE(panel.width(), before + dragged);
}

namespace
{

void Drag(QWidget &widget, const QPoint &from, const QPoint &to)
{
    QTest::mousePress(&widget, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(to), widget.mapToGlobal(QPointF(to)), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(&widget, &move);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
}

} // namespace

void MainWindowTest::BandCaptionsAreTheKeys()
{
    EditorWindow editor;
    editor.Open();
    auto *bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    const auto captions = [&bar] {
        QStringList all;
        for (int band = 0; band < bar->BandCount(); ++band)
            all.append(bar->BandCaption(band));
        return all.join(u',');
    };
    QCOMPARE(captions(), u",,,"_s);
    const int grip = bar->GripOf(1).width();
    editor.settings.SaveFlag(Keys::BandLabels, true);
    editor.Open();
    bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(captions(), u"toolbar,opcodes,player,presets"_s);
    QVERIFY(bar->GripOf(1).width() > grip);
}

void MainWindowTest::BandGripsShareOutARow()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::BandRow(3), false);
    editor.settings.SaveNumber(Keys::BandWidth(2), 300);
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(bar.PlaceOf(1).top(), bar.PlaceOf(2).top());
    QVERIFY(bar.PlaceOf(3).top() > bar.PlaceOf(2).top());
    QCOMPARE(bar.PlaceOf(1).width(), 300);
    QCOMPARE(bar.PlaceOf(2).right(), bar.rect().right());
    const QPoint grip = bar.GripOf(2).center();
    Drag(bar, grip, grip + QPoint(50, 0));
    QCOMPARE(bar.PlaceOf(1).width(), 350);
    QCOMPARE(bar.PlaceOf(2).left(), 350);
    QCOMPARE(bar.PlaceOf(2).right(), bar.rect().right());
    // The grip does not push its own band out of the bar.
    Drag(bar, bar.GripOf(2).center(), QPoint(5000, grip.y()));
    QVERIFY(bar.PlaceOf(2).width() > bar.GripOf(2).width());
    QCOMPARE(bar.PlaceOf(2).right(), bar.rect().right());
}

void MainWindowTest::BandsJoinAndPartRows()
{
    EditorWindow editor;
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    const int height = bar.height();
    const QPoint above(400, bar.PlaceOf(1).center().y());
    Drag(bar, bar.GripOf(2).center(), above);
    QVERIFY(!bar.StartsRow(2));
    QCOMPARE(bar.PlaceOf(2).top(), bar.PlaceOf(1).top());
    QVERIFY(qAbs(bar.GripOf(2).center().x() - 400) < 3);
    QVERIFY(bar.height() < height);
    QCOMPARE(editor.Text().y(), bar.height() + 3);
    Drag(bar, bar.GripOf(2).center(), QPoint(400, bar.PlaceOf(2).bottom() + 5));
    QVERIFY(bar.StartsRow(2));
    QCOMPARE(bar.height(), height);
}

void MainWindowTest::PanelHeaderSharesOutTheHeight()
{
    EditorWindow editor;
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    const int before = panel.PlaceOf(0).height();
    QCOMPARE(before + panel.PlaceOf(1).height(), panel.height());
    const QPoint header = panel.HeaderOf(1).center();
    Drag(panel, header, header + QPoint(0, 30));
    QCOMPARE(panel.PlaceOf(0).height(), before + 30);
    QCOMPARE(panel.BandHeight(0), before + 30);
    QCOMPARE(panel.PlaceOf(0).height() + panel.PlaceOf(1).height(), panel.height());
    editor.Row(u"mnuLabels_2"_s).trigger();
    QVERIFY(panel.AreCaptionsShown());
    QCOMPARE(panel.PlaceOf(0).height(), before + 30);
}

void MainWindowTest::BandAloneLeavesTheOtherItsShare()
{
    EditorWindow editor;
    editor.Open();
    editor.Row(u"mnuRelated"_s).trigger();
    QCOMPARE(editor.Find<SidePanel>(u"cc3Panel"_s).PlaceOf(0).height(),
             editor.Find<SidePanel>(u"cc3Panel"_s).height());
    QVERIFY(editor.window->close());
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    QVERIFY(!panel.IsBandVisible(1));
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(panel.PlaceOf(1).height() >= panel.height() / 2);
    // Without captions nothing stands above the first band.
    QCOMPARE(editor.Find<QTreeWidget>(u"tvwBrowse"_s).y(), 0);
    editor.Row(u"mnuLabels_2"_s).trigger();
    QCOMPARE(editor.Find<QTreeWidget>(u"tvwBrowse"_s).y(), panel.HeaderOf(0).height());
    QVERIFY(panel.HeaderOf(0).height() > 0);
}

void MainWindowTest::LayoutComesBack()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::BandLabels, true);
    editor.Open();
    editor.window->setGeometry(37, 41, 823, 611);
    auto *bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    auto *panel = &editor.Find<SidePanel>(u"cc3Panel"_s);
    QVERIFY(bar->AreCaptionsShown());
    bar->SetStartsRow(2, false);
    bar->SetBandWidth(1, 287);
    panel->SetBandHeight(0, 140);
    const QPoint header = panel->HeaderOf(1).center();
    Drag(*panel, header, header + QPoint(0, 11));
    const int bandHeight = panel->BandHeight(0);
    auto *splitter = &editor.Find<Splitter>(u"Splitter"_s);
    Drag(*splitter, QPoint(1, 5), QPoint(35, 5));
    const int panelWidth = panel->width();
    for (const QString &row : {u"mnuShowToolbar_1"_s, u"mnuShowStatusbar"_s, u"mnuLabels_0"_s,
                               u"mnuLabels_1"_s, u"mnuLabels_2"_s, u"mnuRelated"_s, u"mnuWordWrap"_s})
        editor.Row(row).trigger();
    editor.Find<QAction>(u"mnuLoop"_s).setChecked(true);
    editor.window->CommandTable().Run(u"mnuFontSize"_s, 0);
    const TextFont font = editor.Text().CurrentFont();
    const QRect place = editor.window->geometry();
    QVERIFY(editor.window->close());

    editor.Open();
    bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    panel = &editor.Find<SidePanel>(u"cc3Panel"_s);
    QCOMPARE(editor.window->geometry(), place);
    QCOMPARE(bar->IsBandVisible(1), false);
    QCOMPARE(bar->BandWidth(1), 287);
    QCOMPARE(bar->StartsRow(1), true);
    QCOMPARE(bar->StartsRow(2), false);
    QCOMPARE(panel->width(), panelWidth);
    for (const QString &row : {u"mnuLabels_0"_s, u"mnuLabels_1"_s, u"mnuLabels_2"_s, u"mnuWordWrap"_s,
                               u"mnuBrowse"_s, u"mnuLoop"_s, u"mnuShowToolbar_0"_s})
        QVERIFY2(editor.Row(row).isChecked(), qPrintable(row));
    for (const QString &row : {u"mnuShowToolbar_1"_s, u"mnuShowStatusbar"_s, u"mnuRelated"_s})
        QVERIFY2(!editor.Row(row).isChecked(), qPrintable(row));
    QVERIFY(editor.Find<QAction>(u"tbPlayer_loop"_s).isChecked());
    QVERIFY(!editor.Find<QWidget>(u"picStatus"_s).isVisible());
    QCOMPARE(editor.Text().CurrentFont(), font);
    QVERIFY(editor.Text().WordWrap());
    editor.Row(u"mnuRelated"_s).trigger();
    QCOMPARE(panel->BandHeight(0), bandHeight);
}

void MainWindowTest::LayoutIsWrittenInOrder()
{
    EditorWindow editor;
    editor.settings.DeleteSetting(u"Options"_s);
    editor.settings.SaveNumber(Keys::Startup, 2);
    editor.settings.SaveNumber(Keys::Used, 7);
    editor.Open();
    editor.settings.DeleteSetting(u"Options"_s, u"Used"_s);
    QVERIFY(editor.window->close());
    QStringList keys;
    for (const auto &[key, value] : editor.settings.GetAllSettings(u"Options"_s))
        keys.append(key);
    QCOMPARE(
        keys.join(u' '),
        u"Startup Window X Y Width Height Font FontItalic FontBold FontSize WordWrap Labels PresetsLabels "
        "PanelLabels CodeOutline RelatedFiles LoopMode Band1 Band2 Band3 Band4 StatusBar BandWidth1 BandRow1 "
        "BandWidth2 BandRow2 BandWidth3 BandRow3 BandWidth4 BandRow4 Used PanelWidth PanelBandHeight1 "
        "PanelBandRow1 PanelBandHeight2 PanelBandRow2"_s);
    const auto value = [&](const QString &key) { return editor.settings.GetSetting(u"Options"_s, key); };
    QCOMPARE(value(u"Used"_s), u"2"_s);
    QCOMPARE(value(u"Window"_s), u"0"_s);
    QCOMPARE(value(u"Band1"_s), u"-1"_s);
    QCOMPARE(value(u"LoopMode"_s), u"0"_s);
    QCOMPARE(value(u"Width"_s).toDouble(), editor.window->width() * 1440.0 / editor.window->logicalDpiX());
}

void MainWindowTest::MinimizedWindowKeepsTheStoredPlace()
{
    EditorWindow editor;
    editor.settings.SaveNumber(Keys::X, 600);
    editor.settings.SaveNumber(Keys::Width, 9000);
    editor.Open();
    editor.window->showMinimized();
    QVERIFY(editor.window->close());
    QCOMPARE(editor.settings.Number(Keys::X), 600.0);
    QCOMPARE(editor.settings.Number(Keys::Width), 9000.0);
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Window"_s, u"none"_s), u"none"_s);
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Height"_s, u"none"_s), u"none"_s);

    editor.Open();
    editor.window->showMaximized();
    QVERIFY(editor.window->close());
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Window"_s), u"2"_s);
    QCOMPARE(editor.settings.Number(Keys::X), 600.0);
    QCOMPARE(editor.settings.Number(Keys::Width), 9000.0);
    editor.Open();
    QVERIFY(editor.window->isMaximized());
}

void MainWindowTest::OffScreenPlacesComeBack_data()
{
    QTest::addColumn<QRect>("stored");
    QTest::addColumn<QRect>("shown");
    const QRect screen(0, 0, 800, 600);
    QTest::newRow("inside") << QRect(100, 50, 400, 300) << QRect(100, 50, 400, 300);
    QTest::newRow("partly left") << QRect(-200, 50, 400, 300) << QRect(-200, 50, 400, 300);
    QTest::newRow("far left") << QRect(-5000, 50, 400, 300) << QRect(0, 50, 400, 300);
    QTest::newRow("above") << QRect(100, -40, 400, 300) << QRect(100, 0, 400, 300);
    QTest::newRow("below") << QRect(100, 9000, 400, 300) << QRect(100, 300, 400, 300);
    QTest::newRow("too large and away") << QRect(3000, 3000, 4000, 4000) << screen;
    QTest::newRow("second screen") << QRect(900, 100, 400, 300) << QRect(900, 100, 400, 300);
}

void MainWindowTest::OffScreenPlacesComeBack()
{
    QFETCH(QRect, stored);
    QFETCH(QRect, shown);
    std::vector<QRect> screens = {QRect(0, 0, 800, 600)};
    if (stored.left() == 900)
        screens.emplace_back(800, 0, 1000, 800);
    QCOMPARE(OnScreen(stored, screens), shown);
}

void MainWindowTest::StoredPlaceOffTheScreenComesBack()
{
    EditorWindow editor;
    editor.settings.SaveNumber(Keys::X, -90000);
    editor.settings.SaveNumber(Keys::Y, 1e30);
    editor.settings.SaveNumber(Keys::Width, 6000);
    editor.settings.SaveNumber(Keys::Height, 0);
    editor.Open();
    const QRect screen = editor.window->screen()->availableGeometry();
    const QRect place = editor.window->frameGeometry();
    const QRect seen = screen & place;
    QVERIFY2(screen.contains(place.topLeft()), qPrintable(QDebug::toString(place)));
    QVERIFY2(seen.width() == place.width() && seen.height() >= 160, qPrintable(QDebug::toString(place)));
    QCOMPARE(editor.window->width(), FromTwips(6000, editor.window->logicalDpiX()));
}

void MainWindowTest::TwipsAreOf1440ToTheInch()
{
    QCOMPARE(ToTwips(100, 96), 1500.0);
    QCOMPARE(FromTwips(1500, 96), 100);
    QCOMPARE(FromTwips(14401, 96), 960);
    QCOMPARE(FromTwips(1e300, 96), FromTwips(1e7, 96));
    for (int pixels = -100; pixels < 3000; ++pixels)
        QCOMPARE(FromTwips(ToTwips(pixels, 120), 120), pixels);
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

void MainWindowTest::FontSizeKeysAreNoEdit()
{
    EditorWindow editor;
    editor.Open();
    const double before = editor.Text().CurrentFont().points;
    QTest::keyClick(&editor.Text(), Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    const double larger = editor.Text().CurrentFont().points;
    QVERIFY(larger > before);
    QTest::keyClick(&editor.Find<QTreeWidget>(u"tvwBrowse"_s), Qt::Key_Minus,
                    Qt::ControlModifier | Qt::KeypadModifier | Qt::AltModifier);
    QCOMPARE(editor.Text().CurrentFont().points, larger);
    QTest::keyClick(&editor.Find<QComboBox>(u"cmbOpcodes"_s), Qt::Key_Minus,
                    Qt::ControlModifier | Qt::KeypadModifier);
    QCOMPARE(editor.Text().CurrentFont().points, before);
    QVERIFY(!editor.window->Context().document.Modified);
    QCOMPARE(editor.Text().Text(), QString());
    QVERIFY(!editor.Text().CanUndo());
}

void MainWindowTest::WordWrapIsKept()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::WordWrap, true);
    editor.Open({editor.WriteFile(u"a.txt"_s, QByteArray(2000, 'x') + "\n")});
    QVERIFY(editor.Text().WordWrap());
    QVERIFY(editor.Row(u"mnuWordWrap"_s).isChecked());
    QVERIFY(!editor.window->Context().document.Modified);
    editor.Row(u"mnuWordWrap"_s).trigger();
    QVERIFY(!editor.Text().WordWrap());
    QVERIFY(!editor.window->Context().document.Modified);
}

void MainWindowTest::WrappedTextFollowsTheWindow()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::WordWrap, true);
    const QString file = editor.WriteFile(u"long.txt"_s, QByteArray("word ").repeated(200) + '\n');
    editor.Open();
    editor.window->resize(800, 600);
    editor.window->Documents().OpenFile(file);
    const auto rows = [&] { return editor.Text().SendScintilla(QsciScintillaBase::SCI_WRAPCOUNT, 0L); };
    QVERIFY(Eventually([&] { return rows() > 1; }));
    const long wide = rows();
    editor.window->resize(500, 600);
    QVERIFY(Eventually([&] { return rows() > wide; }));
    editor.window->resize(800, 600);
    QVERIFY(Eventually([&] { return rows() == wide; }));
}

void MainWindowTest::PresetKeysRunRows()
{
    EditorWindow editor;
    for (int i = 1; i <= 21; ++i) {
        const QString name = u"Preset %1"_s.arg(i);
        editor.settings.SaveSetting(u"Presets"_s, name, {});
        editor.settings.SaveSetting(name, u"Command"_s, u"/bin/p%1"_s.arg(i));
    }
    editor.Open();
    const auto expect = [&](int i) {
        editor.desktop.ExpectShellRun({.file = u"/bin/p%1"_s.arg(i), .folder = u"/bin"_s});
    };
    for (int digit = 1; digit <= 10; ++digit) {
        expect(digit);
        QTest::keyClick(&editor.Text(), Qt::Key(Qt::Key_0 + digit % 10), Qt::ControlModifier);
        expect(digit + 10);
        QTest::keyClick(&editor.Text(), Qt::Key(Qt::Key_0 + digit % 10), Qt::AltModifier);
    }
    editor.desktop.CheckAllCame();
    QTest::keyClick(&editor.Find<QTreeWidget>(u"tvwBrowse"_s), Qt::Key_1,
                    Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(editor.Text().Text(), QString());
    expect(3);
    QTest::keyClick(&editor.Find<QTreeWidget>(u"tvwBrowse"_s), Qt::Key_3, Qt::ControlModifier);
    // Ctrl held down counts for the click on a row, and not for the key.
    editor.desktop.keysDown = {KeyCode::Ctrl};
    expect(4);
    QTest::keyClick(&editor.Text(), Qt::Key_4, Qt::ControlModifier);

    EditorWindow empty;
    empty.Open();
    QTest::keyClick(&empty.Text(), Qt::Key_1, Qt::ControlModifier);
    QTest::keyClick(&empty.Text(), Qt::Key_0, Qt::AltModifier);
    QCOMPARE(empty.Text().Text(), QString());
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

void MainWindowTest::NoControlIsATabStopBesideTheText()
{
    EditorWindow editor;
    editor.Open();
    editor.window->activateWindow();
    auto &combo = editor.Find<QComboBox>(u"cmbOpcodes"_s);
    auto &tree = editor.Find<QTreeWidget>(u"tvwBrowse"_s);
    editor.Text().setFocus();
    QVERIFY(Eventually([&] { return editor.Text().hasFocus(); }));
    QVERIFY(!(editor.Text().focusPolicy() & Qt::TabFocus));
    QVERIFY(!(combo.focusPolicy() & Qt::TabFocus));
    QVERIFY(!(tree.focusPolicy() & Qt::TabFocus));
    QTest::keyClick(&editor.Text(), Qt::Key_Tab);
    QCOMPARE(editor.Text().Text(), u"\t"_s);
    tree.setFocus();
    QVERIFY(tree.focusPolicy() & Qt::TabFocus);
    QVERIFY(combo.focusPolicy() & Qt::TabFocus);
    QVERIFY(editor.Text().focusPolicy() & Qt::TabFocus);
}

namespace
{

/// Sends a context menu request, and gives the name of the menu that comes up.
QString MenuOf(QWidget &widget, const QPoint &at, Qt::KeyboardModifiers held = {},
               QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
{
    QContextMenuEvent event(reason, at, widget.mapToGlobal(at), held);
    QString name;
    // Some menus are modal: they are looked at, and closed, while they wait.
    QTimer::singleShot(0, &widget, [&name] {
        if (QWidget *popup = QApplication::activePopupWidget()) {
            name = popup->objectName();
            popup->close();
        }
    });
    QCoreApplication::sendEvent(&widget, &event);
    return QTest::qWaitFor([&name] { return !name.isEmpty(); }, 2000) ? name : u"none"_s;
}

} // namespace

void MainWindowTest::ContextMenusOfTheText()
{
    EditorWindow editor;
    editor.Open();
    QWidget &viewport = *editor.Text().viewport();
    QCOMPARE(MenuOf(viewport, QPoint(30, 30)), u"mnuEdit"_s);
    QCOMPARE(MenuOf(viewport, QPoint(30, 30), Qt::ControlModifier), u"mnuInsert"_s);
}

void MainWindowTest::TreesHaveTheirMenus()
{
    EditorWindow editor;
    editor.Open();
    auto &tree = editor.Find<QTreeWidget>(u"tvwBrowse"_s);
    QCOMPARE(MenuOf(*tree.viewport(), QPoint(5, 50)), u"mnuTreeView"_s);
    const std::pair<QString, QString> nodes[] = {
        {u"ins1"_s, u"mnuBrowseEditable"_s}, {u"inc2"_s, u"mnuBrowseInclude"_s},
        {u"rootins"_s, u"mnuTreeView"_s},    {u"mac1"_s, u"mnuTreeView"_s},
        {u"in"_s, u"mnuTreeView"_s},         {QString(), u"mnuTreeView"_s}};
    for (const auto &[key, menu] : nodes) {
        tree.clear();
        auto *item = new QTreeWidgetItem(&tree, {key});
        item->setData(0, Qt::UserRole, key);
        tree.setCurrentItem(item);
        QCOMPARE(MenuOf(*tree.viewport(), tree.visualItemRect(item).center()), menu);
        // Beside all nodes the current one counts.
        QCOMPARE(MenuOf(*tree.viewport(), QPoint(5, tree.viewport()->height() - 2)), menu);
    }
}

void MainWindowTest::ContextMenuKey()
{
    EditorWindow editor;
    editor.Open();
    auto &tree = editor.Find<QTreeWidget>(u"tvwBrowse"_s);
    for (const QString &key : {u"mac1"_s, u"ins1"_s, u"inc1"_s})
        (new QTreeWidgetItem(&tree, {key}))->setData(0, Qt::UserRole, key);
    // The key asks at the place that the control gives for its current item.
    const auto menu = [](QWidget &control) {
        const QPoint at = control.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        return MenuOf(control, at, {}, QContextMenuEvent::Keyboard);
    };
    tree.setCurrentItem(tree.topLevelItem(1));
    QCOMPARE(menu(tree), u"mnuBrowseEditable"_s);
    tree.setCurrentItem(tree.topLevelItem(2));
    QCOMPARE(menu(tree), u"mnuBrowseInclude"_s);
    tree.setCurrentItem(tree.topLevelItem(0));
    QCOMPARE(menu(tree), u"mnuTreeView"_s);
    QCOMPARE(menu(editor.Text()), u"mnuEdit"_s);
}

void MainWindowTest::RecentFilesStandInTheMenu()
{
    EditorWindow editor;
    QStringList files;
    for (int i = 0; i < 11; ++i)
        files.append(editor.WriteFile(u"a&b %1.orc"_s.arg(i), "text\n"));
    editor.Open();
    QVERIFY(!editor.Row(u"mnulinea"_s).isVisible());
    QVERIFY(!editor.window->findChild<QAction *>(u"MRUfolder_1"_s));
    for (const QString &file : files)
        editor.window->Documents().OpenFile(file);
    QVERIFY(editor.Row(u"mnulinea"_s).isVisible());
    for (int i = 1; i <= 9; ++i)
        QCOMPARE(editor.Row(u"MRUfolder_%1"_s.arg(i)).text(),
                 u"&%1 "_s.arg(i) + QString(files[11 - i]).replace(u'&', u"&&"_s));
    QVERIFY(!editor.window->findChild<QAction *>(u"MRUfolder_10"_s));
    const auto rows = editor.Find<QMenu>(u"mnuFile"_s).actions();
    QCOMPARE(rows[rows.indexOf(&editor.Row(u"mnuPreferences"_s)) + 1], &editor.Row(u"MRUfolder_1"_s));
    QCOMPARE(rows[rows.indexOf(&editor.Row(u"MRUfolder_9"_s)) + 1], &editor.Row(u"mnulinea"_s));
    // What the store holds now is opened, not what the row shows.
    editor.settings.SaveSetting(u"Recent File List"_s, u"4"_s, files[0]);
    editor.Row(u"MRUfolder_4"_s).trigger();
    QCOMPARE(editor.window->Context().document.CurrentFile, files[0]);
}

void MainWindowTest::FileMenuOpensWithTheDocumentsState()
{
    EditorWindow editor;
    editor.Open();
    Commands &commands = editor.window->CommandTable();
    commands.Bind(u"mnuFSO"_s, [](int) {});
    commands.Bind(u"mnuBackupNow"_s, [](int) {});
    const auto state = [&] {
        Q_EMIT editor.Find<QMenu>(u"mnuFile"_s).aboutToShow();
        QString text;
        for (const char16_t *row :
             {u"mnuPlatformItem_0", u"mnuPlatformItem_1", u"mnuPlatformItem_2", u"mnuFSO_0", u"mnuFSO_1",
              u"mnuFSO_2", u"mnuFSO_3", u"mnuFSO_5", u"mnuBackupNow"})
            text += editor.Row(QString::fromUtf16(row)).isEnabled() ? u'T' : u'-';
        return text;
    };
    QCOMPARE(state(), u"-TT------"_s);
    const QString file = editor.WriteFile(u"a.orc"_s, "a\rb\rc");
    editor.window->Documents().OpenFile(file);
    QCOMPARE(state(), u"TT-TTTTTT"_s);

    // The export leaves the document, its name and its mark alone.
    QTest::keyClick(&editor.Text(), Qt::Key_X);
    const QString caption = editor.window->windowTitle();
    const QString target = editor.folder.filePath(u"b.orc"_s);
    editor.desktop.ExpectSaveDialog({.title = u"Export to UNIX format"_s,
                                     .folder = editor.folder.path(),
                                     .fileName = file,
                                     .defaultExtension = u"orc"_s},
                                    {target, 0});
    editor.Row(u"mnuPlatformItem_1"_s).trigger();
    QCOMPARE(ReadTextFile(target), u"xa\nb\nc"_s);
    QCOMPARE(editor.window->windowTitle(), caption);
    QVERIFY(editor.window->Context().document.Modified);
    // A new document keeps the form of the last one that was loaded.
    editor.window->Documents().NewFile(FileKind::Other, {});
    QCOMPARE(state(), u"TT-------"_s);
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
    editor.window->HandOver();
    QCOMPARE(editor.window->Context().document.CurrentFile, file);
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Open"_s, u"gone"_s), u"gone"_s);
    editor.window->HandOver();
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
    editor.desktop.ExpectMessage(
        {.text =
             u"Welcome to Zelvane! This program is FREE, you may download new versions at "_s +
             QString::fromUtf16(WebAddress) +
             u"\n\nIf you have questions, suggestions or you find a bug, please feel free to contact me at "_s +
             QString::fromUtf16(AuthorAddress) + u"\n\nHappy Csounding!"_s,
         .icon = BoxIcon::Information,
         .title = u"Welcome!"_s});
    bool splashClosed = false;
    editor.window = std::make_unique<frmEditor>(editor.settings, editor.desktop, CommandLine({}));
    editor.window->show();
    editor.window->Init([&] { splashClosed = true; });
    QVERIFY(splashClosed);
    QCOMPARE(editor.window->windowTitle(), u"Zelvane - Untitled ()"_s);
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    for (int n = 0; n < 4; ++n) {
        QVERIFY(bar.IsBandVisible(n));
        QVERIFY(bar.StartsRow(n));
    }
    QVERIFY(editor.settings.GetAllSettings(u"Options"_s).empty());
    QCOMPARE(editor.Find<QComboBox>(u"cmbOpcodes"_s).lineEdit()->text(),
             u"Opcodes (press Enter to insert)"_s);
}

void MainWindowTest::BadSettingIsReported()
{
    EditorWindow editor;
    editor.settings.SaveSetting(u"Options"_s, u"BandRow3"_s, u"maybe"_s);
    editor.desktop.ExpectMessage(
        {.text = u"An error has occurred:\n\nType mismatch (13)\nError source: Zelvane\n\n"
                 "Do you want to report this bug via email?"_s,
         .icon = BoxIcon::Critical,
         .buttons = BoxButtons::OkCancel},
        BoxAnswer::Cancel);
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
    commands.MenuOpening(u"mnuInsert"_s);
    QCOMPARE(editor.Row(u"mnuLineSeparation_0"_s).text(), QString(16, u'-'));
    QCOMPARE(editor.Row(u"mnuLineSeparation_1"_s).text(), QString(32, u'&'));
}

void MainWindowTest::ControlKeysWithoutACommandTypeNothing()
{
    EditorWindow editor;
    editor.Open({editor.WriteFile(u"a.txt"_s, "one two\nthree\n")});
    editor.Text().SetSelection(4, 4);
    for (const Qt::Key key : {Qt::Key_J, Qt::Key_K, Qt::Key_T, Qt::Key_W, Qt::Key_Slash, Qt::Key_BracketLeft,
                              Qt::Key_Backslash}) {
        QTest::keyClick(&editor.Text(), key, Qt::ControlModifier);
        QTest::keyClick(&editor.Text(), key, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(editor.Text().Text(), u"one two\nthree\n"_s);
    }
    QVERIFY(!editor.window->Context().document.Modified);
}

void MainWindowTest::FoldersAreEnabledWhenKnown()
{
    EditorWindow editor;
    editor.settings.SaveText(Keys::Csound, u"/opt/no such csound/csound"_s);
    editor.desktop.environment[u"SSDIR"_s] = u"/samples"_s;
    editor.Open();
    Commands &commands = editor.window->CommandTable();
    const auto state = [&] {
        commands.MenuOpening(u"mnuView"_s);
        QString text;
        for (const int entry : {0, 1, 2, 3, 5, 6, 8, 9, 11})
            text += editor.Row(u"mnuDIR_%1"_s.arg(entry)).isEnabled() ? u'T' : u'-';
        return text;
    };
    QCOMPARE(state(), u"-T--T--TT"_s);
    editor.window->Documents().OpenFile(editor.WriteFile(u"a.orc"_s, "x\n"));
    QCOMPARE(state(), u"-T--T-TTT"_s);
    editor.desktop.ExpectShellRun({.verb = u"open"_s, .file = u"/opt/no such csound"_s}, 2);
    editor.desktop.ExpectMessage({.text = u"Cannot open folder."_s, .icon = BoxIcon::Warning});
    editor.Row(u"mnuDIR_5"_s).trigger();
    editor.desktop.keysDown = {KeyCode::Ctrl};
    editor.desktop.ExpectShellRun({.verb = u"find"_s, .file = editor.folder.path()});
    editor.Row(u"mnuDIR_8"_s).trigger();
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
    QVERIFY(!editor.Row(u"mnuAbout"_s).isEnabled());
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

int main(int argc, char **argv)
{
    return RunUiTest<MainWindowTest>(argc, argv);
}

#include "test_mainwindow.moc"
