// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSortFilterProxyModel>

class QFileDialog;

namespace zelvane
{

/// Shows of a file dialog's files only those that may be run, while one of its filters is chosen: where
/// programs have no suffix of their own, no pattern of names can tell them. Folders are always shown.
class ProgramFilter : public QSortFilterProxyModel
{
public:
    /// Belongs to the dialog. @param nameFilter the row of the dialog's filters that asks for programs
    ProgramFilter(QFileDialog &dialog, const QString &nameFilter);

    /// Leaves the order to the file model, which puts folders first.
    void sort(int column, Qt::SortOrder order) override;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    bool m_programsOnly = false;
};

} // namespace zelvane
