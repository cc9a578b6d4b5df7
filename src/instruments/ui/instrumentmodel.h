// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QVariant>
#include <vector>

namespace zelvane
{

/// The tree of instruments and p-fields: a root node for each instrument, and below it the p-fields of the
/// numbers 1 to Count as far as they are there.
class InstrumentModel : public QAbstractItemModel
{
public:
    /// What a node is; both null for none.
    struct Node {
        InstrClass *instrument = nullptr;
        pClass *field = nullptr; ///< null on the node of the instrument itself
    };

    InstrumentModel(Instruments &instruments, QObject *parent);

    /// Shows the instruments as they are now.
    void Build();
    Node At(const QModelIndex &index) const;
    /// An invalid index for what has no node. @param field null for the instrument's own node
    QModelIndex IndexOf(const InstrClass *instrument, const pClass *field = nullptr) const;
    /// The caption of a node may have changed.
    void Touch(const QModelIndex &index);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    struct Root {
        InstrClass *instrument;
        std::vector<pClass *> fields;
    };

    Instruments &m_instruments;
    std::vector<Root> m_roots;
};

} // namespace zelvane
