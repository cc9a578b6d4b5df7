// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "writing/edithull.h"
#include "writing/foldlevels.h"
#include "writing/keptlines.h"
#include "writing/ui/boundcommands.h"
#include "writing/ui/writingaid.h"

#include <optional>
#include <QObject>
#include <QString>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

struct TextScan;

/// Folds instruments, opcodes, conditions, loops, tags and comments, by a margin and by commands. What was
/// folded in a file is folded again when it is opened again in this window. The caret is never hidden.
class Folding : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit Folding(const WritingContext &context);
    ~Folding() override;

private:
    void Scanned(const TextScan &scan);
    /// Gives the lines their levels: those that were edited, and those that stand otherwise than before.
    void Apply(std::vector<FoldLine> levels);
    void FoldAgain();
    void Run(FoldEntry entry);
    void Toggle(qsizetype line);
    void FoldAll();
    /// The caret leaves a line that has been folded away, for the line that hides it.
    void TakeCaretOut();
    /// The caret has come to a hidden line: that comes into sight.
    void ShowCaret();
    void Leave();
    /// For the next time that the file is here.
    void Remember();

    const WritingContext m_context;
    TextControl &m_text;
    TextDecorations &m_decorations;
    BoundCommands m_commands;
    std::vector<FoldLine> m_levels; ///< as they were given, before the edits since
    std::vector<qint32> m_outer; ///< where the outermost blocks that are no tags begin, as of the last scan
    EditHull m_edits;            ///< since then
    bool m_isNew = true;         ///< nothing of the text has been folded yet
};

} // namespace zelvane
