// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <random>

namespace zelvane::test
{

/// Random short texts made of given pieces; the same sequence in every run.
class RandomText
{
public:
    explicit RandomText(QStringList pieces, int longest = 24, unsigned seed = 20011)
        : m_pieces(std::move(pieces)), m_longest(longest), m_random(seed)
    {
    }

    QString Next()
    {
        QString text;
        for (int n = Number(0, m_longest); n > 0; --n)
            text += m_pieces[Number(0, int(m_pieces.size()) - 1)];
        return text;
    }

    /// A whole number from `low` to `high`, both included.
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

private:
    QStringList m_pieces;
    int m_longest;
    std::mt19937 m_random;
};

} // namespace zelvane::test
