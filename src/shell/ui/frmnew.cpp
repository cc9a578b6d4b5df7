// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmnew.h"

#include "shell/ui/icons.h"

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
      lvwNew(new QListWidget(this)),
      cmdOK(new QPushButton(u"OK"_s, this)),
      cmdCancel(new QPushButton(u"Cancel"_s, this))
{
    setObjectName(u"frmNew"_s);
    setWindowTitle(u"New Document"_s);
    lvwNew->setObjectName(u"lvwNew"_s);
    lvwNew->setAccessibleName(u"Kind of the new document"_s);
    cmdOK->setObjectName(u"cmdOK"_s);
    cmdOK->setDefault(true);
    cmdCancel->setObjectName(u"cmdCancel"_s);

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

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdOK, QDialogButtonBox::AcceptRole);
    buttons->addButton(cmdCancel, QDialogButtonBox::RejectRole);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lvwNew);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(buttons, &QDialogButtonBox::accepted, this, &frmNew::Confirm);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
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
