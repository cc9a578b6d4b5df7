// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <optional>
#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

struct DocumentSteps;
struct EditorContext;

// Changing a number in the text without typing it anew. The number is left selected, so that the next step
// goes on with it. Offsets count from 0.

/// What a key does to the number.
enum class NumericMode { AddOne, SubtractOne, AddTenth, SubtractTenth, AddTen, SubtractTen, Random };

/// The digits, points and minus signs around an offset; empty there where it has none next to it.
TextSpan NumberAround(const TextBuffer &text, qsizetype offset);
/// Selects what NumberAround finds at the caret, unless something is selected: that is the number then.
void SelectNumber(TextBuffer &text);
/// Whether the character at an offset is a digit or a point.
bool IsNumberAt(const TextBuffer &text, qsizetype offset);

/// The number that a key makes of another one, which is the longest numeric beginning of the text. No value
/// where there is none, and for a text with a comma.
/// @param random from 0 up to, but not, 1; used by Random alone
/// @throws RunTimeError 6 "Overflow"
std::optional<QString> EditedNumber(QStringView number, NumericMode mode, double random);

/// Takes the number at the caret one step further; nothing happens where there is none.
/// @param random as above
void NumericEditing(EditorContext &editor, NumericMode mode, double random);

/// Puts a number in place of the selection, selects it and colours its line.
void ReplaceNumber(EditorContext &editor, const DocumentSteps &steps, const QString &number);

} // namespace zelvane
