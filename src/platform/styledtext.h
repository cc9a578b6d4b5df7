// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/stylerun.h"

#include <array>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

/// The font of the whole text; `points` may have a fraction.
struct TextFont {
    QString family;
    double points = 10;
    bool bold = false;
    bool italic = false;

    bool operator==(const TextFont &) const = default;
};

/// A piece of text with its look, for those who show it in another place than the editor.
struct StyledText {
    QString text; ///< a line end is one LF
    StyleRuns runs;
    /// Colours and bold as they are shown, but for the twins of a dark desktop.
    std::array<StyleFormat, StyleClassCount> formats;
    TextFont font;
    int tabColumns = 8; ///< the distance of tab stops, in blanks
};

/// Who can give a piece of the document with its look.
class StyledSource
{
public:
    virtual ~StyledSource() = default;
    /// The text of [start, end), and its runs counted from `start`. Offsets beyond the text are cut to its
    /// length.
    virtual StyledText Styled(qsizetype start, qsizetype end) const = 0;
};

/// The runs that cover a text of so many characters without a gap or an overlap, in order; neighbours have
/// different classes.
StyleRuns CoveringRuns(const StyleRuns &runs, qsizetype length);

/// A colour of the formats as 0xBBGGRR on paper, where the colours of the desktop are black.
quint32 ColourOnPaper(const StyleFormat &format);

} // namespace zelvane
