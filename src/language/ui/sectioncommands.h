// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/sections.h"
#include "shell/ui/windowcontext.h"

namespace zelvane
{

class Highlighter;

/// The rows and buttons of the sections of a piece: going to the orchestra and to the score, and the two
/// conversions.
class SectionCommands
{
public:
    /// Binds the commands.
    /// @param highlighter has to outlive this
    SectionCommands(const WindowContext &context, Highlighter &highlighter);

private:
    PieceSections m_sections;
};

} // namespace zelvane
