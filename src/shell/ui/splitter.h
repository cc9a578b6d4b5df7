// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace zelvane
{

/// The thin bar between side panel and text. It can be seen only while it is dragged: it follows the pointer
/// above its neighbours, and says where it was dropped.
class Splitter : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Thickness = 4; ///< pixels

    explicit Splitter(QWidget *parent = nullptr);

Q_SIGNALS:
    /// @param right the bar's right edge in its parent, pixels
    void Dropped(int right);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    bool m_dragged = false;
    int m_dragOffset = 0;
};

} // namespace zelvane
