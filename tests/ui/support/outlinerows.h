// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemModel>
#include <QByteArray>
#include <QModelIndex>
#include <QString>
#include <QTreeView>

namespace zelvane::test
{

/// An orchestra with one node of each kind.
inline const QByteArray OutlinedText = "instr 1\nloop: a1 oscil 1, 440, 1\nendin\n"
                                       "#define TONE #440#\nprint $TONE\n"
                                       "#include \"more.orc\"\n";

/// The row of the outline's node with this key; no row if there is none.
inline QModelIndex RowOfKey(const QTreeView &tree, const QString &key, const QModelIndex &parent = {})
{
    for (int i = 0; i < tree.model()->rowCount(parent); ++i) {
        const QModelIndex row = tree.model()->index(i, 0, parent);
        if (row.data(Qt::UserRole).toString() == key)
            return row;
        const QModelIndex below = RowOfKey(tree, key, row);
        if (below.isValid())
            return below;
    }
    return {};
}

} // namespace zelvane::test
