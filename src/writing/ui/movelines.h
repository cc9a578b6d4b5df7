// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/linemoves.h"
#include "writing/ui/boundcommands.h"
#include "writing/ui/writingaid.h"

namespace zelvane
{

/// Moves the lines of the selection up and down, and makes copies of them. What is folded goes as a whole,
/// and stays folded.
class MoveLinesAid : public WritingAid
{
public:
    explicit MoveLinesAid(const WritingContext &context);

private:
    void Move(LineMoveKind kind);

    TextControl &m_text;
    TextDecorations &m_decorations;
    BoundCommands m_commands;
};

} // namespace zelvane
