// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/numericediting.h"

#include "platform/numbers.h"
#include "shell/editorcontext.h"
#include "shell/insertcoloured.h"
#include "shell/textops.h"

#include <cmath>

namespace zelvane
{

namespace
{

bool IsDigitOrPoint(QChar c)
{
    return IsDigit(c) || c == u'.';
}

bool IsOfNumber(QChar c)
{
    return IsDigitOrPoint(c) || c == u'-';
}

/// Rounded to three digits behind the point.
double Thousandths(double number)
{
    constexpr double scale = 1000;
    constexpr double largest = 9007199254740992.0; // beyond it a float has no digits behind the point
    const double scaled = number * scale;
    return std::abs(scaled) < largest ? RoundHalfEven(scaled) / scale : number;
}

double Edited(double value, NumericMode mode, double random)
{
    constexpr double tenth = 0.1;
    constexpr double ten = 10;
    switch (mode) {
    case NumericMode::AddOne:
        return value + 1;
    case NumericMode::SubtractOne:
        return value - 1;
    case NumericMode::AddTenth:
        return value + tenth;
    case NumericMode::SubtractTenth:
        return value - tenth;
    case NumericMode::AddTen:
        return value + ten;
    case NumericMode::SubtractTen:
        return value - ten;
    case NumericMode::Random:
        return Thousandths(value * random);
    }
    return value;
}

/// Puts a number in place of the selection, and selects it.
void PutNumber(TextBuffer &text, const QString &number)
{
    const qsizetype start = text.Selection().start;
    text.ReplaceSelection(number);
    text.SetSelection(start, start + number.size());
}

} // namespace

TextSpan NumberAround(const TextBuffer &text, qsizetype offset)
{
    // No number goes on behind the end of its line.
    const qsizetype lineStart = GetLineStart(text, offset);
    const QString line = text.TextRange(lineStart, GetLineEnd(text, offset));
    qsizetype start = offset - lineStart;
    qsizetype end = start;
    while (end < line.size() && IsOfNumber(line[end]))
        ++end;
    while (start > 0 && IsOfNumber(line[start - 1]))
        --start;
    return {lineStart + start, lineStart + end};
}

void SelectNumber(TextBuffer &text)
{
    const TextSpan selected = text.Selection();
    if (!selected.IsEmpty())
        return;
    const TextSpan number = NumberAround(text, selected.start);
    text.SetSelection(number.start, number.end);
}

bool IsNumberAt(const TextBuffer &text, qsizetype offset)
{
    const QString character = text.TextRange(offset, offset + 1);
    return !character.isEmpty() && IsDigitOrPoint(character.front());
}

std::optional<QString> EditedNumber(QStringView number, NumericMode mode, double random)
{
    const double value = Val(number);
    if (value == 0 && !IsNumeric(number))
        return std::nullopt;
    if (number.contains(u','))
        return std::nullopt;
    return NumberText(Edited(value, mode, random));
}

void NumericEditing(EditorContext &editor, NumericMode mode, double random)
{
    TextBuffer &text = editor.text;
    SelectNumber(text);
    const std::optional<QString> edited = EditedNumber(text.SelectedText(), mode, random);
    if (edited)
        PutNumber(text, *edited);
}

void ReplaceNumber(EditorContext &editor, const DocumentSteps &steps, const QString &number)
{
    PutNumber(editor.text, number);
    ColourLines(editor, steps, editor.text.Selection());
}

} // namespace zelvane
