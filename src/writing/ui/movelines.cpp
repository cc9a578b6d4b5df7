// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/movelines.h"

#include "platform/styledtext.h"
#include "platform/stylerun.h"
#include "platform/ui/textcontrol.h"
#include "shell/command.h"

#include <optional>
#include <utility>

namespace zelvane
{

MoveLinesAid::MoveLinesAid(const WritingContext &context)
    : m_text(context.window.text), m_commands(context.window.commands)
{
    m_commands.Bind(Cmd::mnuDuplicateLine, [this] { Move(LineMoveKind::Duplicate); });
    m_commands.Bind(Cmd::mnuMoveLine, [this](LineMove direction) {
        Move(direction == LineMove::Up ? LineMoveKind::Up : LineMoveKind::Down);
    });
}

void MoveLinesAid::Move(LineMoveKind kind)
{
    const std::optional<MovedLines> move = MoveLines(m_text, kind);
    if (!move)
        return;
    const bool caretFirst = m_text.CaretOffset() < m_text.Selection().end;
    StyleRuns runs = m_text.Styled(move->kept.start, move->kept.end).runs;
    m_text.ReplaceRange(move->from.start, move->from.end, {});
    m_text.ReplaceRange(move->to, move->to, move->text);
    const qsizetype start = move->to + move->source;
    for (StyleRun &run : runs)
        run.start += qint32(start);
    m_text.ApplyStyles(start, start + move->kept.Length(), runs);
    TextSpan selection = move->selection;
    if (caretFirst)
        std::swap(selection.start, selection.end);
    m_text.SetSelection(selection.start, selection.end);
}

} // namespace zelvane
