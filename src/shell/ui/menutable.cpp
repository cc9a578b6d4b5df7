// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/menutable.h"

#include "shell/bands.h"
#include "shell/textops.h"
#include "shell/ui/commands.h"

#include <algorithm>
#include <iterator>
#include <QAction>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr bool Checkable = true;
constexpr char16_t KeySeparator[] = u"; ";

constexpr MenuRow Table[] = {
    {Menu::Bar, Menu::mnuFile, u"&File"},
    {Menu::mnuFile, Cmd::mnuNew, u"&New...", {u"Ctrl+N", KeyTaker::Row}},
    {Menu::mnuFile, Cmd::mnuOpen, u"&Open...", {u"Ctrl+O", KeyTaker::Row}},
    {Menu::mnuFile, Cmd::mnuSave, u"&Save", {u"Ctrl+S", KeyTaker::Row}},
    {Menu::mnuFile, Cmd::mnuSaveAs, u"Save &as...", {u"Ctrl+Shift+S", KeyTaker::Row}},
    {Menu::mnuFile, Separator{}},
    {Menu::mnuFile, Cmd::mnuNewInstance, u"New &instance", {u"Ctrl+Shift+N", KeyTaker::Row}},
    {Menu::mnuFile, Separator{}},
    {Menu::mnuFile, Menu::mnuPlatform, u"&Export"},
    {Menu::mnuPlatform, Cmd::mnuPlatformItem[ExportFormat::Pc], u"&Pc"},
    {Menu::mnuPlatform, Cmd::mnuPlatformItem[ExportFormat::Unix], u"&Unix"},
    {Menu::mnuPlatform, Cmd::mnuPlatformItem[ExportFormat::Mac], u"&Mac"},
    {Menu::mnuPlatform, Separator{}},
    {Menu::mnuPlatform, Cmd::mnuPlatformItem[ExportFormat::Rtf], u"&RTF (Rich Text Format)"},
    {Menu::mnuPlatform, Cmd::mnuPlatformItem[ExportFormat::Html], u"&HTML"},
    {Menu::mnuFile, Cmd::mnuBackupNow, u"&Backup..."},
    {Menu::mnuFile, Menu::mnuFileShell, u"S&hell operation"},
    {Menu::mnuFileShell, Cmd::mnuOpenWith, u"&Open with..."},
    {Menu::mnuFileShell, Cmd::mnuSearchFiles, u"&Find files..."},
    {Menu::mnuFileShell, Separator{}},
    {Menu::mnuFileShell, Cmd::mnuFSO[FileOperation::Move], u"&Move to..."},
    {Menu::mnuFileShell, Cmd::mnuFSO[FileOperation::Copy], u"&Copy to..."},
    {Menu::mnuFileShell, Cmd::mnuFSO[FileOperation::Rename], u"&Rename..."},
    {Menu::mnuFileShell, Cmd::mnuFSO[FileOperation::Delete], u"&Delete..."},
    {Menu::mnuFileShell, Separator{}},
    {Menu::mnuFileShell, Cmd::mnuFSO[FileOperation::Properties], u"&Properties"},
    {Menu::mnuFile, Cmd::mnuPrint, u"&Print...", {u"Ctrl+P", KeyTaker::Row}},
    {Menu::mnuFile, Separator{}},
    {Menu::mnuFile, Cmd::mnuPreferences, u"&Preferences..."},
    {Menu::mnuFile, Separators::mnulinea},
    {Menu::mnuFile, Cmd::mnuExit, u"E&xit", {u"Ctrl+Q", KeyTaker::Row}},

    {Menu::Bar, Menu::mnuEdit, u"&Edit"},
    {Menu::mnuEdit, Cmd::mnuUndo, u"&Undo", {u"Ctrl+Z", KeyTaker::Text}},
    {Menu::mnuEdit, Cmd::mnuRedo, u"&Redo", {u"Ctrl+Y", KeyTaker::Text}},
    {Menu::mnuEdit, Cmd::mnuEditItem[EditItem::Cut], u"Cu&t", {u"Ctrl+X; Shift+Del", KeyTaker::Text}},
    {Menu::mnuEdit, Cmd::mnuEditItem[EditItem::Copy], u"&Copy", {u"Ctrl+C; Ctrl+Ins", KeyTaker::Text}},
    {Menu::mnuEdit, Cmd::mnuEditItem[EditItem::Paste], u"&Paste", {u"Ctrl+V; Shift+Ins", KeyTaker::Text}},
    {Menu::mnuEdit, Cmd::mnuDelete, u"&Delete", {u"Del", KeyTaker::Shown}},
    {Menu::mnuEdit, Cmd::mnuSelectAll, u"&Select all", {u"Ctrl+A", KeyTaker::Row}},
    {Menu::mnuEdit, Cmd::mnuComment, u"Co&mment", {u"Ctrl+M", KeyTaker::Row}},
    {Menu::mnuEdit, Cmd::mnuUncomment, u"&Uncomment", {u"Ctrl+Shift+M", KeyTaker::Row}},
    {Menu::mnuEdit, Cmd::mnuRemoveComments, u"&Remove comments"},
    {Menu::mnuEdit, Cmd::mnuIndent[IndentChange::Increase], u"&Increase indent", {u"Tab", KeyTaker::Shown}},
    {Menu::mnuEdit,
     Cmd::mnuIndent[IndentChange::Decrease],
     u"Decrease i&ndent",
     {u"Shift+Tab", KeyTaker::Shown}},
    {Menu::mnuEdit, Separator{}},
    {Menu::mnuEdit, Cmd::mnuTabSpace, u"Formatting algorythms..."},
    {Menu::mnuEdit, Menu::mnuChangeCase, u"C&hange case"},
    {Menu::mnuChangeCase, Cmd::mnuCase[CaseChange::Upper], u"&Uppercase"},
    {Menu::mnuChangeCase, Cmd::mnuCase[CaseChange::Lower], u"&Lowercase"},
    {Menu::mnuChangeCase, Cmd::mnuCase[CaseChange::Capitalize], u"&Capitalize"},

    {Menu::Bar, Menu::mnuSearch, u"&Search"},
    {Menu::mnuSearch, Cmd::mnuFind, u"&Find...", {u"Ctrl+F", KeyTaker::Row}},
    {Menu::mnuSearch, Cmd::mnuFindAgain, u"Find &again", {u"F3", KeyTaker::Row}},
    {Menu::mnuSearch, Cmd::mnuReplace, u"&Replace...", {u"Ctrl+H", KeyTaker::Row}},
    {Menu::mnuSearch, Cmd::mnuGoTo, u"&Go to line...", {u"Ctrl+G", KeyTaker::Row}},

    {Menu::Bar, Menu::mnuView, u"&View"},
    {Menu::mnuView, Cmd::mnuOrchestra, u"&Orchestra"},
    {Menu::mnuView, Cmd::mnuScore, u"&Score"},
    {Menu::mnuView, Cmd::mnuBrowse, u"&Code Outline", {u"Ctrl+B", KeyTaker::Row}, Checkable},
    {Menu::mnuView, Cmd::mnuRelated, u"&Related Files", {u"Ctrl+Shift+B", KeyTaker::Row}, Checkable},
    {Menu::mnuView, Separator{}},
    {Menu::mnuView, Cmd::mnuRefreshSyntaxHighlight, u"Refresh synta&x highlight", {u"F5", KeyTaker::Row}},
    {Menu::mnuView, Separator{}},
    {Menu::mnuView, Menu::mnuShowDirs, u"Show fold&ers"},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::SoundFiles], u"S&FDIR - Soundfiles..."},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Samples], u"&SSDIR - Samples..."},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Analysis], u"S&ADIR - Analisys..."},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Includes], u"&INCDIR - Include..."},
    {Menu::mnuShowDirs, Separator{}},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Csound], u"&Csound..."},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Csound2], u"Csound #&2..."},
    {Menu::mnuShowDirs, Separator{}},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Document], u"Current &document..."},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Backup], u"&Backup..."},
    {Menu::mnuShowDirs, Separator{}},
    {Menu::mnuShowDirs, Cmd::mnuDIR[KnownFolder::Program], u"&Zelvane..."},
    {Menu::mnuView, Separator{}},
    {Menu::mnuView,
     Cmd::mnuFontSize[FontSizeChange::Increase],
     u"&Increase font size",
     {u"Ctrl+NumPad +", KeyTaker::Window}},
    {Menu::mnuView,
     Cmd::mnuFontSize[FontSizeChange::Decrease],
     u"&Decrease font size",
     {u"Ctrl+NumPad -", KeyTaker::Window}},
    {Menu::mnuView, Cmd::mnuWordWrap, u"&Word wrap", {}, Checkable},
    {Menu::mnuView, Separator{}},
    {Menu::mnuView, Menu::mnuToolbar, u"Wor&kspace"},
    {Menu::mnuToolbar, Cmd::mnuShowToolbar[WindowBand::Toolbar], u"&Toolbar", {}, Checkable},
    {Menu::mnuToolbar, Cmd::mnuShowToolbar[WindowBand::Opcodes], u"&Opcodes list", {}, Checkable},
    {Menu::mnuToolbar, Cmd::mnuShowToolbar[WindowBand::Player], u"Pl&ayer", {}, Checkable},
    {Menu::mnuToolbar, Cmd::mnuShowToolbar[WindowBand::Presets], u"&Presets bar", {}, Checkable},
    {Menu::mnuToolbar, Cmd::mnuShowStatusbar, u"&Status bar", {}, Checkable},
    {Menu::mnuToolbar, Separator{}},
    {Menu::mnuToolbar, Cmd::mnuLabels[LabelPlace::Toolbar], u"Toolbar &labels", {}, Checkable},
    {Menu::mnuToolbar, Cmd::mnuLabels[LabelPlace::Presets], u"P&resets labels", {}, Checkable},
    {Menu::mnuToolbar, Cmd::mnuLabels[LabelPlace::Panel], u"Pa&nel labels", {}, Checkable},

    {Menu::Bar, Menu::mnuInsert, u"&Insert"},
    {Menu::mnuInsert, Cmd::mnuRandom, u"&Random number..."},
    {Menu::mnuInsert, Separator{}},
    {Menu::mnuInsert, Cmd::mnuHeader, u"Orchestra &header..."},
    {Menu::mnuInsert, Cmd::mnuNewInstr, u"&Instrument..."},
    {Menu::mnuInsert, Separator{}},
    {Menu::mnuInsert, Cmd::mnuNewMacro, u"&Macro definition..."},
    {Menu::mnuInsert, Cmd::mnuNewInclude, u"#incl&ude statement..."},
    {Menu::mnuInsert, Separator{}},
    {Menu::mnuInsert, Cmd::mnuInsertFilename, u"&Filename..."},
    {Menu::mnuInsert, Separator{}},
    {Menu::mnuInsert, Cmd::mnuLineSeparation[LineStyle::First], u"----------------"},
    {Menu::mnuInsert, Cmd::mnuLineSeparation[LineStyle::Second], u"****************"},
    {Menu::mnuInsert, Separator{}},
    {Menu::mnuInsert, Cmd::mnuDate, u"&Date && time", {u"F7", KeyTaker::Row}},

    {Menu::Bar, Menu::mnuPresets, u"&Presets"},
    {Menu::mnuPresets, Separators::linea1},
    {Menu::mnuPresets, Cmd::mnuPresetsBox, u"Add/Remove &Presets...", {u"F8", KeyTaker::Row}},

    {Menu::Bar, Menu::mnuTools, u"&Tools"},
    {Menu::mnuTools, Cmd::mnuRunCsound, u"&Run Csound...", {u"Ctrl+R", KeyTaker::Row}},
    {Menu::mnuTools, Separator{}},
    {Menu::mnuTools, Cmd::mnuCodeRes, u"Co&de Repository...", {u"Ctrl+D", KeyTaker::Row}},
    {Menu::mnuTools, Cmd::mnuCodeResAdd, u"&Add to Code Repository...", {u"Ctrl+Shift+D", KeyTaker::Row}},
    {Menu::mnuTools, Separator{}},
    {Menu::mnuTools, Cmd::mnuInstrEdit, u"I&nstrument Properties...", {u"Ctrl+I", KeyTaker::Row}},
    {Menu::mnuTools, Cmd::mnuInstrGUI, u"&i statement gui...", {u"Ctrl+E", KeyTaker::Row}},
    {Menu::mnuTools, Cmd::mnuPMapping, u"p-Fields mapping..."},
    {Menu::mnuTools, Separator{}},
    {Menu::mnuTools, Cmd::mnuCSD[Conversion::ToUnified], u"&Convert to Unified file format (CSD)"},
    {Menu::mnuTools, Cmd::mnuCSD[Conversion::ToPair], u"C&onvert to Orchestra/Score pair"},
    {Menu::mnuTools, Separator{}},
    {Menu::mnuTools, Cmd::mnuDeleteTempFiles, u"Delete Csound &temporary files..."},

    {Menu::Bar, Menu::mnuPlayer, u"P&layer"},
    {Menu::mnuPlayer, Cmd::mnuPlay, u"&Play/Restart", {u"F9", KeyTaker::Row}},
    {Menu::mnuPlayer, Cmd::mnuPause, u"P&ause/Resume", {u"F11", KeyTaker::Row}},
    {Menu::mnuPlayer, Cmd::mnuStop, u"&Stop", {u"F12", KeyTaker::Row}},
    {Menu::mnuPlayer, Cmd::mnuLoop, u"&Loop mode", {}, Checkable},
    {Menu::mnuPlayer, Separator{}},
    {Menu::mnuPlayer, Cmd::mnuOpenSoundfile, u"&Open soundfile...", {u"Ctrl+Shift+O", KeyTaker::Row}},
    {Menu::mnuPlayer, Separator{}},
    {Menu::mnuPlayer, Menu::mnuSoundShell, u"S&hell operation"},
    {Menu::mnuSoundShell, Cmd::mnuSSO[FileOperation::Move], u"&Move to..."},
    {Menu::mnuSoundShell, Cmd::mnuSSO[FileOperation::Copy], u"&Copy to..."},
    {Menu::mnuSoundShell, Cmd::mnuSSO[FileOperation::Rename], u"&Rename..."},
    {Menu::mnuSoundShell, Cmd::mnuSSO[FileOperation::Delete], u"&Delete..."},
    {Menu::mnuSoundShell, Separator{}},
    {Menu::mnuSoundShell, Cmd::mnuSSO[FileOperation::Properties], u"&Properties"},
    {Menu::mnuPlayer, Separator{}},
    {Menu::mnuPlayer, Cmd::mnuVolumeControl, u"&Volume control..."},

    {Menu::Bar, Menu::mnuExtras, u"E&xtras"},
    {Menu::mnuExtras, Cmd::mnuComplete, u"&Complete word", {u"Ctrl+Space", KeyTaker::Text}},
    {Menu::mnuExtras, Cmd::mnuArgumentHint, u"&Argument hint", {u"Ctrl+Shift+Space", KeyTaker::Text}},
    {Menu::mnuExtras, Separator{}},
    {Menu::mnuExtras,
     Cmd::mnuBookmark[BookmarkEntry::Toggle],
     u"&Toggle bookmark",
     {u"Ctrl+F2", KeyTaker::Row}},
    {Menu::mnuExtras, Cmd::mnuBookmark[BookmarkEntry::Next], u"&Next bookmark", {u"F2", KeyTaker::Row}},
    {Menu::mnuExtras,
     Cmd::mnuBookmark[BookmarkEntry::Previous],
     u"&Previous bookmark",
     {u"Shift+F2", KeyTaker::Row}},
    {Menu::mnuExtras,
     Cmd::mnuBookmark[BookmarkEntry::List],
     u"&Bookmarks...",
     {u"Ctrl+Shift+F2", KeyTaker::Row}},
    {Menu::mnuExtras, Separator{}},
    {Menu::mnuExtras, Cmd::mnuFold[FoldEntry::Here], u"Fold or unfold &here", {u"Ctrl+T", KeyTaker::Row}},
    {Menu::mnuExtras, Cmd::mnuFold[FoldEntry::All], u"&Fold all", {u"Ctrl+Shift+T", KeyTaker::Row}},
    {Menu::mnuExtras, Cmd::mnuFold[FoldEntry::None], u"Unf&old all", {u"Ctrl+Shift+E", KeyTaker::Row}},
    {Menu::mnuExtras, Separator{}},
    {Menu::mnuExtras, Cmd::mnuDuplicateLine, u"Dup&licate line", {u"Ctrl+L", KeyTaker::Text}},
    {Menu::mnuExtras, Cmd::mnuMoveLine[LineMove::Up], u"Move line &up", {u"Ctrl+Shift+Up", KeyTaker::Text}},
    {Menu::mnuExtras,
     Cmd::mnuMoveLine[LineMove::Down],
     u"Move line &down",
     {u"Ctrl+Shift+Down", KeyTaker::Text}},
    {Menu::mnuExtras, Separator{}},
    {Menu::mnuExtras, Cmd::mnuFindInFiles, u"Find &in files...", {u"Ctrl+Shift+F", KeyTaker::Row}},

    {Menu::Bar, Menu::mnuHelp, u"&Help"},
    {Menu::mnuHelp, Cmd::mnuCsHelp, u"&Csound Help", {u"F1", KeyTaker::Row}},
    {Menu::mnuHelp, Separator{}},
    {Menu::mnuHelp, Cmd::mnuAppHelp, u"Zelvane &Help", {u"Shift+F1", KeyTaker::Row}},
    {Menu::mnuHelp, Cmd::mnuWebPage, u"Zelvane web &page"},
    {Menu::mnuHelp, Separator{}},
    {Menu::mnuHelp, Menu::mnuWeb, u"Csound on the &web"},
    {Menu::mnuWeb, Cmd::mnuLinks[WebLink::FrontPage], u"&The Csound Front Page @ MITPress"},
    {Menu::mnuWeb, Cmd::mnuLinks[WebLink::DirectCsound], u"&DirectCsound"},
    {Menu::mnuWeb, Cmd::mnuLinks[WebLink::Download], u"&Csound FTP download"},
    {Menu::mnuWeb, Cmd::mnuLinks[WebLink::Manual], u"Csound &manual in WinHelp format"},
    {Menu::mnuHelp, Separator{}},
    {Menu::mnuHelp, Cmd::mnuAbout, u"&About..."},

    {Menu::Popups, Menu::mnuBrowseEditable, u""},
    {Menu::mnuBrowseEditable, Cmd::mnuBrowseEdit[InstrumentEntry::Select], u"&Select"},
    {Menu::mnuBrowseEditable, Cmd::mnuBrowseEdit[InstrumentEntry::Cut], u"Cu&t"},
    {Menu::mnuBrowseEditable, Cmd::mnuBrowseEdit[InstrumentEntry::Copy], u"Copy"},
    {Menu::mnuBrowseEditable, Cmd::mnuBrowseEdit[InstrumentEntry::Delete], u"&Delete"},
    {Menu::mnuBrowseEditable, Separator{}},
    {Menu::mnuBrowseEditable, Cmd::mnuBrowseEdit[InstrumentEntry::Export], u"&Export..."},
    {Menu::Popups, Menu::mnuBrowseInclude, u""},
    {Menu::mnuBrowseInclude, Cmd::mnuBInclude[IncludeEntry::Open], u"&Open file"},
    {Menu::mnuBrowseInclude, Cmd::mnuBInclude[IncludeEntry::Insert], u"&Insert file"},
    {Menu::Popups, Menu::mnuTreeView, u""},
    {Menu::mnuTreeView, Cmd::mnuTV[TreeEntry::Expand], u"&Expand"},
    {Menu::mnuTreeView, Cmd::mnuTV[TreeEntry::Collapse], u"&Collapse"},
    {Menu::mnuTreeView, Separator{}},
    {Menu::mnuTreeView, Cmd::mnuTV[TreeEntry::ExpandAll], u"E&xpand all"},
    {Menu::mnuTreeView, Cmd::mnuTV[TreeEntry::CollapseAll], u"C&ollapse all"},
    {Menu::mnuTreeView, Separator{}},
    {Menu::mnuTreeView, Cmd::mnuTV[TreeEntry::Refresh], u"&Refresh"},
    {Menu::Popups, Menu::mnuPresetPopup, u""},
    {Menu::mnuPresetPopup, Cmd::mnuPresetPopupItem[PresetEntry::Run], u"&Run", {u"Click", KeyTaker::Shown}},
    {Menu::mnuPresetPopup,
     Cmd::mnuPresetPopupItem[PresetEntry::Confirm],
     u"Run - &Confirm macros",
     {u"Ctrl+Click", KeyTaker::Shown}},
    {Menu::mnuPresetPopup, Separator{}},
    {Menu::mnuPresetPopup,
     Cmd::mnuPresetPopupItem[PresetEntry::Edit],
     u"&Edit...",
     {u"Alt+Click", KeyTaker::Shown}},
    {Menu::Popups, Menu::mnuRelatedPopup, u""},
    {Menu::mnuRelatedPopup, Cmd::mnuRelatedItem[RelatedEntry::Open], u"&Open"},
    {Menu::mnuRelatedPopup, Separator{}},
    {Menu::mnuRelatedPopup, Menu::mnuRelatedShell, u"&Shell"},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::Open], u"&Open"},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::OpenWith], u"Open &with..."},
    {Menu::mnuRelatedShell, Separator{}},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::Move], u"&Move to..."},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::Copy], u"&Copy to..."},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::Rename], u"&Rename..."},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::Delete], u"&Delete..."},
    {Menu::mnuRelatedShell, Separator{}},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::OpenContainer], u"Open con&tainer"},
    {Menu::mnuRelatedShell, Separator{}},
    {Menu::mnuRelatedShell, Cmd::mnuRelatedShell[RelatedOperation::Properties], u"&Properties"},
};

} // namespace

