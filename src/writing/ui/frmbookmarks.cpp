// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/frmbookmarks.h"

#include "shell/ui/form.h"
#include "shell/ui/leftdoubleclick.h"

#include <cstdlib>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LineRole = Qt::UserRole;

} // namespace

frmBookmarks::frmBookmarks(const std::vector<KeptLine> &bookmarks, qsizetype line, QWidget *parent)
    : QDialog(parent),
      lstBookmarks(Named(new QListWidget(this), u"lstBookmarks"_s, u"Bookmarks"_s)),
      bOK(Named(new QPushButton(u"&Go to"_s, this), u"bOK"_s)),
      bRemove(Named(new QPushButton(u"&Remove"_s, this), u"bRemove"_s)),
      bCancel(Named(new QPushButton(u"Cancel"_s, this), u"bCancel"_s))
{
    setObjectName(u"frmBookmarks"_s);
    setWindowTitle(ProgramCaption(u"Bookmarks"_s));
    qsizetype nearest = -1;
    for (const KeptLine &kept : bookmarks) {
        auto *item = new QListWidgetItem(u"%1: %2"_s.arg(kept.line + 1).arg(kept.text.simplified()));
        item->setData(LineRole, kept.line);
        lstBookmarks->addItem(item);
        if (nearest >= 0 && std::abs(kept.line - line) >= std::abs(nearest - line))
            continue;
        nearest = kept.line;
        lstBookmarks->setCurrentItem(item);
    }
    lstBookmarks->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lstBookmarks->setMinimumSize(CharacterWidth(*this, 60), fontMetrics().lineSpacing() * 12);
    OnlyLeftDoubleClicks(*lstBookmarks);
    connect(lstBookmarks, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    connect(bRemove, &QPushButton::clicked, this, &frmBookmarks::Remove);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(bRemove);
    buttons->addStretch();
    buttons->addWidget(ButtonBox(*this, bOK, bCancel, [this] {
        if (lstBookmarks->currentItem())
            accept();
    }));
    auto *all = new QVBoxLayout(this);
    all->addWidget(lstBookmarks, 1);
    all->addLayout(buttons);
    SetTabOrder({lstBookmarks, bRemove, bOK, bCancel});
    EnableButtons();
}

qsizetype frmBookmarks::Chosen() const
{
    return lstBookmarks->currentItem()->data(LineRole).value<qsizetype>();
}

void frmBookmarks::Remove()
{
    if (!lstBookmarks->currentItem())
        return;
    m_removed.push_back(Chosen());
    delete lstBookmarks->takeItem(lstBookmarks->currentRow());
    EnableButtons();
    lstBookmarks->setFocus();
}

void frmBookmarks::EnableButtons()
{
    bOK->setEnabled(lstBookmarks->count() > 0);
    bRemove->setEnabled(lstBookmarks->count() > 0);
}

} // namespace zelvane
