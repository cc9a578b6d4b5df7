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

/// Turns byte offsets of a UTF-8 text into UTF-16 offsets and back. It keeps the count at every 4096th byte,
/// found when first asked for, so a look-up walks one block at most, and an edit forgets only what lies
/// behind it.
class OffsetMap
{
public:
    /// Gives the bytes [start, start + length) of the text; the view need not outlive the next call.
    using Reader = std::function<QByteArrayView(qsizetype start, qsizetype length)>;

    explicit OffsetMap(Reader reader);

    /// A wholly new text of so many bytes and units.
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

    void ForgetFrom(qsizetype byte);
    /// Fills the next known block start. @return false when all are known
    bool LearnBlock() const;

    Reader m_read;
    qsizetype m_bytes = 0;
    qsizetype m_units = 0;
    mutable std::vector<qsizetype> m_blocks = {0}; ///< units before byte 4096 * index
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
