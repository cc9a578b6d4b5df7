// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/macronames.h"
#include "language/outline.h"
#include "language/outlinenode.h"
#include "platform/textbuffer.h"

#include <QString>
#include <utility>
#include <vector>

namespace zelvane
{

/// A macro definition; offsets from 0.
struct FoundMacro {
    qsizetype define;
    TextSpan caption; ///< begins with the bare name
    qsizetype nameEnd;
};

/// Puts nodes into an outline.
class OutlineBuilder
{
public:
    explicit OutlineBuilder(const QString &text) { m_outline.m_text = text; }

    qint32 AddRoot(OutlineKind kind) { return Add({.kind = kind, .isRoot = true}); }
    /// @return the node's place
    qint32 Add(const OutlineNode &node)
    {
        m_outline.m_nodes.push_back(node);
        return qint32(m_outline.m_nodes.size()) - 1;
    }
    qint32 Count() const { return qint32(m_outline.m_nodes.size()); }
    void SetInstruments(std::vector<TextSpan> spans) { m_outline.m_instruments = std::move(spans); }
    void AddTable(qint32 parent, qsizetype tag, const TextSpan &number, const TextSpan &size,
                  const TextSpan &generator)
    {
        m_outline.m_tables.push_back({number, size, generator});
        Add({.kind = OutlineKind::FunctionTable,
             .parent = parent,
             .number = qint32(m_outline.m_tables.size()),
             .tag = qint32(tag)});
    }

    using Call = Outline::Call;
    /// Adds a root and its macros.
    void AddMacros(const std::vector<FoundMacro> &macros, const std::vector<std::vector<Call>> &calls,
                   const MacroNames &names);

    /// Finds out the children of each node. @return the whole outline
    Outline Done();

private:
    Outline m_outline;
};

} // namespace zelvane
