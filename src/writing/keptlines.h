// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <cstddef>
#include <map>
#include <QString>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// A line that is kept: its number from 0, and what it holds, as far as that is needed to know it again.
struct KeptLine {
    qsizetype line = 0;
    QString text;

    bool operator==(const KeptLine &) const = default;
};

/// Of longer lines this many characters are kept.
inline constexpr qsizetype KeptLength = 500;

KeptLine KeepLine(const TextBuffer &text, qsizetype line);

/// Where kept lines stand in a text: as far from where they stood as the one before, or else at the line
/// nearest to that which holds the same and is not blank. Lines that are not there are left out. In rising
/// order, without repetition.
std::vector<qsizetype> FindKeptLines(const TextBuffer &text, const std::vector<KeptLine> &lines);

/// The kept lines of the files that were left, by their names without regard to case. Nothing is kept of a
/// document without a name.
class LinesOfFiles
{
public:
    void Keep(const QString &file, std::vector<KeptLine> lines);
    /// Those of a file; empty when it was not left yet.
    std::vector<KeptLine> Of(const QString &file) const;

private:
    std::map<QString, std::vector<KeptLine>> m_lines;
};

/// Lines that stay marked while the text is edited. A line that is moved, or goes and comes again, is known
/// by what it holds; one that is edited in place stays marked.
class MarkedLines
{
public:
    /// The marked lines of a fresh text.
    void Reset(const TextBuffer &text, const std::vector<qsizetype> &lines);
    void Set(const TextBuffer &text, qsizetype line, bool marked);
    bool IsMarked(qsizetype line) const;
    /// In rising order.
    const std::vector<KeptLine> &Lines() const { return m_lines; }

    /// The text has been edited. @return whether other lines than before are marked now
    bool Follow(const TextBuffer &text, const TextEdit &edit);

private:
    /// A marked line that has gone with an edit.
    struct Lost {
        KeptLine kept;
        TextEdit edit;
    };

    void Add(KeptLine kept);

    std::vector<KeptLine> m_lines;
    std::vector<Lost> m_lost; ///< the newest last
    qsizetype m_lineCount = 1;
};

} // namespace zelvane
