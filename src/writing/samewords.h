// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <QStringView>
#include <vector>

namespace zelvane
{

/// The word of letters, digits and underscores that a selection marks: the one that an empty selection
/// touches, or the one that is selected from end to end. Empty without one, and for a number.
/// @param selection in the line's text
TextSpan WordAt(QStringView line, const TextSpan &selection);

/// Where the word stands in the text as a whole word, in exact case; offsets from 0.
std::vector<TextSpan> WordsLike(QStringView text, QStringView word);

} // namespace zelvane
