// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <span>

namespace zelvane
{

/// How a value is read. A Flag is a number or the word of a boolean; a NumericFlag must be a number; both are
/// true when they are not 0. Writers store "-1" or "0" (windows, menu checks), "1" or "0" (check boxes),
/// "True" or "False" (option buttons): readers take them all. A Colour is 0xBBGGRR or a system colour, as a
/// signed 32-bit number in decimal.
enum class SettingKind { Flag, NumericFlag, Number, Colour, Text };

/// A key of the store: its name, its default as stored text, and how its value is read.
/// `byPreferences` marks the keys that are at once control names of the Preferences dialog.
struct SettingKey {
    QString name;
    QString fallback;
    SettingKind kind = SettingKind::Text;
    bool byPreferences = false;

    SettingKey(const QString &keyName, const QString &keyFallback, SettingKind keyKind,
               bool isControl = false)
        : name(keyName), fallback(keyFallback), kind(keyKind), byPreferences(isControl)
    {
    }
    SettingKey(const char16_t *keyName, SettingKind keyKind, const char16_t *keyFallback = u"",
               bool isControl = false)
        : SettingKey(QString::fromUtf16(keyName), QString::fromUtf16(keyFallback), keyKind, isControl)
    {
    }
};

namespace Sections
{
inline constexpr char16_t Options[] = u"Options";
inline constexpr char16_t RecentFiles[] = u"Recent File List";
inline constexpr char16_t RecentFindStrings[] = u"Recent Find Strings";
inline constexpr char16_t RecentCommandLines[] = u"Recent Command Lines";
inline constexpr char16_t Presets[] = u"Presets";
} // namespace Sections

/// How many entries the recent lists hold, under the keys "1" upward.
inline constexpr int RecentFileCount = 9;
inline constexpr int RecentFindStringCount = 8;
inline constexpr int RecentCommandLineCount = 12;

/// The keys of section "Options". Where a key has a second reader with another default or spelling, it stands
/// behind it.
namespace Keys
{
using enum SettingKind;
inline constexpr bool ByPreferences = true;

// Window and layout. An empty default is one that only the reader knows: the window's design size, a width on
// the screen.
inline const SettingKey X{u"X", Number};
inline const SettingKey Y{u"Y", Number};
inline const SettingKey Width{u"Width", Number};
inline const SettingKey Height{u"Height", Number};
inline const SettingKey Window{u"Window", Number, u"0"};
inline const SettingKey Splash{u"Splash", Flag, u"1", ByPreferences};
inline const SettingKey FlatButtons{u"FlatButtons", NumericFlag, u"1", ByPreferences};
inline const SettingKey HotTracking{u"HotTracking", Flag, u"0", ByPreferences};
inline const SettingKey BandLabels{u"BandLabels", Flag, u"0", ByPreferences};
inline const SettingKey Labels{u"Labels", Flag, u"0"};
inline const SettingKey PresetsLabels{u"PresetsLabels", Flag, u"0"};
inline const SettingKey PanelLabels{u"PanelLabels", Flag, u"0"};
inline const SettingKey PanelWidth{u"PanelWidth", Number};
inline const SettingKey StatusBar{u"StatusBar", Flag, u"1"};
inline const SettingKey CodeOutline{u"CodeOutline", NumericFlag, u"1"};
inline const SettingKey RelatedFiles{u"RelatedFiles", NumericFlag, u"1"};
inline const SettingKey LoopMode{u"LoopMode", Flag, u"0"};
inline const SettingKey Used{u"Used", Number, u"1"};

// The editor. Font, its size and its styles default to the control's own.
inline const SettingKey SystemColors{u"SystemColors", Flag, u"1", ByPreferences};
inline const SettingKey FontColor{u"FontColor", Colour, u"-2147483640"};
inline const SettingKey BackColor{u"BackColor", Colour, u"-2147483643"};
inline const SettingKey Font{u"Font", Text};
inline const SettingKey FontSize{u"FontSize", Number};
inline const SettingKey FontItalic{u"FontItalic", Flag};
inline const SettingKey FontBold{u"FontBold", Flag};
inline const SettingKey WordWrap{u"WordWrap", Flag, u"0"};
inline const SettingKey DragAndDrop{u"DragAndDrop", Flag, u"1", ByPreferences};
inline const SettingKey TabSize{u"TabSize", Number, u"0", ByPreferences};
inline const SettingKey TabSpaces{u"TabSpaces", Number, u"8", ByPreferences};
inline const SettingKey TabInsertSpaces{u"TabInsertSpaces", Flag, u"0", ByPreferences};
inline const SettingKey RealTabs{u"RealTabs", Flag, u"", ByPreferences};
inline const SettingKey CppComments{u"CppComments", Flag, u"0", ByPreferences};
inline const SettingKey LineStyle1{u"LineStyle1", Text, u"-", ByPreferences};
inline const SettingKey LineStyle2{u"LineStyle2", Text, u"*", ByPreferences};
inline const SettingKey LineWidth{u"LineWidth", Number, u"64", ByPreferences};
inline const SettingKey FixedPitchFonts{u"FixedPitchFonts", Flag, u"", ByPreferences};
inline const SettingKey SyntaxHighlight{u"SyntaxHighlight", Flag, u"True", ByPreferences};
// 0xBBGGRR in decimal: green, blue, navy, purple, teal, maroon.
inline const SettingKey CommentsColor{u"CommentsColor", Colour, u"32768"};
inline const SettingKey OpcodeColor{u"OpcodeColor", Colour, u"16711680"};
inline const SettingKey KeywordColor{u"KeywordColor", Colour, u"8388608"};
inline const SettingKey MacroColor{u"MacroColor", Colour, u"8388736"};
inline const SettingKey LiteralColor{u"LiteralColor", Colour, u"8421376"};
inline const SettingKey TagColor{u"TagColor", Colour, u"128"};
/// Read, but written by nothing in the program: for those who set it by hand.
inline const SettingKey ColorComments{u"ColorComments", Flag, u"0"};

// Documents and behaviour. The two folders default to the name of the current file.
inline const SettingKey Startup{u"Startup", Number, u"0", ByPreferences};
inline const SettingKey MultipleInstances{u"MultipleInstances", Flag, u"0", ByPreferences};
/// The mailbox of the second process: what it was started with, until the running editor has read it.
inline const SettingKey Open{u"Open", Text};
inline const SettingKey OpenFolder{u"OpenFolder", Text};
inline const SettingKey SaveFolder{u"SaveFolder", Text};
inline const SettingKey FilterIndex{u"FilterIndex", Number, u"0"};
inline const SettingKey BakPath{u"BakPath", Text, u"", ByPreferences};
inline const SettingKey DeleteTempFiles{u"DeleteTempFiles", Flag, u"0", ByPreferences};
inline const SettingKey SingleSelection{u"SingleSelection", Flag, u"True", ByPreferences};
inline const SettingKey ExpandBrowse{u"ExpandBrowse", Flag, u"False", ByPreferences};
inline const SettingKey SaveOnSwitch{u"SaveOnSwitch", Flag, u"0", ByPreferences};
inline const SettingKey RememberCaret{u"RememberCaret", Flag, u"1", ByPreferences};
inline const SettingKey OrchestraExtensions{u"OrchestraExtensions", Text, u"orc", ByPreferences};
inline const SettingKey ScoreExtensions{u"ScoreExtensions", Text, u"sco", ByPreferences};
inline const SettingKey UFFExtensions{u"UFFExtensions", Text, u"csd", ByPreferences};
inline const SettingKey MIDIExtensions{u"MIDIExtensions", Text, u"mid midi", ByPreferences};
/// The search for a sound file by kind knows another default.
inline const SettingKey SoundExtensions{u"SoundExtensions", Text, u"wav aif aiff", ByPreferences};
inline const SettingKey SoundExtensionsOfSearch{u"SoundExtensions", Text, u"wav", ByPreferences};

// Tools and dialogs.
inline const SettingKey Csound{u"Csound", Text, u"", ByPreferences};
inline const SettingKey Csound2{u"Csound2", Text, u"", ByPreferences};
inline const SettingKey Help{u"Help", Text, u"", ByPreferences};
inline const SettingKey Editor{u"Editor", Text, u"", ByPreferences};
inline const SettingKey Player{u"Player", Text, u"", ByPreferences};
inline const SettingKey MinimizeOnPresets{u"MinimizeOnPresets", Flag, u"0", ByPreferences};
inline const SettingKey ConfirmPresets{u"ConfirmPresets", Flag, u"0", ByPreferences};
inline const SettingKey OverwritePrompt{u"OverwritePrompt", Flag, u"0", ByPreferences};
inline const SettingKey ManualCsound2{u"ManualCsound2", Flag, u"0"};
inline const SettingKey ManualSaveFirst{u"ManualSaveFirst", Flag, u"0"};
inline const SettingKey ManualInitialFolder{u"ManualInitialFolder", Flag, u"1"};
inline const SettingKey SFCopyTo{u"SFCopyTo", Text};
inline const SettingKey CopyTo{u"CopyTo", Text};
inline const SettingKey SliderNegative{u"SliderNegative", Flag, u"0", ByPreferences};
inline const SettingKey CodeRepositorySingleSel{u"CodeRepositorySingleSel", Flag, u"0"};
inline const SettingKey CodeRepositorySort{u"CodeRepositorySort", Number, u"0"};
inline const SettingKey RandomMin{u"RandomMin", Number, u"0"};
inline const SettingKey RandomMax{u"RandomMax", Number, u"1"};
inline const SettingKey RandomDigits{u"RandomDigits", Number, u"3"};
inline const SettingKey HeaderSR{u"HeaderSR", Number, u"44100"};
inline const SettingKey HeaderKR{u"HeaderKR", Number, u"4410"};
/// The header dialog writes the control rate under this spelling, and reads it under the other: one key to
/// the store, which keeps the spelling that came first.
inline const SettingKey HeaderKRWritten{u"HeaderkR", Number, u"4410"};
inline const SettingKey HeaderChannels{u"HeaderChannels", Number, u"1"};
inline const SettingKey FindX{u"FindX", Number};
inline const SettingKey FindY{u"FindY", Number};
inline const SettingKey FindReplace{u"FindReplace", Text};
inline const SettingKey FindWholeWords{u"FindWholeWords", Flag, u"0"};
inline const SettingKey FindMatchCase{u"FindMatchCase", Flag, u"0"};
inline const SettingKey FindWrapSearches{u"FindWrapSearches", Flag, u"0"};
/// Written by each search; no reader has a default for it.
inline const SettingKey FindScope{u"FindScope", Number};

// The numbered keys; n counts from 1.

/// Toolbar n of the View menu is shown.
inline SettingKey Band(int n)
{
    return {QStringLiteral("Band") + QString::number(n), QStringLiteral("1"), SettingKind::Flag};
}
/// Width of band n in pixels; the default is the present width.
inline SettingKey BandWidth(int n)
{
    return {QStringLiteral("BandWidth") + QString::number(n), {}, SettingKind::Number};
}
/// Band n starts a new row.
inline SettingKey BandRow(int n)
{
    return {QStringLiteral("BandRow") + QString::number(n), QStringLiteral("1"), SettingKind::Flag};
}
/// Height of side panel band n in pixels; the default is the present height.
inline SettingKey PanelBandHeight(int n)
{
    return {QStringLiteral("PanelBandHeight") + QString::number(n), {}, SettingKind::Number};
}
/// Written at close and never read: kept for compatibility of the store.
inline SettingKey PanelBandRow(int n)
{
    return {QStringLiteral("PanelBandRow") + QString::number(n), {}, SettingKind::Flag};
}

} // namespace Keys

/// All keys of section "Options" but the numbered ones, each once.
std::span<const SettingKey> AllSettingKeys();

/// The keys of a preset's own section, in the order of writing.
namespace PresetKeys
{
inline const SettingKey Command{u"Command", SettingKind::Text};
inline const SettingKey Args{u"Args", SettingKind::Text};
inline const SettingKey Folder{u"Folder", SettingKind::Text};
inline const SettingKey Window{u"Window", SettingKind::Number, u"1"};
inline const SettingKey SaveFirst{u"SaveFirst", SettingKind::Flag, u"0"};
inline const SettingKey Name{u"Name", SettingKind::Text};
inline const SettingKey Tooltip{u"Tooltip", SettingKind::Text};
inline const SettingKey CreateButton{u"CreateButton", SettingKind::Flag, u"1"};
inline const SettingKey NewGroup{u"NewGroup", SettingKind::Flag, u"0"};
inline const SettingKey SecondCommand{u"2ndCommand", SettingKind::Text};
inline const SettingKey SecondArgs{u"2ndArgs", SettingKind::Text};
inline const SettingKey SecondFolder{u"2ndFolder", SettingKind::Text};
inline const SettingKey SecondWindow{u"2ndWindow", SettingKind::Number, u"1"};
inline const SettingKey Image{u"Image", SettingKind::Text};
} // namespace PresetKeys

std::span<const SettingKey> AllPresetKeys();

} // namespace zelvane
