// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/movelines.h"

#include "platform/styledtext.h"
#include "platform/stylerun.h"
#include "platform/ui/textcontrol.h"
#include "platform/ui/textdecorations.h"
#include "shell/command.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace zelvane
{

namespace
{

/// How lines are folded, to fold them so again where they have gone.
class FoldsOfLines
{
public:
    FoldsOfLines(TextDecorations &decorations, const MovedLines &move)
        : m_decorations(decorations), m_first(move.firstLine)
    {
        const qsizetype end = move.firstLine + move.upper + move.lower;
        const std::vector<qsizetype> folded = decorations.FoldedLines();
        const auto next = std::lower_bound(folded.begin(), folded.end(), m_first);
        if (next == folded.end() || *next >= end)
            return;
        for (qsizetype line = m_first; line < end; ++line) {
            m_levels.push_back(decorations.FoldLevelOf(line));
            m_folded.push_back(decorations.IsFolded(line));
        }
        Turn(m_levels, move);
        Turn(m_folded, move);
    }

    void Apply() const
    {
        if (m_levels.empty())
            return;
        m_decorations.SetFoldLevels(m_first, m_levels);
        for (std::size_t i = 0; i < m_folded.size(); ++i) {
            if (m_folded[i])
                m_decorations.SetFolded(m_first + qsizetype(i), true);
        }
    }

private:
    template <typename Values> static void Turn(Values &values, const MovedLines &move)
    {
        if (move.lower > 0) {
            std::rotate(values.begin(), values.begin() + move.upper, values.end());
            return;
        }
        const Values copy = values;
        values.insert(values.end(), copy.begin(), copy.end());
    }

    TextDecorations &m_decorations;
    qsizetype m_first = 0;
    std::vector<FoldLevel> m_levels;
    std::vector<bool> m_folded;
};

} // namespace

MoveLinesAid::MoveLinesAid(const WritingContext &context)
    : m_text(context.window.text), m_decorations(context.decorations), m_commands(context.window.commands)
{
    m_commands.Bind(Cmd::mnuDuplicateLine, [this] { Move(LineMoveKind::Duplicate); });
    m_commands.Bind(Cmd::mnuMoveLine, [this](LineMove direction) {
        Move(direction == LineMove::Up ? LineMoveKind::Up : LineMoveKind::Down);
    });
}

void MoveLinesAid::Move(LineMoveKind kind)
{
    const std::optional<MovedLines> move =
        MoveLines(m_text, kind, [this](qsizetype line) { return m_decorations.IsLineHidden(line); });
    if (!move)
        return;
    const FoldsOfLines folds(m_decorations, *move);
    const bool caretFirst = m_text.CaretOffset() < m_text.Selection().end;
    StyleRuns runs = m_text.Styled(move->kept.start, move->kept.end).runs;
    m_text.ReplaceRange(move->from.start, move->from.end, {});
    m_text.ReplaceRange(move->to, move->to, move->text);
    const qsizetype start = move->to + move->source;
    for (StyleRun &run : runs)
        run.start += qint32(start);
    m_text.ApplyStyles(start, start + move->kept.Length(), runs);
    folds.Apply();
    TextSpan selection = move->selection;
    if (caretFirst)
        std::swap(selection.start, selection.end);
    m_text.SetSelection(selection.start, selection.end);
}

} // namespace zelvane
