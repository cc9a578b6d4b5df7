// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <vector>

class QLabel;

namespace zelvane
{

class IconView;

/// The picker of the built-in images: a grid as wide as the dialog, in which the highlight follows the mouse
/// and the keys.
class frmImages : public QDialog
{
    Q_OBJECT

public:
    /// @param number the image that is highlighted first; the first one when there is no such image
    explicit frmImages(int number = 0, QWidget *parent = nullptr);

    /// The number of the image that was picked; 0 when none was.
    int Picked() const { return m_picked; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void LoadImages();
    /// Moves the border to an image and shows its name; rows count from 0, those beyond the ends are ignored.
    void Highlight(int row);
    void Pick(int row);

    std::vector<IconView *> Img;
    QLabel *lblName;
    int m_row = -1;
    int m_picked = 0;
};

} // namespace zelvane
