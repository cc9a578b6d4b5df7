// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string_view>

namespace zelvane
{

template <typename Entry> class CommandArray;

/// A command of the menus and toolbars: a name, and in an item array the number of the entry. The constants
/// of Cmd are all there are, so that a misspelled name does not compile.
class Command
{
public:
    static constexpr int Single = -1; ///< the entry of a command that belongs to no item array

    constexpr std::u16string_view Name() const { return m_name; }
    constexpr int Entry() const { return m_entry; }

    /// The objectName of the menu row: the name, and in item arrays "_" and the entry number behind it.
    QString RowName() const;

    auto operator<=>(const Command &) const = default;

private:
    friend struct Cmd;
    template <typename Entry> friend class CommandArray;
    constexpr explicit Command(std::u16string_view name, int entry = Single) : m_name(name), m_entry(entry) {}

    std::u16string_view m_name;
    int m_entry;
};

/// The commands that share a name and a handler. An int as entry stands for rows that come and go.
template <typename Entry> class CommandArray
{
public:
    constexpr std::u16string_view Name() const { return m_name; }
    constexpr Command operator[](Entry entry) const { return Command(m_name, int(entry)); }

private:
    friend struct Cmd;
    constexpr explicit CommandArray(std::u16string_view name) : m_name(name) {}

    std::u16string_view m_name;
};

// The entries of the item arrays. The numbers left out are separators.
enum class ExportFormat; // shell/exporttext.h
enum class CaseChange;   // shell/textops.h
enum class WindowBand;   // shell/bands.h
enum class FileOperation { Move, Copy, Rename, Delete, Properties = 5 };
enum class EditItem { Cut, Copy, Paste };
enum class IndentChange { Increase, Decrease };
enum class KnownFolder {
    SoundFiles,
    Samples,
    Analysis,
    Includes,
    Csound = 5,
    Csound2,
    Document = 8,
    Backup,
    Program = 11
};
enum class FontSizeChange { Increase, Decrease };
enum class LabelPlace { Toolbar, Presets, Panel };
enum class LineStyle { First, Second };
enum class Conversion { ToUnified, ToPair };
enum class WebLink { FrontPage, DirectCsound, Download, Manual };
enum class InstrumentEntry { Select, Cut, Copy, Delete, Export = 5 };
enum class IncludeEntry { Open, Insert };
enum class TreeEntry { Expand, Collapse, ExpandAll = 3, CollapseAll, Refresh = 6 };
enum class PresetEntry { Run, Confirm, Edit = 3 };
enum class RelatedEntry { Open };
enum class RelatedOperation {
    Open,
    OpenWith,
    Move = 3,
    Copy,
    Rename,
    Delete,
    OpenContainer = 8,
    Properties = 10
};

/// All commands, each called as its menu row.
struct Cmd {
    static constexpr Command mnuNew{u"mnuNew"};
    static constexpr Command mnuOpen{u"mnuOpen"};
    static constexpr Command mnuSave{u"mnuSave"};
    static constexpr Command mnuSaveAs{u"mnuSaveAs"};
    static constexpr Command mnuNewInstance{u"mnuNewInstance"};
    static constexpr CommandArray<ExportFormat> mnuPlatformItem{u"mnuPlatformItem"};
    static constexpr Command mnuBackupNow{u"mnuBackupNow"};
    static constexpr Command mnuOpenWith{u"mnuOpenWith"};
    static constexpr Command mnuSearchFiles{u"mnuSearchFiles"};
    static constexpr CommandArray<FileOperation> mnuFSO{u"mnuFSO"};
    static constexpr Command mnuPrint{u"mnuPrint"};
    static constexpr Command mnuPreferences{u"mnuPreferences"};
    static constexpr CommandArray<int> MRUfolder{u"MRUfolder"}; ///< recent files, counted from 1
    static constexpr Command mnuExit{u"mnuExit"};

    static constexpr Command mnuUndo{u"mnuUndo"};
    static constexpr Command mnuRedo{u"mnuRedo"};
    static constexpr CommandArray<EditItem> mnuEditItem{u"mnuEditItem"};
    static constexpr Command mnuDelete{u"mnuDelete"};
    static constexpr Command mnuSelectAll{u"mnuSelectAll"};
    static constexpr Command mnuComment{u"mnuComment"};
    static constexpr Command mnuUncomment{u"mnuUncomment"};
    static constexpr Command mnuRemoveComments{u"mnuRemoveComments"};
    static constexpr CommandArray<IndentChange> mnuIndent{u"mnuIndent"};
    static constexpr Command mnuTabSpace{u"mnuTabSpace"};
    static constexpr CommandArray<CaseChange> mnuCase{u"mnuCase"};

