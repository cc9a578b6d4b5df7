// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/outline.h"

#include <QAbstractItemModel>
#include <QIcon>
#include <QModelIndex>
#include <QVariant>
#include <vector>

namespace zelvane
{

/// An outline as the tree shows it. Captions and icons are given out as rows are drawn; nothing is made for
/// the others.
class OutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// The key of a node.
    static constexpr int KeyRole = Qt::UserRole;

    explicit OutlineModel(QObject *parent);

    /// @param sayNothingFound whether an outline without nodes shows a row that says so
    void Show(Outline outline, bool sayNothingFound);
    const Outline &Shown() const { return m_outline; }

    /// The place of a row's node in the outline, -1 for a row that is no node and for no row.
    qsizetype PlaceOf(const QModelIndex &index) const;
    QModelIndex IndexOf(qsizetype place) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QVariant MessageData(int role) const;
    QIcon IconOf(OutlineKind kind) const;

    Outline m_outline;
    bool m_showsMessage = false;
    mutable std::vector<QIcon> m_icons; ///< by kind, as far as they were asked for
};

} // namespace zelvane
