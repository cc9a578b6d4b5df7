// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/menutable.h"

#include "shell/ui/commands.h"

#include <QMenu>
#include <QMenuBar>
#include <set>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int Single = MenuRow::Single;
constexpr char16_t Line[] = u"-";
constexpr bool Checkable = true;

constexpr MenuRow Table[] = {
    {MenuBarRow, u"mnuFile", Single, u"&File"},
    {u"mnuFile", u"mnuNew", Single, u"&New...", u"", u"Ctrl+N"},
    {u"mnuFile", u"mnuOpen", Single, u"&Open...", u"", u"Ctrl+O"},
    {u"mnuFile", u"mnuSave", Single, u"&Save", u"", u"Ctrl+S"},
    {u"mnuFile", u"mnuSaveAs", Single, u"Save &as...", u"", u"Ctrl+Shift+S"},
    {u"mnuFile", u"", Single, Line},
    {u"mnuFile", u"mnuNewInstance", Single, u"New &instance", u"", u"Ctrl+Shift+N"},
    {u"mnuFile", u"", Single, Line},
    {u"mnuFile", u"mnuPlatform", Single, u"&Export"},
    {u"mnuPlatform", u"mnuPlatformItem", 0, u"&Pc"},
    {u"mnuPlatform", u"mnuPlatformItem", 1, u"&Unix"},
    {u"mnuPlatform", u"mnuPlatformItem", 2, u"&Mac"},
    {u"mnuPlatform", u"mnuPlatformItem", 3, Line},
    {u"mnuPlatform", u"mnuPlatformItem", 4, u"&RTF (Rich Text Format)"},
    {u"mnuPlatform", u"mnuPlatformItem", 5, u"&HTML"},
    {u"mnuFile", u"mnuBackupNow", Single, u"&Backup..."},
    {u"mnuFile", u"mnuFileShell", Single, u"S&hell operation"},
    {u"mnuFileShell", u"mnuOpenWith", Single, u"&Open with..."},
    {u"mnuFileShell", u"mnuSearchFiles", Single, u"&Find files..."},
    {u"mnuFileShell", u"", Single, Line},
    {u"mnuFileShell", u"mnuFSO", 0, u"&Move to..."},
    {u"mnuFileShell", u"mnuFSO", 1, u"&Copy to..."},
    {u"mnuFileShell", u"mnuFSO", 2, u"&Rename..."},
    {u"mnuFileShell", u"mnuFSO", 3, u"&Delete..."},
    {u"mnuFileShell", u"mnuFSO", 4, Line},
    {u"mnuFileShell", u"mnuFSO", 5, u"&Properties"},
    {u"mnuFile", u"mnuPrint", Single, u"&Print...", u"", u"Ctrl+P"},
    {u"mnuFile", u"", Single, Line},
    {u"mnuFile", u"mnuPreferences", Single, u"&Preferences..."},
    {u"mnuFile", u"mnulinea", Single, Line},
    {u"mnuFile", u"mnuExit", Single, u"E&xit", u"", u"Ctrl+Q"},

    {MenuBarRow, u"mnuEdit", Single, u"&Edit"},
    {u"mnuEdit", u"mnuUndo", Single, u"&Undo", u"Ctrl+Z"},
    {u"mnuEdit", u"mnuRedo", Single, u"&Redo", u"Ctrl+Y"},
    {u"mnuEdit", u"mnuEditItem", 0, u"Cu&t", u"Ctrl+X"},
    {u"mnuEdit", u"mnuEditItem", 1, u"&Copy", u"Ctrl+C"},
    {u"mnuEdit", u"mnuEditItem", 2, u"&Paste", u"Ctrl+V"},
    {u"mnuEdit", u"mnuDelete", Single, u"&Delete", u"Del"},
    {u"mnuEdit", u"mnuSelectAll", Single, u"&Select all", u"", u"Ctrl+A"},
    {u"mnuEdit", u"mnuComment", Single, u"Co&mment", u"", u"Ctrl+M"},
    {u"mnuEdit", u"mnuUncomment", Single, u"&Uncomment", u"", u"Ctrl+Shift+M"},
    {u"mnuEdit", u"mnuRemoveComments", Single, u"&Remove comments"},
    {u"mnuEdit", u"mnuIndent", 0, u"&Increase indent", u"Tab"},
    {u"mnuEdit", u"mnuIndent", 1, u"Decrease i&ndent", u"Shift+Tab"},
    {u"mnuEdit", u"", Single, Line},
    {u"mnuEdit", u"mnuTabSpace", Single, u"Formatting algorythms..."},
    {u"mnuEdit", u"mnuChangeCase", Single, u"C&hange case"},
    {u"mnuChangeCase", u"mnuCase", 0, u"&Uppercase", u"", u"Ctrl+U"},
    {u"mnuChangeCase", u"mnuCase", 1, u"&Lowercase", u"", u"Ctrl+L"},
    {u"mnuChangeCase", u"mnuCase", 2, u"&Capitalize"},

    {MenuBarRow, u"mnuSearch", Single, u"&Search"},
    {u"mnuSearch", u"mnuFind", Single, u"&Find...", u"", u"Ctrl+F"},
    {u"mnuSearch", u"mnuFindAgain", Single, u"Find &again", u"", u"F3"},
    {u"mnuSearch", u"mnuReplace", Single, u"&Replace...", u"", u"Ctrl+H"},
    {u"mnuSearch", u"mnuGoTo", Single, u"&Go to line...", u"", u"Ctrl+G"},

    {MenuBarRow, u"mnuView", Single, u"&View"},
    {u"mnuView", u"mnuOrchestra", Single, u"&Orchestra"},
    {u"mnuView", u"mnuScore", Single, u"&Score"},
    {u"mnuView", u"mnuBrowse", Single, u"&Code Outline", u"", u"Ctrl+B", Checkable},
    {u"mnuView", u"mnuRelated", Single, u"&Related Files", u"", u"Ctrl+Shift+B", Checkable},
    {u"mnuView", u"", Single, Line},
    {u"mnuView", u"mnuRefreshSyntaxHighlight", Single, u"Refresh synta&x highlight", u"", u"F5"},
    {u"mnuView", u"", Single, Line},
    {u"mnuView", u"mnuShowDirs", Single, u"Show fold&ers"},
    {u"mnuShowDirs", u"mnuDIR", 0, u"S&FDIR - Soundfiles..."},
    {u"mnuShowDirs", u"mnuDIR", 1, u"&SSDIR - Samples..."},
    {u"mnuShowDirs", u"mnuDIR", 2, u"S&ADIR - Analisys..."},
    {u"mnuShowDirs", u"mnuDIR", 3, u"&INCDIR - Include..."},
    {u"mnuShowDirs", u"mnuDIR", 4, Line},
    {u"mnuShowDirs", u"mnuDIR", 5, u"&Csound..."},
    {u"mnuShowDirs", u"mnuDIR", 6, u"Csound #&2..."},
    {u"mnuShowDirs", u"mnuDIR", 7, Line},
    {u"mnuShowDirs", u"mnuDIR", 8, u"Current &document..."},
    {u"mnuShowDirs", u"mnuDIR", 9, u"&Backup..."},
    {u"mnuShowDirs", u"mnuDIR", 10, Line},
    {u"mnuShowDirs", u"mnuDIR", 11, u"&Zelvane..."},
    {u"mnuView", u"", Single, Line},
    {u"mnuView", u"mnuFontSize", 0, u"&Increase font size", u"Ctrl+NumPad +"},
    {u"mnuView", u"mnuFontSize", 1, u"&Decrease font size", u"Ctrl+NumPad -"},
    {u"mnuView", u"mnuWordWrap", Single, u"&Word wrap", u"", u"", Checkable},
    {u"mnuView", u"", Single, Line},
    {u"mnuView", u"mnuToolbar", Single, u"Wor&kspace"},
    {u"mnuToolbar", u"mnuShowToolbar", 0, u"&Toolbar", u"", u"", Checkable},
    {u"mnuToolbar", u"mnuShowToolbar", 1, u"&Opcodes list", u"", u"", Checkable},
    {u"mnuToolbar", u"mnuShowToolbar", 2, u"Pl&ayer", u"", u"", Checkable},
    {u"mnuToolbar", u"mnuShowToolbar", 3, u"&Presets bar", u"", u"", Checkable},
    {u"mnuToolbar", u"mnuShowStatusbar", Single, u"&Status bar", u"", u"", Checkable},
    {u"mnuToolbar", u"", Single, Line},
    {u"mnuToolbar", u"mnuLabels", 0, u"Toolbar &labels", u"", u"", Checkable},
    {u"mnuToolbar", u"mnuLabels", 1, u"P&resets labels", u"", u"", Checkable},
    {u"mnuToolbar", u"mnuLabels", 2, u"Pa&nel labels", u"", u"", Checkable},

    {MenuBarRow, u"mnuInsert", Single, u"&Insert"},
    {u"mnuInsert", u"mnuRandom", Single, u"&Random number..."},
    {u"mnuInsert", u"", Single, Line},
    {u"mnuInsert", u"mnuHeader", Single, u"Orchestra &header..."},
    {u"mnuInsert", u"mnuNewInstr", Single, u"&Instrument..."},
    {u"mnuInsert", u"", Single, Line},
    {u"mnuInsert", u"mnuNewMacro", Single, u"&Macro definition..."},
    {u"mnuInsert", u"mnuNewInclude", Single, u"#incl&ude statement..."},
    {u"mnuInsert", u"", Single, Line},
    {u"mnuInsert", u"mnuInsertFilename", Single, u"&Filename..."},
    {u"mnuInsert", u"", Single, Line},
    {u"mnuInsert", u"mnuLineSeparation", 0, u"----------------"},
    {u"mnuInsert", u"mnuLineSeparation", 1, u"****************"},
    {u"mnuInsert", u"", Single, Line},
    {u"mnuInsert", u"mnuDate", Single, u"&Date && time", u"", u"F6"},

    {MenuBarRow, u"mnuPresets", Single, u"&Presets"},
    {u"mnuPresets", u"linea1", Single, Line},
    {u"mnuPresets", u"mnuPresetsBox", Single, u"Add/Remove &Presets...", u"", u"F8"},

    {MenuBarRow, u"mnuTools", Single, u"&Tools"},
    {u"mnuTools", u"mnuRunCsound", Single, u"&Run Csound...", u"", u"Ctrl+R"},
    {u"mnuTools", u"", Single, Line},
    {u"mnuTools", u"mnuCodeRes", Single, u"Co&de Repository...", u"", u"Ctrl+D"},
    {u"mnuTools", u"mnuCodeResAdd", Single, u"&Add to Code Repository...", u"", u"Ctrl+Shift+D"},
    {u"mnuTools", u"", Single, Line},
    {u"mnuTools", u"mnuInstrEdit", Single, u"I&nstrument Properties...", u"", u"Ctrl+I"},
    {u"mnuTools", u"mnuInstrGUI", Single, u"&i statement gui...", u"", u"Ctrl+E"},
    {u"mnuTools", u"mnuPMapping", Single, u"p-Fields mapping..."},
    {u"mnuTools", u"", Single, Line},
    {u"mnuTools", u"mnuCSD", 0, u"&Convert to Unified file format (CSD)"},
    {u"mnuTools", u"mnuCSD", 1, u"C&onvert to Orchestra/Score pair"},
    {u"mnuTools", u"", Single, Line},
    {u"mnuTools", u"mnuDeleteTempFiles", Single, u"Delete Csound &temporary files..."},

    {MenuBarRow, u"mnuPlayer", Single, u"P&layer"},
    {u"mnuPlayer", u"mnuPlay", Single, u"&Play/Restart", u"", u"F9"},
    {u"mnuPlayer", u"mnuPause", Single, u"P&ause/Resume", u"", u"F11"},
    {u"mnuPlayer", u"mnuStop", Single, u"&Stop", u"", u"F12"},
    {u"mnuPlayer", u"mnuLoop", Single, u"&Loop mode", u"", u"", Checkable},
    {u"mnuPlayer", u"", Single, Line},
    {u"mnuPlayer", u"mnuOpenSoundfile", Single, u"&Open soundfile...", u"", u"Ctrl+Shift+O"},
    {u"mnuPlayer", u"", Single, Line},
    {u"mnuPlayer", u"mnuSoundShell", Single, u"S&hell operation"},
    {u"mnuSoundShell", u"mnuSSO", 0, u"&Move to..."},
    {u"mnuSoundShell", u"mnuSSO", 1, u"&Copy to..."},
    {u"mnuSoundShell", u"mnuSSO", 2, u"&Rename..."},
    {u"mnuSoundShell", u"mnuSSO", 3, u"&Delete..."},
    {u"mnuSoundShell", u"mnuSSO", 4, Line},
    {u"mnuSoundShell", u"mnuSSO", 5, u"&Properties"},
    {u"mnuPlayer", u"", Single, Line},
    {u"mnuPlayer", u"mnuVolumeControl", Single, u"&Volume control..."},

    {MenuBarRow, u"mnuHelp", Single, u"&Help"},
    {u"mnuHelp", u"mnuCsHelp", Single, u"&Csound Help", u"", u"F1"},
    {u"mnuHelp", u"", Single, Line},
    {u"mnuHelp", u"mnuAppHelp", Single, u"Zelvane &Help", u"", u"Shift+F1"},
    {u"mnuHelp", u"mnuWebPage", Single, u"Zelvane web &page"},
    {u"mnuHelp", u"", Single, Line},
    {u"mnuHelp", u"mnuWeb", Single, u"Csound on the &web"},
    {u"mnuWeb", u"mnuLinks", 0, u"&The Csound Front Page @ MITPress"},
    {u"mnuWeb", u"mnuLinks", 1, u"&DirectCsound"},
    {u"mnuWeb", u"mnuLinks", 2, u"&Csound FTP download"},
    {u"mnuWeb", u"mnuLinks", 3, u"Csound &manual in WinHelp format"},
    {u"mnuHelp", u"", Single, Line},
    {u"mnuHelp", u"mnuAbout", Single, u"&About..."},

    {PopupRow, u"mnuBrowseEditable", Single, u""},
    {u"mnuBrowseEditable", u"mnuBrowseEdit", 0, u"&Select"},
    {u"mnuBrowseEditable", u"mnuBrowseEdit", 1, u"Cu&t"},
    {u"mnuBrowseEditable", u"mnuBrowseEdit", 2, u"Copy"},
    {u"mnuBrowseEditable", u"mnuBrowseEdit", 3, u"&Delete"},
    {u"mnuBrowseEditable", u"mnuBrowseEdit", 4, Line},
    {u"mnuBrowseEditable", u"mnuBrowseEdit", 5, u"&Export..."},
    {PopupRow, u"mnuBrowseInclude", Single, u""},
    {u"mnuBrowseInclude", u"mnuBInclude", 0, u"&Open file"},
    {u"mnuBrowseInclude", u"mnuBInclude", 1, u"&Insert file"},
    {PopupRow, u"mnuTreeView", Single, u""},
    {u"mnuTreeView", u"mnuTV", 0, u"&Expand"},
    {u"mnuTreeView", u"mnuTV", 1, u"&Collapse"},
    {u"mnuTreeView", u"mnuTV", 2, Line},
    {u"mnuTreeView", u"mnuTV", 3, u"E&xpand all"},
    {u"mnuTreeView", u"mnuTV", 4, u"C&ollapse all"},
    {u"mnuTreeView", u"mnuTV", 5, Line},
    {u"mnuTreeView", u"mnuTV", 6, u"&Refresh"},
    {PopupRow, u"mnuPresetPopup", Single, u""},
    {u"mnuPresetPopup", u"mnuPresetPopupItem", 0, u"&Run", u"Click"},
    {u"mnuPresetPopup", u"mnuPresetPopupItem", 1, u"Run - &Confirm macros", u"Ctrl+Click"},
    {u"mnuPresetPopup", u"mnuPresetPopupItem", 2, Line},
    {u"mnuPresetPopup", u"mnuPresetPopupItem", 3, u"&Edit...", u"Alt+Click"},
    {PopupRow, u"mnuRelatedPopup", Single, u""},
    {u"mnuRelatedPopup", u"mnuRelatedItem", 0, u"&Open"},
    {u"mnuRelatedPopup", u"mnuRelatedItem", 1, Line},
    {u"mnuRelatedPopup", u"mnuRelatedItem", 2, u"&Shell"},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 0, u"&Open"},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 1, u"Open &with..."},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 2, Line},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 3, u"&Move to..."},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 4, u"&Copy to..."},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 5, u"&Rename..."},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 6, u"&Delete..."},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 7, Line},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 8, u"Open con&tainer"},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 9, Line},
    {u"mnuRelatedItem_2", u"mnuRelatedShell", 10, u"&Properties"},
};

} // namespace

