// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/commentlookup.h"

#include "shell/textops.h"

namespace zelvane
{

bool CommentLookup::IsCommented(qsizetype offset)
{
    return IsInBlockComment(offset, m_blockComments) || IsInLineComment(offset);
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
