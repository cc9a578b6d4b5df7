// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The keys of a preset's own section, in the order of writing. Flags are stored as "1" or "0".
namespace zelvane::PresetKeys
{
inline constexpr RecordTextKey Command{u"Command", u""};
inline constexpr RecordTextKey Args{u"Args", u""};
inline constexpr RecordTextKey Folder{u"Folder", u""};
inline constexpr RecordNumberKey Window{u"Window", 1};
inline constexpr RecordFlagKey SaveFirst{u"SaveFirst", false};
inline constexpr BareRecordTextKey Name{u"Name"};
inline constexpr BareRecordTextKey Tooltip{u"Tooltip"};
inline constexpr RecordFlagKey CreateButton{u"CreateButton", true};
inline constexpr RecordFlagKey NewGroup{u"NewGroup", false};
inline constexpr RecordTextKey SecondCommand{u"2ndCommand", u""};
inline constexpr RecordTextKey SecondArgs{u"2ndArgs", u""};
inline constexpr RecordTextKey SecondFolder{u"2ndFolder", u""};
inline constexpr RecordNumberKey SecondWindow{u"2ndWindow", 1};
inline constexpr RecordTextKey Image{u"Image", u""};
/// Written by hand only; without it the program's own key of that name counts.
inline constexpr RecordFlagKey Console{u"Console", true};
} // namespace zelvane::PresetKeys
