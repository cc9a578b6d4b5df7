// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <optional>
#include <QtGlobal>

namespace zelvane
{

/// Edits told one after the other, as one that covers them all.
class EditHull
{
public:
    /// The text as it is; no edits.
    void Begin(qsizetype length);
    void Add(const TextEdit &edit);
    bool IsEmpty() const { return !m_hull; }
    TextEdit Hull() const { return m_hull.value_or(TextEdit()); }

private:
    qsizetype m_length = 0; ///< of the text after the edits
    std::optional<TextEdit> m_hull;
};

} // namespace zelvane
