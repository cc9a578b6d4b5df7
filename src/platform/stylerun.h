// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/systemcolour.h"

#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// The lexical classes of coloured text. The numbers are the style bytes of the text control.
enum class StyleClass : quint8 { Text, Comment, Opcode, Keyword, Macro, Literal, Tag };
inline constexpr int StyleClassCount = 7;

/// A stretch of text of one class; offsets are UTF-16 code units, counted from 0.
struct StyleRun {
    qint32 start = 0;
    qint32 length = 0;
    StyleClass style = StyleClass::Text;

    bool operator==(const StyleRun &) const = default;
};

/// Runs in the order they were found. Where two overlap, the later one holds.
using StyleRuns = std::vector<StyleRun>;

/// How one class looks: a colour as 0xBBGGRR (or a system colour with the top bit set), and bold or not.
/// `isDefault`: no colour is stored; where the default cannot be read on the background, its light twin is
/// shown.
struct StyleFormat {
    quint32 colour = SystemWindowText;
    bool bold = false;
    bool isDefault = false;

    bool operator==(const StyleFormat &) const = default;
};

} // namespace zelvane
