// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/textdecorations.h"
#include "writing/ui/writingaid.h"

namespace zelvane
{

/// The numbers of the lines, from 1, in a margin of the text.
class LineNumbers : public WritingAid
{
public:
    explicit LineNumbers(const WritingContext &context) : m_decorations(context.decorations)
    {
        m_decorations.ShowMargin(TextMargin::Numbers, true);
    }
    ~LineNumbers() override { m_decorations.ShowMargin(TextMargin::Numbers, false); }

private:
    TextDecorations &m_decorations;
};

} // namespace zelvane
