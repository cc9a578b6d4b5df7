// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

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
};

enum class LineMoveKind { Duplicate, Up, Down };

/// What moves or copies the lines that the selection touches; a line that it only reaches the start of is
/// none of them. The selection goes along with the lines, of a copy with the copy. Reads these lines and
/// their neighbour only. None where there is no line to change places with.
std::optional<MovedLines> MoveLines(const TextBuffer &text, LineMoveKind kind);

} // namespace zelvane
