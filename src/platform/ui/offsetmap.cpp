// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/offsetmap.h"

#include <algorithm>
#include <bit>
#include <QtEndian>
#include <utility>

namespace zelvane
{

namespace
{

constexpr qsizetype BlockSize = 4096;
constexpr qsizetype LargestBlock = 3 * BlockSize;
constexpr qsizetype LongestCharacter = 4;
constexpr qsizetype WalkSize = 65536;
constexpr qsizetype EightBytes = 8;

bool IsTrail(char byte)
{
    return (uchar(byte) & 0xC0) == 0x80;
}
/// How many of the next eight bytes, from the first on, are characters of one byte.
qsizetype AsciiAhead(QByteArrayView bytes)
{
    if (bytes.size() < EightBytes)
        return !bytes.isEmpty() && uchar(bytes[0]) < 0x80 ? 1 : 0;
    const quint64 high = qFromLittleEndian<quint64>(bytes.data()) & 0x8080808080808080U;
    return high == 0 ? EightBytes : std::countr_zero(high) / 8;
}

qsizetype UnitsOfLead(char byte)
{
    return uchar(byte) >= 0xF0 ? 2 : 1;
}

} // namespace

qsizetype Utf16Length(QByteArrayView utf8)
{
    // Written so that the compiler turns it into vector code: leads count one, leads of four bytes two.
    qsizetype units = 0;
    const char *byte = utf8.data();
    qsizetype left = utf8.size();
    while (left > 0) {
        const int step = int(std::min<qsizetype>(left, BlockSize));
        int count = 0;
        for (int i = 0; i < step; ++i)
            count += int((uchar(byte[i]) & 0xC0) != 0x80) + int(uchar(byte[i]) >= 0xF0);
        units += count;
        byte += step;
        left -= step;
    }
    return units;
}

OffsetMap::OffsetMap(Reader reader) : m_read(std::move(reader)) {}

void OffsetMap::Reset(qsizetype bytes, qsizetype units)
{
    m_bytes = bytes;
    m_units = units;
    m_blocks.clear();
    m_sums.clear();
}

void OffsetMap::Inserted(qsizetype position, qsizetype length)
{
    const Count come{length, Utf16Length(m_read(position, length))};
    if (IsAscii() && come.bytes != come.units)
        Adopt(CutBlocks(0, m_bytes, true));
    m_bytes += come.bytes;
    m_units += come.units;
    if (m_blocks.empty())
        return;
    const Place place = Find(&Count::bytes, position);
    const qsizetype grown = m_blocks[place.block].bytes + length;
    if (grown <= LargestBlock) {
        ChangeBlock(place.block, come);
        return;
    }
    // What cannot be kept for want of memory is counted again when it is needed.
    std::vector<Count> blocks = std::exchange(m_blocks, {});
    const std::vector<Count> pieces = CutBlocks(place.start.bytes, grown, false);
    const auto at = blocks.erase(blocks.begin() + qptrdiff(place.block));
    blocks.insert(at, pieces.begin(), pieces.end());
    Adopt(std::move(blocks));
}

void OffsetMap::Deleting(qsizetype position, qsizetype length)
{
    if (m_blocks.empty()) {
        m_units -= IsAscii() ? length : Utf16Length(m_read(position, length));
        m_bytes -= length;
        return;
    }
    const Place place = Find(&Count::bytes, position);
    qsizetype inBlock = position - place.start.bytes;
    bool emptied = false;
    for (size_t block = place.block; length > 0; ++block, inBlock = 0) {
        const Count all = m_blocks[block];
        Count gone{std::min(length, all.bytes - inBlock), all.units};
        if (gone.bytes < all.bytes)
            gone.units = Utf16Length(m_read(position, gone.bytes));
        else
            emptied = true;
        ChangeBlock(block, {-gone.bytes, -gone.units});
        m_bytes -= gone.bytes;
        m_units -= gone.units;
        position += gone.bytes;
        length -= gone.bytes;
    }
    if (IsAscii()) {
        Reset(m_bytes, m_units);
    } else if (emptied) {
        std::vector<Count> blocks = std::exchange(m_blocks, {});
        std::erase_if(blocks, [](const Count &block) { return block.bytes == 0; });
        Adopt(std::move(blocks));
    }
}

std::vector<OffsetMap::Count> OffsetMap::CutBlocks(qsizetype position, qsizetype length, bool ascii) const
{
    std::vector<Count> blocks;
    blocks.reserve(size_t(length / BlockSize) + 1);
    for (const qsizetype end = position + length; position < end;) {
        const qsizetype step = std::min(BlockSize, end - position);
        blocks.push_back({step, ascii ? step : Utf16Length(m_read(position, step))});
        position += step;
    }
    return blocks;
}

void OffsetMap::Adopt(std::vector<Count> blocks) const
{
    std::vector<Count> sums(blocks.size() + 1);
    for (size_t i = 1; i < sums.size(); ++i) {
        sums[i].bytes += blocks[i - 1].bytes;
        sums[i].units += blocks[i - 1].units;
        const size_t above = i + (i & (~i + 1));
        if (above < sums.size()) {
            sums[above].bytes += sums[i].bytes;
            sums[above].units += sums[i].units;
        }
    }
    m_blocks = std::move(blocks);
    m_sums = std::move(sums);
}

void OffsetMap::ChangeBlock(size_t block, Count by)
{
    m_blocks[block].bytes += by.bytes;
    m_blocks[block].units += by.units;
    for (size_t i = block + 1; i < m_sums.size(); i += i & (~i + 1)) {
        m_sums[i].bytes += by.bytes;
        m_sums[i].units += by.units;
    }
}

OffsetMap::Place OffsetMap::Find(qsizetype Count::*measure, qsizetype offset) const
{
    if (m_blocks.empty())
        Adopt(CutBlocks(0, m_bytes, false));
    Place place;
    for (size_t step = std::bit_floor(m_blocks.size()); step > 0; step /= 2) {
        const size_t next = place.block + step;
        // The last block begins at or before every offset of the text, its end too.
        if (next >= m_blocks.size() || place.start.*measure + m_sums[next].*measure > offset)
            continue;
        place = {next, {place.start.bytes + m_sums[next].bytes, place.start.units + m_sums[next].units}};
    }
    return place;
}

qsizetype OffsetMap::ToUnits(qsizetype byte) const
{
    byte = std::clamp<qsizetype>(byte, 0, m_bytes);
    if (IsAscii())
        return byte;
    if (byte == m_bytes)
        return m_units;
    const Count start = Find(&Count::bytes, byte).start;
    return start.units + Utf16Length(m_read(start.bytes, byte - start.bytes));
}

qsizetype OffsetMap::ToByte(qsizetype unit) const
{
    unit = std::clamp<qsizetype>(unit, 0, m_units);
    if (IsAscii())
        return unit;
    if (unit == m_units)
        return m_bytes;
    const Place place = Find(&Count::units, unit);
    const qsizetype start = place.start.bytes;
    // Up to three bytes of the block may belong to the character before it, hence the look beyond its end.
    const QByteArrayView bytes =
        m_read(start, std::min(m_blocks[place.block].bytes + LongestCharacter, m_bytes - start));
    qsizetype units = place.start.units;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (IsTrail(bytes[i]))
            continue;
        const qsizetype width = UnitsOfLead(bytes[i]);
        if (units + width > unit)
            return start + i;
        units += width;
    }
    return start + bytes.size();
}

void OffsetWalk::Look()
{
    m_ahead = m_map.m_read(m_byte, std::min(WalkSize, m_map.m_bytes - m_byte));
}

qsizetype OffsetWalk::ToByte(qsizetype unit)
{
    unit = std::clamp<qsizetype>(unit, 0, m_map.m_units);
    if (m_map.IsAscii())
        return unit;
    if (unit < m_unit) {
        m_byte = m_map.ToByte(unit);
        m_unit = m_map.ToUnits(m_byte);
        m_ahead = {};
    }
    while (m_unit < unit) {
        if (m_ahead.size() < EightBytes)
            Look();
        if (m_ahead.isEmpty())
            break;
        qsizetype bytes = std::min(AsciiAhead(m_ahead), unit - m_unit);
        qsizetype units = bytes;
        if (bytes == 0) {
            units = UnitsOfLead(m_ahead[0]);
            if (m_unit + units > unit)
                break;
            do
                ++bytes;
            while (bytes < m_ahead.size() && IsTrail(m_ahead[bytes]));
        }
        m_ahead = m_ahead.sliced(bytes);
        m_byte += bytes;
        m_unit += units;
    }
    return m_byte;
}

} // namespace zelvane
