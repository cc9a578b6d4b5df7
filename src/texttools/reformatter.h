// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <functional>
#include <optional>
#include <QString>
#include <QStringView>
#include <span>

namespace zelvane
{

/// The whitespace algorithms, in the order of the dialog's list.
enum class FormattingAlgorithm {
    OneSpaceToOneTab,
    MultipleSpacesToOneTab,
    OneOrMultipleSpacesToOneTab,
    MultipleSpacesToOneSpace,
    OneTabToOneSpace,
    OneTabToMultipleSpaces,
    RemoveTrailing,
    RemoveLineIndent,
    MultipleBlankLinesToOne,
    RemoveBlankLines,
};

/// A row of the dialog: the list's text, and the description shown for it.
struct FormattingAlgorithmText {
    QString name;
    QString description;
};

/// The ten rows, indexed by FormattingAlgorithm.
std::span<const FormattingAlgorithmText> FormattingAlgorithmTexts();

/// Asked now and then during a run; false ends it.
using GoOn = std::function<bool()>;

/// Runs an algorithm over a text in one pass. The results keep the marks of the scans that define them: a
/// walk never looks at the last character, trailing blanks behind a shortened line may stay, and the first
/// line keeps its indent.
/// @param tabSpaces the tab width of OneTabToMultipleSpaces, at least 1
/// @return no value when `goOn` ended the run
/// @throws RunTimeError 5 for a tab width below 1 where it is used
std::optional<QString> Reformat(FormattingAlgorithm algorithm, QStringView text, int tabSpaces,
                                const GoOn &goOn = {});

/// Runs an algorithm over the selection, or over the whole text when nothing is selected, as one edit, and
/// leaves the new text selected. @return false when `goOn` ended the run: the text is then as it was
/// @throws RunTimeError 5 as Reformat does, with the text as it was
bool ReformatSelection(EditorContext &editor, FormattingAlgorithm algorithm, const GoOn &goOn = {});

} // namespace zelvane
