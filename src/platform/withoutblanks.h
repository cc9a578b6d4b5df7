// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

/// A text without the blanks at both ends; other white space stays.
inline QStringView WithoutBlanks(QStringView text)
{
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && text[start] == u' ')
        ++start;
    while (end > start && text[end - 1] == u' ')
        --end;
    return text.sliced(start, end - start);
}

} // namespace zelvane
