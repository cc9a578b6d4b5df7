// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

namespace zelvane
{

/// The nodes of the code outline that have a context menu of their own, and all others.
enum class OutlineNode { Instrument, Include, Other };

/// The kind of a node by its key, which begins with three letters for the kind.
inline OutlineNode NodeOfKey(QStringView key)
{
    if (key.startsWith(u"ins"))
        return OutlineNode::Instrument;
    return key.startsWith(u"inc") ? OutlineNode::Include : OutlineNode::Other;
}

} // namespace zelvane
