// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/outlinenode.h"
#include "platform/textbuffer.h"
#include "shell/document.h"

#include <QString>
#include <QStringView>
#include <span>
#include <utility>
#include <vector>

namespace zelvane
{

/// The structure of a document: its nodes in the order of a walk through the tree, each known by its place,
/// from 0. Keys and captions are made when they are asked for, as most are never shown.
class Outline
{
public:
    Outline() = default;

    qsizetype Count() const { return qsizetype(m_nodes.size()); }
    const OutlineNode &At(qsizetype place) const { return m_nodes[std::size_t(place)]; }

    /// "rootins" for a root, "ins3" for a child, "ins3lbl1" for a label or a call below one.
    QString Key(qsizetype place) const;
    QString Caption(qsizetype place) const;
    /// The place of the node with this key, -1 if there is none.
    qsizetype Find(QStringView key) const;
    /// The places of a node's children in order; of the roots for -1.
    std::span<const qint32> Children(qsizetype place) const;
    /// Which of its parent's children the node is, from 0.
    qsizetype Row(qsizetype place) const { return m_rows[std::size_t(place)]; }

    /// From the keyword that opens an instrument to behind the one that closes it; `number` counts from 1.
    TextSpan Instrument(qsizetype number) const { return m_instruments[std::size_t(number - 1)]; }

private:
    friend class OutlineBuilder;

    /// The fields of a table statement that its caption shows.
    struct TableFields {
        TextSpan number, size, generator;
    };

    QStringView Part(const TextSpan &span) const;

    QString m_text;
    std::vector<OutlineNode> m_nodes;
    std::vector<TextSpan> m_instruments; ///< by number less 1
    std::vector<TableFields> m_tables;   ///< by number less 1
    std::vector<qint32> m_rows;
    std::vector<qint32> m_children;    ///< the places of all nodes, sorted by their parents
    std::vector<qint32> m_childrenEnd; ///< by the parent's place plus 1, where its children end there
};

/// Scans a whole document; the outline of the kind Other is empty. Time and memory are linear in the text and
/// in the nodes that are found.
Outline ScanOutline(const QString &text, FileKind kind);

} // namespace zelvane
