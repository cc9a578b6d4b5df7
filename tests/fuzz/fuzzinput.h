// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <QByteArray>
#include <QString>

namespace zelvane::fuzz
{

/// The bytes of one run, read from the front. Behind the end there are zeros.
class Input
{
public:
    Input(const uint8_t *data, size_t size) : m_at(data), m_end(data + size) {}

    quint8 Byte() { return m_at == m_end ? 0 : *m_at++; }
    bool Bit() { return Byte() & 1; }
    /// A whole number from `low` to `high`, both included.
    int Number(int low, int high) { return low + (Byte() | Byte() << 8) % (high - low + 1); }
    /// A text up to the next zero byte. A byte of ASCII is that character; the upper half and most control
    /// characters stand for words, marks and characters that mean something to Csound, to the editor or to
    /// Unicode; 1 and two bytes are any UTF-16 unit. Of a long text only the beginning.
    QString Text();
    /// All that is left, as it is.
    QByteArray Rest() { return QByteArray(reinterpret_cast<const char *>(m_at), m_end - m_at); }

private:
    const uint8_t *m_at;
    const uint8_t *m_end;
};

/// The text with every half of a character gone: the text control holds none.
QString WithoutHalves(const QString &text);

/// An offset in a text of `size` characters, its end included, made from any number.
inline qsizetype Place(int number, qsizetype size)
{
    return number % (size + 1);
}

} // namespace zelvane::fuzz
