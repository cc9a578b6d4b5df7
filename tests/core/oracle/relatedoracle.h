// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/normalizespaces.h"

#include <QSet>
#include <QString>
#include <QStringList>

/// What a text names, as the plain walk. Slow and obvious; nothing but tests uses it.
namespace zelvane::test::oracle
{

/// @param files the names that lead to a file
inline QStringList ExtractFileReferences(const QString &text, const QSet<QString> &files)
{
    const auto at = [&text](int index) { return text.mid(index, 1); };
    const auto isLineEnd = [](const QString &c) {
        return c == QStringLiteral("\r") || c == QStringLiteral("\n");
    };
    QStringList list;
    int index = 0;
    while (index < text.size()) {
        const QString c = at(index);
        if (c == QStringLiteral("#") && text.mid(index + 1, 7) == QStringLiteral("include")) {
            index += 8;
            while (at(index) == QStringLiteral(" ") || at(index) == QStringLiteral("\t"))
                index += 1;
            QString rest;
            while (index < text.size() && !isLineEnd(at(index))) {
                rest += at(index);
                index += 1;
            }
            rest = NormalizeSpaces(rest);
            if (rest.size() > 2) {
                rest.remove(0, 1);
                rest.chop(1);
                list.append(rest);
            }
        } else if (c == QStringLiteral("\"")) {
            QString quoted;
            int end = index + 1;
            while (end < text.size() && at(end) != QStringLiteral("\"")) {
                quoted += at(end);
                end += 1;
            }
            if (end >= text.size())
                return list;
            if (files.contains(quoted))
                list.append(quoted);
            index = end + 1;
        } else {
            index += 1;
        }
    }
    return list;
}

} // namespace zelvane::test::oracle
