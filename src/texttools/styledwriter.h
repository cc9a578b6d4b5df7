// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/styledtext.h"

#include <algorithm>
#include <array>
#include <functional>
#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>
#include <QtGlobal>
#include <utility>

namespace zelvane
{

/// Asked now and then while a file is written; false ends it. Both figures are characters.
using WriteProgress = std::function<bool(qint64 done, qint64 total)>;

/// The most characters between two questions, and that one call of `put` gets.
inline constexpr qsizetype WrittenPiece = 8192;

/// Bytes that grow, written without a look at their end for each of them.
class GrowingBytes
{
public:
    /// @param start what they begin with; @param expected how many more there may be
    GrowingBytes(QByteArray start, qsizetype expected) : m_bytes(std::move(start)), m_size(m_bytes.size())
    {
        m_bytes.resize(m_size + expected);
    }

    /// A place for so many bytes more.
    char *Room(qsizetype most)
    {
        if (m_bytes.size() - m_size < most)
            m_bytes.resize(std::max(m_size + most, m_bytes.size() + m_bytes.size() / 2));
        return m_bytes.data() + m_size;
    }
    /// Told how far the last place was written.
    void WrittenTo(const char *end) { m_size = end - m_bytes.constData(); }
    QByteArray Take()
    {
        m_bytes.truncate(m_size);
        return std::move(m_bytes);
    }

private:
    QByteArray m_bytes;
    qsizetype m_size;
};

/// The bytes between a stretch of one class and the next one, for each pair of classes.
class Turns
{
public:
    /// @param turn given two formats, answers the bytes that turn the first, null at the start, into the
    /// second; at most `Most`
    template <typename Turn> Turns(const std::array<StyleFormat, StyleClassCount> &formats, Turn turn)
    {
        for (size_t to = 0; to < formats.size(); ++to) {
            for (size_t from = 0; from < formats.size(); ++from)
                m_turns[from][to] = Bytes(turn(&formats[from], formats[to]));
            m_turns[AtStart][to] = Bytes(turn(nullptr, formats[to]));
        }
    }

    /// Puts the bytes before a stretch of this class at a place with room for `Most`, and answers the place
    /// behind them.
    char *Put(char *to, StyleClass style)
    {
        const Bytes &turn = m_turns[m_last][size_t(style)];
        m_last = size_t(style);
        std::copy(turn.bytes.begin(), turn.bytes.end(), to); // always so many: that is quickest
        return to + turn.size;
    }

    static constexpr qsizetype Most = 32;

private:
    static constexpr size_t AtStart = StyleClassCount;

    struct Bytes {
        std::array<char, Most> bytes = {};
        qsizetype size = 0;

        Bytes() = default;
        explicit Bytes(const QByteArray &from) : size(from.size())
        {
            Q_ASSERT(size <= Most);
            std::copy(from.begin(), from.end(), bytes.begin());
        }
    };

    std::array<std::array<Bytes, StyleClassCount>, StyleClassCount + 1> m_turns;
    size_t m_last = AtStart;
};

/// Writes a coloured text as bytes: what the writers of files share.
/// @param put given a place with room for what it writes and a stretch of one class, answers the place behind
/// it; a pair of units comes whole
/// @param most the most bytes that `put` makes of one UTF-16 unit
/// @return false when `goOn` ended it
template <qsizetype most, typename Put>
bool WriteStretches(const StyledText &text, GrowingBytes &to, const WriteProgress &goOn, Turns turns, Put put)
{
    const QStringView all = text.text;
    qsizetype asked = 0;
    for (const StyleRun &run : CoveringRuns(text.runs, all.size())) {
        to.WrittenTo(turns.Put(to.Room(Turns::Most), run.style));
        const qsizetype end = run.start + run.length;
        for (qsizetype at = run.start; at < end;) {
            qsizetype next = std::min(at + WrittenPiece, end);
            if (next < end && all[next - 1].isHighSurrogate() && all[next].isLowSurrogate())
                ++next;
            to.WrittenTo(put(to.Room(most * (next - at)), all.sliced(at, next - at)));
            at = next;
            if (at - asked >= WrittenPiece) {
                asked = at;
                if (goOn && !goOn(at, all.size()))
                    return false;
            }
        }
    }
    return true;
}

/// A text as `put` writes it.
template <qsizetype most, typename Put> QByteArray Written(QStringView text, Put put)
{
    QByteArray bytes(text.size() * most, Qt::Uninitialized);
    bytes.truncate(put(bytes.data(), text) - bytes.data());
    return bytes;
}

/// Puts bytes as they are, and answers the place behind them.
inline char *PutBytes(char *to, QByteArrayView bytes)
{
    return std::copy(bytes.begin(), bytes.end(), to);
}

/// Puts a number in decimal digits, and answers the place behind them.
inline char *PutNumber(char *to, quint32 number)
{
    std::array<char, 10> digits;
    size_t count = 0;
    do {
        digits[count++] = char('0' + number % 10);
        number /= 10;
    } while (number > 0);
    while (count > 0)
        *to++ = digits[--count];
    return to;
}

} // namespace zelvane
