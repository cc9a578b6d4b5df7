// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <QLabel>
#include <QWidget>

namespace zelvane
{

/// A label of one line that is cut with dots where it is too narrow, and then shows its whole text as
/// tooltip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// `picStatus`: `lblStatus` on the left, `lblLine` on the right.
class StatusBar : public QWidget, public StatusLine
{
    Q_OBJECT

public:
    explicit StatusBar(QWidget *parent = nullptr);

    QString Text() const override { return lblStatus->text(); }
    void Show(const QString &text) override;
    void ShowPosition(const QString &text);

private:
    ElidedLabel *lblStatus;
    QLabel *lblLine;
};

} // namespace zelvane
