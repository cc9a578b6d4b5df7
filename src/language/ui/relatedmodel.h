// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/relatedfiles.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>
#include <QModelIndex>
#include <QString>
#include <QVariant>

namespace zelvane
{

class SettingsStore;

/// The related files as a tree shows them: nothing is made for a row until it comes into sight.
class RelatedModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// What a row answers for the path of its file, empty for one that was not found.
    static constexpr int PathRole = Qt::UserRole;

    RelatedModel(const SettingsStore &settings, QObject *parent);

    void FillRelatedTree(RelationsClass relations);
    const RelationsClass &Shown() const { return m_relations; }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    const std::vector<FileClass *> &FilesBelow(const QModelIndex &parent) const;
    QIcon IconOf(const FileClass &file) const;

    const SettingsStore &m_settings;
    RelationsClass m_relations;
    mutable QHash<QString, QIcon> m_icons; ///< by extension, as the settings were when the tree was filled
};

} // namespace zelvane
