// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>

namespace zelvane
{

inline bool IsBlankOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}
inline bool IsLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r';
}
/// What stands between words.
inline bool IsSeparator(QChar c)
{
    return IsBlankOrTab(c) || IsLineEnd(c);
}

} // namespace zelvane
