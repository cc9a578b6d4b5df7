// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace zelvane
{

class Printing;
class StyledSource;
struct EditorContext;

/// Shows the print dialog, and prints the selection, or the whole text when nothing is selected or the user
/// asks for it. Nothing happens on Cancel.
/// @throws RunTimeError for any other failure of dialog or printer
void PrintText(const EditorContext &editor, const StyledSource &coloured, Printing &printing);

} // namespace zelvane
