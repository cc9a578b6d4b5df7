// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "texttools/styledwriter.h"

#include <optional>
#include <QByteArray>
#include <QString>

namespace zelvane
{

struct StyledText;

/// A coloured text as a page of HTML 3.2 in ISO 8859-1, with CR LF line ends; what that set lacks stands as
/// a number. Kept: an ampersand stands for itself, blanks are no others than in the text, and the last bold
/// and colour are not closed.
/// @param title plain text
/// @return no value when `goOn` ended it
std::optional<QByteArray> HtmlDocument(const StyledText &text, const QString &title,
                                       const WriteProgress &goOn = {});

} // namespace zelvane
