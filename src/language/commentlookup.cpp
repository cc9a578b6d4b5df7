// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/commentlookup.h"

#include "shell/textops.h"

namespace zelvane
{

bool CommentLookup::IsCommented(qsizetype offset)
{
    return IsInBlockComment(offset, LastBefore(offset)) || IsInLineComment(offset);
}

std::span<const TextSpan> CommentLookup::LastBefore(qsizetype offset)
{
    if (m_begun > 0 && m_blockComments[m_begun - 1].start >= offset)
        m_begun = 0;
    while (m_begun < m_blockComments.size() && m_blockComments[m_begun].start < offset)
        ++m_begun;
    return m_begun == 0 ? std::span<const TextSpan>() : m_blockComments.subspan(m_begun - 1, 1);
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
