// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/blockcomments.h"

#include "language/findmark.h"

namespace zelvane
{

std::vector<TextSpan> ParseCommentRanges(QStringView text)
{
    std::vector<TextSpan> comments;
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = FindMark(text, u'/', u'*', from);
        if (open < 0)
            return comments;
        const qsizetype close = FindMark(text, u'*', u'/', open);
        if (close < 0)
            return comments;
        comments.push_back({open, close + 2});
        from = close;
    }
}

} // namespace zelvane
