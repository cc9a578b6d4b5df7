// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <cstddef>
#include <QStringView>
#include <span>

namespace zelvane
{

/// Answers as IsCommented does, for many places of one text. Asked about rising offsets it reads no character
/// and no comment twice, however long the lines are.
class CommentLookup
{
public:
    /// @param blockComments the half-open ranges of the text's block comments, in order; both outlive this
    CommentLookup(QStringView text, std::span<const TextSpan> blockComments)
        : m_text(text), m_blockComments(blockComments)
    {
    }

    /// Whether the character at `offset`, from 0, is in a comment.
    bool IsCommented(qsizetype offset);

private:
    /// The last block comment that begins before the offset: no other can hold it.
    std::span<const TextSpan> LastBefore(qsizetype offset);
    bool IsInLineComment(qsizetype offset);

    QStringView m_text;
    std::span<const TextSpan> m_blockComments;
    std::size_t m_begun = 0; ///< how many block comments begin before the offset asked about last
    qsizetype m_asked = -1;  ///< where the last line comment was looked for
    bool m_answer = false;
};

} // namespace zelvane
