// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "texttools/styledwriter.h"

#include <optional>
#include <QByteArray>

namespace zelvane
{

struct StyledText;

/// A coloured text as Rich Text Format of ASCII bytes alone, with CR LF line ends: each line of the text is
/// a paragraph, each character beyond ASCII a number.
/// @return no value when `goOn` ended it
std::optional<QByteArray> RtfDocument(const StyledText &text, const WriteProgress &goOn = {});

} // namespace zelvane
