// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

namespace zelvane::test
{

/// The text control of the core tests: a string, a selection, and a style for each character.
class StringBuffer : public TextBuffer
{
public:
    QString text;
    TextSpan selection;
    QByteArray styles; ///< one style byte for each UTF-16 code unit
    int undoSteps = 0; ///< edits since the undo buffer was emptied
    qsizetype firstVisibleLine = 0;

    QString Text() const override { return text; }
    QString TextRange(qsizetype start, qsizetype end) const override;
    qsizetype Length() const override { return text.size(); }
    void SetText(const QString &newText) override;
    TextSpan Selection() const override { return selection; }
    void SetSelection(qsizetype start, qsizetype end) override;
    QString SelectedText() const override;
    void ReplaceSelection(const QString &newText) override;
    void ReplaceRange(qsizetype start, qsizetype end, const QString &newText) override;
    void ReplaceEach(const std::vector<qint32> &starts, qsizetype length, const QString &newText) override;
    void ReplaceEach(const std::vector<TextReplacement> &replacements) override;
    qsizetype LineCount() const override;
    qsizetype LineOfOffset(qsizetype offset) const override;
    qsizetype LineStart(qsizetype line) const override;
    qsizetype LineEnd(qsizetype line) const override;
    qsizetype FirstVisibleLine() const override { return firstVisibleLine; }
    void ScrollToLine(qsizetype line) override { firstVisibleLine = line; }
    void ApplyStyles(qsizetype start, qsizetype end, const StyleRuns &runs) override;
    bool CanUndo() const override { return undoSteps > 0; }
    bool CanRedo() const override { return false; }
    void EmptyUndoBuffer() override { undoSteps = 0; }
};

} // namespace zelvane::test
