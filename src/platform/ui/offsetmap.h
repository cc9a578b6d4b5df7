// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QByteArrayView>
#include <vector>

namespace zelvane
{

/// The number of UTF-16 code units that a UTF-8 text decodes to. A character cut at the end counts where it
/// begins.
qsizetype Utf16Length(QByteArrayView utf8);

/// Turns byte offsets of a UTF-8 text into UTF-16 offsets and back. It keeps the counts of blocks of some
/// thousand bytes, so a look-up walks one block at most, and an edit counts what it puts in or takes out.
class OffsetMap
{
public:
    /// Gives the bytes [start, start + length) of the text; the view need not outlive the next call.
    using Reader = std::function<QByteArrayView(qsizetype start, qsizetype length)>;

    explicit OffsetMap(Reader reader);

    /// A wholly new text of so many bytes and units. Its blocks are counted at the first look-up that needs
    /// them.
    void Reset(qsizetype bytes, qsizetype units);
    /// Told after bytes were inserted, and before bytes are deleted: the bytes must be readable at the call.
    void Inserted(qsizetype position, qsizetype length);
    void Deleting(qsizetype position, qsizetype length);

    qsizetype Bytes() const { return m_bytes; }
    qsizetype Units() const { return m_units; }
    /// Every character takes one byte: both offsets are the same numbers.
    bool IsAscii() const { return m_bytes == m_units; }

    /// Offsets beyond the text are cut to its length.
    qsizetype ToUnits(qsizetype byte) const;
    /// An offset between the two units of a pair gives the start of the character.
    qsizetype ToByte(qsizetype unit) const;

private:
    friend class OffsetWalk;

    /// A block's own length, or where it begins.
    struct Count {
        qsizetype bytes = 0;
        qsizetype units = 0;
    };
    struct Place {
        size_t block = 0;
        Count start = {};
    };

    /// Fresh blocks for a stretch; one of ASCII is not looked at.
    std::vector<Count> CutBlocks(qsizetype position, qsizetype length, bool ascii) const;
    void Adopt(std::vector<Count> blocks) const;
    void ChangeBlock(size_t block, Count by);
    /// The last block that begins at or before so many bytes or units; counts the blocks if need be.
    Place Find(qsizetype Count::*measure, qsizetype offset) const;

    Reader m_read;
    qsizetype m_bytes = 0;
    qsizetype m_units = 0;
    mutable std::vector<Count> m_blocks; ///< empty until they are needed
    /// A binary indexed tree: sum i, from 1, is that of the (i & -i) blocks that end with block i - 1.
    mutable std::vector<Count> m_sums;
};

/// Turns rising UTF-16 offsets into byte offsets in one walk over the text, which must not change meanwhile.
class OffsetWalk
{
public:
    explicit OffsetWalk(const OffsetMap &map) : m_map(map) {}

    /// As OffsetMap::ToByte. An offset before the last one is found by a look-up of its own.
    qsizetype ToByte(qsizetype unit);

private:
    /// Makes the bytes at the walk's place readable.
    void Look();

    const OffsetMap &m_map;
    QByteArrayView m_ahead; ///< the bytes from m_byte on, as far as looked up
    qsizetype m_byte = 0;
    qsizetype m_unit = 0;
};

} // namespace zelvane
