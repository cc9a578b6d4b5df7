// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/scanner.h"
#include "platform/textbuffer.h"
#include "shell/document.h"

#include <algorithm>
#include <cstddef>
#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// What a stretch of a document is to those who look for brackets and words of the language.
enum class CodePart : quint8 {
    Code,
    LineComment,  ///< with its line end
    BlockComment, ///< with its marks
    Quoted,       ///< a string with its quotes
    Braced        ///< a string with its double braces
};

/// A stretch of a document that is no code; offsets from 0, end exclusive.
struct CodeStretch {
    qint32 start = 0;
    qint32 end = 0;
    CodePart part = CodePart::Code;

    bool operator==(const CodeStretch &) const = default;
};

/// The comments and strings of a document, as the scanner of the colours finds them in a score: in an
/// orchestra it takes a quote or a semicolon that touches a word for a part of the word, which does for
/// colours. Strings in double braces are known in orchestras only. What stands outside of the sections of a
/// unified document is all code, and so is a document of another kind.
class CodeMap
{
public:
    CodeMap() = default;
    CodeMap(QStringView text, FileKind kind);
    /// The whole text is one section of this mode.
    CodeMap(QStringView text, ScanMode mode);

    /// What the character at an offset belongs to.
    CodePart At(qsizetype offset) const;
    /// In the order of the text.
    const std::vector<CodeStretch> &Stretches() const { return m_stretches; }
    /// The sections that were scanned, in the order of the text.
    const std::vector<ScannedSection> &Sections() const { return m_sections; }

    /// The first stretch that ends behind an offset, by its place in Stretches().
    std::size_t FirstEndingBehind(qsizetype offset) const;

    /// Calls `code(start, end)` for each piece of code of [from, to), and between them, in the order of the
    /// text, `other(stretch)` for each stretch that begins there.
    template <typename Code, typename Other>
    void ForEach(qsizetype from, qsizetype to, Code code, Other other) const
    {
        qsizetype at = from;
        for (std::size_t next = FirstEndingBehind(from); at < to; ++next) {
            const bool none = next == m_stretches.size() || m_stretches[next].start >= to;
            const qsizetype end = none ? to : std::max<qsizetype>(m_stretches[next].start, at);
            if (end > at)
                code(at, end);
            if (none)
                return;
            if (m_stretches[next].start >= from)
                other(m_stretches[next]);
            at = m_stretches[next].end;
        }
    }

private:
    std::vector<ScannedSection> m_sections;
    std::vector<CodeStretch> m_stretches;
};

} // namespace zelvane
