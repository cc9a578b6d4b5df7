// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/foundmodel.h"

#include <iterator>
#include <QDir>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void FoundModel::Begin(const QString &folder)
{
    beginResetModel();
    m_folder = folder.endsWith(u'/') ? folder : folder + u'/';
    m_lines.clear();
    endResetModel();
}

void FoundModel::Append(std::vector<FoundLine> lines)
{
    if (lines.empty())
        return;
    const int first = int(m_lines.size());
    beginInsertRows({}, first, first + int(lines.size()) - 1);
    m_lines.insert(m_lines.end(), std::make_move_iterator(lines.begin()),
                   std::make_move_iterator(lines.end()));
    endInsertRows();
}

int FoundModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_lines.size());
}

int FoundModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString FoundModel::NameOf(const QString &file) const
{
    return QDir::toNativeSeparators(file.startsWith(m_folder) ? file.sliced(m_folder.size()) : file);
}

QVariant FoundModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const FoundLine &found = At(index);
    if (role == Qt::TextAlignmentRole && index.column() == Line)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && index.column() == File)
        return QDir::toNativeSeparators(found.file);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case File:
        return NameOf(found.file);
    case Line:
        return qlonglong(found.line);
    case Text:
        return found.text.simplified();
    default:
        return {};
    }
}

QVariant FoundModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case File:
        return u"File"_s;
    case Line:
        return u"Line"_s;
    case Text:
        return u"Text"_s;
    default:
        return {};
    }
}

} // namespace zelvane
