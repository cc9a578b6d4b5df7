// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The parameter mapping as plain steps over a string. Slow and obvious; nothing but tests uses it.
namespace zelvane::test::oracle
{

/// Replaces what stands between the first tag at or behind `start`, from 1, and the first closing one behind
/// it. @return false when one of them is missing
inline bool ReplaceTagText(QString &text, const QString &tag, const QString &with, int start)
{
    const QString opening = QLatin1Char('<') + tag + QLatin1Char('>');
    const QString closing = QLatin1String("</") + tag + QLatin1Char('>');
    for (int open = start; open + opening.size() - 1 <= text.size(); open += 1) {
        if (text.mid(open - 1, opening.size()) != opening)
            continue;
        const int inside = open + int(opening.size());
        for (int close = inside; close + closing.size() - 1 <= text.size(); close += 1) {
            if (text.mid(close - 1, closing.size()) != closing)
                continue;
            text = text.left(inside - 1) + with + text.mid(close - 1);
            return true;
        }
        return false;
    }
    return false;
}

/// @param pos of the line behind the instrument's, from 0; not -1
inline QString MapParameters(QString text, const QString &code, int pos)
{
    const QString tag = QStringLiteral("ZelvaneParameterMapping");
    if (ReplaceTagText(text, tag, code, pos))
        return text;
    text.insert(pos, QStringLiteral(";<ZelvaneParameterMapping>\n;</ZelvaneParameterMapping>\n"));
    ReplaceTagText(text, tag, code, pos);
    return text;
}

} // namespace zelvane::test::oracle
