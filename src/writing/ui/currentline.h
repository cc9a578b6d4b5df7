// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/textdecorations.h"
#include "writing/ui/writingaid.h"

namespace zelvane
{

/// Gives the line of the caret a background of its own.
class CurrentLine : public WritingAid
{
public:
    explicit CurrentLine(const WritingContext &context) : m_decorations(context.decorations)
    {
        m_decorations.ShowCurrentLine(true);
    }
    ~CurrentLine() override { m_decorations.ShowCurrentLine(false); }

private:
    TextDecorations &m_decorations;
};

} // namespace zelvane