std::span<const MenuRow> MenuTable()
{
    return Table;
}

QAction *FindSeparator(const QMenu &menu, Separator line)
{
    return menu.findChild<QAction *>(QString::fromUtf16(line.name), Qt::FindDirectChildrenOnly);
}

QString ShownKey(const RowKey &key)
{
    return QString::fromUtf16(key.keys).section(QString::fromUtf16(KeySeparator), 0, 0);
}

QString ShownKey(Command command)
{
    const auto row = std::find_if(std::begin(Table), std::end(Table),
                                  [command](const MenuRow &one) { return one.command == command; });
    return row == std::end(Table) ? QString() : ShownKey(row->key);
}

QList<QKeySequence> KeySequences(const RowKey &key)
{
    QList<QKeySequence> sequences;
    if (key.taker == KeyTaker::Shown)
        return sequences;
    // The toolkit calls the keys of the numeric keypad otherwise than the captions do.
    const QString keys = QString::fromUtf16(key.keys).replace(u"NumPad "_s, u"Num+"_s);
    for (const QString &one : keys.split(QString::fromUtf16(KeySeparator), Qt::SkipEmptyParts))
        sequences.append(QKeySequence(one, QKeySequence::PortableText));
    return sequences;
}

QList<QKeySequence> KeySequences(Command command)
{
    const auto row = std::find_if(std::begin(Table), std::end(Table),
                                  [&](const MenuRow &one) { return one.command == command; });
    return row == std::end(Table) ? QList<QKeySequence>() : KeySequences(row->key);
}

