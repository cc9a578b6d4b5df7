// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/programfilter.h"

#include <QFileDialog>
#include <QFileSystemModel>

namespace zelvane
{

ProgramFilter::ProgramFilter(QFileDialog &dialog, const QString &nameFilter)
    : QSortFilterProxyModel(&dialog), m_programsOnly(dialog.selectedNameFilter() == nameFilter)
{
    connect(&dialog, &QFileDialog::filterSelected, this, [this, nameFilter](const QString &selected) {
        m_programsOnly = selected == nameFilter;
        invalidateRowsFilter();
    });
    dialog.setProxyModel(this); // the desktop's own dialogs take no such model, and show every file
}

void ProgramFilter::sort(int column, Qt::SortOrder order)
{
    sourceModel()->sort(column, order);
}

bool ProgramFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    const auto *files = qobject_cast<const QFileSystemModel *>(sourceModel());
    if (!m_programsOnly || !files)
        return true;
    const QFileInfo file = files->fileInfo(files->index(row, 0, parent));
    return file.isDir() || file.isExecutable();
}

} // namespace zelvane
