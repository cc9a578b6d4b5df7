// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/completionlist.h"

#include "writing/ui/hinttip.h"

#include <algorithm>
#include <QAbstractListModel>
#include <QAccessible>
#include <QAccessibleEvent>
#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int RowsInSight = 10;
constexpr int RowsMeasured = 60;          ///< the widths of more are not asked for
constexpr qsizetype CharactersShown = 60; ///< of a longer name the ends

QString NameOf(NameKind kind)
{
    switch (kind) {
    case NameKind::Opcode:
        return u"opcode"_s;
    case NameKind::UserOpcode:
        return u"own opcode"_s;
    case NameKind::Macro:
        return u"macro"_s;
    case NameKind::Instrument:
        return u"instrument"_s;
    case NameKind::Table:
        return u"table"_s;
    case NameKind::Word:
        break;
    }
    return u"word"_s;
}

QString ShownName(const QString &name)
{
    if (name.size() <= CharactersShown)
        return name;
    constexpr qsizetype atEnd = CharactersShown / 3;
    return name.first(CharactersShown - atEnd - 1) + u'\u2026' + name.last(atEnd);
}

/// The kind stands at the right, quieter than the name.
class KindDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static int Gap(const QFontMetrics &metrics) { return metrics.averageCharWidth() * 3; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        const bool selected = option.state & QStyle::State_Selected;
        const QPalette &palette = option.palette;
        const QColor ink = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
        const QColor back = palette.color(selected ? QPalette::Highlight : QPalette::Base);
        const auto mixed = [](int one, int other) { return (one * 7 + other * 3) / 10; };
        painter->save();
        painter->setFont(option.font);
        painter->setPen(QColor(mixed(ink.red(), back.red()), mixed(ink.green(), back.green()),
                               mixed(ink.blue(), back.blue())));
        painter->drawText(option.rect.adjusted(0, 0, -Gap(option.fontMetrics) / 3, 0),
                          Qt::AlignRight | Qt::AlignVCenter, index.data(Qt::UserRole).toString());
        painter->restore();
    }
};

} // namespace

class CompletionModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void SetRows(std::vector<Completion> rows)
    {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }
    const std::vector<Completion> &Rows() const { return m_rows; }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_rows.size());
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid())
            return {};
        const Completion &row = m_rows[std::size_t(index.row())];
        switch (role) {
        case Qt::DisplayRole:
            return ShownName(row.text);
        case Qt::UserRole:
            return NameOf(row.kind);
        case Qt::AccessibleTextRole:
            return QString(row.text + u", "_s + NameOf(row.kind));
        default:
            return {};
        }
    }

private:
    std::vector<Completion> m_rows;
};

CompletionList::CompletionList(QWidget *window) : QListView(window), m_model(new CompletionModel(this))
{
    setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    setObjectName(u"lstCompletion"_s);
    setAccessibleName(u"Completions"_s);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setModel(m_model);
    setItemDelegate(new KindDelegate(this));
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setFrameStyle(int(QFrame::Box) | int(QFrame::Plain));
    connect(this, &QListView::clicked, this, &CompletionList::taken);
}

void CompletionList::ShowRows(std::vector<Completion> rows, const QRect &place)
{
    m_model->SetRows(std::move(rows));
    MakeCurrent(0);
    Place(place);
    show();
}

const Completion *CompletionList::Current() const
{
    return currentIndex().isValid() ? &m_model->Rows()[std::size_t(currentIndex().row())] : nullptr;
}

void CompletionList::Move(int rows)
{
    MakeCurrent(std::clamp(currentIndex().row() + rows, 0, m_model->rowCount() - 1));
}

void CompletionList::MovePage(int pages)
{
    Move(pages * (RowsInSight - 1));
}

void CompletionList::MakeCurrent(int row)
{
    const QModelIndex index = m_model->index(row);
    setCurrentIndex(index);
    scrollTo(index);
    // The text has the focus, so that the view itself tells nobody.
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(row);
        QAccessible::updateAccessibility(&event);
    }
}

QRect CompletionList::WithHint(QRect place) const
{
    for (const HintTip *tip : parentWidget()->findChildren<HintTip *>()) {
        const QRect hint = tip->geometry();
        if (tip->isVisible() && hint.bottom() + 1 >= place.top() && hint.top() - 1 <= place.bottom()) {
            place.setTop(std::min(place.top(), hint.top()));
            place.setBottom(std::max(place.bottom(), hint.bottom()));
        }
    }
    return place;
}

void CompletionList::Place(const QRect &word)
{
    const QRect place = WithHint(word);
    const QFontMetrics metrics(font());
    const std::vector<Completion> &rows = m_model->Rows();
    int width = 0;
    for (std::size_t i = 0; i < std::min<std::size_t>(rows.size(), RowsMeasured); ++i)
        width = std::max(width, metrics.horizontalAdvance(ShownName(rows[i].text) + NameOf(rows[i].kind)));
    const int inSight = std::min(int(rows.size()), RowsInSight);
    const int bar = int(rows.size()) > inSight ? verticalScrollBar()->sizeHint().width() : 0;
    const QScreen *screen = QGuiApplication::screenAt(place.topLeft());
    const QRect room = (screen ? screen : parentWidget()->screen())->availableGeometry();
    QSize size(width + 2 * KindDelegate::Gap(metrics) + bar + 2 * frameWidth(),
               inSight * std::max(sizeHintForRow(0), 1) + 2 * frameWidth());
    size = size.boundedTo(room.size());
    const int below = room.bottom() + 1 - (place.bottom() + 1);
    const int above = place.top() - room.top();
    if (!isVisible())
        m_above = below < size.height() && above > below;
    size.setHeight(std::min(size.height(), m_above ? above : std::max(below, 1)));
    const int left =
        std::clamp(place.left(), room.left(), std::max(room.left(), room.right() + 1 - size.width()));
    const int top = m_above ? place.top() - size.height() : place.bottom() + 1;
    setGeometry(QRect(QPoint(left, top), size));
}

void CompletionList::hideEvent(QHideEvent *event)
{
    QListView::hideEvent(event);
    m_above = false;
}

} // namespace zelvane
