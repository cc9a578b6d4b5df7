// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/normalizespaces.h"

namespace zelvane
{

QString NormalizeSpaces(QStringView text)
{
    QString result;
    result.reserve(text.size());
    bool blankBefore = false;
    for (const QChar c : text) {
        if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r') {
            blankBefore = !result.isEmpty();
            continue;
        }
        if (blankBefore)
            result += u' ';
        blankBefore = false;
        result += c;
    }
    return result;
}

} // namespace zelvane
