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
enum class CaseChange; // shell/textops.h
enum class WindowBand; // shell/bands.h
enum class ExportFormat { Pc, Unix, Mac, Rtf = 4, Html };
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
enum class BookmarkEntry { Toggle, Next, Previous, List };
enum class FoldEntry { Here, All, None };
enum class LineMove { Up, Down };
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

/// All commands, each called as its menu row: single ones, and item arrays with their entries' type.
#define ZELVANE_COMMANDS(COMMAND, ARRAY)                                                                     \
    COMMAND(mnuNew)                                                                                          \
    COMMAND(mnuOpen)                                                                                         \
    COMMAND(mnuSave)                                                                                         \
    COMMAND(mnuSaveAs)                                                                                       \
    COMMAND(mnuNewInstance)                                                                                  \
    ARRAY(mnuPlatformItem, ExportFormat)                                                                     \
    COMMAND(mnuBackupNow)                                                                                    \
    COMMAND(mnuOpenWith)                                                                                     \
    COMMAND(mnuSearchFiles)                                                                                  \
    ARRAY(mnuFSO, FileOperation)                                                                             \
    COMMAND(mnuPrint)                                                                                        \
    COMMAND(mnuPreferences)                                                                                  \
    /* Recent files, counted from 1. */                                                                      \
    ARRAY(MRUfolder, int)                                                                                    \
    COMMAND(mnuExit)                                                                                         \
    COMMAND(mnuUndo)                                                                                         \
    COMMAND(mnuRedo)                                                                                         \
    ARRAY(mnuEditItem, EditItem)                                                                             \
    COMMAND(mnuDelete)                                                                                       \
    COMMAND(mnuSelectAll)                                                                                    \
    COMMAND(mnuComment)                                                                                      \
    COMMAND(mnuUncomment)                                                                                    \
    COMMAND(mnuRemoveComments)                                                                               \
    ARRAY(mnuIndent, IndentChange)                                                                           \
    COMMAND(mnuTabSpace)                                                                                     \
    ARRAY(mnuCase, CaseChange)                                                                               \
    COMMAND(mnuFind)                                                                                         \
    COMMAND(mnuFindAgain)                                                                                    \
    COMMAND(mnuReplace)                                                                                      \
    COMMAND(mnuGoTo)                                                                                         \
    COMMAND(mnuOrchestra)                                                                                    \
    COMMAND(mnuScore)                                                                                        \
    COMMAND(mnuBrowse)                                                                                       \
    COMMAND(mnuRelated)                                                                                      \
    COMMAND(mnuRefreshSyntaxHighlight)                                                                       \
    ARRAY(mnuDIR, KnownFolder)                                                                               \
    ARRAY(mnuFontSize, FontSizeChange)                                                                       \
    COMMAND(mnuWordWrap)                                                                                     \
    ARRAY(mnuShowToolbar, WindowBand)                                                                        \
    COMMAND(mnuShowStatusbar)                                                                                \
    ARRAY(mnuLabels, LabelPlace)                                                                             \
    COMMAND(mnuRandom)                                                                                       \
    COMMAND(mnuHeader)                                                                                       \
    COMMAND(mnuNewInstr)                                                                                     \
    COMMAND(mnuNewMacro)                                                                                     \
    COMMAND(mnuNewInclude)                                                                                   \
    COMMAND(mnuInsertFilename)                                                                               \
    ARRAY(mnuLineSeparation, LineStyle)                                                                      \
    COMMAND(mnuDate)                                                                                         \
    /* The presets, counted from 0. */                                                                       \
    ARRAY(mnuPreset, int)                                                                                    \
    COMMAND(mnuPresetsBox)                                                                                   \
    COMMAND(mnuRunCsound)                                                                                    \
    COMMAND(mnuCodeRes)                                                                                      \
    COMMAND(mnuCodeResAdd)                                                                                   \
    COMMAND(mnuInstrEdit)                                                                                    \
    COMMAND(mnuInstrGUI)                                                                                     \
    COMMAND(mnuPMapping)                                                                                     \
    ARRAY(mnuCSD, Conversion)                                                                                \
    COMMAND(mnuDeleteTempFiles)                                                                              \
    COMMAND(mnuPlay)                                                                                         \
    COMMAND(mnuPause)                                                                                        \
    COMMAND(mnuStop)                                                                                         \
    COMMAND(mnuLoop)                                                                                         \
    COMMAND(mnuOpenSoundfile)                                                                                \
    ARRAY(mnuSSO, FileOperation)                                                                             \
    COMMAND(mnuVolumeControl)                                                                                \
    COMMAND(mnuCsHelp)                                                                                       \
    COMMAND(mnuAppHelp)                                                                                      \
    COMMAND(mnuWebPage)                                                                                      \
    ARRAY(mnuLinks, WebLink)                                                                                 \
    COMMAND(mnuAbout)                                                                                        \
    COMMAND(mnuComplete)                                                                                     \
    COMMAND(mnuArgumentHint)                                                                                 \
    ARRAY(mnuBookmark, BookmarkEntry)                                                                        \
    ARRAY(mnuFold, FoldEntry)                                                                                \
    COMMAND(mnuDuplicateLine)                                                                                \
    ARRAY(mnuMoveLine, LineMove)                                                                             \
    COMMAND(mnuFindInFiles)                                                                                  \
    /* Context menus. */                                                                                     \
    ARRAY(mnuBrowseEdit, InstrumentEntry)                                                                    \
    ARRAY(mnuBInclude, IncludeEntry)                                                                         \
    ARRAY(mnuTV, TreeEntry)                                                                                  \
    ARRAY(mnuPresetPopupItem, PresetEntry)                                                                   \
    ARRAY(mnuRelatedItem, RelatedEntry)                                                                      \
    ARRAY(mnuRelatedShell, RelatedOperation)                                                                 \
    /* Buttons of the toolbar that no menu has. */                                                           \
    COMMAND(back)                                                                                            \
    COMMAND(next)

/// The constants of the list. Every one has a row in a menu or a button in a toolbar.
struct Cmd {
#define ZELVANE_DECLARE_COMMAND(name) static constexpr Command name{u"" #name};
#define ZELVANE_DECLARE_COMMAND_ARRAY(name, Entry) static constexpr CommandArray<Entry> name{u"" #name};
    ZELVANE_COMMANDS(ZELVANE_DECLARE_COMMAND, ZELVANE_DECLARE_COMMAND_ARRAY)
#undef ZELVANE_DECLARE_COMMAND
#undef ZELVANE_DECLARE_COMMAND_ARRAY
};

} // namespace zelvane
