// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/scanner.h"
#include "shell/document.h"
#include "writing/blocks.h"

#include <optional>
#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

/// Indents by what stands before the caret, for which a few thousand lines do: no key may wait for a whole
/// text.
inline constexpr qsizetype IndentReach = 64 * 1024;

/// What Enter does to a line.
struct EnterIndent {
    /// What the line that is left begins with instead of its own blanks, if that changes.
    std::optional<QString> line = std::nullopt;
    /// What the new line begins with.
    QString next = {};
};

/// The blanks that the lines around the caret should begin with.
class AutoIndenter
{
public:
    /// @param before the text from the start of a line to the caret; has to outlive this
    /// @param isWhole no text stands before that
    /// @param unit one step, a tab or blanks, where the text itself shows none: the line below, or else the
    /// nearest block above, says how deep this text is indented
    AutoIndenter(QStringView before, bool isWhole, FileKind kind, QStringView unit);

    /// Enter at the caret. The new line stands one step deeper than one that opens a block, else as deep as
    /// the line that is left; in front of a word that closes or parts a block as deep as that block. A line
    /// of blanks only is left empty.
    /// @param behind the text behind the caret up to the line's end
    /// @param below the text that follows the line, or its first part
    EnterIndent Enter(QStringView behind, QStringView below = {}) const;

    /// When a word has been typed: long ones count with their last letter, "fi" and "od", which other words
    /// begin with, with the blank behind.
    enum class Typed { Letter, Blank };
    /// Whether a line's text, without its blanks, may be one that Closing is asked about: most are not, and
    /// need no look at the text before.
    static bool MayClose(QStringView line, Typed typed);
    /// What the line of the caret should begin with when all that stands in it closes or parts a block: as
    /// much as the line that opened it. None where that is no less than it has.
    std::optional<QString> Closing(Typed typed) const;

    /// Whether the line begins with a word or mark that closes or parts a block.
    bool BeginsWithClosing() const;

private:
    /// What the blocks around the caret tell of its line.
    struct Line {
        BlockPairs pairs;               ///< as they are at the caret
        std::optional<BlockWord> first; ///< the word or mark that the line begins with
        qsizetype firstOpened = -1;     ///< where the block was opened that it closes or parts
        qsizetype lastOpened = -1;      ///< the same of a later word that closes a block of an earlier line
        bool opens = false;             ///< a block is opened here and not closed
        QStringView step;               ///< by which the nearest block before this line is indented
    };

    bool IsBlank() const { return m_lineStart + m_blanks.size() == m_before.size(); }
    Line Read() const;
    void FindSection(bool isWhole, FileKind kind);
    /// By how much the line below a word is indented, where the word begins its line; empty where that is no
    /// plain step, or the line below is the caret's.
    QStringView StepBelow(const BlockWord &word) const;
    /// What the line of an offset begins with.
    QStringView BlanksAt(qsizetype offset) const;
    /// The blanks of the line that opened a block, where they are less than those of this line.
    std::optional<QString> LessBlanks(qsizetype opened) const;

    QStringView m_before;
    QStringView m_unit;
    qsizetype m_lineStart = 0; ///< of the caret's line, in m_before
    QStringView m_blanks;      ///< that the line begins with
    qsizetype m_start = 0;     ///< what stands before is of another section, or not known
    ScanMode m_mode = ScanMode::None;
};

} // namespace zelvane
