// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <functional>
#include <optional>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

/// A line that changes its place with the lines of the selection, or copies of those lines: the text
/// [from.start, from.end) goes, then `text` comes at `to`, counted in what is left, and `selection` is what
/// is selected in the end. Offsets from 0.
struct MovedLines {
    TextSpan from;
    qsizetype to = 0;
    QString text;
    TextSpan selection;
    /// Where in `text`, and how far on in the old text, the moved or copied characters stand: for their
    /// colours.
    qsizetype source = 0;
    TextSpan kept;
    /// The lines that take part, counted from 0 before the move: `upper` of them from `firstLine` on change
    /// places with the `lower` ones behind them; of a copy there are no lower ones.
    qsizetype firstLine = 0;
    qsizetype upper = 0;
    qsizetype lower = 0;
};

enum class LineMoveKind { Duplicate, Up, Down };

/// Whether a line is folded away.
using IsHidden = std::function<bool(qsizetype line)>;

/// What moves or copies the lines that the selection touches; a line that it only reaches the start of is
/// none of them. What is folded away below a line goes where that line goes: to the user they are one. The
/// selection goes along with the lines, of a copy with the copy. Reads these lines and their neighbour only.
/// None where there is no line to change places with.
std::optional<MovedLines> MoveLines(const TextBuffer &text, LineMoveKind kind, const IsHidden &isHidden);

} // namespace zelvane
