// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QSvgRenderer;

namespace zelvane
{

/// The picture that stands while the program starts, with the version, the legal line and the project's page
/// written over it. The window takes the picture's size.
class FormSplash : public QWidget
{
    Q_OBJECT

public:
    explicit FormSplash(QWidget *parent = nullptr);

    /// Shows the window in the middle of the screen and paints it at once, before any event is served.
    void ShowNow();
    /// Makes it an owned window of the main window, so that it stays above that: before that is shown, and
    /// once more after.
    void SetOwner(QWidget &owner);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QSvgRenderer *m_picture;
    QLabel *lblVersion;
    QLabel *lblCopyRight;
    QLabel *lblWeb;
};

} // namespace zelvane
