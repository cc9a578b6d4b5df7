// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/outlinenode.h"
#include "platform/textbuffer.h"
#include "shell/document.h"

#include <QString>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// The structure of a document: its nodes, each known by its place, from 0. Keys and captions are made when
/// they are asked for, as most are never shown, and the calls of macros of one name are held once: each such
/// macro lists all that stand behind it.
class Outline
{
public:
    Outline() = default;

    /// The number of nodes. The calls of macros have the last places.
    qsizetype Count() const { return NodeCount() + (m_macros.empty() ? 0 : m_macros.back().placesEnd); }
    OutlineNode At(qsizetype place) const;

    /// "rootins" for a root, "ins3" for a child, "ins3lbl1" for a label or a call below one.
    QString Key(qsizetype place) const;
    QString Caption(qsizetype place) const;
    /// A caption as people read it: one line of no more than 300 characters, the last of them "…" where it is
    /// longer. The caption itself may be as long as the text.
    QString ShownCaption(qsizetype place) const;
    /// The place of the node with this key, -1 if there is none.
    qsizetype Find(QStringView key) const;

    // The children of a node, or the roots for the place -1, by their row, from 0.
    qsizetype ChildCount(qsizetype place) const;
    qsizetype Child(qsizetype place, qsizetype row) const;
    /// Which of its parent's children the node is.
    qsizetype Row(qsizetype place) const;

    /// From the keyword that opens an instrument to behind the one that closes it; `number` counts from 1.
    TextSpan Instrument(qsizetype number) const { return m_instruments[std::size_t(number - 1)]; }

private:
    friend class OutlineBuilder;

    /// The fields of a table statement that its caption shows.
    struct TableFields {
        TextSpan number, size, generator;
    };
    struct Call {
        qint32 tag;
        TextSpan caption;
    };
    /// A macro's own part of the calls of its name.
    struct Macro {
        qsizetype firstCall, callsEnd; ///< in m_calls
        qsizetype placesEnd;           ///< where the places of its calls end, counted behind the nodes

        qsizetype CallCount() const { return callsEnd - firstCall; }
    };

    qsizetype NodeCount() const { return qsizetype(m_nodes.size()); }
    qsizetype ChildOrNone(qsizetype place, qsizetype row) const;
    /// The macro that the call at a place belongs to, by number less 1.
    std::size_t MacroOfCall(qsizetype place) const;
    /// The macro at a place; null where there is another node.
    const Macro *MacroAt(qsizetype place) const;
    QStringView Part(const TextSpan &span) const;

    QString m_text;
    std::vector<OutlineNode> m_nodes;    ///< all but the calls, in the order of a walk through the tree
    std::vector<TextSpan> m_instruments; ///< by number less 1
    std::vector<TableFields> m_tables;   ///< by number less 1
    std::vector<Macro> m_macros;         ///< by number less 1
    qsizetype m_firstMacro = 0;          ///< the place of the first; the others follow
    std::vector<Call> m_calls;           ///< by name, then in the order of the text
    std::vector<qint32> m_rows;
    std::vector<qint32> m_children;    ///< the places of all nodes, sorted by their parents
    std::vector<qint32> m_childrenEnd; ///< by the parent's place plus 1, where its children end there
};

/// Scans a whole document; the outline of the kind Other is empty. Time and memory are linear in the text.
Outline ScanOutline(const QString &text, FileKind kind);

} // namespace zelvane
