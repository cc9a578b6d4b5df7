// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <QByteArray>
#include <QByteArrayView>
#include <vector>

namespace zelvane
{

/// A selection in bytes of the control's text: where it began and where the caret stands.
struct CaretSpan {
    qsizetype anchor = 0;
    qsizetype caret = 0;

    bool operator==(const CaretSpan &) const = default;
};

/// One step of undo: its kind, and the selection before and after it.
struct UndoStep {
    UndoKind kind = UndoKind::None;
    CaretSpan before;
    CaretSpan after;
    /// Undone and redone in one go with the step before it, as the letters of a word are.
    bool goesOn = false;
};

/// The undo steps beside the text control's own, one for each: the control knows the text of a step, this
/// list its kind and its selections.
class UndoSteps
{
public:
    /// A new step; what could be redone is gone.
    void Push(const UndoStep &step);
    void Clear();
    /// The selection after the newest step; nothing happens when there is none.
    void SetAfter(const CaretSpan &after);

    /// Moves over one step when the control has undone or redone it.
    void Undone();
    void Redone();

    /// The step that the next undo or redo takes; null when there is none.
    const UndoStep *NextUndo() const;
    const UndoStep *NextRedo() const;
    size_t Count() const { return m_steps.size(); }

private:
    std::vector<UndoStep> m_steps;
    size_t m_done = 0; ///< steps that undo can take; the others can be redone
};

/// The style bytes of deleted stretches, the last one on top; kept as runs.
class StyleStack
{
public:
    /// Puts a new stretch on top, empty yet.
    void Begin();
    /// Lengthens the top stretch by so many bytes of one style.
    void Add(qsizetype count, char style);
    /// Forgets the top stretch.
    void Drop();
    /// Puts a stretch on top; nothing has changed when the memory does not suffice.
    void PushEach(QByteArrayView styles);
    /// Takes the top stretch; empty when its length is another one.
    QByteArray Pop(qsizetype length);
    void Clear();
    bool IsEmpty() const { return m_stretches.empty(); }

private:
    struct Run {
        qsizetype length;
        char style;
    };
    std::vector<Run> m_runs;
    std::vector<size_t> m_stretches; ///< for each stretch the index of its first run
};

} // namespace zelvane
