// SPDX-License-Identifier: GPL-3.0-or-later
// The menus: their rows, which of them are enabled, and which menu comes up where.

#include "platform/textfile.h"
#include "shell/toolkeys.h"
#include "shell/ui/menutable.h"
#include "support/editorwindow.h"
#include "support/outlinerows.h"
#include "support/uitest.h"

#include <QMenuBar>
#include <QTimer>
#include <QTreeView>

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
    return Eventually([&name] { return !name.isEmpty(); }) ? name : u"none"_s;
}

} // namespace

class MenusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void MenusHaveTheirRows_data();
    void MenusHaveTheirRows();
    void MenuBarHasTheMenusInOrder();
    void RowsOfMissingPartsAreDisabled();
    void KindsEnableTheirCommands();
    void EditMenuOpensWithTheTextsState();
    void ContextMenusOfTheText();
    void TreesHaveTheirMenus();
    void ContextMenuKey();
    void RecentFilesStandInTheMenu();
    void FileMenuOpensWithTheDocumentsState();
    void FoldersAreEnabledWhenKnown();
};

void MenusTest::MenusHaveTheirRows_data()
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
    row("mnuPresets", u"-, mnuPresetsBox=Add/Remove &Presets..., mnuReadyPresets=&Ready-made presets...");
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
    row("mnuExtras",
        u"mnuComplete=&Complete word\tCtrl+Space, mnuArgumentHint=&Argument hint\tCtrl+Shift+Space, -, "
        "mnuBookmark_0=&Toggle bookmark, mnuBookmark_1=&Next bookmark, mnuBookmark_2=&Previous bookmark, "
        "mnuBookmark_3=&Bookmarks..., -, mnuFold_0=Fold or unfold &here, mnuFold_1=&Fold all, "
        "mnuFold_2=Unf&old all, -, mnuDuplicateLine=Dup&licate line\tCtrl+L, "
        "mnuMoveLine_0=Move line &up\tCtrl+Shift+Up, mnuMoveLine_1=Move line &down\tCtrl+Shift+Down, -, "
        "mnuFindInFiles=Find &in files...");
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

void MenusTest::MenusHaveTheirRows()
{
    QFETCH(QString, name);
    QFETCH(QString, rows);
    EditorWindow editor;
    editor.Open();
    QCOMPARE(Outline(editor.Find<QMenu>(name)), rows);
}

void MenusTest::MenuBarHasTheMenusInOrder()
{
    EditorWindow editor;
    QStringList menus;
    for (const QAction *action : editor.Open().menuBar()->actions()) {
        if (action->isVisible())
            menus.append(action->menu()->objectName() + u'=' + action->text());
    }
    QCOMPARE(menus.join(u", "_s),
             u"mnuFile=&File, mnuEdit=&Edit, mnuSearch=&Search, mnuView=&View, mnuInsert=&Insert, "
             "mnuPresets=&Presets, mnuTools=&Tools, mnuPlayer=P&layer, mnuHelp=&Help"_s);
}

void MenusTest::RowsOfMissingPartsAreDisabled()
{
    EditorWindow editor;
    Commands &commands = editor.Open().CommandTable();
    for (const MenuRow &row : MenuTable()) {
        if (!row.command || commands.IsBound(*row.command))
            continue;
        const QAction *action = commands.Action(*row.command);
        QVERIFY2(!action->isEnabled(), qPrintable(row.command->RowName()));
        commands.SetEnabled(*row.command, true);
        QVERIFY2(!action->isEnabled(), qPrintable(row.command->RowName()));
        commands.Run(*row.command);
    }
    QVERIFY(commands.IsBound(Cmd::mnuNew));
    QVERIFY(editor.Row(u"mnuNew"_s).isEnabled());
}

