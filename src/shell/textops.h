// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <QString>
#include <QStringView>
#include <span>

namespace zelvane
{

// Questions to the text. Offsets count from 0.

/// The offset of the first character of the line that holds `pos`.
qsizetype GetLineStart(const TextBuffer &text, qsizetype pos);
/// The offset just behind the last character of the line of `pos`, before its line end.
qsizetype GetLineEnd(const TextBuffer &text, qsizetype pos);
/// The column of `pos` in its line, counted from 1.
qsizetype GetColumn(const TextBuffer &text, qsizetype pos);
/// The text from the start of the line of `pos` through the character at `pos`.
QString GetLineHalf(const TextBuffer &text, qsizetype pos);
/// Selects from `pos` to the start of the next line, or to the end of the text; nothing happens when the
/// selection ends on another line than that of `pos`.
void SelectLine(TextBuffer &text, qsizetype pos);
/// Whether `pos` is strictly inside one of the block comments.
/// @param blockComments the half-open ranges of the text's block comments, in order
bool IsInBlockComment(qsizetype pos, std::span<const TextSpan> blockComments);
/// Whether `pos` is in a comment: strictly inside one of the block comments, or with a ";" before it on its
/// line or at it.
/// @param blockComments the half-open ranges of the text's block comments, in order
bool IsCommented(QStringView text, qsizetype pos, std::span<const TextSpan> blockComments);

/// Puts the caret to an offset and its line to the top of the view.
void PutCaretOnTop(TextBuffer &text, qsizetype offset);

// Transformations of a selection's text. A line end is one LF.

/// Puts ";" in front of each line, or the block marks around several lines. A line end that is the last
/// character opens no further line.
QString CommentText(QStringView text, bool blockForm);
/// Takes out every ";", then every opening mark, then every closing mark, wherever they stand.
QString UncommentText(QStringView text);
/// Takes out line comments (with the line, when nothing stands before them), then block comments. The ends
/// that a removal brings together are looked at again, so they can form a new opening mark.
QString RemoveCommentsFromText(QStringView text);
QString IndentText(QStringView text, QStringView unit);
/// Takes one unit from the start of each line that begins with a whole one.
QString UnindentText(QStringView text, QStringView unit);

enum class CaseChange { Upper, Lower, Capitalize };
/// Changes case character by character, so that the length stays. Capitalize raises the first letter of each
/// word between white space and lowers the others.
QString ChangeCaseOfText(QStringView text, CaseChange change);

// Commands on the document's text: one edit each.

void CommentSelection(EditorContext &editor);
void UncommentSelection(EditorContext &editor);
/// In the selection, or in the whole text when nothing is selected. The text counts as being loaded
/// meanwhile, so that its change and selection events do nothing: the caller makes up for them. @return
/// whether anything was removed
bool RemoveComments(EditorContext &editor);
/// Moves the whole lines that the selection touches by one indent unit: a tab, or blanks as the settings say.
void IndentSelection(EditorContext &editor, bool decrease);
void ChangeCase(EditorContext &editor, CaseChange change);
/// Asks for a line, absolute from 1 or relative with a sign, and brings it to the top of the view.
void GoToLine(EditorContext &editor);

} // namespace zelvane