std::span<const MenuRow> MenuTable()
{
    return Table;
}

QString RowName(const QString &name, int index)
{
    return index == MenuRow::Single ? name : name + u'_' + QString::number(index);
}

Menus::Menus(QMenuBar *bar, QWidget *owner, Commands &commands)
{
    std::set<QString> parents;
    for (const MenuRow &row : Table)
        parents.insert(QString::fromUtf16(row.menu));

    for (const MenuRow &row : Table) {
        const QString parent = QString::fromUtf16(row.menu);
        const QString name = QString::fromUtf16(row.name);
        const QString rowName = RowName(name, row.index);
        QString caption = QString::fromUtf16(row.caption);
        QMenu *under = Menu(parent);

        if (!name.isEmpty() && parents.contains(rowName)) {
            auto *menu = new QMenu(caption, owner);
            menu->setObjectName(rowName);
            m_menus[rowName] = menu;
            QObject::connect(menu, &QMenu::aboutToShow, &commands,
                             [&commands, rowName] { commands.MenuOpening(rowName); });
            if (under)
                under->addMenu(menu);
            else if (parent != QString::fromUtf16(PopupRow))
                bar->addMenu(menu);
            continue;
        }
        if (caption == QString::fromUtf16(Line)) {
            under->addSeparator()->setObjectName(name.isEmpty() ? QString() : rowName);
            continue;
        }
        if (*row.hint)
            caption += u'\t' + QString::fromUtf16(row.hint);
        QAction *action = under->addAction(caption);
        action->setObjectName(rowName);
        action->setCheckable(row.checkable);
        if (*row.shortcut)
            action->setShortcut(QKeySequence(QString::fromUtf16(row.shortcut), QKeySequence::PortableText));
        commands.AddAction(name, std::max(row.index, 0), action);
    }
}

QMenu *Menus::Menu(const QString &rowName) const
{
    const auto found = m_menus.find(rowName);
    return found == m_menus.end() ? nullptr : found->second;
}

} // namespace zelvane