    static constexpr Command mnuFind{u"mnuFind"};
    static constexpr Command mnuFindAgain{u"mnuFindAgain"};
    static constexpr Command mnuReplace{u"mnuReplace"};
    static constexpr Command mnuGoTo{u"mnuGoTo"};

    static constexpr Command mnuOrchestra{u"mnuOrchestra"};
    static constexpr Command mnuScore{u"mnuScore"};
    static constexpr Command mnuBrowse{u"mnuBrowse"};
    static constexpr Command mnuRelated{u"mnuRelated"};
    static constexpr Command mnuRefreshSyntaxHighlight{u"mnuRefreshSyntaxHighlight"};
    static constexpr CommandArray<KnownFolder> mnuDIR{u"mnuDIR"};
    static constexpr CommandArray<FontSizeChange> mnuFontSize{u"mnuFontSize"};
    static constexpr Command mnuWordWrap{u"mnuWordWrap"};
    static constexpr CommandArray<WindowBand> mnuShowToolbar{u"mnuShowToolbar"};
    static constexpr Command mnuShowStatusbar{u"mnuShowStatusbar"};
    static constexpr CommandArray<LabelPlace> mnuLabels{u"mnuLabels"};

    static constexpr Command mnuRandom{u"mnuRandom"};
    static constexpr Command mnuHeader{u"mnuHeader"};
    static constexpr Command mnuNewInstr{u"mnuNewInstr"};
    static constexpr Command mnuNewMacro{u"mnuNewMacro"};
    static constexpr Command mnuNewInclude{u"mnuNewInclude"};
    static constexpr Command mnuInsertFilename{u"mnuInsertFilename"};
    static constexpr CommandArray<LineStyle> mnuLineSeparation{u"mnuLineSeparation"};
    static constexpr Command mnuDate{u"mnuDate"};

    static constexpr CommandArray<int> mnuPreset{u"mnuPreset"}; ///< the presets, counted from 0
    static constexpr Command mnuPresetsBox{u"mnuPresetsBox"};

    static constexpr Command mnuRunCsound{u"mnuRunCsound"};
    static constexpr Command mnuCodeRes{u"mnuCodeRes"};
    static constexpr Command mnuCodeResAdd{u"mnuCodeResAdd"};
    static constexpr Command mnuInstrEdit{u"mnuInstrEdit"};
    static constexpr Command mnuInstrGUI{u"mnuInstrGUI"};
    static constexpr Command mnuPMapping{u"mnuPMapping"};
    static constexpr CommandArray<Conversion> mnuCSD{u"mnuCSD"};
    static constexpr Command mnuDeleteTempFiles{u"mnuDeleteTempFiles"};

    static constexpr Command mnuPlay{u"mnuPlay"};
    static constexpr Command mnuPause{u"mnuPause"};
    static constexpr Command mnuStop{u"mnuStop"};
    static constexpr Command mnuLoop{u"mnuLoop"};
    static constexpr Command mnuOpenSoundfile{u"mnuOpenSoundfile"};
    static constexpr CommandArray<FileOperation> mnuSSO{u"mnuSSO"};
    static constexpr Command mnuVolumeControl{u"mnuVolumeControl"};

    static constexpr Command mnuCsHelp{u"mnuCsHelp"};
    static constexpr Command mnuAppHelp{u"mnuAppHelp"};
    static constexpr Command mnuWebPage{u"mnuWebPage"};
    static constexpr CommandArray<WebLink> mnuLinks{u"mnuLinks"};
    static constexpr Command mnuAbout{u"mnuAbout"};

    // Context menus
    static constexpr CommandArray<InstrumentEntry> mnuBrowseEdit{u"mnuBrowseEdit"};
    static constexpr CommandArray<IncludeEntry> mnuBInclude{u"mnuBInclude"};
    static constexpr CommandArray<TreeEntry> mnuTV{u"mnuTV"};
    static constexpr CommandArray<PresetEntry> mnuPresetPopupItem{u"mnuPresetPopupItem"};
    static constexpr CommandArray<RelatedEntry> mnuRelatedItem{u"mnuRelatedItem"};
    static constexpr CommandArray<RelatedOperation> mnuRelatedShell{u"mnuRelatedShell"};

    // Buttons of the toolbar that no menu has
    static constexpr Command back{u"back"};
    static constexpr Command next{u"next"};
};

} // namespace zelvane
