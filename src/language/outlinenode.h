// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <QLatin1String>
#include <QtGlobal>

namespace zelvane
{

/// The elements of the code outline. All but labels and macro calls have a root of their own.
enum class OutlineKind : quint8 {
    Instrument,
    Macro,
    Include,
    Section,
    NamedSection,
    FunctionTable,
    Tag,
    Label,
    MacroCall
};

/// The name of a kind's icon.
QLatin1String ImageOfKind(OutlineKind kind);

/// A node of the outline.
struct OutlineNode {
    OutlineKind kind;
    bool isRoot = false;
    bool isCommented = false; ///< of a tag: it stands in a comment
    qsizetype parent = -1;    ///< its place in the outline, -1 for a root
    qint32 number = 0;        ///< the number in its key
    /// Of an instrument its number, of the others the offset of what they show, from 0. Kept: the first
    /// section of a unified document has the place of its opening tag counted from 1.
    qint32 tag = 0;
    TextSpan caption = {}; ///< the text that its caption is made of, where it is made of one stretch
};

} // namespace zelvane