namespace
{

void AddRow(const MenuRow &row, QMenu &under, Commands &commands)
{
    QString caption = QString::fromUtf16(row.caption);
    QAction *action = under.addAction(caption);
    action->setObjectName(row.command->RowName());
    action->setCheckable(row.checkable);
    if (row.key.taker == KeyTaker::Row)
        action->setShortcuts(KeySequences(row.key));
    else
        action->setText(caption + u'\t' + ShownKey(row.key));
    commands.AddAction(*row.command, action);
}

} // namespace

Menus::Menus(QMenuBar *bar, QWidget *owner, Commands &commands)
{
    for (const MenuRow &row : Table) {
        const auto under = m_menus.find(row.under);
        if (row.submenu) {
            auto *menu = new QMenu(QString::fromUtf16(row.caption), owner);
            const MenuName name = *row.submenu;
            menu->setObjectName(name.ToString());
            m_menus.insert_or_assign(name, menu);
            QObject::connect(menu, &QMenu::aboutToShow, &commands,
                             [&commands, name] { commands.MenuOpening(name); });
            if (under != m_menus.end())
                under->second->addMenu(menu);
            else if (row.under == zelvane::Menu::Bar)
                bar->addMenu(menu);
        } else if (row.command) {
            AddRow(row, *under->second, commands);
        } else {
            under->second->addSeparator()->setObjectName(QString::fromUtf16(row.caption));
        }
    }
}

QMenu *Menus::Menu(MenuName name) const
{
    const auto found = m_menus.find(name);
    return found == m_menus.end() ? nullptr : found->second;
}

} // namespace zelvane
