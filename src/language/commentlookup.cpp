// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/commentlookup.h"

#include <algorithm>
#include <iterator>

namespace zelvane
{

bool CommentLookup::IsCommented(qsizetype offset)
{
    return IsInBlockComment(offset) || IsInLineComment(offset);
}

bool CommentLookup::IsInBlockComment(qsizetype offset) const
{
    // Ranges share no more than one character, so only the last that starts before the offset can hold it.
    const auto behind =
        std::lower_bound(m_blockComments.begin(), m_blockComments.end(), offset,
                         [](const TextSpan &comment, qsizetype at) { return comment.start < at; });
    return behind != m_blockComments.begin() && offset < std::prev(behind)->end;
}

bool CommentLookup::IsInLineComment(qsizetype offset)
{
    bool answer = false;
    for (qsizetype i = offset; i >= 0; --i) {
        if (i == m_asked) {
            answer = m_answer;
            break;
        }
        const QChar c = m_text[i];
        if (c == u';' || c == u'\n' || c == u'\r') {
            answer = c == u';';
            break;
        }
    }
    m_asked = offset;
    m_answer = answer;
    return answer;
}

} // namespace zelvane