void MenusTest::KindsEnableTheirCommands()
{
    EditorWindow editor;
    frmEditor &window = editor.Open();
    Commands &commands = window.CommandTable();
    const Command rows[] = {Cmd::mnuHeader,
                            Cmd::mnuNewInstr,
                            Cmd::mnuOrchestra,
                            Cmd::mnuScore,
                            Cmd::mnuInstrEdit,
                            Cmd::mnuInstrGUI,
                            Cmd::mnuPMapping,
                            Cmd::mnuNewMacro,
                            Cmd::mnuNewInclude,
                            Cmd::mnuCSD[Conversion::ToUnified],
                            Cmd::mnuCSD[Conversion::ToPair]};
    for (const Command row : rows)
        commands.Bind(row, [] {});
    const auto state = [&] {
        QString text;
        for (const Command row : rows)
            text += commands.IsEnabled(row) ? u'T' : u'-';
        return text;
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
    QVERIFY(ToolbarButton(editor, u"orchestra"_s)->isEnabled());
    QVERIFY(ToolbarButton(editor, u"score"_s)->isEnabled());
    QVERIFY(ToolbarButton(editor, u"slider"_s)->isEnabled());
}

void MenusTest::EditMenuOpensWithTheTextsState()
{
    EditorWindow editor;
    editor.Open({editor.WriteFile(u"a.txt"_s, "one\n")});
    Commands &commands = editor.window->CommandTable();
    commands.Bind(Cmd::mnuUncomment, [] {});
    const QString rows[] = {u"mnuUndo"_s,       u"mnuRedo"_s,   u"mnuEditItem_0"_s, u"mnuEditItem_1"_s,
                            u"mnuEditItem_2"_s, u"mnuDelete"_s, u"mnuUncomment"_s};
    const auto state = [&] {
        commands.MenuOpening(Menu::mnuEdit);
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

void MenusTest::ContextMenusOfTheText()
{
    EditorWindow editor;
    editor.Open();
    QWidget &viewport = *editor.Text().viewport();
    QCOMPARE(MenuOf(viewport, QPoint(30, 30)), u"mnuEdit"_s);
    QCOMPARE(MenuOf(viewport, QPoint(30, 30), Qt::ControlModifier), u"mnuInsert"_s);
}

void MenusTest::TreesHaveTheirMenus()
{
    EditorWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, OutlinedText)});
    auto &tree = editor.Find<QTreeView>(u"tvwBrowse"_s);
    editor.window->CommandTable().Run(Cmd::mnuTV[TreeEntry::ExpandAll]);
    const std::pair<QString, QString> nodes[] = {{u"rootins"_s, u"mnuTreeView"_s},
                                                 {u"ins1"_s, u"mnuBrowseEditable"_s},
                                                 {u"ins1lbl1"_s, u"mnuBrowseEditable"_s},
                                                 {u"mac1"_s, u"mnuTreeView"_s},
                                                 {u"inc1"_s, u"mnuBrowseInclude"_s}};
    for (const auto &[key, menu] : nodes) {
        const QModelIndex row = RowOfKey(tree, key);
        QVERIFY2(row.isValid(), qPrintable(key));
        tree.setCurrentIndex(row);
        QCOMPARE(MenuOf(*tree.viewport(), tree.visualRect(row).center()), menu);
        // Beside all nodes the current one counts.
        QCOMPARE(MenuOf(*tree.viewport(), QPoint(5, tree.viewport()->height() - 2)), menu);
    }
}

void MenusTest::ContextMenuKey()
{
    EditorWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, OutlinedText)});
    auto &tree = editor.Find<QTreeView>(u"tvwBrowse"_s);
    // The key asks at the place that the control gives for its current item.
    const auto menu = [](QWidget &control) {
        const QPoint at = control.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        return MenuOf(control, at, {}, QContextMenuEvent::Keyboard);
    };
    tree.setCurrentIndex(RowOfKey(tree, u"ins1"_s));
    QCOMPARE(menu(tree), u"mnuBrowseEditable"_s);
    tree.setCurrentIndex(RowOfKey(tree, u"inc1"_s));
    QCOMPARE(menu(tree), u"mnuBrowseInclude"_s);
    tree.setCurrentIndex(RowOfKey(tree, u"rootmac"_s));
    QCOMPARE(menu(tree), u"mnuTreeView"_s);
    QCOMPARE(menu(editor.Text()), u"mnuEdit"_s);
}

void MenusTest::RecentFilesStandInTheMenu()
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

void MenusTest::FileMenuOpensWithTheDocumentsState()
{
    EditorWindow editor;
    editor.Open();
    Commands &commands = editor.window->CommandTable();
    commands.Bind(Cmd::mnuFSO, [](FileOperation) {});
    commands.Bind(Cmd::mnuBackupNow, [] {});
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

void MenusTest::FoldersAreEnabledWhenKnown()
{
    EditorWindow editor;
    editor.settings.SaveText(Keys::Csound, u"/opt/no such csound/csound"_s);
    editor.desktop.environment[u"SSDIR"_s] = u"/samples"_s;
    editor.Open();
    Commands &commands = editor.window->CommandTable();
    const auto state = [&] {
        commands.MenuOpening(Menu::mnuView);
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

int main(int argc, char **argv)
{
    return RunUiTest<MenusTest>(argc, argv);
}

#include "test_menus.moc"
