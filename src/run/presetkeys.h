// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The keys of a preset's own section, in the order of writing. Flags are stored as "1" or "0".
namespace zelvane::PresetKeys
{
inline constexpr TextKey Command{u"Command", u""};
inline constexpr TextKey Args{u"Args", u""};
inline constexpr TextKey Folder{u"Folder", u""};
inline constexpr NumberKey Window{u"Window", 1};
inline constexpr FlagKey SaveFirst{u"SaveFirst", false};
inline constexpr TextKey Name{u"Name", u""};
inline constexpr TextKey Tooltip{u"Tooltip", u""};
inline constexpr FlagKey CreateButton{u"CreateButton", true};
inline constexpr FlagKey NewGroup{u"NewGroup", false};
inline constexpr TextKey SecondCommand{u"2ndCommand", u""};
inline constexpr TextKey SecondArgs{u"2ndArgs", u""};
inline constexpr TextKey SecondFolder{u"2ndFolder", u""};
inline constexpr NumberKey SecondWindow{u"2ndWindow", 1};
inline constexpr TextKey Image{u"Image", u""};
} // namespace zelvane::PresetKeys
