// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/offsetmap.h"

#include <algorithm>
#include <bit>
#include <QtEndian>

namespace zelvane
{

namespace
{

constexpr qsizetype BlockSize = 4096;
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
    m_blocks.assign(1, 0);
}

void OffsetMap::Inserted(qsizetype position, qsizetype length)
{
    m_bytes += length;
    m_units += Utf16Length(m_read(position, length));
    ForgetFrom(position);
}

void OffsetMap::Deleting(qsizetype position, qsizetype length)
{
    m_bytes -= length;
    m_units -= Utf16Length(m_read(position, length));
    ForgetFrom(position);
}

void OffsetMap::ForgetFrom(qsizetype byte)
{
    m_blocks.resize(std::min<size_t>(m_blocks.size(), size_t(byte / BlockSize) + 1));
}

bool OffsetMap::LearnBlock() const
{
    const qsizetype start = qsizetype(m_blocks.size() - 1) * BlockSize;
    if (start + BlockSize > m_bytes)
        return false;
    m_blocks.push_back(m_blocks.back() + Utf16Length(m_read(start, BlockSize)));
    return true;
}

qsizetype OffsetMap::ToUnits(qsizetype byte) const
{
    byte = std::clamp<qsizetype>(byte, 0, m_bytes);
    if (IsAscii())
        return byte;
    if (byte == m_bytes)
        return m_units;
    const size_t block = size_t(byte / BlockSize);
    while (m_blocks.size() <= block && LearnBlock()) {
    }
    const qsizetype start = qsizetype(block) * BlockSize;
    return m_blocks[block] + Utf16Length(m_read(start, byte - start));
}

qsizetype OffsetMap::ToByte(qsizetype unit) const
{
    unit = std::clamp<qsizetype>(unit, 0, m_units);
    if (IsAscii())
        return unit;
    if (unit == m_units)
        return m_bytes;
    while (m_blocks.back() <= unit && LearnBlock()) {
    }
    const auto after = std::upper_bound(m_blocks.begin(), m_blocks.end(), unit);
    const qsizetype block = (after - m_blocks.begin()) - 1;
    const qsizetype start = block * BlockSize;
    // Up to three bytes of the block may belong to the character before it, hence the look beyond its end.
    const QByteArrayView bytes = m_read(start, std::min(BlockSize + 4, m_bytes - start));
    qsizetype units = m_blocks[size_t(block)];
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
