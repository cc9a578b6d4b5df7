// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/highlighter.h"
#include "language/opcodelist.h"
#include "language/ui/sectioncommands.h"
#include "shell/documentsteps.h"
#include "shell/ui/windowcontext.h"

namespace zelvane
{

class OpcodeCombo;
class OutlinePanel;
class RelatedPanel;

/// The language services of the window: the opcode list and its combo, colouring, the code outline, the
/// related files, the history, the sections of a piece, help on a word.
class LanguageRoom : public ColourStep
{
public:
    explicit LanguageRoom(const WindowContext &context);

    const OpcodeList &Opcodes() const { return m_opcodes; }

    void performSyntaxHighlight() override { m_highlighter.performSyntaxHighlight(); }
    void HighlightInserted(qsizetype start, qsizetype end) override
    {
        m_highlighter.HighlightInserted(start, end);
    }

private:
    /// Reads the opcode list. A list that cannot be read is reported, and start-up goes on.
    void LoadTables();
    /// Fills the opcode combo if it is in sight and empty; else that waits until it is shown.
    void LoadShownOpcodes();
    /// Colours on demand.
    void Refresh();

    WindowContext m_context;
    OpcodeList m_opcodes;
    Highlighter m_highlighter;
    SectionCommands m_sections;
    OpcodeCombo *cmbOpcodes;
    OutlinePanel *tvwBrowse;
    RelatedPanel *tvwRelated;
};

} // namespace zelvane
