// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"

#include <functional>
#include <optional>
#include <QString>
#include <span>

namespace zelvane
{

/// Expands the $NAME$ macros of a field in place, from left to right; what a macro gives is scanned again
/// from its second character on. Asks the questions of the macros on the way, and their confirmations when
/// `confirm` is set.
/// @return false when a macro gave nothing, which has been reported then; the text is partly expanded
/// @throws RunTimeError 5 for a known macro without its closing dollar, 6 when the scan passes character
/// 32,767
bool ExpandPresetMacros(QString &text, bool confirm, RunContext &context);

/// The value of a field that is one macro as a whole and needs no question; any other text, and a macro
/// without value, as given. For icons, tooltips and the test for an executable.
QString ExpandStaticMacros(const QString &text, const RunContext &context);

/// Lets the user confirm the value of a macro that names a file to read or to write.
/// @return the value to use, empty when the user cancelled
QString ConfirmMacroValue(const QString &name, const QString &value, RunContext &context);

/// Tells the user that a macro gave nothing, and how to mend it.
void ReportEmptyMacro(const QString &name, RunContext &context);

/// The selected text up to its first line end; empty while another window than the main window is active.
QString SelectionFirstLine(const EditorContext &context);

/// Puts the selection, or the whole text when nothing is selected, on the clipboard; does nothing while
/// another window than the main window is active.
void CopySelectionToClipboard(EditorContext &context);

/// One row of the macro picker: "$CSOUND$" and what it stands for.
struct MacroRow {
    QString macro;
    QString description;
};

/// All macros in the order of the macro picker.
std::span<const MacroRow> MacroPickerRows();

/// What a macro name stands for: nothing known, a failure, or a text.
struct MacroValue {
    enum class State { Unknown, Failed, Text };
    State state = State::Unknown;
    QString text = {};
};

/// The scan of ExpandPresetMacros over any table of names; `valueOf` gets each name in upper case.
bool ScanMacros(QString &text, const std::function<MacroValue(const QString &name)> &valueOf);

} // namespace zelvane
