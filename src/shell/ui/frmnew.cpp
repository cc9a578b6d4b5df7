// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmnew.h"

#include "shell/ui/form.h"
#include "shell/ui/icons.h"
#include "shell/ui/leftdoubleclick.h"

#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

struct Item {
    const char16_t *text;
    const char16_t *icon;
    FileKind kind;
};

constexpr Item Items[] = {
    {u"Orchestra", u"orchestra", FileKind::Orchestra},
    {u"Score", u"score", FileKind::Score},
    {u"Unified Format", u"csd", FileKind::Unified},
    {u"Text", u"unknown", FileKind::Other},
};

} // namespace

frmNew::frmNew(QWidget *parent)
    : QDialog(parent),
      lvwNew(Named(new QListWidget(this), u"lvwNew"_s, u"Kind of the new document"_s)),
      cmdOK(Named(new QPushButton(u"OK"_s, this), u"cmdOK"_s)),
      cmdCancel(Named(new QPushButton(u"Cancel"_s, this), u"cmdCancel"_s))
{
    setObjectName(u"frmNew"_s);
    setWindowTitle(u"New Document"_s);

    lvwNew->setViewMode(QListView::IconMode);
    lvwNew->setMovement(QListView::Static);
    lvwNew->setFlow(QListView::LeftToRight);
    lvwNew->setWrapping(false);
    lvwNew->setIconSize(QSize(32, 32));
    const QSize cell(fontMetrics().horizontalAdvance(u"Unified Format"_s) + 28,
                     32 + fontMetrics().height() + 24);
    lvwNew->setGridSize(cell);
    for (const Item &item : Items) {
        auto *row =
            new QListWidgetItem(Icons::Load(QString::fromUtf16(item.icon)), QString::fromUtf16(item.text));
        row->setData(Qt::UserRole, int(item.kind));
        row->setSizeHint(cell - QSize(4, 4));
        row->setTextAlignment(Qt::AlignHCenter);
        lvwNew->addItem(row);
    }
    lvwNew->setCurrentRow(0);
    const int frame = 2 * lvwNew->frameWidth();
    lvwNew->setFixedSize(cell.width() * 4 + frame + 4, cell.height() + frame + 4);
    lvwNew->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lvwNew->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lvwNew);
    layout->addWidget(ButtonBox(*this, cmdOK, cmdCancel, [this] { Confirm(); }));
    layout->setSizeConstraint(QLayout::SetFixedSize);

    OnlyLeftDoubleClicks(*lvwNew);
    connect(lvwNew, &QListWidget::itemDoubleClicked, this, &frmNew::Confirm);
    lvwNew->setFocus();
}

void frmNew::Confirm()
{
    const QListWidgetItem *item = lvwNew->currentItem();
    if (!item)
        return;
    m_kind = FileKind(item->data(Qt::UserRole).toInt());
    accept();
}

} // namespace zelvane
