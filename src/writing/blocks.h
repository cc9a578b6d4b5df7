// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"
#include "writing/codemap.h"

#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// What opens and closes in the text of a piece.
enum class BlockKind : quint8 {
    Instrument, ///< instr, endin
    Opcode,     ///< opcode, endop
    Condition,  ///< if with then, endif or fi
    Loop,       ///< while or until with do, od; of a score curly braces
    Macro,      ///< the body of a #define, between two "#"
    Directive,  ///< #ifdef or #ifndef, #end or #endif
    Braces,     ///< a string in double braces
    Comment,    ///< a block comment
    Tag
};

/// A word or mark that opens or closes a block, or stands between two halves of one.
struct BlockWord {
    enum class Role : quint8 { Opens, Closes, Parts };

    qint32 start = 0;
    qint32 end = 0; ///< of what opens: behind its last word, "then" or "do"
    BlockKind kind = BlockKind::Instrument;
    Role role = Role::Opens;

    bool operator==(const BlockWord &) const = default;
};

/// A block, from the first character of what opens it to behind the last one of what closes it.
struct Block {
    qint32 start = 0;
    qint32 end = 0;
    BlockKind kind = BlockKind::Instrument;

    bool operator==(const Block &) const = default;
};

/// The words and marks of blocks of one section in their order, but tags and comments. Words count in code
/// only, as whole words in exact case. An "if" opens nothing without a "then" on its line, and neither does a
/// loop without its "do"; a backslash at the end of a line joins it with the next one.
std::vector<BlockWord> FindBlockWords(QStringView text, const CodeMap &map, const ScannedSection &section);

/// Pairs the words of one section. What closes goes with the nearest open block of its kind, and the blocks
/// that were opened in that one and not closed are none. The word of an instrument or an opcode begins anew:
/// they do not stand in each other. Directives may cross the others.
class BlockPairs
{
public:
    /// Takes the next word. @return for one that closes, its block; else one of the end 0. One that parts
    /// gives the block that it stands in, as far as that goes.
    Block Take(const BlockWord &word);
    /// What is open, the outermost first; directives are left out.
    const std::vector<BlockWord> &Open() const { return m_open; }

private:
    void BeginAnew();

    std::vector<BlockWord> m_open;
    std::vector<BlockWord> m_directives;
    qint32 m_counts[9] = {}; ///< of m_open, by kind
};

/// All blocks of a document: the closed ones of its sections, comments, and the tags around its sections. Not
/// in an order.
std::vector<Block> FindBlocks(QStringView text, const CodeMap &map, FileKind kind);

} // namespace zelvane
