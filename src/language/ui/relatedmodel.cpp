// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/relatedmodel.h"

#include "shell/documentkind.h"
#include "shell/splitpath.h"
#include "shell/ui/icons.h"
#include "shell/ui/plaintooltip.h"

#include <QGuiApplication>
#include <QPalette>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype LongestShown = 300; ///< characters of a name, which may be as long as a line of the text

const FileClass *FileOf(const QModelIndex &index)
{
    return static_cast<const FileClass *>(index.constInternalPointer());
}

/// A name as a row shows it: a quoted text that names a file may span lines.
QString OneLine(QString name)
{
    name.truncate(LongestShown);
    return name.replace(u'\n', u' ');
}

} // namespace

RelatedModel::RelatedModel(const SettingsStore &settings, QObject *parent)
    : QAbstractItemModel(parent), m_settings(settings)
{
}

void RelatedModel::FillRelatedTree(RelationsClass relations)
{
    beginResetModel();
    m_relations = std::move(relations);
    m_icons.clear();
    endResetModel();
}

const std::vector<FileClass *> &RelatedModel::FilesBelow(const QModelIndex &parent) const
{
    return parent.isValid() ? FileOf(parent)->relatedFiles : m_relations.RelatedFiles();
}

QModelIndex RelatedModel::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, 0, FilesBelow(parent)[std::size_t(row)])
                                         : QModelIndex();
}

QModelIndex RelatedModel::parent(const QModelIndex &index) const
{
    const FileClass *above = index.isValid() ? FileOf(index)->parent : nullptr;
    return above ? createIndex(above->row, 0, above) : QModelIndex();
}

int RelatedModel::rowCount(const QModelIndex &parent) const
{
    return int(FilesBelow(parent).size());
}

int RelatedModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant RelatedModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const FileClass &file = *FileOf(index);
    switch (role) {
    case Qt::DisplayRole:
        return OneLine(file.displayName);
    case Qt::ToolTipRole:
        return PlainToolTip(OneLine(file.exists ? file.filename : file.displayName));
    case Qt::DecorationRole:
        return IconOf(file);
    case Qt::ForegroundRole:
        if (!file.exists)
            return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
        break;
    case PathRole:
        return file.filename;
    default:
        break;
    }
    return {};
}

QIcon RelatedModel::IconOf(const FileClass &file) const
{
    const QString extension = file.exists ? BareExtension(file.filename) : u"/"_s;
    const auto known = m_icons.constFind(extension);
    if (known != m_icons.constEnd())
        return *known;
    const QString type = KindWord(ClassifyFile(file.filename, m_settings));
    const QString image = type.isEmpty() ? u"new"_s : type;
    return *m_icons.insert(extension, Icons::Load(file.exists ? image : u"notfound"_s));
}

} // namespace zelvane
