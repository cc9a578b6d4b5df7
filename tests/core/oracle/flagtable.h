// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/flagline.h"
#include "run/flagtable.h"

namespace zelvane::oracle
{

/// The table of flags read character by character; positions count from 1. The text is one of whole lines:
/// each has a tab and ends in CR LF.
inline std::vector<FlagRow> LoadFlagTable(const QString &text)
{
    std::vector<FlagRow> rows;
    const auto at = [&text](int i) { return i <= text.size() ? text[i - 1] : QChar(u'\0'); };
    for (int i = 1; i <= text.size(); ++i) {
        if (i != 1 && at(i) != u'\n')
            continue;
        int k = i + 1;
        if (k > text.size())
            break;
        FlagRow row;
        while (at(k) != u' ' && at(k) != u'\t')
            row.flag += at(k++);
        if (at(k) == u' ') {
            while (at(k) == u' ')
                k = k + 1;
            if (at(k) != u'\t') {
                while (at(k) != u'\t')
                    row.type += at(k++);
            }
        }
        k = k + 1;
        while (k <= text.size() && at(k) != u'\r')
            row.description += at(k++);
        rows.push_back(row);
    }
    return rows;
}

/// The line of flags, built anew from the top with a blank behind each piece, and trimmed.
inline QString FlagLine(const std::vector<FlagChoice> &choices)
{
    QString line;
    for (size_t i = 0; i < choices.size(); ++i) {
        if (!choices[i].checked)
            continue;
        line = line + choices[i].row.flag + u' ';
        if (choices[i].value != QString())
            line = line + choices[i].value + u' ';
    }
    while (line.startsWith(u' '))
        line = line.mid(1);
    while (line.endsWith(u' '))
        line = line.left(line.size() - 1);
    return line;
}

} // namespace zelvane::oracle
