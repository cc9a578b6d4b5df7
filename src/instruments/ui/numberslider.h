// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSlider>

namespace zelvane
{

/// `slNum`: a slider whose least value is at its upper end, where the largest number is. It tells when the
/// user lets it go, whatever he moves it with.
class NumberSlider : public QSlider
{
    Q_OBJECT

public:
    explicit NumberSlider(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The mouse button or the key is up, or the wheel has turned by a notch.
    void Released();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace zelvane
