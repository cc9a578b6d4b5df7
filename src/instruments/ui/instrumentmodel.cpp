// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/instrumentmodel.h"

#include "instruments/instrumentproperties.h"

#include <algorithm>
#include <cstddef>
#include <QString>

namespace zelvane
{

namespace
{

// The internal number of a p-field's index tells the row of its instrument; that of an instrument is 0. The
// hash of an index is little more than the sum of its numbers: small ones would make tens of thousands of
// expanded rows share a few hashes, and the view slow.
constexpr quintptr Spread = 2654435761;

quintptr InternalId(int instrumentRow)
{
    return (quintptr(instrumentRow) + 1) * Spread;
}

int InstrumentRow(quintptr id)
{
    return int(id / Spread - 1);
}

} // namespace

InstrumentModel::InstrumentModel(Instruments &instruments, QObject *parent)
    : QAbstractItemModel(parent), m_instruments(instruments)
{
}

void InstrumentModel::Build()
{
    beginResetModel();
    m_roots.clear();
    for (InstrClass &instrument : m_instruments) {
        std::vector<pClass *> fields = instrument.ByNumber();
        fields.erase(std::remove(fields.begin(), fields.end(), nullptr), fields.end());
        m_roots.push_back({&instrument, std::move(fields)});
    }
    endResetModel();
}

InstrumentModel::Node InstrumentModel::At(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    if (index.internalId() == 0)
        return {m_roots[std::size_t(index.row())].instrument, nullptr};
    const Root &root = m_roots[std::size_t(InstrumentRow(index.internalId()))];
    return {root.instrument, root.fields[std::size_t(index.row())]};
}

QModelIndex InstrumentModel::IndexOf(const InstrClass *instrument, const pClass *field) const
{
    const auto root = std::find_if(m_roots.begin(), m_roots.end(), [instrument](const Root &candidate) {
        return candidate.instrument == instrument;
    });
    if (root == m_roots.end())
        return {};
    const QModelIndex node = index(int(root - m_roots.begin()), 0);
    if (!field)
        return node;
    const auto found = std::find(root->fields.begin(), root->fields.end(), field);
    return found == root->fields.end() ? QModelIndex() : index(int(found - root->fields.begin()), 0, node);
}

void InstrumentModel::Touch(const QModelIndex &index)
{
    Q_EMIT dataChanged(index, index);
}

QModelIndex InstrumentModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? InternalId(parent.row()) : quintptr(0));
}

QModelIndex InstrumentModel::parent(const QModelIndex &child) const
{
    if (!child.isValid() || child.internalId() == 0)
        return {};
    return createIndex(InstrumentRow(child.internalId()), 0, quintptr(0));
}

int InstrumentModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_roots.size());
    return parent.internalId() == 0 ? int(m_roots[std::size_t(parent.row())].fields.size()) : 0;
}

int InstrumentModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant InstrumentModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    const Node node = At(index);
    if (node.field)
        return NodeCaption(*node.field);
    return node.instrument ? NodeCaption(*node.instrument) : QString();
}

} // namespace zelvane
