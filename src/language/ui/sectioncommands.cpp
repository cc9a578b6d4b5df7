// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/sectioncommands.h"

#include "shell/command.h"
#include "shell/ui/commands.h"

namespace zelvane
{

SectionCommands::SectionCommands(const WindowContext &context, Highlighter &highlighter)
    : m_sections(context.editor, context.documents, context.view, context.steps, highlighter)
{
    context.commands.Bind(Cmd::mnuOrchestra, [this] { m_sections.mnuOrchestra(); });
    context.commands.Bind(Cmd::mnuScore, [this] { m_sections.mnuScore(); });
    context.commands.Bind(Cmd::mnuCSD, [this](Conversion conversion) { m_sections.mnuCSD(conversion); });
}

} // namespace zelvane
