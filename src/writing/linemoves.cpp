// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/linemoves.h"

#include <algorithm>

namespace zelvane
{

namespace
{

/// The lines of the selection, numbers from 0, both included.
struct LinesOfSelection {
    qsizetype first = 0;
    qsizetype last = 0;
};

LinesOfSelection TouchedLines(const TextBuffer &text)
{
    const TextSpan selection = text.Selection();
    LinesOfSelection lines{text.LineOfOffset(selection.start), text.LineOfOffset(selection.end)};
    if (lines.last > lines.first && text.LineStart(lines.last) == selection.end)
        --lines.last;
    return lines;
}

TextSpan Shifted(const TextSpan &span, qsizetype by)
{
    return {span.start + by, span.end + by};
}

/// The lines as they stand, without the line end of the last one.
TextSpan SpanOf(const TextBuffer &text, const LinesOfSelection &lines)
{
    return {text.LineStart(lines.first), text.LineEnd(lines.last)};
}

MovedLines Duplicate(const TextBuffer &text, const TextSpan &lines)
{
    MovedLines move;
    move.from = {lines.end, lines.end};
    move.to = lines.end;
    move.text = u'\n' + text.TextRange(lines.start, lines.end);
    move.source = 1;
    move.kept = lines;
    // A selection through the last line end goes on to the copy's, as far as there is one.
    const TextSpan selection = text.Selection();
    const qsizetype by = lines.Length() + 1;
    move.selection = Shifted(selection, by);
    move.selection.end = std::min(move.selection.end, text.Length() + by);
    return move;
}

/// The line before the lines goes behind them.
MovedLines Up(const TextBuffer &text, const TextSpan &lines, qsizetype before)
{
    const TextSpan neighbour{text.LineStart(before), text.LineEnd(before)};
    const qsizetype gone = lines.start - neighbour.start;
    MovedLines move;
    move.from = {neighbour.start, lines.start};
    move.to = lines.end - gone;
    move.text = u'\n' + text.TextRange(neighbour.start, neighbour.end);
    move.source = 1;
    move.kept = neighbour;
    move.selection = Shifted(text.Selection(), -gone);
    return move;
}

/// The line behind the lines goes before them.
MovedLines Down(const TextBuffer &text, const TextSpan &lines, qsizetype behind)
{
    const TextSpan neighbour{text.LineStart(behind), text.LineEnd(behind)};
    MovedLines move;
    move.from = {lines.end, neighbour.end};
    move.to = lines.start;
    move.text = text.TextRange(neighbour.start, neighbour.end) + u'\n';
    move.source = 0;
    move.kept = neighbour;
    move.selection = Shifted(text.Selection(), move.text.size());
    // A selection through the last line end has none to go through behind the last line.
    move.selection.end = std::min(move.selection.end, text.Length());
    return move;
}

} // namespace

std::optional<MovedLines> MoveLines(const TextBuffer &text, LineMoveKind kind)
{
    const LinesOfSelection touched = TouchedLines(text);
    const TextSpan lines = SpanOf(text, touched);
    switch (kind) {
    case LineMoveKind::Duplicate:
        return Duplicate(text, lines);
    case LineMoveKind::Up:
        if (touched.first > 0)
            return Up(text, lines, touched.first - 1);
        break;
    case LineMoveKind::Down:
        if (touched.last + 1 < text.LineCount())
            return Down(text, lines, touched.last + 1);
        break;
    }
    return {};
}

} // namespace zelvane
