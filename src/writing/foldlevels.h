// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/blocks.h"

#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// How deep a line stands in what can be folded, from 0, and whether it can be folded itself: then the lines
/// behind it that stand deeper go out of sight.
struct FoldLine {
    quint16 level = 0;
    bool isHeader = false;

    bool operator==(const FoldLine &) const = default;
};

/// Deeper lines have this level.
inline constexpr int DeepestFold = 2000;

/// The folds of a text, a row for each line. A block folds from its first line to its last one; where one
/// ends on the line that the next begins on, it ends before it. Of those that begin on one line the longest
/// counts.
std::vector<FoldLine> FoldLevels(QStringView text, const std::vector<Block> &blocks);

} // namespace zelvane
