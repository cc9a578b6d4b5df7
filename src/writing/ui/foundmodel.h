// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/filesearch.h"

#include <cstddef>
#include <QAbstractTableModel>
#include <QModelIndex>
#include <QString>
#include <Qt>
#include <QVariant>
#include <vector>

namespace zelvane
{

/// The lines that a search in files has found, in the order in which they came.
class FoundModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { File, Line, Text, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Empties the list. @param folder what the names of files are told from
    void Begin(const QString &folder);
    void Append(std::vector<FoundLine> lines);
    const FoundLine &At(const QModelIndex &row) const { return m_lines[std::size_t(row.row())]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString NameOf(const QString &file) const;

    QString m_folder; ///< with a separator at its end
    std::vector<FoundLine> m_lines;
};

} // namespace zelvane
