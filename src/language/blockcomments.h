// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <QStringView>
#include <vector>

namespace zelvane
{

/// The block comments of a text, from the opening mark to just behind the closing one, in order; offsets from
/// 0. A closing mark is looked for from the opening mark itself, so "/*/" is a whole comment, and the search
/// goes on from the closing mark, so the slash of one comment's end can begin the next. An opening mark
/// without a partner ends the list.
std::vector<TextSpan> ParseCommentRanges(QStringView text);

} // namespace zelvane
