// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/folding.h"

#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "platform/ui/textdecorations.h"
#include "shell/editorcontext.h"
#include "writing/blocks.h"
#include "writing/ui/scannedtext.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace zelvane
{

namespace
{

/// Where the blocks begin that are no tags and stand in no other such block.
std::vector<qint32> OutermostCode(std::vector<Block> blocks)
{
    std::sort(blocks.begin(), blocks.end(),
              [](const Block &one, const Block &other) { return one.start < other.start; });
    std::vector<qint32> starts;
    qint32 end = 0;
    for (const Block &block : blocks) {
        if (block.kind == BlockKind::Tag || block.start < end)
            continue;
        starts.push_back(block.start);
        end = block.end;
    }
    return starts;
}

} // namespace

Folding::Folding(const WritingContext &context)
    : m_context(context),
      m_text(context.window.text),
      m_decorations(context.decorations),
      m_commands(context.window.commands)
{
    m_decorations.ShowMargin(TextMargin::Folds, true);
    m_commands.Bind(Cmd::mnuFold, [this](FoldEntry entry) { Run(entry); });
    connect(&context.scanned, &ScannedText::scanned, this, &Folding::Scanned);
    connect(&m_text, &TextControl::edited, this, [this](const TextEdit &edit) { m_edits.Add(edit); });
    connect(&m_text, &TextControl::selectionChanged, this, &Folding::ShowCaret);
    connect(&m_decorations, &TextDecorations::loading, this, &Folding::Leave);
    connect(&m_decorations, &TextDecorations::marginClicked, this, [this](TextMargin margin, qsizetype line) {
        if (margin == TextMargin::Folds)
            Toggle(line);
    });
    m_edits.Begin(m_text.Length());
    context.scanned.Request();
}

Folding::~Folding()
{
    Remember();
    m_decorations.ClearFolds();
    m_decorations.ShowMargin(TextMargin::Folds, false);
}

void Folding::Scanned(const TextScan &scan)
{
    std::vector<Block> blocks = FindBlocks(scan.text, scan.map, scan.kind);
    Apply(FoldLevels(scan.text, blocks));
    m_outer = OutermostCode(std::move(blocks));
    if (std::exchange(m_isNew, false))
        FoldAgain();
}

void Folding::Apply(std::vector<FoldLine> levels)
{
    const auto count = qsizetype(levels.size());
    const qsizetype by = count - qsizetype(m_levels.size());
    qsizetype from = count, to = 0;
    if (m_levels.empty()) {
        from = 0;
        to = count;
    } else {
        qsizetype first = count, last = count - 1;
        if (!m_edits.IsEmpty()) {
            const TextEdit edit = m_edits.Hull();
            from = first = m_text.LineOfOffset(edit.offset);
            last = m_text.LineOfOffset(edit.offset + edit.added);
            to = last + 1;
        }
        const auto differs = [&](qsizetype line, qsizetype before) {
            return levels[std::size_t(line)] != m_levels[std::size_t(before)];
        };
        for (qsizetype line = 0; line < first && from == first; ++line) {
            if (differs(line, line))
                from = line;
        }
        for (qsizetype line = count - 1; line > last && to <= last + 1; --line) {
            if (differs(line, line - by))
                to = line + 1;
        }
        if (m_edits.IsEmpty()) {
            to = 0;
            for (qsizetype line = from; line < count; ++line) {
                if (differs(line, line))
                    to = line + 1;
            }
        }
    }
    m_levels = std::move(levels);
    m_edits.Begin(m_text.Length());
    if (from >= to)
        return;
    std::vector<FoldLevel> shown;
    shown.reserve(std::size_t(to - from));
    for (qsizetype line = from; line < to; ++line) {
        const FoldLine &level = m_levels[std::size_t(line)];
        shown.push_back({level.level, level.isHeader});
    }
    m_decorations.SetFoldLevels(from, shown);
}

void Folding::FoldAgain()
{
    const std::vector<KeptLine> kept =
        m_context.memory.folded.Of(m_context.window.editor.document.CurrentFile);
    if (kept.empty())
        return;
    for (const qsizetype line : FindKeptLines(m_text, kept))
        m_decorations.SetFolded(line, true);
    ShowCaret();
}

void Folding::Remember()
{
    if (m_isNew) // what is to be folded has not been folded yet
        return;
    std::vector<KeptLine> folded;
    for (const qsizetype line : m_decorations.FoldedLines())
        folded.push_back(KeepLine(m_text, line));
    m_context.memory.folded.Keep(m_context.window.editor.document.CurrentFile, std::move(folded));
}

void Folding::Leave()
{
    Remember();
    m_levels.clear();
    m_outer.clear();
    m_isNew = true;
}

void Folding::Run(FoldEntry entry)
{
    const qsizetype line = m_text.LineOfOffset(m_text.CaretOffset());
    switch (entry) {
    case FoldEntry::Here:
        if (m_decorations.FoldLevelOf(line).header)
            Toggle(line);
        else if (const auto header = m_decorations.FoldHeaderOf(line))
            Toggle(*header);
        break;
    case FoldEntry::All:
        FoldAll();
        break;
    case FoldEntry::None:
        m_decorations.FoldAll(false);
        break;
    }
}

void Folding::Toggle(qsizetype line)
{
    m_decorations.SetFolded(line, !m_decorations.IsFolded(line));
    TakeCaretOut();
}

void Folding::FoldAll()
{
    // A whole piece in one tag would leave one line.
    for (const qint32 start : m_outer)
        m_decorations.SetFolded(m_text.LineOfOffset(start), true);
    if (m_outer.empty())
        m_decorations.FoldAll(true);
    TakeCaretOut();
}

void Folding::TakeCaretOut()
{
    const qsizetype caret = m_text.LineOfOffset(m_text.CaretOffset());
    const qsizetype line = m_decorations.SeenLine(caret);
    if (line == caret || m_decorations.IsLineHidden(line))
        return;
    m_text.SetSelection(m_text.LineEnd(line), m_text.LineEnd(line));
}

void Folding::ShowCaret()
{
    const qsizetype caret = m_text.CaretOffset();
    const qsizetype line = m_text.LineOfOffset(caret);
    if (!m_decorations.IsLineHidden(line))
        return;
    m_decorations.RevealLine(line);
    // What was hidden could not be scrolled to.
    const TextSpan selection = m_text.Selection();
    m_text.SetSelection(caret == selection.end ? selection.start : selection.end, caret);
}

} // namespace zelvane
