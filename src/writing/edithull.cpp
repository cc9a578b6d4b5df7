// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/edithull.h"

#include <algorithm>

namespace zelvane
{

void EditHull::Begin(qsizetype length)
{
    m_length = length;
    m_hull.reset();
}

void EditHull::Add(const TextEdit &edit)
{
    const qsizetype lengthBefore = m_length;
    m_length += edit.added - edit.removed;
    if (!m_hull) {
        m_hull = edit;
        return;
    }
    // What stands behind both is as it was before the first of them.
    const qsizetype behind =
        std::min(lengthBefore - (m_hull->offset + m_hull->added), m_length - (edit.offset + edit.added));
    const qsizetype firstLength = lengthBefore - m_hull->added + m_hull->removed;
    const qsizetype start = std::min(m_hull->offset, edit.offset);
    *m_hull = {start, firstLength - behind - start, m_length - behind - start};
}

} // namespace zelvane
