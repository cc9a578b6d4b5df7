// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/outlinemodel.h"

#include "shell/ui/icons.h"
#include "shell/ui/plaintooltip.h"

#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr quintptr MessageId = ~quintptr(0);

QBrush GreyText()
{
    return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
}

} // namespace

OutlineModel::OutlineModel(QObject *parent) : QAbstractItemModel(parent) {}

void OutlineModel::Show(Outline outline, bool sayNothingFound)
{
    beginResetModel();
    m_showsMessage = sayNothingFound && outline.Count() == 0;
    m_outline = std::move(outline);
    endResetModel();
}

qsizetype OutlineModel::PlaceOf(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() != MessageId ? qsizetype(index.internalId()) : -1;
}

QModelIndex OutlineModel::IndexOf(qsizetype place) const
{
    return place < 0 ? QModelIndex() : createIndex(int(m_outline.Row(place)), 0, quintptr(place));
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    if (m_showsMessage)
        return createIndex(0, 0, MessageId);
    return createIndex(row, 0, quintptr(m_outline.Child(PlaceOf(parent), row)));
}

QModelIndex OutlineModel::parent(const QModelIndex &index) const
{
    const qsizetype place = PlaceOf(index);
    return place < 0 ? QModelIndex() : IndexOf(m_outline.At(place).parent);
}

int OutlineModel::rowCount(const QModelIndex &parent) const
{
    if (m_showsMessage)
        return parent.isValid() ? 0 : 1;
    return int(m_outline.ChildCount(PlaceOf(parent)));
}

int OutlineModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant OutlineModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const qsizetype place = PlaceOf(index);
    if (place < 0)
        return MessageData(role);
    const OutlineNode node = m_outline.At(place);
    switch (role) {
    case Qt::DisplayRole:
        return m_outline.ShownCaption(place);
    case Qt::ToolTipRole:
        return PlainToolTip(m_outline.ShownCaption(place));
    case Qt::DecorationRole:
        return IconOf(node.kind);
    case KeyRole:
        return m_outline.Key(place);
    case Qt::FontRole:
        if (node.isRoot) {
            QFont bold; // all else is the tree's
            bold.setBold(true);
            return bold;
        }
        break;
    case Qt::ForegroundRole:
        if (node.isCommented)
            return GreyText();
        break;
    default:
        break;
    }
    return {};
}

QVariant OutlineModel::MessageData(int role) const
{
    if (role == Qt::DisplayRole)
        return u"No elements found."_s;
    return role == Qt::ForegroundRole ? QVariant(GreyText()) : QVariant();
}

QIcon OutlineModel::IconOf(OutlineKind kind) const
{
    const auto place = std::size_t(kind);
    if (m_icons.size() <= place)
        m_icons.resize(place + 1);
    if (m_icons[place].isNull())
        m_icons[place] = Icons::Load(ImageOfKind(kind));
    return m_icons[place];
}

} // namespace zelvane
