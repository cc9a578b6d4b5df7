// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <QString>
#include <QStringView>

namespace zelvane
{

/// A text of known greatest length, written from its start without a check at each character: ten times as
/// fast as appending. The caller keeps the bound.
class TextWriter
{
public:
    explicit TextWriter(qsizetype most)
        : m_text(most, Qt::Uninitialized), m_begin(m_text.data()), m_to(m_begin)
    {
    }

    void Put(QChar c) { *m_to++ = c; }
    void Put(QStringView piece) { m_to = std::copy(piece.begin(), piece.end(), m_to); }
    void Put(qsizetype count, QChar c) { m_to = std::fill_n(m_to, count, c); }
    /// Takes the last character back; there has to be one.
    void Drop() { --m_to; }
    bool EndsWith(QChar c) const { return m_to != m_begin && m_to[-1] == c; }
    /// The text as far as it was written; the writer is done with.
    QString Take()
    {
        m_text.truncate(m_to - m_begin);
        return std::move(m_text);
    }

private:
    QString m_text;
    QChar *m_begin;
    QChar *m_to;
};

} // namespace zelvane
