// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace zelvane
{

/// How a piece of a program's output looks. Colours are the sixteen of a terminal.
struct TextStyle {
    qint8 colour = -1; ///< 0 to 15, or -1 for the text's own colour
    bool bold = false;

    bool operator==(const TextStyle &) const = default;
};

/// A piece of a line that does not look plain; `start` counts UTF-16 units from 0.
struct StyleSpan {
    int start = 0;
    int length = 0;
    TextStyle style = {};

    bool operator==(const StyleSpan &) const = default;
};

/// A line of output without its line end. The spans stand in order and do not meet.
struct StyledLine {
    QString text = {};
    std::vector<StyleSpan> spans = {};

    bool operator==(const StyledLine &) const = default;
};

} // namespace zelvane
