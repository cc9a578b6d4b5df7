// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/linemoves.h"

#include <algorithm>

namespace zelvane
{

namespace
{

/// Lines by their numbers from 0, both included.
struct Lines {
    qsizetype first = 0;
    qsizetype last = 0;

    qsizetype Count() const { return last - first + 1; }
};

/// The lines, from the one that is seen to the last one that is folded away below them.
Lines WithHidden(const TextBuffer &text, Lines lines, const IsHidden &isHidden)
{
    while (lines.first > 0 && isHidden(lines.first))
        --lines.first;
    while (lines.last + 1 < text.LineCount() && isHidden(lines.last + 1))
        ++lines.last;
    return lines;
}

/// The lines of the selection.
Lines TouchedLines(const TextBuffer &text)
{
    const TextSpan selection = text.Selection();
    Lines lines{text.LineOfOffset(selection.start), text.LineOfOffset(selection.end)};
    if (lines.last > lines.first && text.LineStart(lines.last) == selection.end)
        --lines.last;
    return lines;
}

TextSpan Shifted(const TextSpan &span, qsizetype by)
{
    return {span.start + by, span.end + by};
}

/// The lines as they stand, without the line end of the last one.
TextSpan SpanOf(const TextBuffer &text, const Lines &lines)
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

/// What stands before the lines goes behind them.
MovedLines Up(const TextBuffer &text, const TextSpan &lines, const TextSpan &neighbour)
{
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

/// What stands behind the lines goes before them.
MovedLines Down(const TextBuffer &text, const TextSpan &lines, const TextSpan &neighbour)
{
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

std::optional<MovedLines> MoveLines(const TextBuffer &text, LineMoveKind kind, const IsHidden &isHidden)
{
    const Lines touched = WithHidden(text, TouchedLines(text), isHidden);
    const TextSpan lines = SpanOf(text, touched);
    MovedLines move;
    switch (kind) {
    case LineMoveKind::Duplicate:
        move = Duplicate(text, lines);
        move.firstLine = touched.first;
        move.upper = touched.Count();
        break;
    case LineMoveKind::Up: {
        if (touched.first == 0)
            return {};
        const Lines before = WithHidden(text, {touched.first - 1, touched.first - 1}, isHidden);
        move = Up(text, lines, SpanOf(text, {before.first, touched.first - 1}));
        move.firstLine = before.first;
        move.upper = touched.first - before.first;
        move.lower = touched.Count();
        break;
    }
    case LineMoveKind::Down: {
        if (touched.last + 1 == text.LineCount())
            return {};
        const Lines behind = WithHidden(text, {touched.last + 1, touched.last + 1}, isHidden);
        move = Down(text, lines, SpanOf(text, {touched.last + 1, behind.last}));
        move.firstLine = touched.first;
        move.upper = touched.Count();
        move.lower = behind.last - touched.last;
        break;
    }
    }
    return move;
}

} // namespace zelvane
