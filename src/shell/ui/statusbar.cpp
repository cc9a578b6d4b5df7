// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/statusbar.h"

#include "shell/ui/plaintooltip.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
    setToolTip(shown == text() ? QString() : PlainToolTip(text()));
    style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                          foregroundRole());
}

StatusBar::StatusBar(QWidget *parent)
    : QWidget(parent), lblStatus(new ElidedLabel(this)), lblLine(new QLabel(this))
{
    setObjectName(u"picStatus"_s);
    lblStatus->setObjectName(u"lblStatus"_s);
    lblStatus->setTextFormat(Qt::PlainText);
    lblStatus->setAccessibleName(u"Status"_s);
    lblLine->setObjectName(u"lblLine"_s);
    lblLine->setTextFormat(Qt::PlainText);
    lblLine->setAccessibleName(u"Line and column"_s);
    lblLine->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 3, 8, 3);
    layout->setSpacing(16);
    layout->addWidget(lblStatus, 1);
    layout->addWidget(lblLine, 0);
}

void StatusBar::Show(const QString &text)
{
    lblStatus->setText(text);
    lblStatus->repaint();
}

void StatusBar::ShowPosition(const QString &text)
{
    lblLine->setText(text);
}

} // namespace zelvane
