// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "shell/document.h"
#include "writing/codemap.h"

#include <optional>
#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// A bracket, a quote or a tag, and which of the text's marks closes or opens it; -1 for none.
struct Bracket {
    qint32 start = 0;
    qint32 length = 1;
    qint32 partner = -1;

    qint32 End() const { return start + length; }
    bool operator==(const Bracket &) const = default;
};

/// All brackets of a text in their order: round, square and curly ones in code, the quotes and double braces
/// of strings, and in a unified document the tags around its sections. Brackets in comments and strings are
/// none. A closing bracket goes with the nearest open one of its kind; those that were opened behind it have
/// no partner. Nothing goes with what stands in another section.
std::vector<Bracket> FindBrackets(QStringView text, const CodeMap &map, FileKind kind);

/// What is marked while the caret touches a bracket.
struct BracketAtCaret {
    TextSpan here;
    std::optional<TextSpan> partner; ///< none: it is not closed, or not opened
};

/// The bracket before the caret, else the one behind it, or the tag that it stands in.
/// @param brackets as FindBrackets gives them; `caret` an offset from 0
std::optional<BracketAtCaret> BracketAt(const std::vector<Bracket> &brackets, qsizetype caret);

/// The tags of a unified document that stand outside of its sections, each pair as two brackets of which one
/// names the other, by their places in the result; in the order of the text.
std::vector<Bracket> FindTagPairs(QStringView text, const CodeMap &map, FileKind kind);

} // namespace zelvane
