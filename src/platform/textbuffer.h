// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/stylerun.h"

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// A stretch of text: offsets in UTF-16 code units from 0, end exclusive.
struct TextSpan {
    qsizetype start = 0;
    qsizetype end = 0;

    qsizetype Length() const { return end - start; }
    bool IsEmpty() const { return start == end; }
    bool operator==(const TextSpan &) const = default;
};

/// A stretch of text and what takes its place.
struct TextReplacement {
    TextSpan span;
    QString text;
};

/// A change of a text: `added` characters stand at `offset` where `removed` stood.
struct TextEdit {
    qsizetype offset = 0;
    qsizetype removed = 0;
    qsizetype added = 0;

    bool operator==(const TextEdit &) const = default;
};

/// The kinds of step that undo and redo know, in the numbers of UndoType's texts.
enum class UndoKind { None, Typing, Delete, DragDrop, Cut, Paste };

/// The text of the document, as the core sees the text control. Every offset is a UTF-16 offset from 0, every
/// line number counts from 0, a line end is one LF. Offsets beyond the text are cut to its length.
class TextBuffer
{
public:
    virtual ~TextBuffer() = default;

    virtual QString Text() const = 0;
    /// The whole text as UTF-8, for those who only keep it.
    virtual QByteArray Utf8() const { return Text().toUtf8(); }
    virtual QString TextRange(qsizetype start, qsizetype end) const = 0;
    virtual qsizetype Length() const = 0;
    /// Replaces the whole text in one undoable step, all in class Text; the caret goes to 0.
    virtual void SetText(const QString &text) = 0;
    /// A fresh text, all in class Text: the undo buffer is emptied and the caret goes to 0. It is given by
    /// value so that a large text need not be held twice.
    virtual void LoadText(QString text)
    {
        SetText(text);
        EmptyUndoBuffer();
    }

    /// The selection, start not after end; empty at the caret when nothing is selected.
    virtual TextSpan Selection() const = 0;
    /// Selects from `start` to `end`; (0, -1) selects all, an `end` of -1 selects to the end of the text.
    virtual void SetSelection(qsizetype start, qsizetype end) = 0;
    virtual QString SelectedText() const = 0;
    /// Replaces the selection in one undo step and leaves the caret behind the new text. CR LF and lone CR
    /// become LF.
    virtual void ReplaceSelection(const QString &text) = 0;
    /// Replaces [start, end) in one undo step; the selection is kept where it can be.
    virtual void ReplaceRange(qsizetype start, qsizetype end, const QString &text) = 0;
    /// Replaces the stretches of `length` characters at all of `starts`, which are in order and do not
    /// overlap, in one undo step. What stands between keeps its classes. The caret goes behind the last new
    /// text; nothing happens without a start.
    virtual void ReplaceEach(const std::vector<qint32> &starts, qsizetype length, const QString &text) = 0;
    /// The same where each stretch, which may be empty, has a text of its own.
    virtual void ReplaceEach(const std::vector<TextReplacement> &replacements) = 0;

    /// At least 1: a text that ends in a line end has an empty last line.
    virtual qsizetype LineCount() const = 0;
    virtual qsizetype LineOfOffset(qsizetype offset) const = 0;
    virtual qsizetype LineStart(qsizetype line) const = 0;
    /// The offset just behind the line's last character, before its line end.
    virtual qsizetype LineEnd(qsizetype line) const = 0;
    virtual qsizetype FirstVisibleLine() const = 0;
    virtual void ScrollToLine(qsizetype line) = 0;

    /// Gives [start, end) the class Text, then each run its class, outside of the range too; not an edit, and
    /// no undo step.
    virtual void ApplyStyles(qsizetype start, qsizetype end, const StyleRuns &runs) = 0;

    virtual bool CanUndo() const = 0;
    virtual bool CanRedo() const = 0;
    virtual void EmptyUndoBuffer() = 0;
};

} // namespace zelvane
